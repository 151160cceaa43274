// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/AxisRange.h"

#include <QPointF>

#include <optional>

/// How a view moves under the hand: about a point, along, and onto its data. Rules without a window.
namespace graph {

/// The ranges of a view as a zoom holds them: exponents of ten on a logarithmic axis, plain numbers on a linear one, of
/// the leading axis on each side. Without a visible axis on the right that side has no range, and gets no limits.
struct ViewLimits
{
    Range x;
    Range left;
    std::optional<Range> right;
    bool operator==(const ViewLimits&) const = default;

    ZoomLimits asZoom() const;
};

/// Which axes a movement is for.
enum AxisChoice
{
    AxisX = 1,
    AxisLeft = 2,
    AxisRight = 4,
    AxisAll = AxisX | AxisLeft | AxisRight
};

/// ranges belong to these properties; drawn as by drawnSubsets().
ViewLimits limitsOf(const Properties& properties, const std::vector<int>& drawn, const ShownRanges& ranges);

/// True for limits that single precision cannot tell apart well enough to show anything between them.
bool isTooFine(const Range& limits);

/// The part of the view between two points, given as shares of the plotting area from its left and from its bottom.
ViewLimits partOf(const ViewLimits& view, const QPointF& least, const QPointF& most);

/// The view magnified by a factor (below 1: reduced) about a point that stays where it is. point: shares of the
/// plotting area, from its left and from its bottom. An axis that would reach its full span or more returns to its full
/// extent, X never leaves it, and an axis at the end of single precision's detail keeps its limits. full: the view
/// without a zoom.
ViewLimits magnified(const ViewLimits& view, const QPointF& point, double factor, int axes, const ViewLimits& full);

/// The view moved by shares of the plotting area, to the right and upwards. X stays within its full extent.
ViewLimits moved(const ViewLimits& view, const QPointF& shares, const ViewLimits& full);

/// The zoom that fits those axes to the points drawn, the Y axes with a narrow margin; the other axes keep what they
/// show. Y axes fitted without X follow the points between the limits of X. Nothing when there is no point to follow.
std::optional<ZoomLimits> fittedLimits(const GraphModel& model, int axes);

} // namespace graph
