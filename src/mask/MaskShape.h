// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/content/TestType.h"
#include "values/Outcome.h"

#include <QByteArray>

#include <optional>
#include <vector>

class GraphModel;

/// A mask apart from any plot: what a mask file holds.
struct MaskShape
{
    struct Point
    {
        double frequency = 0;        ///< Hz, above 0
        std::optional<double> limit; ///< nothing: the line has a gap from the point before to the next
        bool operator==(const Point&) const = default;
    };
    using Line = std::vector<Point>; ///< at most mask::kPoints, ascending

    Line upper, lower;
    bool operator==(const MaskShape&) const = default;

    /// The mask of a graph whose lines are in order. Unset points between set ones become one gap each.
    static MaskShape of(const GraphModel& graph);
};

/// The text form of a mask, as docs/masks.md describes it.
namespace maskfile {

/// Far above what a full mask takes.
inline constexpr qint64 kLargestFile = 64 * 1024;

/// ASCII, lines ended by a line feed. The limits are in Ohm for an impedance plot and in dB otherwise.
QByteArray text(const MaskShape& shape, std::int16_t testType);
/// The sentence of a failure names the line. A mask of the other unit is refused.
ValueOr<MaskShape> read(const QByteArray& text, std::int16_t testType);
/// The same from a file.
ValueOr<MaskShape> readFile(const QString& fileName, std::int16_t testType);

} // namespace maskfile
