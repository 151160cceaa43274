// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

namespace graph {

/// A stretch of an axis in the axis unit, lower below upper.
struct Range
{
    double lower = 0;
    double upper = 1;
    bool operator==(const Range&) const = default;
};

/// Where an axis has its ticks, all within the range (to a millionth of its span), ascending. labels belong to major,
/// one each.
struct AxisTicks
{
    std::vector<double> major;
    std::vector<QString> labels;
    std::vector<double> minor;
};

inline constexpr double kLeastTickDistance = 8; ///< pixels

/// How the numbers of an axis are written and divided.
struct TickStyle
{
    QString prefixes;     ///< Properties::AxisUnitPrefixes; empty: plain numbers
    bool degrees = false; ///< steps of 15, 30, 45, 90 degrees where they fit
    int wanted = 6;       ///< about as many labelled ticks as have room
    double length = 1000; ///< of the axis, pixels; minor ticks closer than kLeastTickDistance are thinned out
};

/// The unit in an axis title, the text behind its last " - "; empty when there is none.
QString unitOf(const QString& title);
/// Prefixes go with physical units; a level in dB and an angle in degrees are written out.
bool takesPrefix(const QString& unit);

/// Steps of 1, 2 or 5 times a power of ten, all labels with the same prefix and as many decimals.
AxisTicks linearTicks(const Range& range, const TickStyle& style);
/// Decades with 2 to 9 as minor ticks; 1, 2, 5 labelled where there is room; several decades a label where there is
/// not. Within less than a decade steps are linear. The range must be positive.
AxisTicks logarithmicTicks(const Range& range, const TickStyle& style);

/// The smallest step of 1, 2 or 5 times a power of ten not below step; of degrees up to a full turn where asked for.
double niceStep(double step, bool degrees = false);

} // namespace graph
