// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/PlotStyle.h"

#include "controls/graph/AxisRange.h"
#include "widgets/ui/QtColour.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

QFont fontOf(const QString& family, double pixels, QFont::Weight weight = QFont::Normal)
{
    QFont font;
    if (!family.isEmpty())
        font.setFamily(family);
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(std::max(5, static_cast<int>(std::lround(pixels))));
    font.setWeight(weight);
    return font;
}

QColor mixed(const QColor& a, const QColor& b, double shareOfB)
{
    const auto mix = [shareOfB](int from, int to) {
        return static_cast<int>(std::lround(from + (to - from) * shareOfB));
    };
    return QColor(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()));
}

double textSizeOf(const graph::Properties& properties)
{
    const double size = properties.FontSize == graph::FontLarge   ? 15
                        : properties.FontSize == graph::FontSmall ? 10.5
                                                                  : 12.5;
    return std::clamp(size * properties.FontSizeGlobalCntl, 5.0, 96.0);
}

} // namespace

Qt::PenStyle penStyleOf(int lineType)
{
    switch (lineType) {
    case graph::LineDash:
        return Qt::DashLine;
    case graph::LineDot:
        return Qt::DotLine;
    case graph::LineDashDot:
        return Qt::DashDotLine;
    case graph::LineDashDotDot:
        return Qt::DashDotDotLine;
    default:
        return Qt::SolidLine;
    }
}

QPen thinPen(const QColor& color)
{
    QPen pen(color, 1);
    pen.setCapStyle(Qt::FlatCap);
    return pen;
}

PlotStyle plotStyle(const graph::Properties& properties, const QPalette* palette)
{
    PlotStyle style;
    style.monochrome = properties.ViewingStyle != graph::StyleColour;
    style.symbols = properties.ViewingStyle == graph::StyleMonochromeSymbols;
    style.paper = Qt::white;
    style.ink = QColor(0x20, 0x20, 0x20);
    style.desk = Qt::white;
    style.text = style.ink;
    if (style.monochrome) {
        style.paper = toQColor(properties.MonoGraphBackColor);
        style.desk = toQColor(properties.MonoDeskColor);
        style.text = toQColor(properties.MonoTextColor);
        style.ink = style.text;
    } else if (palette != nullptr && palette->color(QPalette::Window).lightness() < 128) {
        style.desk = palette->color(QPalette::Window);
        style.text = palette->color(QPalette::WindowText);
    }
    style.frame = mixed(style.ink, style.paper, 0.3);
    style.grid = toQColor(properties.TickColor);
    style.minorGrid = mixed(style.grid, style.paper, 0.55);

    style.textSize = textSizeOf(properties);
    style.mainTitle = fontOf(properties.MainTitleFont, style.textSize * 1.3, QFont::DemiBold);
    style.subTitle = fontOf(properties.SubTitleFont, style.textSize);
    style.axisTitle = fontOf(properties.LabelFont, style.textSize);
    style.tickLabels = fontOf(properties.LabelFont, style.textSize * 0.92);
    style.legend = fontOf(properties.LabelFont, style.textSize * 0.92);
    return style;
}

QPen tracePen(const graph::Properties& properties, const PlotStyle& style, int subset)
{
    const auto s = static_cast<std::size_t>(subset);
    int type = properties.SubsetLineTypes[s];
    // Without colours the pattern tells the pens apart, unless the pen has one of its own.
    static constexpr std::array<int, 5> kPatterns{graph::LineSolid, graph::LineDash, graph::LineDot, graph::LineDashDot,
                                                  graph::LineDashDotDot};
    if (style.monochrome && !style.symbols && type == graph::LineSolid)
        type = kPatterns[static_cast<std::size_t>(subset % 10) % kPatterns.size()];
    const bool right = graph::isRightAxis(graph::yAxisOf(subset));
    const double width = type == graph::LineHair ? properties.LineWidth * 0.5 : properties.LineWidth;
    QPen pen(style.monochrome ? toQColor(properties.MonoGraphForeColor) : toQColor(properties.SubsetColors[s]), width,
             penStyleOf(type));
    pen.setJoinStyle(Qt::RoundJoin);
    // Both curves of a pen have its colour: the one read on the right is broken, as in printed plots of two scales.
    if (!style.monochrome && right && type == graph::LineSolid)
        pen.setDashPattern({8, 3});
    return pen;
}
