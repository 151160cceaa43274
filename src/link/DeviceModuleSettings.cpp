// SPDX-License-Identifier: GPL-3.0-or-later
// The sweep settings on their way between the mirror, the settings store and the instrument.
#include "controls/korvalink/KorvaLink.h"
#include "instrument/InstrumentMirror.h"
#include "link/Commands.h"
#include "link/DeviceModule.h"
#include "link/MainWindowPort.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"

#include <limits>

void DeviceModule::DeviceSaveSettings()
{
    const InstrumentMirror& mirror = m_context.mirror;
    const QString& serial = mirror.strDeviceSerial;
    if (serial.isEmpty())
        return;
    const bool isInstrument = serial != InstrumentMirror().strDeviceSerial;
    if (isInstrument && m_context.device.Connected() && !m_context.state.gbfDeviceReady)
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
    InstrumentMirror& mirror = m_context.mirror;
    const auto load = [&](const auto& option, auto& variable) {
        using Variable = std::remove_reference_t<decltype(variable)>;
        const auto value = m_context.preferences.value(mirror.strDeviceSerial, option, variable);
        if constexpr (std::is_same_v<Variable, std::int16_t>) {
            if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
                return;
        }
        variable = static_cast<Variable>(value);
    };
    load(options::kIdleFrequency, mirror.dblIdleFrequency);
    load(options::kGraphExtents, mirror.bfGraphExtents);
    load(options::kNumPoints, mirror.iNumPoints);
    load(options::kAttenuationCode, mirror.iAttenuationCode);
    load(options::kRepeat, mirror.bfRepeat);
    m_context.port.SetRepeatStatus(mirror.bfRepeat);
    load(options::kSweepMode, mirror.iSweepMode);
    load(options::kPhaseOn, mirror.bfPhaseOn);
    load(options::kTestPeriod, mirror.iTestPeriod);
    load(options::kStartFrequency, mirror.dblStartFrequency);
    load(options::kEndFrequency, mirror.dblEndFrequency);
    load(options::kSpotFrequency, mirror.dblSpotFrequency);
}

void DeviceModule::DeviceSendSettings()
{
    const InstrumentMirror& mirror = m_context.mirror;
    const QString commands[] = {
        command::text(command::kPhase, mirror.bfPhaseOn),
        command::text(command::kIdleFreq, mirror.dblIdleFrequency),
        command::text(command::kPoints, int{mirror.iNumPoints}),
        command::text(command::kAtten, int{mirror.iAttenuationCode}),
        command::text(command::kRepeat, mirror.bfRepeat),
        command::text(command::kSweepMode, int{mirror.iSweepMode}),
        command::text(command::kPeriod, int{mirror.iTestPeriod}),
        command::text(command::kStartFreq, mirror.dblStartFrequency),
        command::text(command::kEndFreq, mirror.dblEndFrequency),
    };
    for (const QString& text : commands)
        m_context.device.Write(text);
}
