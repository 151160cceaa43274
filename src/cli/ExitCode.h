// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace cli {

/// Exit codes of marrowick; part of its interface, documented in its manual page and its help.
enum class ExitCode
{
    Done = 0,
    Usage = 1,        ///< the command line cannot be carried out as it stands
    NoInstrument = 2, ///< none found, none of that name, or it does not open or answer
    Lost = 3,         ///< the link went down in mid-sweep
    Refused = 4,      ///< the instrument or a rule of the program refused the test
    FileError = 5,    ///< a result could not be written, or a plot file not read
    Stopped = 6,      ///< ended before the last point: Ctrl-C, --timeout, or by the instrument
    Different = 7     ///< complete, but not the sweep that was asked for
};

} // namespace cli
