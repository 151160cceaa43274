// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/FrequencyPlan.h"
#include "sim/bench/Measurement.h"
#include "sim/protocol/Frames.h"

#include <memory>
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
    /// For people, for example "impedance sweep".
    virtual QString name() const = 0;
};

/// Amplitude or impedance points over the range that was set when the sweep began. Repeats as long as the settings say
/// so; in sweep mode 2 the passes alternate in direction, the first going from A to B.
std::unique_ptr<Run> makeSweep(TestKind kind, const SweepSettings& settings);
/// Records the detector's deviation over the whole range and marks the instrument calibrated with that stamp.
std::unique_ptr<Run> makeAmplitudeCalibration(const ModelFacts& facts, const QByteArray& stamp);
/// Tries the reference trim codes from 255 down to 0 and keeps the one with the least phase error.
std::unique_ptr<Run> makePhaseCalibration(const SweepSettings& settings);
/// Two passes of kDiagnosePoints over the whole range: first the loopback, then the specimen.
std::unique_ptr<Run> makeDiagnosis(const ModelFacts& facts);

inline constexpr int kDiagnosePoints = 1007;

/// Point and level frames; a reading without phase is told as such.
Frame levelFrame(char code, double frequency, const Measurement::Reading& reading, bool phase, double withoutPhase);

} // namespace sim
