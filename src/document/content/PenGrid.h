// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>
#include <optional>

/// The text of one pen on the clipboard: fields apart by a TAB, lines ended by CR LF. The first line is the header,
/// each further line a point: X, then Y of subsets p, p+10, p+30 and p+20.
namespace PenGrid {

struct Header
{
    QString xLabel;
    QString penLabel;
    std::int16_t testType = 0;
};

/// The header line without its end. TABs and line ends within the labels become blanks: they would cut the line.
QString headerText(const Header& header);
/// The header of a grid; nothing when the text has no line end or its first line has not three fields with a whole
/// number in the third.
std::optional<Header> readHeader(QStringView grid);

/// Takes the next line, without its end, off the front of the text; all that is left when there is no line end.
QStringView takeLine(QStringView& text);

/// The five fields of a line; the last is the remainder behind the fourth TAB. False when TABs are missing.
bool SplitData(QStringView strSource, QStringView& strXdata, QStringView& strY1data, QStringView& strY2data,
               QStringView& strY3data, QStringView& strY4data);

} // namespace PenGrid
