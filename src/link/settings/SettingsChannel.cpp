// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/settings/SettingsChannel.h"

#include "controls/korvalink/KorvaLink.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "program/ProgramState.h"

SettingsChannel::SettingsChannel(DeviceModule& device)
    : m_device(device)
    , m_context(device.context())
{}

void SettingsChannel::SendToDevice(const QString& text) const
{
    if (m_bfDialogLive && m_context.device.Connected())
        m_context.device.Write(text);
}

bool SettingsChannel::deviceReady() const
{
    return m_context.state.gbfDeviceReady;
}

bool SettingsChannel::isStateKnown() const
{
    return deviceReady() || m_context.mirror.strDeviceSerial == InstrumentMirror().strDeviceSerial;
}

InstrumentEvents& SettingsChannel::events() const
{
    return m_device.events();
}
