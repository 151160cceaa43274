// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/Run.h"
#include "sim/port/Pace.h"
#include "sim/protocol/FrameSink.h"

#include <functional>
#include <memory>
#include <optional>

namespace sim {

/// The sweep, calibration or diagnosis under way: sends its frames from "P" and "D" to "Y" as its points fall due, and
/// keeps the part of the state that tells of it.
class RunningTest
{
public:
    /// Called when a run is over, after its last frame but for what its result brings: completed is false when it was
    /// stopped, constants is true when its result has changed them.
    using Ended = std::function<void(bool completed, bool constants)>;

    /// All outlive it.
    RunningTest(InstrumentState& state, const Measurement& measurement, const Pace& pace, FrameSink& sink, Ended ended);

    bool isRunning() const { return m_run != nullptr; }
    /// Stops the one under way first.
    void begin(std::unique_ptr<Run> run, Moment now);
    /// "E" without "Y"; nothing when none runs.
    void stop();
    /// Without a word.
    void drop();

    /// Measures what is due, at most so many points.
    void advance(Moment now, int frameBudget);
    std::optional<Moment> nextDue() const;
    /// A number no other run has had, for measurements that are no run.
    std::uint64_t takeRunNumber() { return ++m_runNumber; }
    /// For people; empty when none runs.
    QString activity() const;

private:
    void beginPass();
    void passEnded();
    void end(bool completed);

    InstrumentState& m_state;
    const Measurement& m_measurement;
    const Pace& m_pace;
    FrameSink& m_sink;
    Ended m_ended;

    std::unique_ptr<Run> m_run;
    std::uint64_t m_runNumber = 0;
    int m_nextPoint = 0;
    int m_sinceMarker = 0;
    Moment m_now{0};
    Moment m_pointDue{0};
};

} // namespace sim
