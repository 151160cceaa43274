// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/DeviceWindows.h"

#include "link/DeviceModule.h"
#include "link/settings/ui/frmSettings.h"
#include "link/ui/frmDevice.h"
#include "link/ui/frmDeviceProperties.h"
#include "link/ui/frmTestSchedule.h"
#include "program/CommandRegistry.h"
#include "widgets/ui/ShowModally.h"

DeviceWindows::DeviceWindows(QWidget& owner, DeviceModule& device, SettingsDialogHost& host, CommandRegistry& commands)
    : m_owner(owner)
    , m_device(device)
    , m_context(device.context())
    , m_host(host)
{
    registerCommands(commands);
}

void DeviceWindows::registerCommands(CommandRegistry& commands)
{
    commands.add({.name = "mnuTestSettings",
                  .menu = Command::Menu::Test,
                  .place = 300,
                  .text = tr("S&ettings..."),
                  .icon = "test-settings",
                  .shortcut = "Ctrl+T",
                  .statusTip = tr("Set up the oscillator and the sweep"),
                  .handler = [this] { mnuTestSettings_Click(); },
                  .toolBarKey = "Test Settings",
                  .popupEntry = "TestSettings"});
    commands.add({.name = "mnuTestDevice",
                  .menu = Command::Menu::Test,
                  .place = 310,
                  .text = tr("&Connect Device..."),
                  .icon = "connect-device",
                  .shortcut = "F8",
                  .statusTip = tr("Choose the instrument to work with"),
                  .handler = [this] { mnuTestDevice_Click(); },
                  .functionKey = true,
                  .toolBarKey = "Connect Device"});
    commands.add({.name = "mnuTestDeviceProperties",
                  .menu = Command::Menu::Test,
                  .place = 320,
                  .text = tr("Device &Properties..."),
                  .icon = "device-properties",
                  .statusTip = tr("Show what the connected instrument is"),
                  .handler = [this] { mnuTestDeviceProperties_Click(); },
                  .rules = Command::NeedsInstrument});
    commands.add({.name = "mnuTestSchedule",
                  .menu = Command::Menu::Test,
                  .place = 330,
                  .text = tr("Test Sche&dule..."),
                  .statusTip = tr("Switch the instrument's test mode"),
                  .handler = [this] { mnuTestSchedule_Click(); }});
}

void DeviceWindows::mnuTestDevice_Click()
{
    if (m_chooser) {
        m_chooser->activateWindow();
        return;
    }
    m_chooser = new frmDevice(m_context.device, m_context.preferences, m_context.messages, &m_owner);
    showModally(m_chooser);
}

void DeviceWindows::unloadDeviceChooser()
{
    // It may be the chooser's own click that brought the connection about: it ends its loop and is destroyed behind it.
    if (m_chooser)
        m_chooser->accept();
}

void DeviceWindows::mnuTestDeviceProperties_Click()
{
    if (!m_properties) {
        m_properties = new frmDeviceProperties(m_device, &m_owner);
        m_properties->setAttribute(Qt::WA_DeleteOnClose);
    }
    m_properties->Update();
    m_properties->show();
    m_properties->raise();
    m_properties->activateWindow();
}

void DeviceWindows::mnuTestSchedule_Click()
{
    showModally(new frmTestSchedule(m_context.device, m_context.preferences, &m_owner));
}

void DeviceWindows::showSettings()
{
    // A dialog that is not visible has been closed and only waits for its destruction.
    if (!m_settings || !m_settings->isVisible())
        m_settings = new frmSettings(m_device, m_host, &m_owner);
    m_settings->show();
    m_settings->raise();
}

void DeviceWindows::mnuTestSettings_Click()
{
    showSettings();
    m_settings->activateWindow();
}

void DeviceWindows::unloadSettings()
{
    if (m_settings)
        m_settings->Unload();
    m_settings = nullptr;
}

void DeviceWindows::unloadDeviceWindows()
{
    unloadSettings();
    if (m_properties)
        m_properties->close();
}
