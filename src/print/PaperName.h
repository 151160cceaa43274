// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The text of a paper by the number that printing systems of the desktop give it, from 1; "User-defined" for any
/// other.
QString PaperName(int size);
