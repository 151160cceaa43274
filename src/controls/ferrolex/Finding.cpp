// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Finding.h"

#include "controls/ferrolex/Source.h"

#include <QCoreApplication>

#include <algorithm>
#include <tuple>
#include <utility>

namespace ferrolex {
namespace {

constexpr int kExcerptWidth = 100;

QString tr(const char* text, const char* disambiguation = nullptr, int n = -1)
{
    return QCoreApplication::translate("Ferrolex", text, disambiguation, n);
}

QString plainLine(std::string_view bytes)
{
    QString line = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    for (QChar& c : line) {
        if (!c.isPrint())
            c = QLatin1Char(' ');
    }
    return line;
}

QString leftOutLine(int count)
{
    return count == 1 ? tr("One further message is left out.\n") : tr("%1 further messages are left out.\n").arg(count);
}

} // namespace

void Findings::error(std::uint32_t offset, const QString& sentence, const QString& suggestion)
{
    ++m_errors;
    add(Finding::Severity::Error, offset, sentence, suggestion);
}

void Findings::warning(std::uint32_t offset, const QString& sentence, const QString& suggestion)
{
    ++m_warnings;
    add(Finding::Severity::Warning, offset, sentence, suggestion);
}

void Findings::add(Finding::Severity severity, std::uint32_t offset, const QString& sentence, const QString& suggestion)
{
    if (m_findings.size() >= kMostKept) {
        ++m_leftOut;
        return;
    }
    Finding finding;
    finding.severity = severity;
    finding.sentence = sentence;
    finding.suggestion = suggestion;
    finding.line = m_source.lineOf(offset);
    const std::string_view line = m_source.line(finding.line);
    const std::size_t before = std::min<std::size_t>(offset - m_source.lineStart(finding.line), line.size());
    // Only the neighbourhood is decoded: a line may be as long as the script.
    std::size_t from = before > kExcerptWidth / 2 ? before - kExcerptWidth / 2 : 0;
    while (from > 0 && (static_cast<unsigned char>(line[from]) & 0xC0U) == 0x80U)
        --from;
    std::size_t to = std::min(line.size(), from + kExcerptWidth);
    while (to < line.size() && (static_cast<unsigned char>(line[to]) & 0xC0U) == 0x80U)
        ++to;
    finding.excerpt = plainLine(line.substr(from, to - from));
    finding.caret = static_cast<int>(plainLine(line.substr(from, before - from)).size());
    const auto starts = std::count_if(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(before),
                                      [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
    finding.column = static_cast<int>(starts) + 1;
    m_findings.push_back(std::move(finding));
}

std::vector<Finding> Findings::sorted() &&
{
    std::stable_sort(m_findings.begin(), m_findings.end(), [](const Finding& one, const Finding& other) {
        return std::tie(one.line, one.column) < std::tie(other.line, other.column);
    });
    return std::move(m_findings);
}

QString textOf(const Finding& finding)
{
    const QString severity =
        finding.severity == Finding::Severity::Error ? QStringLiteral("error") : QStringLiteral("warning");
    QString text = QStringLiteral("%1:%2: ").arg(finding.line).arg(finding.column) + severity + QStringLiteral(": ") +
                   finding.sentence + QLatin1Char('\n');
    if (!finding.excerpt.isEmpty())
        text += QStringLiteral("    ") + finding.excerpt + QStringLiteral("\n    ") +
                QString(finding.caret, QLatin1Char(' ')) + QStringLiteral("^\n");
    if (!finding.suggestion.isEmpty())
        text += QStringLiteral("    ") + finding.suggestion + QLatin1Char('\n');
    return text;
}

QString messageText(const std::vector<Finding>& findings, int leftOut, int size)
{
    constexpr int kRoomForCount = 80;
    QString text;
    int shown = 0;
    const int count = static_cast<int>(findings.size());
    for (const Finding& finding : findings) {
        const QString next = textOf(finding);
        const bool isLast = shown + 1 == count && leftOut == 0;
        if (text.size() + next.size() + (isLast ? 0 : kRoomForCount) > size)
            break;
        text += next;
        ++shown;
    }
    if (const int rest = count - shown + leftOut; rest > 0)
        text += leftOutLine(rest);
    return text.left(std::max(size, 0));
}

} // namespace ferrolex
