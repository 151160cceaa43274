// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/Sweep.h"

#include "sim/bench/FrequencyPlan.h"
#include "sim/bench/PointFrames.h"

#include <QCoreApplication>

namespace sim {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::Run", text);
}

class Sweep : public Run
{
public:
    Sweep(TestKind kind, const SweepSettings& settings)
        : m_kind(kind)
        , m_plan{settings.startFrequency, settings.endFrequency, settings.points, settings.linear}
        , m_mode(settings.sweepMode)
        , m_fromB(settings.sweepMode == 1)
    {}

    TestKind kind() const override { return m_kind; }
    int points() const override { return m_plan.points; }
    double startFrequency() const override { return m_plan.a; }
    double endFrequency() const override { return m_plan.b; }
    double frequency(int point) const override { return m_plan.frequency(point, m_fromB); }

    Frame measure(int point, bool marker, const Measurement& measurement, const InstrumentState& state,
                  std::uint64_t runNumber) override
    {
        const double hertz = frequency(point);
        const auto number = static_cast<std::uint64_t>(point);
        const Measurement::Reading reading = m_kind == TestKind::Amplitude
                                                 ? measurement.amplitude(hertz, state, runNumber, number)
                                                 : measurement.impedance(hertz, state, runNumber, number);
        return pointFrame(m_kind, marker, hertz, reading, state.settings.phase, point);
    }

    bool repeats(const InstrumentState& state) const override { return state.settings.repeat; }
    bool nextPass(const InstrumentState& state) override
    {
        if (m_mode == 2)
            m_fromB = !m_fromB;
        return state.settings.repeat;
    }
    QString name() const override
    {
        return m_kind == TestKind::Amplitude ? tr("amplitude sweep") : tr("impedance sweep");
    }

private:
    TestKind m_kind;
    FrequencyPlan m_plan;
    int m_mode;
    bool m_fromB;
};

} // namespace

std::unique_ptr<Run> makeSweep(TestKind kind, const SweepSettings& settings)
{
    return std::make_unique<Sweep>(kind, settings);
}

} // namespace sim
