// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/CalibrationRuns.h"

#include "sim/bench/PointFrames.h"
#include "sim/protocol/StatusFrames.h"

#include <QCoreApplication>

#include <cmath>
#include <limits>

namespace sim {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::Run", text);
}

class AmplitudeCalibration : public WholeRangeRun
{
public:
    AmplitudeCalibration(const ModelFacts& facts, QByteArray stamp)
        : WholeRangeRun(facts, kCalibrationPoints)
        , m_stamp(std::move(stamp))
    {}

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
    bool measuresSpecimen() const override { return false; }
    QString name() const override { return tr("amplitude calibration"); }

private:
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
    bool measuresSpecimen() const override { return false; }
    QString name() const override { return tr("phase calibration"); }

private:
    SweepSettings m_settings;
    double m_leastError = std::numeric_limits<double>::infinity();
    int m_bestCode = 0;
};

} // namespace

std::unique_ptr<Run> makeAmplitudeCalibration(const ModelFacts& facts, const QByteArray& stamp)
{
    return std::make_unique<AmplitudeCalibration>(facts, stamp);
}

std::unique_ptr<Run> makePhaseCalibration(const SweepSettings& settings)
{
    return std::make_unique<PhaseCalibration>(settings);
}

} // namespace sim
