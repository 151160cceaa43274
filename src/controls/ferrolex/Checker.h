// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Program.h"

namespace ferrolex {

class Findings;

/// Judges what a program does as a whole: loops that nobody can end, masks that nothing provides, results that are
/// lost, statements that are never reached. Where it depends on the run, the script is given the benefit of the doubt.
/// It warns only when no mistake has been found before: what is missing may stand in a line that could not be read.
void judge(const Program& program, Findings& findings);

} // namespace ferrolex
