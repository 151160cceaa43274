// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/PointFrames.h"

#include <cmath>

namespace sim {

namespace {

/// Modulus of the phase in a point frame while phase acquisition is off; its sign is 1.
constexpr double kNoPhase = 65536;
/// And in a level frame of amplitude; one of impedance has 0.
constexpr double kNoLevelPhase = -65536;

double signOf(const Measurement::Reading& reading, bool phase)
{
    return phase && std::signbit(reading.phase) ? -1.0 : 1.0;
}

} // namespace

Frame pointFrame(TestKind kind, bool marker, double x, const Measurement::Reading& reading, bool phase, int point)
{
    return numberFrame(kind == TestKind::Amplitude ? 'H' : 'F', marker,
                       {x, reading.value, phase ? std::fabs(reading.phase) : kNoPhase, signOf(reading, phase), point});
}

Frame levelFrame(TestKind kind, double frequency, const Measurement::Reading& reading, bool phase)
{
    const bool amplitude = kind == TestKind::Amplitude;
    const double withoutPhase = amplitude ? kNoLevelPhase : 0;
    return numberFrame(
        amplitude ? 'G' : 'I', 1,
        {frequency, reading.value, phase ? std::fabs(reading.phase) : withoutPhase, signOf(reading, phase), 0});
}

} // namespace sim
