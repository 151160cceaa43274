// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/DeviceRanges.h"
#include "controls/ferrolex/Program.h"

namespace ferrolex {

class Findings;
class Source;

/// What a script is judged against.
struct Target
{
    DeviceRanges ranges;
    double firmware = 0; ///< as the instrument's version is told; 0: unknown
};

/// The firmware's version as one number, the way hosts read it: the minor number becomes the fraction by as many
/// divisions by 10 as bring it to 1 or below. So 1.28 is 1.28, but 1.10 is 2.
double firmwareNumber(int major, int minor);

/// Reads a script into a program and tells every mistake in it, line by line; after a mistake the next line is read as
/// if that one had been good. The program can be run only when no error was told.
Program parse(const Source& source, const Target& target, Findings& findings);

} // namespace ferrolex
