// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "cli/ExitCode.h"
#include "controls/tarnload/Patience.h"
#include "controls/tarnload/UpgradeErrors.h"

#include <QString>

#include <memory>

class DeviceList;

namespace cli {

struct FirmwareInstall
{
    QString file;
    QString device; ///< serial number, or path of a terminal device (with a "/"); empty for the only one there is
    QString keyFolder;
    bool dryRun = false;
    bool allowOlder = false;
    bool json = false;
    bool quiet = false;
    tarnload::Patience patience = {};
};

/// The instruments of this computer, behind the terminal device if its path was given.
std::unique_ptr<DeviceList> devicesFor(const QString& device);

/// Writes the file into the instrument, with its progress; a dry run ends before anything is changed.
ExitCode installFirmware(DeviceList& devices, const FirmwareInstall& wanted, Console& console);

/// Which code stands for an error of the loader.
ExitCode exitCodeOf(tarnload::UpgradeError error);

} // namespace cli
