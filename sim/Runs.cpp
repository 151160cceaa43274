// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/Runs.h"

#include "sim/protocol/StatusFrames.h"

#include <QCoreApplication>

#include <cmath>
#include <limits>

namespace sim {

namespace {

/// Modulus of the phase in a point frame while phase acquisition is off; its sign is 1.
constexpr double kNoPhase = 65536;

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::Run", text);
}

Frame pointFrame(TestKind kind, bool marker, double x, const Measurement::Reading& reading, bool phase, int point)
{
    return numberFrame(kind == TestKind::Amplitude ? 'H' : 'F', marker,
                       {x, reading.value, phase ? std::fabs(reading.phase) : kNoPhase,
                        phase && std::signbit(reading.phase) ? -1.0 : 1.0, point});
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

class AmplitudeCalibration : public Run
{
public:
    AmplitudeCalibration(const ModelFacts& facts, QByteArray stamp)
        : m_plan{facts.minFrequency, facts.maxFrequency, kCalibrationPoints, false}
        , m_stamp(std::move(stamp))
    {}

    TestKind kind() const override { return TestKind::Amplitude; }
    int points() const override { return m_plan.points; }
    double startFrequency() const override { return m_plan.a; }
    double endFrequency() const override { return m_plan.b; }
    double frequency(int point) const override { return m_plan.frequency(point, false); }

    Frame measure(int point, bool marker, const Measurement& measurement, const InstrumentState& state,
                  std::uint64_t runNumber) override
    {
        const double hertz = frequency(point);
        m_deviation.push_back(measurement.deviation(hertz, state, runNumber, static_cast<std::uint64_t>(point)));
        return pointFrame(TestKind::Amplitude, marker, hertz, {m_deviation.back(), 0}, false, point);
    }

    std::vector<Frame> conclude(InstrumentState& state) override
    {
        state.constants.calibration = {true, m_stamp, m_deviation};
        return {status::calibration(state)};
    }
    QString name() const override { return tr("amplitude calibration"); }

private:
    FrequencyPlan m_plan;
    QByteArray m_stamp;
    std::vector<double> m_deviation;
};

class PhaseCalibration : public Run
{
public:
    explicit PhaseCalibration(const SweepSettings& settings)
        : m_settings(settings)
    {}

    TestKind kind() const override { return TestKind::Amplitude; }
    int points() const override { return kHighestTrimCode + 1; }
    double startFrequency() const override { return m_settings.startFrequency; }
    double endFrequency() const override { return m_settings.endFrequency; }
    double frequency(int) const override { return 1e6; }

    /// The codes go down, for the X of a point is its code and readers of a curve take an X of 0 for its end: so code 0
    /// is the last point and not the first.
    Frame measure(int point, bool marker, const Measurement& measurement, const InstrumentState& state,
                  std::uint64_t runNumber) override
    {
        const int code = kHighestTrimCode - point;
        const Measurement::Reading reading = measurement.phaseTrim(code, state, runNumber);
        if (std::fabs(reading.phase) < m_leastError) {
            m_leastError = std::fabs(reading.phase);
            m_bestCode = code;
        }
        return pointFrame(TestKind::Amplitude, marker, code, reading, true, point);
    }

    std::vector<Frame> conclude(InstrumentState& state) override
    {
        state.constants.vrefCode = m_bestCode;
        return {status::phase(state)};
    }
    QString name() const override { return tr("phase calibration"); }

private:
    SweepSettings m_settings;
    double m_leastError = std::numeric_limits<double>::infinity();
    int m_bestCode = 0;
};

class Diagnosis : public Run
{
public:
    explicit Diagnosis(const ModelFacts& facts)
        : m_plan{facts.minFrequency, facts.maxFrequency, kDiagnosePoints, false}
    {}

    TestKind kind() const override { return TestKind::Amplitude; }
    int points() const override { return m_plan.points; }
    double startFrequency() const override { return m_plan.a; }
    double endFrequency() const override { return m_plan.b; }
    double frequency(int point) const override { return m_plan.frequency(point, false); }

    Frame measure(int point, bool marker, const Measurement& measurement, const InstrumentState& state,
                  std::uint64_t runNumber) override
    {
        const double hertz = frequency(point);
        Measurement::Reading reading;
        if (m_pass == 0) {
            InstrumentState through = state;
            through.loopback = true;
            reading = measurement.amplitude(hertz, through, runNumber, static_cast<std::uint64_t>(point));
        } else {
            reading = measurement.amplitude(hertz, state, runNumber, static_cast<std::uint64_t>(point));
        }
        return pointFrame(TestKind::Amplitude, marker, hertz, reading, state.settings.phase, point);
    }

    bool repeats(const InstrumentState&) const override { return m_pass == 0; }
    bool nextPass(const InstrumentState&) override { return m_pass++ == 0; }
    QString name() const override { return tr("diagnosis"); }

private:
    FrequencyPlan m_plan;
    int m_pass = 0;
};

} // namespace

std::unique_ptr<Run> makeSweep(TestKind kind, const SweepSettings& settings)
{
    return std::make_unique<Sweep>(kind, settings);
}

std::unique_ptr<Run> makeAmplitudeCalibration(const ModelFacts& facts, const QByteArray& stamp)
{
    return std::make_unique<AmplitudeCalibration>(facts, stamp);
}

std::unique_ptr<Run> makePhaseCalibration(const SweepSettings& settings)
{
    return std::make_unique<PhaseCalibration>(settings);
}

std::unique_ptr<Run> makeDiagnosis(const ModelFacts& facts)
{
    return std::make_unique<Diagnosis>(facts);
}

Frame levelFrame(char code, double frequency, const Measurement::Reading& reading, bool phase, double withoutPhase)
{
    return numberFrame(code, 1,
                       {frequency, reading.value, phase ? std::fabs(reading.phase) : withoutPhase,
                        phase && std::signbit(reading.phase) ? -1.0 : 1.0, 0});
}

} // namespace sim
