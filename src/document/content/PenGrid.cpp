// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/PenGrid.h"

#include "values/Conversions.h"

#include <array>

namespace PenGrid {

namespace {

constexpr QLatin1String kLineEnd("\r\n");
constexpr QLatin1Char kTab('\t');

QString oneField(QString text)
{
    for (QChar& c : text) {
        if (c == kTab || c == QLatin1Char('\r') || c == QLatin1Char('\n'))
            c = QLatin1Char(' ');
    }
    return text;
}

/// Takes the text up to the next TAB off the front; nothing when there is no TAB.
std::optional<QStringView> takeField(QStringView& line)
{
    const qsizetype tab = line.indexOf(kTab);
    if (tab < 0)
        return std::nullopt;
    const QStringView field = line.first(tab);
    line = line.sliced(tab + 1);
    return field;
}

} // namespace

QString headerText(const Header& header)
{
    return oneField(header.xLabel) + kTab + oneField(header.penLabel) + kTab + QString::number(header.testType);
}

std::optional<Header> readHeader(QStringView grid)
{
    const qsizetype end = grid.indexOf(kLineEnd);
    if (end < 0)
        return std::nullopt;
    // Blanks only: an empty first label is told by the TAB in front.
    QStringView line = grid.first(end);
    while (line.startsWith(QLatin1Char(' ')))
        line = line.sliced(1);
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    const auto xLabel = takeField(line);
    if (!xLabel)
        return std::nullopt;
    const auto penLabel = takeField(line);
    if (!penLabel)
        return std::nullopt;
    const auto type = values::strictInt16(line);
    if (!type)
        return std::nullopt;
    return Header{xLabel->toString(), penLabel->toString(), *type};
}

QStringView takeLine(QStringView& text)
{
    const qsizetype end = text.indexOf(kLineEnd);
    if (end < 0) {
        const QStringView all = text;
        text = {};
        return all;
    }
    const QStringView line = text.first(end);
    text = text.sliced(end + kLineEnd.size());
    return line;
}

bool SplitData(QStringView strSource, QStringView& strXdata, QStringView& strY1data, QStringView& strY2data,
               QStringView& strY3data, QStringView& strY4data)
{
    const std::array<QStringView*, 4> fields{&strXdata, &strY1data, &strY2data, &strY3data};
    for (QStringView* field : fields) {
        const auto taken = takeField(strSource);
        if (!taken)
            return false;
        *field = *taken;
    }
    strY4data = strSource;
    return true;
}

} // namespace PenGrid
