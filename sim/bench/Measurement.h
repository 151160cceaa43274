// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/Noise.h"
#include "sim/parts/Specimen.h"
#include "sim/protocol/InstrumentState.h"

#include <cstdint>
#include <memory>

namespace sim {

/// The analogue side of the instrument: puts a signal through the specimen and reads level and phase, with the faults
/// of a real detector, which the instrument's calibrations take out again.
class Measurement
{
public:
    struct Reading
    {
        double value = 0; ///< dB, or Ohm
        double phase = 0; ///< degrees, -180 to 180
    };

    /// The seed fixes the noise and the faults of this very instrument; the noise is that of a good instrument times
    /// noise.
    Measurement(std::shared_ptr<const Specimen> specimen, std::uint64_t seed, double noise = 1);

    /// Gain through the specimen as a two-port divider: source and receiver have 50 Ohm each and the specimen is in
    /// series between them, so that a plain wire reads 0 dB: H = 100 / (100 + Z).
    Reading amplitude(double frequencyHz, const InstrumentState& state, std::uint64_t run, std::uint64_t point) const;
    /// Modulus and phase of the specimen, within the model's impedance range; the loopback switch shows the inner 50
    /// Ohm.
    Reading impedance(double frequencyHz, const InstrumentState& state, std::uint64_t run, std::uint64_t point) const;
    /// Amplitude of a plain wire with no calibration applied: what an amplitude calibration records.
    double deviation(double frequencyHz, const InstrumentState& state, std::uint64_t run, std::uint64_t point) const;
    /// Reading of the phase detector in loopback with that reference trim: the level of its imbalance and the phase
    /// error.
    Reading phaseTrim(int vrefCode, const InstrumentState& state, std::uint64_t run) const;
    /// The slope that makes the detector's scale true, measured anew.
    double measuredSlope(std::uint64_t run) const;

    /// What the works put into the memory of this instrument: calibrated, trimmed and compensated.
    InstrumentConstants factoryConstants(const ModelFacts& facts, const QByteArray& serial) const;

    const Specimen& specimen() const { return *m_specimen; }

private:
    double actualFrequency(double nominalHz, const InstrumentState& state) const;
    double detectorDeviation(double frequencyHz) const;
    double phaseError(int vrefCode, int vdutCode) const;
    double noiseScale(const InstrumentState& state) const;

    std::shared_ptr<const Specimen> m_specimen;
    Noise m_noise;
    double m_noiseFactor;
    double m_frequencyAtOneMegahertz; ///< Hz, of this crystal
    double m_detectorSlope;
    int m_phaseImbalance; ///< trim codes
    double m_rippleShift;
    double m_tilt; ///< dB a decade
};

} // namespace sim
