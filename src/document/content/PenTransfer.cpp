// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/PenTransfer.h"

#include "document/content/PenGrid.h"
#include "document/content/PenReader.h"
#include "document/content/Pens.h"
#include "document/content/PointWriter.h"
#include "values/Conversions.h"

#include <limits>

namespace pentransfer {

namespace {

constexpr QLatin1String kLineEnd("\r\n");
constexpr QLatin1Char kTab('\t');
/// The signed phase of a pen that was measured without phase.
constexpr QLatin1String kNoPhase("65536");

/// Tolerant, and the texts of values that are not finite give them back.
double number(QStringView text)
{
    if (text == QLatin1String("inf"))
        return std::numeric_limits<double>::infinity();
    if (text == QLatin1String("-inf"))
        return -std::numeric_limits<double>::infinity();
    if (text == QLatin1String("nan"))
        return std::numeric_limits<double>::quiet_NaN();
    return values::tolerantNumber(text);
}

} // namespace

bool fits(std::int16_t gridType, std::int16_t documentType)
{
    return gridType == documentType || (gridType == plot::Impedance && documentType == plot::Reactance) ||
           (gridType == plot::Reactance && documentType == plot::Impedance);
}

bool canPaste(const QString& text, std::int16_t documentType)
{
    const auto header = PenGrid::readHeader(text);
    return header && !header->xLabel.isEmpty() && fits(header->testType, documentType);
}

QString copied(const GraphModel& graph, int pen, std::int16_t documentType)
{
    QString grid = PenGrid::headerText({graph.XAxisLabel(), graph.SubsetLabels(pen), documentType}) + kLineEnd;
    const int points = PenReader::pointCount(graph, pen);
    for (int point = 0; point < points; ++point) {
        grid += values::decimalText(graph.XData(pen, point));
        for (const int offset : {0, plot::kPens, 3 * plot::kPens, 2 * plot::kPens}) {
            grid += kTab;
            grid += values::decimalText(graph.YData(pen + offset, point));
        }
        grid += kLineEnd;
    }
    return grid;
}

Pasted paste(GraphModel& graph, Pens& pens, int pen, const QString& grid, std::int16_t documentType)
{
    Pasted pasted;
    const auto header = PenGrid::readHeader(grid);
    if (!header || header->xLabel.isEmpty())
        return pasted;
    pens.setName(pen, header->penLabel);
    pasted.named = true;
    if (!fits(header->testType, documentType))
        return pasted;

    PointWriter writer(graph);
    QStringView rest(grid);
    PenGrid::takeLine(rest);
    while (rest.size() >= 2 && pasted.points < graph.Points()) {
        QStringView x, y1, y2, y3, y4;
        if (!PenGrid::SplitData(PenGrid::takeLine(rest), x, y1, y2, y3, y4))
            break;
        if (header->testType == documentType) {
            writer.write(pen, pasted.points, number(x), number(y1), number(y2), number(y3), number(y4));
        } else if (header->testType == plot::Impedance) {
            pasted.phaseLost = y3 == kNoPhase;
            if (pasted.phaseLost)
                break;
            writer.writePolarAsReactance(pen, pasted.points, number(x), number(y1), number(y3));
        } else {
            writer.writeRectangularAsImpedance(pen, pasted.points, number(x), number(y1), number(y3));
        }
        ++pasted.points;
    }
    return pasted;
}

} // namespace pentransfer
