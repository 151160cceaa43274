// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/Resonance.h"

#include <cmath>
#include <cstdio>
#include <numbers>

namespace resonance {

std::string refusalText(Refusal refusal)
{
    switch (refusal) {
    case Refusal::None:
        return {};
    case Refusal::NoPoints:
        return "there are no points";
    case Refusal::NoPhase:
        return "the points were measured without phase";
    case Refusal::TooFewPoints:
        return "fewer than seven usable points";
    case Refusal::NoPeak:
        return "the conductance has no peak";
    case Refusal::NotAPole:
        return "no peak has the shape of a resonance";
    case Refusal::TooWeak:
        return "the peak does not stand out of the noise";
    case Refusal::TooUncertain:
        return "Q cannot be told to 30 %";
    case Refusal::TooCoarse:
        return "fewer than three points on the resonance";
    case Refusal::Outside:
        return "the resonance lies outside the sweep";
    }
    return {};
}

std::vector<std::string> flagTexts(const Solution& solution)
{
    std::vector<std::string> texts;
    const auto add = [&](Flag flag, const char* text) {
        if (solution.flags & flag)
            texts.emplace_back(text);
    };
    add(EdgeFlag, "edge: the resonance lies within a half-width of an end of the sweep");
    add(ExtrapolatedFlag, "F1 or F2 is extrapolated beyond the sweep");
    add(LowQFlag, "low Q");
    if (solution.flags & CoarseFlag) {
        char text[128];
        const double half = 5 / solution.mode.q.value;
        std::snprintf(text, sizeof text, "coarse: sweep %.0f to %.0f Hz for a better figure",
                      solution.mode.fs.value * std::fmax(0, 1 - half), solution.mode.fs.value * (1 + half));
        texts.emplace_back(text);
    }
    add(ClippedFlag, "clipped: a plateau was left out");
    add(OverlapFlag, "overlapping modes");
    add(TurnedFlag, "turned by 180 degrees");
    add(ConjugatedFlag, "sign of the phase changed");
    if (solution.flags & LeftOutFlag)
        texts.push_back(std::to_string(solution.leftOut) + " points left out");
    add(AveragedFlag, "points of equal frequency averaged");
    return texts;
}

double studentFactor95(int degreesOfFreedom)
{
    // Exact for 1 and 2; above, the expansion about the normal quantile is good to 0.5 % at 3 and better beyond.
    if (degreesOfFreedom <= 1)
        return 12.7062;
    if (degreesOfFreedom == 2)
        return 4.30265;
    constexpr double z = 1.959963984540054;
    const double n = degreesOfFreedom;
    const double z3 = z * z * z;
    const double z5 = z3 * z * z;
    const double z7 = z5 * z * z;
    const double z9 = z7 * z * z;
    return z + (z3 + z) / (4 * n) + (5 * z5 + 16 * z3 + 3 * z) / (96 * n * n) +
           (3 * z7 + 19 * z5 + 17 * z3 - 15 * z) / (384 * n * n * n) +
           (79 * z9 + 776 * z7 + 1482 * z5 - 1920 * z3 - 945 * z) / (92160 * n * n * n * n);
}

} // namespace resonance
