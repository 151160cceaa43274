// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/Measurement.h"

#include "sim/bench/Random.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace sim {

namespace {

constexpr double kPortOhms = 50;
constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr double kDegreesPerTrimCode = 0.25;
constexpr double kNoiseFloor = 2e-5;   // of full scale, -94 dB
constexpr double kLevelNoise = 0.002;  // dB
constexpr double kPhaseNoise = 0.01;   // degrees
constexpr double kModulusNoise = 2e-4; // of the reading

enum Channel : std::uint32_t
{
    kInPhase,
    kQuadrature,
    kLevel,
    kPhase
};

double frequencyShare(double frequencyHz, const ModelFacts& facts)
{
    return std::log(frequencyHz / facts.minFrequency) / std::log(facts.maxFrequency / facts.minFrequency);
}

double calibrationCorrection(const Calibration& calibration, double frequencyHz, const ModelFacts& facts)
{
    const std::vector<double>& table = calibration.deviation;
    if (table.empty())
        return 0;
    const double place =
        std::clamp(frequencyShare(frequencyHz, facts), 0.0, 1.0) * static_cast<double>(table.size() - 1);
    const auto low = static_cast<std::size_t>(place);
    const std::size_t high = std::min(low + 1, table.size() - 1);
    return std::lerp(table[low], table[high], place - static_cast<double>(low));
}

double foldDegrees(double degrees)
{
    return std::remainder(degrees, 360.0);
}

} // namespace

Measurement::Measurement(std::shared_ptr<const Specimen> specimen, std::uint64_t seed, double noise)
    : m_specimen(std::move(specimen))
    , m_noise(seed)
    , m_noiseFactor(noise)
{
    Random works(seed);
    m_frequencyAtOneMegahertz = 1e6 + std::round(works.uniform(-20, 20));
    m_detectorSlope = 1 + works.uniform(-0.003, 0.003);
    m_phaseImbalance = static_cast<int>(works.below(41)) - 20;
    m_rippleShift = works.uniform(0, 2 * std::numbers::pi);
    m_tilt = works.uniform(-0.15, 0.15);
}

InstrumentConstants Measurement::factoryConstants(const ModelFacts& facts, const QByteArray& serial) const
{
    InstrumentConstants constants;
    constants.serial = serial;
    constants.vrefCode = 128;
    constants.vdutCode = 128 - m_phaseImbalance;
    constants.frequencyCompensation = m_frequencyAtOneMegahertz;
    constants.calibrationSlope = 1 / m_detectorSlope;
    constants.calibration.valid = true;
    constants.calibration.stamp = "CAL-FACTORY";
    for (int i = 0; i < kCalibrationPoints; ++i) {
        const double share = static_cast<double>(i) / (kCalibrationPoints - 1);
        constants.calibration.deviation.push_back(
            detectorDeviation(facts.minFrequency * std::pow(facts.maxFrequency / facts.minFrequency, share)));
    }
    return constants;
}

double Measurement::actualFrequency(double nominalHz, const InstrumentState& state) const
{
    return nominalHz * (m_frequencyAtOneMegahertz / state.constants.frequencyCompensation);
}

double Measurement::detectorDeviation(double frequencyHz) const
{
    const double decades = std::log10(frequencyHz / 10.0);
    return m_tilt * (decades - 3) + 0.25 * std::sin(1.9 * decades + m_rippleShift) + 0.1 * std::sin(6.3 * decades);
}

double Measurement::phaseError(int vrefCode, int vdutCode) const
{
    return kDegreesPerTrimCode * (vrefCode - vdutCode - m_phaseImbalance);
}

double Measurement::noiseScale(const InstrumentState& state) const
{
    // Less signal through the attenuator, more noise; averaging takes it down by the square root of the count.
    double scale = m_noiseFactor * std::pow(10.0, state.settings.attenuation * state.facts->attenuationStep / 20.0);
    if (state.facts->samples)
        scale /= std::sqrt(static_cast<double>(std::max(1, state.settings.samples)));
    return scale;
}

Measurement::Reading Measurement::amplitude(double frequencyHz, const InstrumentState& state, std::uint64_t run,
                                            std::uint64_t point) const
{
    const ModelFacts& facts = *state.facts;
    const double frequency = actualFrequency(frequencyHz, state);
    const double scale = noiseScale(state);
    std::complex<double> gain = 1;
    if (!state.loopback)
        gain = 2 * kPortOhms / (2 * kPortOhms + m_specimen->impedance(frequency));
    gain += kNoiseFloor * scale *
            std::complex<double>(m_noise.gaussian(run, point, kInPhase), m_noise.gaussian(run, point, kQuadrature));

    const InstrumentConstants& constants = state.constants;
    double level = 20 * std::log10(std::max(std::abs(gain), 1e-12));
    level = (level * m_detectorSlope) * constants.calibrationSlope + constants.calibrationOffset;
    level += detectorDeviation(frequency) + kLevelNoise * scale * m_noise.gaussian(run, point, kLevel);
    if (constants.applyCalibration && constants.calibration.valid)
        level -= calibrationCorrection(constants.calibration, frequency, facts);

    const double phase = std::arg(gain) * kDegrees + phaseError(constants.vrefCode, constants.vdutCode) +
                         kPhaseNoise * scale * m_noise.gaussian(run, point, kPhase);
    return {std::clamp(level, facts.minLevel, facts.maxLevel), foldDegrees(phase)};
}

Measurement::Reading Measurement::impedance(double frequencyHz, const InstrumentState& state, std::uint64_t run,
                                            std::uint64_t point) const
{
    const ModelFacts& facts = *state.facts;
    const double frequency = actualFrequency(frequencyHz, state);
    const double scale = noiseScale(state);
    const std::complex<double> impedance = state.loopback ? kPortOhms : m_specimen->impedance(frequency);
    const double modulus = std::abs(impedance) * (1 + kModulusNoise * scale * m_noise.gaussian(run, point, kLevel));
    const double phase = std::arg(impedance) * kDegrees +
                         phaseError(state.constants.vrefCode, state.constants.vdutCode) +
                         kPhaseNoise * scale * m_noise.gaussian(run, point, kPhase);
    return {std::clamp(modulus, facts.minImpedance, facts.maxImpedance), foldDegrees(phase)};
}

double Measurement::deviation(double frequencyHz, const InstrumentState& state, std::uint64_t run,
                              std::uint64_t point) const
{
    return detectorDeviation(actualFrequency(frequencyHz, state)) +
           kLevelNoise * noiseScale(state) * m_noise.gaussian(run, point, kLevel);
}

Measurement::Reading Measurement::phaseTrim(int vrefCode, const InstrumentState& state, std::uint64_t run) const
{
    const auto point = static_cast<std::uint64_t>(vrefCode);
    const double error = phaseError(vrefCode, state.constants.vdutCode);
    // The imbalance falls to the noise floor where both paths agree, which is what makes the dip easy to see.
    const double imbalance = 2 * std::fabs(std::sin(error / kDegrees / 2));
    const double level = 20 * std::log10(imbalance + 1e-4 * (1 + 0.1 * m_noise.gaussian(run, point, kLevel)));
    return {std::clamp(level, state.facts->minLevel, state.facts->maxLevel),
            foldDegrees(error + kPhaseNoise * m_noise.gaussian(run, point, kPhase))};
}

double Measurement::measuredSlope(std::uint64_t run) const
{
    return 1 / (m_detectorSlope * (1 + 1e-6 * m_noise.gaussian(run, 0, kLevel)));
}

} // namespace sim
