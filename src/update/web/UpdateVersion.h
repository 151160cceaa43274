// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

/// The version in the name of an update file: a product tag, "V" and the major number, "R", "D" or "U" and the minor
/// number, "B" and the rest, as in "MGV1R28B3.exe". Letters count by case.
///
/// Versions are compared as decimals: 1.3 is above 1.28, and 1.10 is 1.1.
namespace updateversion {

/// From behind the first "V" (or the beginning) to the first "R", else "D", else "U" behind it. 0 when that is no
/// integer.
std::int16_t GetFileMajorVersion(const QString& strFileName);
/// From behind the first "R", else "D", else "U" of the whole name to the next "B". 0 when that is no integer, as when
/// the tag itself holds the letter.
std::int16_t GetFileMinorVersion(const QString& strFileName);
double GetVersionFromFileName(const QString& strFileName);

/// The decimal that "MAJOR.MINOR" reads as.
double versionNumber(double major, double minor);
/// That of the program that runs.
double programVersion();

} // namespace updateversion
