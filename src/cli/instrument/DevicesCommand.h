// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

class DeviceList;

namespace cli {

/// One line for each device of the list, refreshed first; a device that may not be opened is followed by the reason.
ExitCode listDevices(DeviceList& devices, const CommonOptions& options, Console& console);

class DevicesCommand : public Command
{
public:
    QString name() const override;
    QString summary() const override;
    QString description() const override;
    ExitCode run(Arguments& arguments, Console& console) override;
};

} // namespace cli
