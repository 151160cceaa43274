// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/Levels.h"

#include "sim/bench/PointFrames.h"

#include <QCoreApplication>

namespace sim {

namespace {

/// Run number of levels, whose noise has nothing to do with that of the sweeps.
constexpr std::uint64_t kLevelRun = 0;

} // namespace

Levels::Levels(const InstrumentState& state, const Measurement& measurement, FrameSink& sink,
               double idleLevelsPerSecond)
    : m_state(state)
    , m_measurement(measurement)
    , m_sink(sink)
{
    if (idleLevelsPerSecond > 0)
        m_idleInterval = secondsToDuration(1.0 / idleLevelsPerSecond);
}

void Levels::beginSpot(TestKind kind, Moment now)
{
    m_spot = kind;
    m_due = now;
    advance(now, false);
}

void Levels::postponeIdle(Moment now)
{
    if (!m_spot)
        m_due = now + m_idleInterval.value_or(Duration(0));
}

void Levels::advance(Moment now, bool idleWanted)
{
    if (m_due > now)
        return;
    if (m_spot) {
        send(*m_spot, m_state.settings.spotFrequency);
        m_due = now + kSpotInterval;
    } else if (idleComes(idleWanted)) {
        send(TestKind::Amplitude, *idleFrequency());
        postponeIdle(now);
    }
}

std::optional<Moment> Levels::nextDue(bool idleWanted) const
{
    return m_spot || idleComes(idleWanted) ? std::optional(m_due) : std::nullopt;
}

std::optional<double> Levels::idleFrequency() const
{
    const SweepSettings& settings = m_state.settings;
    if (!m_state.idleOutput || !m_idleInterval)
        return {};
    return settings.idleFrequency == -1 ? settings.startFrequency : settings.idleFrequency;
}

void Levels::send(TestKind kind, double frequency)
{
    const Measurement::Reading reading = kind == TestKind::Amplitude
                                             ? m_measurement.amplitude(frequency, m_state, kLevelRun, m_number)
                                             : m_measurement.impedance(frequency, m_state, kLevelRun, m_number);
    ++m_number;
    m_sink.send(levelFrame(kind, frequency, reading, m_state.settings.phase));
}

QString Levels::activity() const
{
    if (!m_spot)
        return {};
    return (*m_spot == TestKind::Amplitude ? QCoreApplication::translate("sim::Levels", "amplitude at %1 Hz")
                                           : QCoreApplication::translate("sim::Levels", "impedance at %1 Hz"))
        .arg(m_state.settings.spotFrequency, 0, 'g', 6);
}

} // namespace sim
