// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/rules/NoticeRules.h"

#include <algorithm>
#include <array>

bool noticerules::isKnownGoodPair(double firmwareMajor, double firmwareMinor, int programMajor, int programMinor)
{
    struct Pair
    {
        int firmwareMinor;
        int programMinor;
    };
    static constexpr std::array<Pair, 6> kPairs{{{10, 11}, {10, 12}, {10, 13}, {22, 23}, {23, 27}, {23, 28}}};

    if (firmwareMajor != 1 || programMajor != 1)
        return false;
    return std::any_of(kPairs.begin(), kPairs.end(), [&](const Pair& pair) {
        return pair.firmwareMinor == firmwareMinor && pair.programMinor == programMinor;
    });
}

bool noticerules::isDiscarded(const QString& notice, int severity, double firmwareMajor, double firmwareMinor,
                              int programMajor, int programMinor)
{
    return severity == 1 && notice == QLatin1String("Version number mismatch. The firmware may need upgrading.") &&
           isKnownGoodPair(firmwareMajor, firmwareMinor, programMajor, programMinor);
}
