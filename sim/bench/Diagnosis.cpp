// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/Diagnosis.h"

#include "sim/bench/PointFrames.h"

#include <QCoreApplication>

namespace sim {

namespace {

class Diagnosis : public WholeRangeRun
{
public:
    explicit Diagnosis(const ModelFacts& facts)
        : WholeRangeRun(facts, kDiagnosePoints)
    {}

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
    QString name() const override { return QCoreApplication::translate("sim::Run", "diagnosis"); }

private:
    int m_pass = 0;
};

} // namespace

std::unique_ptr<Run> makeDiagnosis(const ModelFacts& facts)
{
    return std::make_unique<Diagnosis>(facts);
}

} // namespace sim
