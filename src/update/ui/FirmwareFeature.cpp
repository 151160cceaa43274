// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/ui/FirmwareFeature.h"

#include "program/CommandRegistry.h"
#include "update/FirmwareUpgrade.h"
#include "widgets/ui/ShowModally.h"

#include <utility>

FirmwareFeature::FirmwareFeature(QWidget& window, DeviceModule& module, DeviceList& devices, CommandRegistry& commands,
                                 frmUpgrade::OpenFile openFile)
    : m_module(module)
    , m_devices(devices)
    , m_openFile(std::move(openFile))
{
    commands.add({.name = "mnuHelpFirmware",
                  .menu = Command::Menu::Help,
                  .place = 210,
                  .text = tr("Upgrade &Firmware..."),
                  .statusTip = tr("Write a firmware file into an instrument"),
                  .handler = [this, &window] { showWizard(window); },
                  .rules = Command::NotDuringTest});
}

void FirmwareFeature::showWizard(QWidget& owner)
{
    if (std::exchange(m_shown, true))
        return;
    FirmwareUpgrade upgrade(m_module, m_devices);
    showModally(new frmUpgrade(m_module, upgrade, m_openFile, &owner));
    m_shown = false;
}
