// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "update/ui/frmUpgrade.h"

#include <QCoreApplication>

class CommandRegistry;
class DeviceList;
class DeviceModule;
class QWidget;

/// Upgrade Firmware in the Help menu.
class FirmwareFeature
{
    Q_DECLARE_TR_FUNCTIONS(FirmwareFeature)

public:
    /// Registers the command. All of it outlives the object.
    FirmwareFeature(QWidget& window, DeviceModule& module, DeviceList& devices, CommandRegistry& commands,
                    frmUpgrade::OpenFile openFile);

    /// The wizard, modally over that window; returns when it is closed.
    void showWizard(QWidget& owner);

private:
    DeviceModule& m_module;
    DeviceList& m_devices;
    frmUpgrade::OpenFile m_openFile;
    bool m_shown = false;
};
