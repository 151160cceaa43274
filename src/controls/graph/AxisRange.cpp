// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/AxisRange.h"

#include <algorithm>

namespace graph {
namespace {

// Beyond these no axis is drawn, whatever the limits say: the span of single precision with room to spare.
constexpr double kFarthest = 1e60;
constexpr double kNearestZero = 1e-60;
constexpr double kSmallestSpan = 1e-12;

const QString kAxisOff = QStringLiteral("X");

bool isUsable(const Range& range, bool logarithmic)
{
    if (!(range.lower < range.upper) || std::abs(range.lower) > kFarthest || std::abs(range.upper) > kFarthest)
        return false;
    if (logarithmic)
        return range.lower >= kNearestZero && range.upper / range.lower > 1 + kSmallestSpan;
    return range.upper - range.lower > kSmallestSpan * std::max(std::abs(range.lower), std::abs(range.upper)) &&
           range.upper - range.lower >= kNearestZero;
}

Range fromZoom(double lower, double upper, bool logarithmic)
{
    return logarithmic ? Range{std::pow(10.0, lower), std::pow(10.0, upper)} : Range{lower, upper};
}

Range roundedLinear(Range range, bool degrees)
{
    if (!(range.upper - range.lower > kSmallestSpan * std::max(std::abs(range.lower), std::abs(range.upper)))) {
        const double margin = range.lower == 0 ? 1 : std::abs(range.lower) * 0.1;
        range = {range.lower - margin, range.upper + margin};
    }
    const double step = niceStep((range.upper - range.lower) / 6, degrees);
    return {std::floor(range.lower / step + 1e-9) * step, std::ceil(range.upper / step - 1e-9) * step};
}

Range roundedLogarithmic(const Range& range)
{
    const bool wide = range.upper / range.lower > 50;
    const auto below = [wide](double value) {
        const double decade = std::pow(10.0, std::floor(std::log10(value) + 1e-9));
        if (wide)
            return decade;
        return value >= 5 * decade * (1 - 1e-9) ? 5 * decade : value >= 2 * decade * (1 - 1e-9) ? 2 * decade : decade;
    };
    const auto above = [wide](double value) {
        const double decade = std::pow(10.0, std::ceil(std::log10(value) - 1e-9));
        if (wide)
            return decade;
        return value <= 0.2 * decade * (1 + 1e-9)   ? 0.2 * decade
               : value <= 0.5 * decade * (1 + 1e-9) ? 0.5 * decade
                                                    : decade;
    };
    Range rounded{below(range.lower), above(range.upper)};
    if (!(rounded.upper / rounded.lower > 1.5))
        rounded = {rounded.lower / 2, rounded.upper * 2};
    return rounded;
}

Range fullRange(bool manual, const Range& limits, bool logarithmic, bool degrees, const Extent& extent,
                const Range& data)
{
    if (manual && isUsable(limits, logarithmic))
        return limits;
    if (!extent.empty) {
        const Range rounded = logarithmic ? roundedLogarithmic(data) : roundedLinear(data, degrees);
        if (isUsable(rounded, logarithmic))
            return rounded;
    }
    if (isUsable(limits, logarithmic))
        return limits;
    return logarithmic ? Range{1, 10} : Range{0, 1};
}

} // namespace

int yAxisOf(int subset)
{
    return std::clamp(subset / kSubsetsOfAxis, 0, kYAxes - 1);
}

bool isAxisOn(const Properties& properties, int axis)
{
    const auto isTitled = [](const YAxis& y) { return y.YAxisLabel != kAxisOff; };
    if (isTitled(properties.yAxes[static_cast<std::size_t>(axis)]))
        return true;
    return axis == 0 && std::none_of(properties.yAxes.begin(), properties.yAxes.end(), isTitled);
}

bool isRightAxis(int axis)
{
    return axis >= 2;
}

std::vector<int> drawnSubsets(const Properties& properties, int subsets)
{
    std::vector<int> drawn;
    std::vector<bool> taken(static_cast<std::size_t>(subsets), false);
    const auto take = [&](int subset) {
        const auto s = static_cast<std::size_t>(subset);
        if (subset < 0 || subset >= subsets || taken[s] || !properties.SubsetsToShow[s] ||
            !isAxisOn(properties, yAxisOf(subset)))
            return;
        taken[s] = true;
        drawn.push_back(subset);
    };
    if (properties.RandomSubsetsToGraph.empty()) {
        for (int subset = 0; subset < subsets; ++subset)
            take(subset);
    }
    for (const int subset : properties.RandomSubsetsToGraph)
        take(subset);
    return drawn;
}

bool isAxisVisible(const Properties& properties, const std::vector<int>& drawn, int axis)
{
    if (!isAxisOn(properties, axis))
        return false;
    return !isRightAxis(axis) || std::any_of(drawn.begin(), drawn.end(), [axis](int s) { return yAxisOf(s) == axis; });
}

int leadingAxis(const Properties& properties, const std::vector<int>& drawn, bool right)
{
    const int first = right ? 2 : 0;
    return isAxisVisible(properties, drawn, first) || !isAxisVisible(properties, drawn, first + 1) ? first : first + 1;
}

PointFilter::PointFilter(const Properties& properties, int subset)
{
    const auto axisIndex = static_cast<std::size_t>(yAxisOf(subset));
    const YAxis& axis = properties.yAxes[axisIndex];
    m_null = axis.NullDataValueY;
    m_logX = properties.XAxisScaleControl == ScaleLogarithmic;
    m_logY = axis.YAxisScaleControl == ScaleLogarithmic;
    m_phase = isRightAxis(yAxisOf(subset)) && unitOf(axis.YAxisLabel).startsWith(QLatin1String("Deg"));
}

void Extent::unite(const Extent& other)
{
    if (other.empty)
        return;
    if (empty) {
        *this = other;
        return;
    }
    x = {std::min(x.lower, other.x.lower), std::max(x.upper, other.x.upper)};
    y = {std::min(y.lower, other.y.lower), std::max(y.upper, other.y.upper)};
}

Extent extentOf(const GraphModel& model, int subset, const PointFilter& filter)
{
    Extent extent;
    const std::span<const float> xs = model.xArray(subset);
    const std::span<const float> ys = model.yArray(subset);
    float minX = 0;
    float maxX = 0;
    float minY = 0;
    float maxY = 0;
    for (std::size_t i = 0; i < xs.size(); ++i) {
        if (!filter.isDrawn(xs[i], ys[i]))
            continue;
        if (extent.empty) {
            minX = maxX = xs[i];
            minY = maxY = ys[i];
            extent.empty = false;
        }
        minX = std::min(minX, xs[i]);
        maxX = std::max(maxX, xs[i]);
        minY = std::min(minY, ys[i]);
        maxY = std::max(maxY, ys[i]);
    }
    extent.x = {minX, maxX};
    extent.y = {minY, maxY};
    return extent;
}

ShownRanges shownRanges(const Properties& properties, const std::vector<int>& drawn, const std::vector<Extent>& extents)
{
    return shownRanges(properties, drawn, extents, properties.zoomed ? &properties.zoom : nullptr);
}

ShownRanges shownRanges(const Properties& properties, const std::vector<int>& drawn, const std::vector<Extent>& extents,
                        const ZoomLimits* zoom)
{
    const ZoomLimits limits = zoom != nullptr ? *zoom : ZoomLimits();
    ShownRanges ranges;
    const bool logX = properties.XAxisScaleControl == ScaleLogarithmic;
    Extent all;
    std::array<Extent, kYAxes> byAxis;
    for (const int subset : drawn) {
        const Extent& extent = extents[static_cast<std::size_t>(subset)];
        all.unite(extent);
        byAxis[static_cast<std::size_t>(yAxisOf(subset))].unite(extent);
    }
    const Range zoomX = fromZoom(limits.ZoomMinX, limits.ZoomMaxX, logX);
    ranges.x = zoom != nullptr && isUsable(zoomX, logX)
                   ? zoomX
                   : fullRange(properties.ManualScaleControlX == ScaleManual,
                               {properties.ManualMinX, properties.ManualMaxX}, logX, false, all, all.x);
    for (std::size_t i = 0; i < kYAxes; ++i) {
        const YAxis& axis = properties.yAxes[i];
        const bool logY = axis.YAxisScaleControl == ScaleLogarithmic;
        const bool right = isRightAxis(static_cast<int>(i));
        const Range zoomY = right ? fromZoom(limits.ZoomMinRY, limits.ZoomMaxRY, logY)
                                  : fromZoom(limits.ZoomMinY, limits.ZoomMaxY, logY);
        const bool degrees = unitOf(axis.YAxisLabel).startsWith(QLatin1String("Deg"));
        ranges.y[i] = zoom != nullptr && isUsable(zoomY, logY)
                          ? zoomY
                          : fullRange(axis.ManualScaleControlY == ScaleManual, {axis.ManualMinY, axis.ManualMaxY}, logY,
                                      degrees, byAxis[i], byAxis[i].y);
    }
    return ranges;
}

} // namespace graph
