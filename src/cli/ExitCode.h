// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <span>

namespace cli {

/// Exit codes of the command-line programs; part of their interface, documented in the manual page and the help.
enum class ExitCode
{
    Done = 0,
    Usage = 1,        ///< the command line cannot be carried out as it stands
    NoInstrument = 2, ///< none found, none of that name, or it does not open or answer
    Lost = 3,         ///< the link went down in mid-sweep
    Refused = 4,      ///< the instrument or a rule of the program refused the test
    FileError = 5,    ///< a result could not be written, or a file not read
    Stopped = 6,      ///< ended before the last point: Ctrl-C, --timeout, or by the instrument
    Different = 7,    ///< complete, but not the sweep that was asked for
    NotSolved = 8,    ///< a pen has no resonance
    Bad = 9           ///< the script has come to its end and found the part bad
};

struct ExitCodeText
{
    ExitCode code;
    const char* name;     ///< a word or two, for the line in the help
    const char* sentence; ///< what the manual page says first
};

/// Every code, ascending from 0 without a gap.
std::span<const ExitCodeText> exitCodeTexts();

/// "Exit codes: 0 done, 1 usage, ..." in lines of at most 100 letters, the last with its end.
QString exitCodeHelp();

} // namespace cli
