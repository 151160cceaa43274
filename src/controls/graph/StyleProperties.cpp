// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/StyleProperties.h"

namespace graph {

void StyleProperties::setMarkDataPoints(bool on)
{
    assign(m_properties.MarkDataPoints, on);
}

void StyleProperties::setShowLegend(bool on)
{
    assign(m_properties.ShowLegend, on);
}

void StyleProperties::setLegendStyle(int style)
{
    if (isIn(style, LegendOutside, LegendInsideAxis))
        assign(m_properties.LegendStyle, style);
}

void StyleProperties::setLegendLocation(int location)
{
    if (isIn(location, LegendTop, LegendRight))
        assign(m_properties.LegendLocation, location);
}

void StyleProperties::setViewingStyle(int style)
{
    if (isIn(style, StyleColour, StyleMonochromeSymbols))
        assign(m_properties.ViewingStyle, style);
}

void StyleProperties::setFontSize(int size)
{
    if (isIn(size, FontLarge, FontSmall))
        assign(m_properties.FontSize, size);
}

void StyleProperties::setFontSizeGlobalCntl(double factor)
{
    if (factor >= kMinFontFactor && factor <= kMaxFontFactor)
        assign(m_properties.FontSizeGlobalCntl, factor);
}

void StyleProperties::setMainTitleFont(const QString& font)
{
    assign(m_properties.MainTitleFont, font);
}

void StyleProperties::setSubTitleFont(const QString& font)
{
    assign(m_properties.SubTitleFont, font);
}

void StyleProperties::setLabelFont(const QString& font)
{
    assign(m_properties.LabelFont, font);
}

void StyleProperties::setMonoGraphForeColor(std::uint32_t color)
{
    assign(m_properties.MonoGraphForeColor, color & kColorMask);
}

void StyleProperties::setMonoGraphBackColor(std::uint32_t color)
{
    assign(m_properties.MonoGraphBackColor, color & kColorMask);
}

void StyleProperties::setMonoTextColor(std::uint32_t color)
{
    assign(m_properties.MonoTextColor, color & kColorMask);
}

void StyleProperties::setMonoDeskColor(std::uint32_t color)
{
    assign(m_properties.MonoDeskColor, color & kColorMask);
}

void StyleProperties::setTickColor(std::uint32_t color)
{
    assign(m_properties.TickColor, color & kColorMask);
}

void StyleProperties::setLineWidth(double width)
{
    if (width >= 0 && width <= kMaxLineWidth)
        assign(m_properties.LineWidth, width);
}

} // namespace graph
