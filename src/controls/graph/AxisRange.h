// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/AxisTicks.h"
#include "controls/graph/GraphModel.h"

#include <array>
#include <cmath>
#include <vector>

/// What of a graph is drawn, and over which ranges: rules shared by the view, the pictures and their tests.
namespace graph {

/// Subsets with the same last digit are the curves of one pen.
inline constexpr int kSubsetsOfAxis = 10;
/// The Y axis a subset belongs to: subset / 10, the last axis for all above.
int yAxisOf(int subset);
/// False for an axis titled "X". Where all four are, axis 0 is on, so that a graph without titles draws.
bool isAxisOn(const Properties& properties, int axis);
bool isRightAxis(int axis);
/// Subsets to draw in drawing order, each once: named by RandomSubsetsToGraph, shown, and on an axis that is on.
std::vector<int> drawnSubsets(const Properties& properties, int subsets);
/// As drawn: an axis that is on, and on the right only with a subset to draw.
bool isAxisVisible(const Properties& properties, const std::vector<int>& drawn, int axis);
/// The axis of a side whose limits a zoom takes: the first visible one, else the first.
int leadingAxis(const Properties& properties, const std::vector<int>& drawn, bool right);

/// Tells which points of a subset are drawn: not those without data (X 0, Y the null value), the phase of an instrument
/// that measures none (+-65536 degrees), values that are not finite, and on a logarithmic axis values not above 0.
class PointFilter
{
public:
    PointFilter(const Properties& properties, int subset);
    bool isDrawn(float x, float y) const
    {
        return x != 0 && y != m_null && std::isfinite(x) && std::isfinite(y) && (!m_logX || x > 0) &&
               (!m_logY || y > 0) && (!m_phase || std::abs(y) != -kNullValue);
    }
    bool isLogX() const { return m_logX; }
    bool isLogY() const { return m_logY; }
    bool operator==(const PointFilter&) const = default;

private:
    float m_null;
    bool m_logX;
    bool m_logY;
    bool m_phase;
};

/// Smallest and largest values of the points drawn; nothing while empty.
struct Extent
{
    bool empty = true;
    Range x;
    Range y;
    void unite(const Extent& other);
};

Extent extentOf(const GraphModel& model, int subset, const PointFilter& filter);

/// The ranges of all axes: the zoom, else manual limits, else the data rounded out to ticks.
struct ShownRanges
{
    Range x;
    std::array<Range, kYAxes> y;
    bool operator==(const ShownRanges&) const = default;
};

/// extents: by subset. zoom: null for the full extent.
ShownRanges shownRanges(const Properties& properties, const std::vector<int>& drawn, const std::vector<Extent>& extents,
                        const ZoomLimits* zoom);
/// With the zoom that the properties hold.
ShownRanges shownRanges(const Properties& properties, const std::vector<int>& drawn,
                        const std::vector<Extent>& extents);

} // namespace graph
