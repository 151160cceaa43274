// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"

#include <QString>

class DeviceModule;
class InstrumentEvents;

/// The way of the settings dialog to the instrument, shared by its pages. Nothing passes while the dialog is not live:
/// controls that are being filled command nothing.
class SettingsChannel
{
public:
    /// The module outlives the channel.
    explicit SettingsChannel(DeviceModule& device);

    void setLive(bool live) { m_bfDialogLive = live; }
    bool isLive() const { return m_bfDialogLive; }
    /// Writes the text when the link is up and the dialog live.
    void SendToDevice(const QString& text) const;

    /// Whether the settings of the instrument are live: its complete state has arrived.
    bool deviceReady() const;
    /// False from the moment that an instrument has told its serial number until its state is complete: what is shown
    /// meanwhile is not to be stored under that number.
    bool isStateKnown() const;
    DeviceModule& device() const { return m_device; }
    InstrumentEvents& events() const;
    const LinkContext& context() const { return m_context; }
    InstrumentMirror& mirror() const { return m_context.mirror; }

private:
    DeviceModule& m_device;
    LinkContext m_context;
    bool m_bfDialogLive = false;
};
