// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/Pace.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr double kSetUpSeconds = 0.001;
constexpr double kCycles = 4;
constexpr double kLongestMeasurement = 0.25; // seconds; below 16 Hz fewer cycles must do
constexpr double kSampleSeconds = 20e-6;
constexpr double kMarkersPerSecond = 50;
constexpr int kFastMarkerInterval = 32;

} // namespace

Duration Pace::pointTime(double frequencyHz, const InstrumentState& state) const
{
    switch (kind) {
    case Kind::Fast:
        return Duration(0);
    case Kind::Rate:
        return secondsToDuration(1.0 / pointsPerSecond);
    case Kind::Honest:
        break;
    }
    double seconds =
        kSetUpSeconds + std::min(kCycles / frequencyHz, kLongestMeasurement) + 1e-3 * state.settings.period;
    if (state.facts->samples)
        seconds += kSampleSeconds * state.settings.samples;
    return secondsToDuration(seconds);
}

int Pace::markerInterval(double frequencyHz, const InstrumentState& state) const
{
    const double seconds = std::chrono::duration<double>(pointTime(frequencyHz, state)).count();
    if (seconds <= 0)
        return kFastMarkerInterval;
    return static_cast<int>(std::clamp(std::round(1.0 / (kMarkersPerSecond * seconds)), 1.0, 1000.0));
}

} // namespace sim
