// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ViewLimits.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace graph {
namespace {

constexpr double kMargin = 0.04; // of the span of the data, on each side of a fitted Y axis
constexpr double kLeastLimit = 1e-30;
constexpr double kLeastSpan = 1e-6; // of the larger limit: single precision has no finer detail

double spanOf(const Range& range)
{
    return range.upper - range.lower;
}

Range scaled(const Range& range, bool logarithmic)
{
    return logarithmic ? Range{std::log10(range.lower), std::log10(range.upper)} : range;
}

// The same span within the other's ends, where it fits.
Range within(Range range, const Range& full)
{
    const double shift = std::max(0.0, full.lower - range.lower) - std::max(0.0, range.upper - full.upper);
    return {range.lower + shift, range.upper + shift};
}

Range magnified(const Range& range, double share, double factor, const Range& full)
{
    const double span = spanOf(range) / factor;
    if (factor < 1 && span >= spanOf(full))
        return full;
    const double fixed = range.lower + share * spanOf(range);
    const Range result{fixed - share * span, fixed + (1 - share) * span};
    return isTooFine(result) ? range : result;
}

Range moved(const Range& range, double share)
{
    const double shift = share * spanOf(range);
    return {range.lower + shift, range.upper + shift};
}

// Least and largest drawn values of the subsets of one axis, as scaled, of the points between the limits of X.
std::optional<Range> dataOf(const GraphModel& model, const std::vector<int>& subsets, const Range& x, bool ofX)
{
    std::optional<Range> data;
    for (const int subset : subsets) {
        const PointFilter filter(model.shownProperties(), subset);
        const std::span<const float> xs = model.xArray(subset);
        const std::span<const float> ys = model.yArray(subset);
        for (std::size_t i = 0; i < xs.size(); ++i) {
            if (!filter.isDrawn(xs[i], ys[i]) || xs[i] < x.lower || xs[i] > x.upper)
                continue;
            const double value = ofX ? xs[i] : ys[i];
            if (!data)
                data = Range{value, value};
            data = Range{std::min(data->lower, value), std::max(data->upper, value)};
        }
    }
    return data;
}

Range fitted(const Range& data, bool logarithmic, double margin)
{
    const Range range = scaled(data, logarithmic);
    if (!isTooFine(range))
        return {range.lower - margin * spanOf(range), range.upper + margin * spanOf(range)};
    // One value, or as good as one: about as much above it as below.
    const double half = logarithmic ? 0.5 : range.lower == 0 ? 1 : std::abs(range.lower) * 0.1;
    return {range.lower - half, range.upper + half};
}

} // namespace

ZoomLimits ViewLimits::asZoom() const
{
    ZoomLimits zoom;
    zoom.ZoomMinX = zoom.ZoomMinTX = x.lower;
    zoom.ZoomMaxX = zoom.ZoomMaxTX = x.upper;
    zoom.ZoomMinY = left.lower;
    zoom.ZoomMaxY = left.upper;
    if (right) {
        zoom.ZoomMinRY = right->lower;
        zoom.ZoomMaxRY = right->upper;
    }
    return zoom;
}

ViewLimits limitsOf(const Properties& properties, const std::vector<int>& drawn, const ShownRanges& ranges)
{
    const auto ofSide = [&](bool right) {
        const auto axis = static_cast<std::size_t>(leadingAxis(properties, drawn, right));
        return scaled(ranges.y[axis], properties.yAxes[axis].YAxisScaleControl == ScaleLogarithmic);
    };
    ViewLimits view;
    view.x = scaled(ranges.x, properties.XAxisScaleControl == ScaleLogarithmic);
    view.left = ofSide(false);
    if (isAxisVisible(properties, drawn, leadingAxis(properties, drawn, true)))
        view.right = ofSide(true);
    return view;
}

bool isTooFine(const Range& limits)
{
    return !(spanOf(limits) > kLeastSpan * std::max({std::abs(limits.lower), std::abs(limits.upper), kLeastLimit}));
}

ViewLimits partOf(const ViewLimits& view, const QPointF& least, const QPointF& most)
{
    const auto part = [](const Range& range, double from, double to) {
        return Range{range.lower + from * spanOf(range), range.lower + to * spanOf(range)};
    };
    ViewLimits result{part(view.x, least.x(), most.x()), part(view.left, least.y(), most.y()), std::nullopt};
    if (view.right)
        result.right = part(*view.right, least.y(), most.y());
    return result;
}

ViewLimits magnified(const ViewLimits& view, const QPointF& point, double factor, int axes, const ViewLimits& full)
{
    ViewLimits result = view;
    if ((axes & AxisX) != 0)
        result.x = within(magnified(view.x, point.x(), factor, full.x), full.x);
    if ((axes & AxisLeft) != 0)
        result.left = magnified(view.left, point.y(), factor, full.left);
    if ((axes & AxisRight) != 0 && view.right && full.right)
        result.right = magnified(*view.right, point.y(), factor, *full.right);
    return result;
}

ViewLimits moved(const ViewLimits& view, const QPointF& shares, const ViewLimits& full)
{
    ViewLimits result;
    result.x = within(moved(view.x, shares.x()), full.x);
    result.left = moved(view.left, shares.y());
    if (view.right)
        result.right = moved(*view.right, shares.y());
    return result;
}

std::optional<ZoomLimits> fittedLimits(const GraphModel& model, int axes)
{
    const Properties& properties = model.shownProperties();
    const std::vector<int> drawn = drawnSubsets(properties, model.Subsets());
    std::vector<Extent> extents(static_cast<std::size_t>(model.Subsets()));
    for (const int subset : drawn)
        extents[static_cast<std::size_t>(subset)] = extentOf(model, subset, PointFilter(properties, subset));
    const ShownRanges ranges = shownRanges(properties, drawn, extents);
    ViewLimits view = limitsOf(properties, drawn, ranges);

    constexpr double kAny = std::numeric_limits<double>::infinity();
    const bool logX = properties.XAxisScaleControl == ScaleLogarithmic;
    bool found = false;
    const Range shownX = (axes & AxisX) != 0 ? Range{-kAny, kAny} : ranges.x;
    if ((axes & AxisX) != 0) {
        if (const std::optional<Range> data = dataOf(model, drawn, shownX, true)) {
            view.x = fitted(*data, logX, 0);
            found = true;
        }
    }
    const auto fitSide = [&](bool right, Range& side) {
        const int axis = leadingAxis(properties, drawn, right);
        std::vector<int> subsets = drawn;
        std::erase_if(subsets, [axis](int subset) { return yAxisOf(subset) != axis; });
        const bool logarithmic = properties.yAxes[static_cast<std::size_t>(axis)].YAxisScaleControl == ScaleLogarithmic;
        if (const std::optional<Range> data = dataOf(model, subsets, shownX, false)) {
            side = fitted(*data, logarithmic, kMargin);
            found = true;
        }
    };
    if ((axes & AxisLeft) != 0)
        fitSide(false, view.left);
    if ((axes & AxisRight) != 0 && view.right)
        fitSide(true, *view.right);
    return found ? std::optional(view.asZoom()) : std::nullopt;
}

} // namespace graph
