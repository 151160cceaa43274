// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"

#include <cstdint>

/// The numbers by which documents, files, settings and scripts name kinds of tests and views.
namespace plot {

inline constexpr int kPens = 10;
/// Subsets of a pen p are p, p + kPens, p + 2 kPens and p + 3 kPens.
inline constexpr int kSubsets = 4 * kPens;
/// Points that a pen can hold, numbered from 0.
inline constexpr int kPoints = GraphModel::kUsualPoints;

enum TestType : std::int16_t
{
    NoTest = 0,
    Amplitude = 1,
    Impedance = 2,
    Reactance = 3
};

/// The phase axis of amplitude and impedance documents.
enum PhaseView : std::int16_t
{
    NoPhase = 0,
    HalfCycle = 1, ///< the axis called "180": subsets p + 20
    WholeCycle = 2 ///< the axis called "360": subsets p + 30
};

/// The right axis of reactance documents.
enum RGView : std::int16_t
{
    NeitherRG = 0,
    Resistance = 1, ///< subsets p + 30
    Conductance = 2 ///< subsets p + 20
};

} // namespace plot
