// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Which of the instrument's notices are worth the user's attention.
namespace noticerules {

/// Pairs of firmware and program that are known to work together although their numbers differ. Both majors must be 1.
bool isKnownGoodPair(double firmwareMajor, double firmwareMinor, int programMajor, int programMinor);

/// True for the error about differing versions that a known-good pair raises; it is not shown.
bool isDiscarded(const QString& notice, int severity, double firmwareMajor, double firmwareMinor, int programMajor,
                 int programMinor);

} // namespace noticerules
