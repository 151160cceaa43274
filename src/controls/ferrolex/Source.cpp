// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Source.h"

#include <QCoreApplication>
#include <QStringDecoder>

#include <algorithm>
#include <utility>

namespace ferrolex {
namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Ferrolex", text);
}

bool isBinary(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return (byte < ' ' && c != '\t' && c != '\r' && c != '\n' && c != '\f') || byte == 0x7f;
}

} // namespace

ValueOr<Source> Source::of(const QByteArray& bytes)
{
    if (bytes.size() > kLargest)
        return Outcome::failure(tr("The script is larger than 1 MiB; split it into several."));
    const QByteArray text = bytes.startsWith("\xEF\xBB\xBF") ? bytes.mid(3) : bytes;
    if (std::any_of(text.begin(), text.end(), isBinary))
        return Outcome::failure(tr("This is no script: it holds bytes that no text has."));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(text);
    if (decoder.hasError() || decoded.contains(QChar::ReplacementCharacter))
        return Outcome::failure(tr("The script is no UTF-8 text; save it with the encoding UTF-8."));
    return Source(text);
}

Source::Source(QByteArray text)
    : m_text(std::move(text))
{
    const auto size = static_cast<std::uint32_t>(m_text.size());
    std::uint32_t start = 0;
    for (std::uint32_t at = 0; at <= size; ++at) {
        if (at < size && m_text[at] != '\n' && m_text[at] != '\r')
            continue;
        m_lineStarts.push_back(start);
        m_lineLengths.push_back(at - start);
        if (at + 1 < size && m_text[at] == '\r' && m_text[at + 1] == '\n')
            ++at;
        start = at + 1;
    }
}

std::string_view Source::line(int number) const
{
    const auto index = static_cast<std::size_t>(number - 1);
    return {m_text.constData() + m_lineStarts[index], m_lineLengths[index]};
}

int Source::lineOf(std::uint32_t offset) const
{
    const auto behind = std::upper_bound(m_lineStarts.begin(), m_lineStarts.end(), offset);
    return static_cast<int>(std::max<std::ptrdiff_t>(behind - m_lineStarts.begin(), 1));
}

} // namespace ferrolex
