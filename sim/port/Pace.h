// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/InstrumentState.h"
#include "sim/protocol/Moment.h"

namespace sim {

/// How long a measured point takes.
struct Pace
{
    enum class Kind
    {
        Honest, ///< as a real instrument: set-up time, some cycles of the signal, and the period set by the host
        Rate,   ///< so many points a second, whatever the host sets
        Fast,   ///< as fast as the link carries
    };

    Kind kind = Kind::Honest;
    double pointsPerSecond = 0; ///< for Rate

    Duration pointTime(double frequencyHz, const InstrumentState& state) const;
    /// Every so many points the marker flag of a point frame is set: about fifty times a second, and every 32nd point
    /// when the pace is as fast as the link carries.
    int markerInterval(double frequencyHz, const InstrumentState& state) const;
};

} // namespace sim
