// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphProperties.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace graph {
namespace {

bool isColor(std::uint32_t color)
{
    return color <= 0xFFFFFF;
}

bool isText(const QString& text)
{
    return text.size() <= kLongestText;
}

bool isValid(const YAxis& axis)
{
    return isText(axis.YAxisLabel) && isScale(axis.YAxisScaleControl) && isScaleControl(axis.ManualScaleControlY) &&
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
                       [](const TableCell& cell) { return isIn(cell.TAJustification, 0, 2) && isText(cell.TAText); }) &&
           isText(table.TAFonts) && isIn(table.TATextSize, 1, 1000) && isIn(table.TALocation, 0, 5) &&
           isIn(table.TABorder, 0, 2) && isColor(table.TABackColor);
}

bool isValid(const VerticalLine& line)
{
    return std::isfinite(line.position) && line.type >= 0 && isColor(line.color);
}

bool isValid(const MenuItem& item)
{
    return isText(item.text) &&
           std::all_of(item.states.begin(), item.states.end(),
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

template <typename List>
bool areTexts(const List& list)
{
    return std::all_of(list.begin(), list.end(), [](const QString& text) { return isText(text); });
}

bool areValidAnnotations(const std::map<int, QString>& annotations)
{
    return std::all_of(annotations.begin(), annotations.end(), [](const auto& annotation) {
        return isIn(annotation.first, 0, kMaxGraphAnnotations - 1) && isText(annotation.second);
    });
}

struct Check
{
    const char* name;
    bool good;
};

const char* firstBad(std::initializer_list<Check> checks)
{
    const auto bad = std::find_if(checks.begin(), checks.end(), [](const Check& check) { return !check.good; });
    return bad == checks.end() ? nullptr : bad->name;
}

const char* firstInvalidText(const Properties& p)
{
    return firstBad({{"MainTitle", isText(p.MainTitle)},
                     {"SubTitle", isText(p.SubTitle)},
                     {"XAxisLabel", isText(p.XAxisLabel)},
                     {"TXAxisLabel", isText(p.TXAxisLabel)},
                     {"AxisUnitPrefixes", isText(p.AxisUnitPrefixes)},
                     {"MainTitleFont", isText(p.MainTitleFont)},
                     {"SubTitleFont", isText(p.SubTitleFont)},
                     {"LabelFont", isText(p.LabelFont)},
                     {"MultiSubTitles", p.MultiSubTitles.size() <= kMaxMultiSubTitles && areTexts(p.MultiSubTitles)},
                     {"GraphAnnotationText", areValidAnnotations(p.GraphAnnotationText)}});
}

const char* firstInvalidAxis(const Properties& p)
{
    return firstBad({{"XAxisScaleControl", isScale(p.XAxisScaleControl)},
                     {"ManualScaleControlX", isScaleControl(p.ManualScaleControlX)},
                     {"ManualMinX", std::isfinite(p.ManualMinX)},
                     {"ManualMaxX", std::isfinite(p.ManualMaxX)},
                     {"YAxes", areAllValid(p.yAxes)},
                     {"Zoom", isValid(p.zoom)}});
}

const char* firstInvalidStyle(const Properties& p)
{
    return firstBad(
        {{"LegendStyle", isIn(p.LegendStyle, LegendOutside, LegendInsideAxis)},
         {"LegendLocation", isIn(p.LegendLocation, LegendTop, LegendRight)},
         {"ViewingStyle", isIn(p.ViewingStyle, StyleColour, StyleMonochromeSymbols)},
         {"FontSize", isIn(p.FontSize, FontLarge, FontSmall)},
         {"FontSizeGlobalCntl", p.FontSizeGlobalCntl >= kMinFontFactor && p.FontSizeGlobalCntl <= kMaxFontFactor},
         {"LineWidth", p.LineWidth >= 0 && p.LineWidth <= kMaxLineWidth},
         {"MonoGraphForeColor", isColor(p.MonoGraphForeColor)},
         {"MonoGraphBackColor", isColor(p.MonoGraphBackColor)},
         {"MonoTextColor", isColor(p.MonoTextColor)},
         {"MonoDeskColor", isColor(p.MonoDeskColor)},
         {"TickColor", isColor(p.TickColor)}});
}

const char* firstInvalidList(const Properties& p, int subsets)
{
    const auto size = static_cast<std::size_t>(subsets);
    const auto isSubset = [subsets](int subset) { return subset < subsets; };
    const auto isLineType = [](int type) { return type >= 0; };
    return firstBad(
        {{"VerticalLines", p.verticalLines.size() <= kMaxVerticalLines && areAllValid(p.verticalLines)},
         {"Tables", areAllValid(p.tables)},
         {"CustomMenu", p.CustomMenu.size() <= kMaxMenuItems && areAllValid(p.CustomMenu)},
         {"SubsetLabels", p.SubsetLabels.size() == size && areTexts(p.SubsetLabels)},
         {"SubsetColors", p.SubsetColors.size() == size && std::ranges::all_of(p.SubsetColors, isColor)},
         {"SubsetLineTypes", p.SubsetLineTypes.size() == size && std::ranges::all_of(p.SubsetLineTypes, isLineType)},
         {"SubsetsToShow", p.SubsetsToShow.size() == size},
         {"RandomSubsetsToGraph",
          p.RandomSubsetsToGraph.size() <= size && std::ranges::all_of(p.RandomSubsetsToGraph, isSubset)}});
}

} // namespace

const char* firstInvalid(const Properties& properties, int subsets)
{
    for (const char* bad : {firstInvalidText(properties), firstInvalidAxis(properties), firstInvalidStyle(properties),
                            firstInvalidList(properties, subsets)}) {
        if (bad != nullptr)
            return bad;
    }
    return nullptr;
}

void fillSubsetLists(Properties& properties, int subsets)
{
    const auto fill = [subsets](auto& list, const auto& value) {
        if (list.empty())
            list.assign(static_cast<std::size_t>(subsets), value);
    };
    fill(properties.SubsetLabels, QString());
    fill(properties.SubsetColors, 0U);
    fill(properties.SubsetLineTypes, int{LineSolid});
    fill(properties.SubsetsToShow, true);
}

} // namespace graph
