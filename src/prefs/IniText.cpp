// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/IniText.h"

#include <QStringDecoder>

namespace {

const QString kFirstLine = QStringLiteral("; Settings. May be edited by hand, best while no copy of the program runs.");
const QString kLastLine = QStringLiteral("; end of settings");

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r';
}

QStringView withoutBlanks(QStringView text)
{
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

void appendUnit(QString& out, char16_t unit)
{
    out += QStringLiteral("\\u%1").arg(static_cast<uint>(unit), 4, 16, QLatin1Char('0'));
}

/// Characters of `special` are escaped wherever they stand, besides those that no line can hold.
QString escaped(QStringView text, QStringView special)
{
    QString out;
    out.reserve(text.size() + 8);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const char16_t unit = c.unicode();
        const bool atEdge = i == 0 || i == text.size() - 1;
        const bool paired = (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) ||
                            (c.isLowSurrogate() && i > 0 && text[i - 1].isHighSurrogate());
        if (unit == u'\\')
            out += QLatin1String("\\\\");
        else if (unit == u'\n')
            out += QLatin1String("\\n");
        else if (unit == u'\r')
            out += QLatin1String("\\r");
        else if (unit == u'\t')
            out += QLatin1String("\\t");
        else if (unit == u' ' && atEdge)
            out += QLatin1String("\\s");
        else if (unit < 0x20 || unit == 0x7f || unit == 0xfeff || (c.isSurrogate() && !paired) || special.contains(c))
            appendUnit(out, unit);
        else
            out += c;
    }
    return out;
}

QString unescaped(QStringView text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        switch (text[i + 1].unicode()) {
        case u'\\':
            out += u'\\';
            break;
        case u'n':
            out += u'\n';
            break;
        case u'r':
            out += u'\r';
            break;
        case u't':
            out += u'\t';
            break;
        case u's':
            out += u' ';
            break;
        case u'u': {
            bool isHex = false;
            const QStringView figures = text.mid(i + 2, 4);
            const ushort unit = figures.size() == 4 ? figures.toUShort(&isHex, 16) : ushort{0};
            if (!isHex) {
                out += u'\\';
                continue;
            }
            out += QChar(unit);
            i += 4;
            break;
        }
        default:
            out += u'\\';
            continue;
        }
        ++i;
    }
    return out;
}

QString keyLine(const QString& key, const QString& value)
{
    return escaped(key, u"=[;#") + u'=' + escaped(value, {});
}

} // namespace

void IniText::index(int line, const QString& section, const QString& key)
{
    m_lineOf.insert({section, key}, line);
    m_lastLineOf.insert(section, line);
}

std::optional<IniText> IniText::parse(const QByteArray& bytes)
{
    if (bytes.contains('\0'))
        return {};
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(bytes);
    if (decode.hasError())
        return {};

    IniText result;
    QString section;
    bool ownFile = false;
    bool complete = false;
    const auto lines = QStringView(text).split(u'\n');
    for (const QStringView whole : lines) {
        const QStringView line = withoutBlanks(whole);
        if (line == kFirstLine) {
            ownFile = true;
            continue;
        }
        if (line == kLastLine) {
            complete = true;
            continue;
        }
        const int number = static_cast<int>(result.m_lines.size());
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            section = unescaped(line.sliced(1, line.size() - 2));
            result.m_lastLineOf.insert(section, number);
        } else if (!line.isEmpty() && line.front() != u';' && line.front() != u'#') {
            const qsizetype equals = line.indexOf(u'=');
            if (equals < 0)
                return {};
            const QString key = unescaped(withoutBlanks(line.first(equals)));
            result.index(number, section, key);
            result.m_values.insert({section, key}, unescaped(withoutBlanks(line.sliced(equals + 1))));
        }
        result.m_lines.append(whole.toString());
    }
    if (ownFile && !complete)
        return {};
    while (!result.m_lines.isEmpty() && result.m_lines.last().isEmpty())
        result.m_lines.removeLast();
    return result;
}

QByteArray IniText::bytes() const
{
    QString text = kFirstLine + u'\n';
    for (const QString& line : m_lines)
        text += line + u'\n';
    text += kLastLine + u'\n';
    return text.toUtf8();
}

std::optional<QString> IniText::value(const QString& section, const QString& key) const
{
    const auto found = m_values.constFind({section, key});
    if (found == m_values.constEnd())
        return {};
    return *found;
}

void IniText::setValue(const QString& section, const QString& key, const QString& value)
{
    const QString line = keyLine(key, value);
    m_values.insert({section, key}, value);
    if (const auto found = m_lineOf.constFind({section, key}); found != m_lineOf.constEnd()) {
        m_lines[*found] = line;
        return;
    }
    if (!m_lastLineOf.contains(section) && !section.isEmpty()) {
        if (!m_lines.isEmpty())
            m_lines.append(QString());
        m_lines.append(u'[' + escaped(section, {}) + u']');
        m_lastLineOf.insert(section, static_cast<int>(m_lines.size()) - 1);
    }
    // Keys without a section stand before the first heading.
    const int at = m_lastLineOf.value(section, -1) + 1;
    m_lines.insert(at, line);
    for (int& other : m_lineOf)
        other += other >= at ? 1 : 0;
    for (int& other : m_lastLineOf)
        other += other >= at ? 1 : 0;
    index(at, section, key);
}
