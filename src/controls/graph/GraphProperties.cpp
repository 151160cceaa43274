// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphProperties.h"

#include <algorithm>
#include <cmath>

namespace graph {
namespace {

bool isScale(int scale)
{
    return scale == ScaleLinear || scale == ScaleLogarithmic;
}

bool isScaleControl(int control)
{
    return control == ScaleAutomatic || control == ScaleManual;
}

bool isIn(int value, int first, int last)
{
    return value >= first && value <= last;
}

bool isColor(std::uint32_t color)
{
    return color <= 0xFFFFFF;
}

bool isValid(const YAxis& axis)
{
    return isScale(axis.YAxisScaleControl) && isScaleControl(axis.ManualScaleControlY) &&
           std::isfinite(axis.ManualMinY) && std::isfinite(axis.ManualMaxY) && !std::isnan(axis.NullDataValueY);
}

bool isValid(const ZoomLimits& zoom)
{
    const double limits[] = {zoom.ZoomMinX,  zoom.ZoomMaxX,  zoom.ZoomMinY,  zoom.ZoomMaxY,
                             zoom.ZoomMinRY, zoom.ZoomMaxRY, zoom.ZoomMinTX, zoom.ZoomMaxTX};
    return std::all_of(std::begin(limits), std::end(limits), [](double limit) { return std::isfinite(limit); });
}

bool isValid(const TableAnnotation& table)
{
    return isIn(table.TARows, 0, kMaxTableRows) && isIn(table.TAColumns, 0, kMaxTableColumns) &&
           table.cells.size() == static_cast<std::size_t>(table.TARows) * static_cast<std::size_t>(table.TAColumns) &&
           std::all_of(table.cells.begin(), table.cells.end(),
                       [](const TableCell& cell) { return isIn(cell.TAJustification, 0, 2); }) &&
           isIn(table.TATextSize, 1, 1000) && isIn(table.TALocation, 0, 5) && isIn(table.TABorder, 0, 2) &&
           isColor(table.TABackColor);
}

bool isValid(const VerticalLine& line)
{
    return std::isfinite(line.position) && line.type >= 0 && isColor(line.color);
}

bool isValid(const MenuItem& item)
{
    return std::all_of(item.states.begin(), item.states.end(),
                       [](const auto& state) {
                           return isIn(state.first, 0, kMaxSubItems - 1) && isIn(state.second, MenuNormal, MenuHidden);
                       }) &&
           std::all_of(item.checked.begin(), item.checked.end(),
                       [](const auto& mark) { return isIn(mark.first, 0, kMaxSubItems - 1); });
}

template <typename List>
bool areAllValid(const List& list)
{
    return std::all_of(list.begin(), list.end(), [](const auto& entry) { return isValid(entry); });
}

bool isAxesPartValid(const Properties& p)
{
    return isScale(p.XAxisScaleControl) && isScaleControl(p.ManualScaleControlX) && std::isfinite(p.ManualMinX) &&
           std::isfinite(p.ManualMaxX) && areAllValid(p.yAxes) && isValid(p.zoom);
}

bool isStylePartValid(const Properties& p)
{
    return isIn(p.LegendStyle, LegendOutside, LegendInsideAxis) && isIn(p.LegendLocation, LegendTop, LegendRight) &&
           isIn(p.ViewingStyle, StyleColour, StyleMonochromeSymbols) && isIn(p.FontSize, FontLarge, FontSmall) &&
           p.FontSizeGlobalCntl >= kMinFontFactor && p.FontSizeGlobalCntl <= kMaxFontFactor && p.LineWidth >= 0 &&
           p.LineWidth <= kMaxLineWidth && isColor(p.MonoGraphForeColor) && isColor(p.MonoGraphBackColor) &&
           isColor(p.MonoTextColor) && isColor(p.MonoDeskColor) && isColor(p.TickColor);
}

bool isListsPartValid(const Properties& p, int subsets)
{
    const auto size = static_cast<std::size_t>(subsets);
    return p.verticalLines.size() <= kMaxVerticalLines && areAllValid(p.verticalLines) && areAllValid(p.tables) &&
           p.CustomMenu.size() <= kMaxMenuItems && areAllValid(p.CustomMenu) &&
           p.MultiSubTitles.size() <= kMaxMultiSubTitles &&
           std::all_of(p.GraphAnnotationText.begin(), p.GraphAnnotationText.end(),
                       [](const auto& text) { return isIn(text.first, 0, kMaxGraphAnnotations - 1); }) &&
           p.SubsetLabels.size() == size && p.SubsetColors.size() == size &&
           std::all_of(p.SubsetColors.begin(), p.SubsetColors.end(), isColor) && p.SubsetLineTypes.size() == size &&
           std::all_of(p.SubsetLineTypes.begin(), p.SubsetLineTypes.end(), [](int type) { return type >= 0; }) &&
           p.SubsetsToShow.size() == size && p.RandomSubsetsToGraph.size() <= size &&
           std::all_of(p.RandomSubsetsToGraph.begin(), p.RandomSubsetsToGraph.end(),
                       [subsets](int subset) { return subset < subsets; });
}

} // namespace

bool areValid(const Properties& properties, int subsets)
{
    return isAxesPartValid(properties) && isStylePartValid(properties) && isListsPartValid(properties, subsets);
}

} // namespace graph
