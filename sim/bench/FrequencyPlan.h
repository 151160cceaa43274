// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace sim {

/// The frequencies of one sweep from A to B; either may be the higher one.
struct FrequencyPlan
{
    double a = 1000;     ///< Hz, above 0
    double b = 1000000;  ///< Hz, above 0
    int points = 100;    ///< at least 1
    bool linear = false; ///< evenly spaced by frequency, else by its logarithm

    /// Frequency of the point of that number, 0 to points - 1, counted from A or, downwards, from B. The ends are met
    /// exactly.
    double frequency(int point, bool fromB) const;
};

} // namespace sim
