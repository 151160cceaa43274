// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/Measurement.h"
#include "sim/protocol/FrameSink.h"
#include "sim/protocol/Moment.h"

#include <QString>

#include <optional>

namespace sim {

/// What is measured at one frequency while no test runs: spots, which come until they are stopped, and the level at the
/// idle frequency.
class Levels
{
public:
    static constexpr Duration kSpotInterval = std::chrono::milliseconds(100);

    /// All outlive it. No idle levels come when there are none a second.
    Levels(const InstrumentState& state, const Measurement& measurement, FrameSink& sink, double idleLevelsPerSecond);

    /// At the spot frequency; the first level goes out at once.
    void beginSpot(TestKind kind, Moment now);
    void endSpot() { m_spot.reset(); }
    /// The next idle level comes a whole interval from now.
    void postponeIdle(Moment now);

    /// Idle levels come only while they are wanted and the output is on.
    void advance(Moment now, bool idleWanted);
    std::optional<Moment> nextDue(bool idleWanted) const;
    /// Where the idle level is measured, Hz; nothing while none is, or the output is off.
    std::optional<double> idleFrequency() const;
    /// For people; empty without a spot.
    QString activity() const;

private:
    void send(TestKind kind, double frequency);
    bool idleComes(bool wanted) const { return wanted && m_idleInterval && m_state.idleOutput; }

    const InstrumentState& m_state;
    const Measurement& m_measurement;
    FrameSink& m_sink;
    std::optional<Duration> m_idleInterval;
    std::optional<TestKind> m_spot;
    Moment m_due{0};
    std::uint64_t m_number = 0;
};

} // namespace sim
