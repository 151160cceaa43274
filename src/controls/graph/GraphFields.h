// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphProperties.h"

#include <concepts>
#include <type_traits>

/// The one list of what a plot file holds of a graph's properties: every archive (count, write, read) walks it, so that
/// none can forget a field. The name is the key in the file.
namespace graph {

template <typename Archive, typename T>
requires std::same_as<std::remove_const_t<T>, YAxis>
void describe(Archive& archive, T& axis)
{
    archive("YAxisLabel", axis.YAxisLabel);
    archive("YAxisScaleControl", axis.YAxisScaleControl);
    archive("ManualScaleControlY", axis.ManualScaleControlY);
    archive("ManualMinY", axis.ManualMinY);
    archive("ManualMaxY", axis.ManualMaxY);
    archive("NullDataValueY", axis.NullDataValueY);
    archive("PlottingMode", axis.PlottingMode);
}

template <typename Archive, typename T>
requires std::same_as<std::remove_const_t<T>, ZoomLimits>
void describe(Archive& archive, T& zoom)
{
    archive("ZoomMinX", zoom.ZoomMinX);
    archive("ZoomMaxX", zoom.ZoomMaxX);
    archive("ZoomMinY", zoom.ZoomMinY);
    archive("ZoomMaxY", zoom.ZoomMaxY);
    archive("ZoomMinRY", zoom.ZoomMinRY);
    archive("ZoomMaxRY", zoom.ZoomMaxRY);
    archive("ZoomMinTX", zoom.ZoomMinTX);
    archive("ZoomMaxTX", zoom.ZoomMaxTX);
}

template <typename Archive, typename T>
requires std::same_as<std::remove_const_t<T>, TableCell>
void describe(Archive& archive, T& cell)
{
    archive("TAText", cell.TAText);
    archive("TAJustification", cell.TAJustification);
}

template <typename Archive, typename T>
requires std::same_as<std::remove_const_t<T>, TableAnnotation>
void describe(Archive& archive, T& table)
{
    archive("ShowTableAnnotation", table.ShowTableAnnotation);
    archive("TARows", table.TARows);
    archive("TAColumns", table.TAColumns);
    archive("Cells", table.cells);
    archive("TATextSize", table.TATextSize);
    archive("TAFonts", table.TAFonts);
    archive("TALocation", table.TALocation);
    archive("TAHeaderColumn", table.TAHeaderColumn);
    archive("TABorder", table.TABorder);
    archive("TABackColor", table.TABackColor);
}

template <typename Archive, typename T>
requires std::same_as<std::remove_const_t<T>, VerticalLine>
void describe(Archive& archive, T& line)
{
    archive("Position", line.position);
    archive("Type", line.type);
    archive("Color", line.color);
}

template <typename Archive, typename T>
requires std::same_as<std::remove_const_t<T>, MenuItem>
void describe(Archive& archive, T& item)
{
    archive("Text", item.text);
    archive("States", item.states);
    archive("Checked", item.checked);
}

template <typename Archive, typename T>
requires std::same_as<std::remove_const_t<T>, Properties>
void describe(Archive& archive, T& p)
{
    archive("MainTitle", p.MainTitle);
    archive("SubTitle", p.SubTitle);
    archive("XAxisLabel", p.XAxisLabel);
    archive("TXAxisLabel", p.TXAxisLabel);
    archive("XAxisScaleControl", p.XAxisScaleControl);
    archive("ManualScaleControlX", p.ManualScaleControlX);
    archive("ManualMinX", p.ManualMinX);
    archive("ManualMaxX", p.ManualMaxX);
    archive("YAxes", p.yAxes);
    archive("AxisUnitPrefixes", p.AxisUnitPrefixes);
    archive("Zoomed", p.zoomed);
    archive("Zoom", p.zoom);
    archive("VerticalLines", p.verticalLines);
    archive("Tables", p.tables);
    archive("CustomMenu", p.CustomMenu);
    archive("MultiSubTitles", p.MultiSubTitles);
    archive("GraphAnnotationText", p.GraphAnnotationText);
    archive("MarkDataPoints", p.MarkDataPoints);
    archive("ShowLegend", p.ShowLegend);
    archive("LegendStyle", p.LegendStyle);
    archive("LegendLocation", p.LegendLocation);
    archive("ViewingStyle", p.ViewingStyle);
    archive("FontSize", p.FontSize);
    archive("FontSizeGlobalCntl", p.FontSizeGlobalCntl);
    archive("MainTitleFont", p.MainTitleFont);
    archive("SubTitleFont", p.SubTitleFont);
    archive("LabelFont", p.LabelFont);
    archive("MonoGraphForeColor", p.MonoGraphForeColor);
    archive("MonoGraphBackColor", p.MonoGraphBackColor);
    archive("MonoTextColor", p.MonoTextColor);
    archive("MonoDeskColor", p.MonoDeskColor);
    archive("TickColor", p.TickColor);
    archive("LineWidth", p.LineWidth);
    archive("SubsetLabels", p.SubsetLabels);
    archive("SubsetColors", p.SubsetColors);
    archive("SubsetLineTypes", p.SubsetLineTypes);
    archive("SubsetsToShow", p.SubsetsToShow);
    archive("RandomSubsetsToGraph", p.RandomSubsetsToGraph);
}

} // namespace graph
