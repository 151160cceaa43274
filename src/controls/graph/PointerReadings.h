// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"

#include <QString>

#include <optional>
#include <vector>

/// What the drawn curves say at a place of the X axis, without a window.
namespace graph {

/// The measured point of one curve that is nearest to the place.
struct CurveReading
{
    int subset = 0;
    int point = 0;
    double x = 0, y = 0;
    QString text; ///< value with prefix and unit: "57.44 kOhms", "-32.1 Degrees"
};

/// The curves of one pen: subsets with the same last digit.
struct PenReading
{
    QString name; ///< label of its first drawn subset
    std::vector<CurveReading> curves;
    QString xText; ///< where its points stand elsewhere than at PointerReadings::x, else empty
};

struct PointerReadings
{
    double x = 0;  ///< of the nearest point of all, in the axis unit
    QString xText; ///< with prefix and unit
    std::vector<PenReading> pens;

    /// One line for X and one for each pen, fields divided by tabs.
    QString toText() const;
};

/// At most this many significant digits are shown of what is stored in single precision.
inline constexpr int kReadingDigits = 6;

/// Never a value between points: what is shown was measured. x: a place on the axis, in its unit. drawn: as by
/// drawnSubsets(). A curve whose points all lie on one side of the place, farther away than reach times the span of the
/// axis (of exponents on a logarithmic one), is left out. Nothing where no curve has a point.
std::optional<PointerReadings> readingsAt(const GraphModel& model, const std::vector<int>& drawn, double x, double span,
                                          double reach = 0.01);

} // namespace graph
