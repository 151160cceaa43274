// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/ExitCode.h"

class DeviceList;

namespace cli {

/// "marrowick devices": one line for each device of the list, refreshed first; a device that may not be opened is
/// followed by the reason.
ExitCode listDevices(DeviceList& devices, const DevicesOptions& options, Console& console);

} // namespace cli
