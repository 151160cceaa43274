// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/InstrumentRanges.h"

#include "instrument/InstrumentMirror.h"

#include <cmath>
#include <limits>

namespace instrumentranges {
namespace {

// Not a number is in no range.
bool isWithin(double value, double lowest, double highest)
{
    return value >= lowest && value <= highest;
}

} // namespace

bool isFrequency(const InstrumentMirror& mirror, double hertz)
{
    return isWithin(hertz, mirror.dblAmpMinFreq, mirror.dblAmpMaxFreq);
}

bool isIdleFrequency(const InstrumentMirror& mirror, double hertz)
{
    return hertz == 0 || hertz == -1 || isFrequency(mirror, hertz);
}

bool areFrequencyLimits(double lowest, double highest)
{
    return lowest > 0 && areLimits(lowest, highest);
}

bool areLimits(double lowest, double highest)
{
    return std::isfinite(lowest) && std::isfinite(highest) && lowest < highest;
}

bool isPointCount(double points)
{
    return isWithin(points, 1, kMostPoints);
}

bool isPeriod(double milliseconds)
{
    return isWithin(milliseconds, 0, std::numeric_limits<std::int16_t>::max());
}

bool isSweepMode(double mode)
{
    return isWithin(mode, 0, 2);
}

bool isAttenuationCode(const InstrumentMirror& mirror, double code)
{
    const bool known = mirror.iAttenuationSteps > 0;
    return isWithin(code, 0, known ? mirror.iAttenuationSteps : std::numeric_limits<std::int16_t>::max());
}

bool isSampleCount(double samples)
{
    return isWithin(samples, 1, 1024);
}

} // namespace instrumentranges
