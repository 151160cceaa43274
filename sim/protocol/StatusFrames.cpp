// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/StatusFrames.h"

namespace sim::status {

namespace {

/// Volts behind a trim code: 2.5 V full scale.
double trimVolts(int code)
{
    return 2.5 * code / kHighestTrimCode;
}

/// "CAL-hhmmssddmmyyyy" as two numbers; 0 for what is not there.
double stampDigits(const QByteArray& stamp, qsizetype from, qsizetype count)
{
    const QByteArray digits = stamp.mid(from, count);
    bool ok = false;
    const double number = digits.toDouble(&ok);
    return ok && digits.size() == count ? number : 0.0;
}

double flag(bool value)
{
    return value ? 1.0 : 0.0;
}

} // namespace

Frame attenuation(const InstrumentState& state)
{
    const ModelFacts& facts = *state.facts;
    return numberFrame('A', facts.hasAttenuator && facts.attenuationSteps > 0,
                       {0, facts.attenuationStep * facts.attenuationSteps, facts.attenuationStep,
                        static_cast<double>(state.settings.attenuation), facts.attenuationSteps});
}

Frame slope(const InstrumentState& state)
{
    const InstrumentConstants& constants = state.constants;
    return numberFrame('B', state.loopback,
                       {state.settings.spotFrequency, constants.calibrationOffset, constants.calibrationOffset,
                        constants.calibrationSlope, 0});
}

Frame phase(const InstrumentState& state)
{
    const InstrumentConstants& constants = state.constants;
    return numberFrame('C', state.settings.phase,
                       {state.settings.spotFrequency, trimVolts(constants.vrefCode), trimVolts(constants.vdutCode),
                        static_cast<double>(constants.vrefCode), constants.vdutCode});
}

Frame options(const InstrumentState& state)
{
    return numberFrame('J', state.loopback,
                       {flag(state.facts->hasAttenuator), flag(state.facts->samples), 1, 0, state.settings.pin});
}

Frame sweepMode(const InstrumentState& state)
{
    const SweepSettings& settings = state.settings;
    return numberFrame('K', settings.sweepMode,
                       {settings.idleFrequency, settings.startFrequency, settings.endFrequency, 0, 0});
}

Frame amplitudeLimits(const InstrumentState& state)
{
    const ModelFacts& facts = *state.facts;
    return numberFrame('L', 1,
                       {facts.minFrequency, facts.maxFrequency, facts.minLevel, facts.maxLevel, state.idleOutput});
}

Frame reactanceLimits(const InstrumentState& state)
{
    const ModelFacts& facts = *state.facts;
    return numberFrame('M', 1, {facts.minFrequency, facts.maxFrequency, -facts.maxReactance, facts.maxReactance, 0});
}

Frame impedanceLimits(const InstrumentState& state)
{
    const ModelFacts& facts = *state.facts;
    return numberFrame('N', 1, {facts.minFrequency, facts.maxFrequency, facts.minImpedance, facts.maxImpedance, 0});
}

Frame firmware(const InstrumentState& state)
{
    return numberFrame('O', state.debugFirmware,
                       {static_cast<double>(state.firmwareMajor), static_cast<double>(state.firmwareMinor),
                        static_cast<double>(state.firmwareBuild), static_cast<double>(state.boardVersion), 0});
}

Frame points(const InstrumentState& state)
{
    return numberFrame('P', state.running,
                       {static_cast<double>(state.pointsInTest), flag(state.settings.repeat),
                        static_cast<double>(state.settings.samples), flag(state.settings.linear),
                        state.lastTest == TestKind::Impedance ? 2 : 1});
}

Frame period(const InstrumentState& state)
{
    return numberFrame('Q', 0,
                       {static_cast<double>(kMostPoints), static_cast<double>(state.settings.period),
                        static_cast<double>(kMostSamples), static_cast<double>(state.settings.pin), 0});
}

Frame calibration(const InstrumentState& state)
{
    const InstrumentConstants& constants = state.constants;
    const QByteArray& stamp = constants.calibration.stamp;
    return numberFrame('R', constants.applyCalibration,
                       {stampDigits(stamp, 4, 6), stampDigits(stamp, 10, 8), flag(constants.calibration.valid), 0, 0});
}

Frame sampling(const InstrumentState& state)
{
    return numberFrame('S', state.facts->samples,
                       {0, static_cast<double>(state.settings.period), static_cast<double>(state.settings.samples),
                        flag(state.settings.linear), 0});
}

Frame serial(const InstrumentState& state)
{
    return textFrame('V', 0, state.constants.serial.toStdString());
}

Frame complete(const InstrumentState& state)
{
    const SweepSettings& settings = state.settings;
    return numberFrame('X', settings.sweepMode,
                       {settings.startFrequency, settings.endFrequency, static_cast<double>(state.pointsInTest),
                        settings.idleFrequency, settings.pin});
}

Frame information(const InstrumentState& state, int slot)
{
    const ModelFacts& facts = *state.facts;
    return textFrame('l', slot, slot == 6 ? facts.modelText : facts.information.at(static_cast<std::size_t>(slot)));
}

Frame frequencies(const InstrumentState& state)
{
    return numberFrame('s', 0, {0, state.settings.startFrequency, state.settings.endFrequency, 0, 0});
}

Frame frequencyCompensation(const InstrumentState& state)
{
    return numberFrame('t', 0, {state.constants.frequencyCompensation, 0, 0, 0, 0});
}

Frame testStarted(const InstrumentState& state, double startFrequency, double endFrequency)
{
    return numberFrame('D', state.lastTest == TestKind::Impedance ? 2 : 1,
                       {flag(state.running), startFrequency, endFrequency, flag(state.repeating), state.idleOutput});
}

Frame testEnded(const InstrumentState& state)
{
    return numberFrame('E', state.lastTest == TestKind::Impedance ? 2 : 1,
                       {flag(state.running), state.settings.startFrequency, state.settings.endFrequency,
                        flag(state.repeating), state.idleOutput});
}

Frame pointsFinished()
{
    return numberFrame('Y', 0, {});
}

Frame notice(bool error, std::string_view text)
{
    return textFrame('T', error ? 1 : 0, text);
}

Frame panelText(std::string_view text)
{
    return textFrame('r', 0, text);
}

Frame scriptRunning(bool running)
{
    return numberFrame('k', running ? 1 : 0, {});
}

std::vector<Frame> everything(const InstrumentState& state)
{
    std::vector<Frame> frames{firmware(state), serial(state)};
    for (int slot = 0; slot <= 6; ++slot)
        frames.push_back(information(state, slot));
    for (const auto& frame : {amplitudeLimits, reactanceLimits, impedanceLimits, attenuation, slope, phase, options,
                              sweepMode, points, period, calibration, sampling, frequencies, frequencyCompensation})
        frames.push_back(frame(state));
    return frames;
}

std::vector<Frame> settings(const InstrumentState& state)
{
    std::vector<Frame> frames;
    for (const auto& frame : {attenuation, phase, sweepMode, points, period, sampling, frequencies, options})
        frames.push_back(frame(state));
    return frames;
}

} // namespace sim::status
