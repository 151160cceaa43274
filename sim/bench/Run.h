// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/FrequencyPlan.h"
#include "sim/bench/Measurement.h"
#include "sim/protocol/Frames.h"

#include <QString>

#include <vector>

namespace sim {

/// A series of points between a "D" and the "Y": a sweep, a calibration or a diagnosis.
class Run
{
public:
    virtual ~Run() = default;

    virtual TestKind kind() const = 0;
    virtual int points() const = 0;
    /// Range told in "D", Hz.
    virtual double startFrequency() const = 0;
    virtual double endFrequency() const = 0;
    /// Hz put out at the point of that number, 0 to points() - 1, in the present pass.
    virtual double frequency(int point) const = 0;
    virtual Frame measure(int point, bool marker, const Measurement& measurement, const InstrumentState& state,
                          std::uint64_t runNumber) = 0;
    /// After the last point: true when another pass begins.
    virtual bool nextPass(const InstrumentState&) { return false; }
    /// Whether another pass is foreseen while this one runs.
    virtual bool repeats(const InstrumentState&) const { return false; }
    /// After the last pass: puts the result into the constants; the frames returned follow the "Y".
    virtual std::vector<Frame> conclude(InstrumentState&) { return {}; }
    /// False when the specimen has no part in it.
    virtual bool measuresSpecimen() const { return true; }
    /// For people, for example "impedance sweep".
    virtual QString name() const = 0;
};

/// A run over the whole range of a model, as calibration and diagnosis make it: linear, at amplitudes.
class WholeRangeRun : public Run
{
public:
    WholeRangeRun(const ModelFacts& facts, int points)
        : m_plan{facts.minFrequency, facts.maxFrequency, points, false}
    {}

    TestKind kind() const override { return TestKind::Amplitude; }
    int points() const override { return m_plan.points; }
    double startFrequency() const override { return m_plan.a; }
    double endFrequency() const override { return m_plan.b; }
    double frequency(int point) const override { return m_plan.frequency(point, false); }

private:
    FrequencyPlan m_plan;
};

} // namespace sim
