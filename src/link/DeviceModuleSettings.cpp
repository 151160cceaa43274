// SPDX-License-Identifier: GPL-3.0-or-later
// The sweep settings on their way between the mirror, the settings store and the instrument.
#include "controls/korvalink/KorvaLink.h"
#include "instrument/Commands.h"
#include "instrument/InstrumentMirror.h"
#include "instrument/InstrumentRanges.h"
#include "link/DeviceModule.h"
#include "link/MainWindowPort.h"
#include "link/rules/FirmwareVersion.h"
#include "link/rules/SettingsRules.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "values/Conversions.h"

void DeviceModule::DeviceSaveSettings()
{
    const InstrumentMirror& mirror = m_context.mirror;
    const QString& serial = mirror.strDeviceSerial;
    if (serial.isEmpty())
        return;
    const bool isInstrument = serial != InstrumentMirror().strDeviceSerial;
    // What the mirror holds belongs to that number only once the instrument has been given what was stored under it.
    const bool isGiven = m_context.state.gbfDeviceReady && (!m_settingsGivenTo || *m_settingsGivenTo == serial);
    if (isInstrument && m_context.device.Connected() && !isGiven)
        return;
    Preferences& preferences = m_context.preferences;
    const SettingsStore::Batch batch(preferences.store());
    preferences.setValue(serial, options::kIdleFrequency, mirror.dblIdleFrequency);
    preferences.setValue(serial, options::kGraphExtents, mirror.bfGraphExtents);
    preferences.setValue(serial, options::kNumPoints, mirror.iNumPoints);
    preferences.setValue(serial, options::kAttenuationCode, mirror.iAttenuationCode);
    preferences.setValue(serial, options::kRepeat, mirror.bfRepeat);
    preferences.setValue(serial, options::kSweepMode, mirror.iSweepMode);
    preferences.setValue(serial, options::kPhaseOn, mirror.bfPhaseOn);
    preferences.setValue(serial, options::kTestPeriod, mirror.iTestPeriod);
    preferences.setValue(serial, options::kStartFrequency, mirror.dblStartFrequency);
    preferences.setValue(serial, options::kEndFrequency, mirror.dblEndFrequency);
    preferences.setValue(serial, options::kSpotFrequency, mirror.dblSpotFrequency);
}

void DeviceModule::DeviceLoadSettings()
{
    using namespace instrumentranges;
    InstrumentMirror& mirror = m_context.mirror;
    const auto load = [&](const auto& option, auto& variable, auto believed) {
        using Variable = std::remove_reference_t<decltype(variable)>;
        const auto value = m_context.preferences.value(mirror.strDeviceSerial, option, variable);
        if (believed(value))
            variable = static_cast<Variable>(value);
    };
    const auto any = [](bool) { return true; };
    const auto frequency = [&mirror](double hertz) { return isFrequency(mirror, hertz); };
    load(options::kIdleFrequency, mirror.dblIdleFrequency,
         [&mirror](double hertz) { return isIdleFrequency(mirror, hertz); });
    load(options::kGraphExtents, mirror.bfGraphExtents, any);
    load(options::kNumPoints, mirror.iNumPoints, isPointCount);
    load(options::kAttenuationCode, mirror.iAttenuationCode,
         [&mirror](double code) { return isAttenuationCode(mirror, code); });
    load(options::kRepeat, mirror.bfRepeat, any);
    Q_EMIT m_events.changed(MirrorPart::Repeat);
    load(options::kSweepMode, mirror.iSweepMode, isSweepMode);
    load(options::kPhaseOn, mirror.bfPhaseOn, any);
    load(options::kTestPeriod, mirror.iTestPeriod, isPeriod);
    load(options::kStartFrequency, mirror.dblStartFrequency, frequency);
    load(options::kEndFrequency, mirror.dblEndFrequency, frequency);
    load(options::kSpotFrequency, mirror.dblSpotFrequency, frequency);
}

std::optional<int> DeviceModule::knownSamples() const
{
    const InstrumentMirror& mirror = m_context.mirror;
    if (mirror.strDeviceModel != kSamplingModel)
        return {};
    constexpr int kNone = 0;
    const int stored = m_context.preferences.value(mirror.strDeviceSerial, options::kSamples, kNone);
    if (instrumentranges::isSampleCount(stored))
        return stored;
    // The frames of points and period carry the present count in this field.
    if (instrumentranges::isSampleCount(mirror.iTestParam2))
        return values::roundToInt32(mirror.iTestParam2);
    return {};
}

void DeviceModule::DeviceSendSamples()
{
    const std::optional<int> samples = knownSamples();
    if (samples && !m_context.state.gbfScriptRunning)
        m_context.device.Write(command::samples(settingsrules::offeredSamples(*samples)));
}

void DeviceModule::DeviceSendSettings()
{
    const InstrumentMirror& mirror = m_context.mirror;
    const QString commands[] = {
        command::phase(mirror.bfPhaseOn),         command::idleFreq(mirror.dblIdleFrequency),
        command::points(mirror.iNumPoints),       command::atten(mirror.iAttenuationCode),
        command::repeat(mirror.bfRepeat),         command::sweepMode(mirror.iSweepMode),
        command::period(mirror.iTestPeriod),      command::startFreq(mirror.dblStartFrequency),
        command::endFreq(mirror.dblEndFrequency),
    };
    for (const QString& text : commands)
        m_context.device.Write(text);
    m_statusFrames.settingsSent();
}
