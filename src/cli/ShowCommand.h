// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/ExitCode.h"

namespace cli {

/// "marrowick show": prints what each of the files holds, a blank line between them, or one JSON object for all; or the
/// points of one pen as a table. A file that cannot be read is told as a problem and does not keep the others from
/// being shown; the exit code is FileError then. No file is changed.
ExitCode showPlots(const ShowOptions& options, Console& console);

} // namespace cli
