// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/linklog/LinkLog.h"

#include <array>

namespace linklog {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr std::array<char, 3> kDirections = {'>', '<', '!'};
constexpr qint64 kLongestTime = Q_INT64_C(1'000'000'000); // seconds; over thirty years

int hexValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

void appendHex(QByteArray& text, char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    text += '\\';
    text += 'x';
    text += kHexDigits[value >> 4];
    text += kHexDigits[value & 15];
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

QByteArray escaped(QByteArrayView bytes)
{
    QByteArray text;
    text.reserve(bytes.size() + 8);
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char byte = bytes[i];
        switch (byte) {
        case '\\':
            text += "\\\\";
            break;
        case '\r':
            text += "\\r";
            break;
        case '\n':
            text += "\\n";
            break;
        case '\t':
            text += "\\t";
            break;
        default:
            if (byte < 0x20 || byte > 0x7e || (byte == ' ' && i == bytes.size() - 1))
                appendHex(text, byte);
            else
                text += byte;
        }
    }
    return text;
}

std::optional<QByteArray> unescaped(QByteArrayView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c < 0x20 || c > 0x7e)
            return {};
        if (c != '\\') {
            bytes += c;
            continue;
        }
        if (++i == text.size())
            return {};
        switch (text[i]) {
        case '\\':
            bytes += '\\';
            break;
        case 'r':
            bytes += '\r';
            break;
        case 'n':
            bytes += '\n';
            break;
        case 't':
            bytes += '\t';
            break;
        case 'x': {
            if (text.size() - i < 3)
                return {};
            const int high = hexValue(text[i + 1]);
            const int low = hexValue(text[i + 2]);
            if (high < 0 || low < 0)
                return {};
            bytes += static_cast<char>(high * 16 + low);
            i += 2;
            break;
        }
        default:
            return {};
        }
    }
    return bytes;
}

QByteArray lineOf(const Entry& entry)
{
    const qint64 micro = qMax<qint64>(entry.microseconds, 0);
    QByteArray line = QByteArray::number(micro / 1000000);
    line += '.';
    line += QByteArray::number(micro % 1000000).rightJustified(6, '0');
    line += ' ';
    line += kDirections[entry.kind];
    line += ' ';
    line += escaped(entry.bytes);
    return line;
}

std::optional<Entry> entryOf(QByteArrayView line)
{
    qsizetype at = 0;
    qint64 seconds = 0;
    while (at < line.size() && isDigit(line[at])) {
        seconds = seconds * 10 + (line[at++] - '0');
        if (seconds > kLongestTime)
            return {};
    }
    if (at == 0 || at == line.size() || line[at++] != '.')
        return {};
    qint64 micro = 0;
    for (int digit = 0; digit < 6; ++digit, ++at) {
        if (at == line.size() || !isDigit(line[at]))
            return {};
        micro = micro * 10 + (line[at] - '0');
    }
    // A line without bytes may have lost the blank behind its direction to an editor.
    if (line.size() - at < 2 || line[at] != ' ' || (line.size() - at > 2 && line[at + 2] != ' '))
        return {};
    Entry entry;
    entry.microseconds = seconds * 1000000 + micro;
    switch (line[at + 1]) {
    case '>':
        entry.kind = Entry::ToInstrument;
        break;
    case '<':
        entry.kind = Entry::FromInstrument;
        break;
    case '!':
        entry.kind = Entry::Remark;
        break;
    default:
        return {};
    }
    const std::optional<QByteArray> bytes = unescaped(line.sliced(qMin(at + 3, line.size())));
    if (!bytes)
        return {};
    entry.bytes = *bytes;
    return entry;
}

} // namespace linklog
