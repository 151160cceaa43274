// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace sim {

inline constexpr int kMostPoints = 1024;
inline constexpr int kMostSamples = 1024;
inline constexpr int kLongestPeriod = 32767; // ms

/// What the host sets before a test. Frequencies in Hz.
struct SweepSettings
{
    double startFrequency = 1000;
    double endFrequency = 1000000;
    double spotFrequency = 1000;
    double idleFrequency = -1; ///< output between tests: 0 off, -1 the start frequency, else Hz
    int points = 100;          ///< 1 to kMostPoints
    int period = 0;            ///< ms a point, 0 to kLongestPeriod
    int attenuation = 0;       ///< attenuator code
    bool repeat = false;
    int sweepMode = 2; ///< 0 A to B, 1 B to A, 2 alternate
    bool phase = true;
    bool linear = false; ///< points spaced evenly by frequency instead of by its logarithm
    int samples = 16;    ///< averaged a point, 1 to kMostSamples
    int pin = 1;         ///< output pin, 1 or 2

    bool operator==(const SweepSettings&) const = default;
};

} // namespace sim
