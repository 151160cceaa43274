// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"

#include <QCoreApplication>
#include <QPointer>

class CommandRegistry;
class DeviceModule;
class QWidget;
class SettingsDialogHost;
class frmDevice;
class frmDeviceProperties;
class frmSettings;

/// The windows about the instrument and the commands that open them: chooser, settings, properties, test schedule. Each
/// is there once at most.
class DeviceWindows
{
    Q_DECLARE_TR_FUNCTIONS(DeviceWindows)

public:
    /// Registers the commands. All of it outlives the object; the windows are children of the owner.
    DeviceWindows(QWidget& owner, DeviceModule& device, SettingsDialogHost& host, CommandRegistry& commands);

    /// The chooser, modally; returns when it is closed. One that is open comes to the front instead.
    void mnuTestDevice_Click();
    void mnuTestDeviceProperties_Click();
    void mnuTestSchedule_Click();
    void mnuTestSettings_Click();

    /// The settings, without taking the keyboard.
    void showSettings();
    void unloadSettings();
    /// Ends the chooser, if it is open. It is destroyed when its own handlers have returned.
    void unloadDeviceChooser();
    /// Settings and properties.
    void unloadDeviceWindows();

private:
    void registerCommands(CommandRegistry& commands);

    QWidget& m_owner;
    DeviceModule& m_device;
    LinkContext m_context;
    SettingsDialogHost& m_host;
    QPointer<frmDevice> m_chooser;
    QPointer<frmSettings> m_settings;
    QPointer<frmDeviceProperties> m_properties;
};
