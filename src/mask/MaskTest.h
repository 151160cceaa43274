// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"

#include <optional>

/// Where the mask lines lie in a graph.
namespace mask {

inline constexpr int kUpper = 8;   ///< subset of the upper line: pen 9
inline constexpr int kLower = 9;   ///< subset of the lower line: pen 10
inline constexpr int kPoints = 24; ///< of each line, numbered from 0
/// A Y of this value is no point; a limit of this value is no limit.
inline constexpr double kNone = graph::kNullValue;

/// Mask lines are on: the graph bears the marker.
bool isOn(const GraphModel& graph, Qt::CaseSensitivity cs = Qt::CaseSensitive);

} // namespace mask

/// The point of a pen that comes nearest to a mask line, or lies furthest beyond it.
struct WorstMaskPoint
{
    int point = 0;
    double frequency = 0; ///< Hz
    double value = 0;     ///< in the unit of the axis, as are the next two
    double limit = 0;     ///< of the line
    double margin = 0;    ///< distance to the line; below 0 the point is outside
    int line = mask::kUpper;
    bool operator==(const WorstMaskPoint&) const = default;
};

/// Judges pens by the mask lines as they stand in the graph. Nothing is kept: every answer reads the graph anew.
///
/// A limit between two mask points is the straight line between them on the graph as it is shown: the same points can
/// pass on a linear axis and fail on a logarithmic one. A mask limits nothing outside its own range of frequencies and
/// nothing next to an unset point. A value that cannot be worked out is no limit.
class MaskTest
{
public:
    /// Reads the scales of the graph as they are now; axis 0 counts, whichever is selected.
    explicit MaskTest(GraphModel& graph);

    /// The frequencies of the set points of one line ascend from above 0.
    bool maskCheckOrder(int pen) const;
    /// Of both lines.
    bool maskCheckBothOrders() const;
    /// The limit of a line at that frequency, or mask::kNone.
    double maskLimitAt(double x, int pen) const;
    /// A point on a limit is inside.
    bool maskPointInside(double x, double y) const;
    /// Walks the pen up to its first unset point and stops at the first that is outside. A pen without data is inside.
    bool maskPenInside(int pen, bool& hasData) const;
    /// The same walk over all points; nothing when no point of the pen has a limit.
    std::optional<WorstMaskPoint> worstPoint(int pen) const;

private:
    double interpolated(double x, double before, double yBefore, double at, double yAt) const;

    const GraphModel& m_graph;
    bool m_xIsLogarithmic;
    bool m_yIsLogarithmic;
};
