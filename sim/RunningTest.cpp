// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/RunningTest.h"

#include "sim/protocol/StatusFrames.h"

#include <QCoreApplication>

#include <algorithm>

namespace sim {

namespace {

/// How far measuring may fall behind (host not reading, machine asleep) before the lost time is let go.
constexpr Duration kLongestLag = std::chrono::milliseconds(200);

} // namespace

RunningTest::RunningTest(InstrumentState& state, const Measurement& measurement, const Pace& pace, FrameSink& sink,
                         Ended ended)
    : m_state(state)
    , m_measurement(measurement)
    , m_pace(pace)
    , m_sink(sink)
    , m_ended(std::move(ended))
{}

void RunningTest::begin(std::unique_ptr<Run> run, Moment now)
{
    stop();
    m_now = now;
    m_run = std::move(run);
    m_state.lastTest = m_run->kind();
    m_state.running = true;
    if (m_state.pointsInTest != m_run->points()) {
        m_state.pointsInTest = m_run->points();
        m_sink.send(status::points(m_state));
    }
    beginPass();
}

void RunningTest::beginPass()
{
    ++m_runNumber;
    m_nextPoint = 0;
    m_sinceMarker = 0;
    m_state.running = true;
    m_state.repeating = m_run->repeats(m_state);
    m_sink.send(status::testStarted(m_state, m_run->startFrequency(), m_run->endFrequency()));
    m_pointDue = m_now + m_pace.pointTime(m_run->frequency(0), m_state);
}

void RunningTest::advance(Moment now, int frameBudget)
{
    m_now = now;
    if (m_now - m_pointDue > kLongestLag)
        m_pointDue = m_now;
    for (; m_run && frameBudget > 0 && m_pointDue <= m_now; --frameBudget) {
        const double frequency = m_run->frequency(m_nextPoint);
        const bool last = m_nextPoint + 1 == m_run->points();
        const bool marker = last || ++m_sinceMarker >= m_pace.markerInterval(frequency, m_state);
        if (marker)
            m_sinceMarker = 0;
        m_sink.send(m_run->measure(m_nextPoint, marker, m_measurement, m_state, m_runNumber));
        ++m_nextPoint;
        if (last)
            passEnded();
        else
            m_pointDue += m_pace.pointTime(m_run->frequency(m_nextPoint), m_state);
    }
}

void RunningTest::passEnded()
{
    const bool again = m_run->nextPass(m_state);
    if (!again) {
        end(true);
        return;
    }
    m_state.running = false;
    m_state.repeating = true;
    m_sink.send(status::testEnded(m_state));
    m_sink.send(status::pointsFinished());
    beginPass();
}

void RunningTest::stop()
{
    if (m_run)
        end(false);
}

void RunningTest::end(bool completed)
{
    const std::unique_ptr<Run> run = std::move(m_run);
    m_state.running = false;
    m_state.repeating = false;
    m_sink.send(status::testEnded(m_state));
    const InstrumentConstants before = m_state.constants;
    if (completed) {
        m_sink.send(status::pointsFinished());
        for (const Frame& frame : run->conclude(m_state))
            m_sink.send(frame);
    }
    if (m_state.pointsInTest != m_state.settings.points) {
        m_state.pointsInTest = m_state.settings.points;
        m_sink.send(status::points(m_state));
    }
    m_ended(completed, !(m_state.constants == before));
}

void RunningTest::drop()
{
    m_run.reset();
    m_state.running = false;
    m_state.repeating = false;
    m_state.pointsInTest = m_state.settings.points;
}

std::optional<Moment> RunningTest::nextDue() const
{
    return m_run ? std::optional(m_pointDue) : std::nullopt;
}

QString RunningTest::activity() const
{
    if (!m_run)
        return {};
    return QCoreApplication::translate("sim::RunningTest", "%1, point %2 of %3 at %4 Hz")
        .arg(m_run->name())
        .arg(m_nextPoint)
        .arg(m_run->points())
        .arg(m_run->frequency(std::max(0, m_nextPoint - 1)), 0, 'g', 6);
}

} // namespace sim
