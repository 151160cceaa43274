// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

/// The resonance of a measured part, as the motional arm R1-L1-C1 in parallel with C0, with the standard uncertainty
/// of each figure. SI units throughout; Y = G + jB = 1/Z.
namespace resonance {

struct Sample
{
    double frequency = 0;   ///< Hz
    double conductance = 0; ///< S
    double susceptance = 0; ///< S, positive for a capacitor
};

/// A value and its standard uncertainty, both not a number where there is none.
struct Figure
{
    double value = std::numeric_limits<double>::quiet_NaN();
    double uncertainty = std::numeric_limits<double>::quiet_NaN();
};

/// One mode of vibration. Figures of C0, and those that need it, are missing where the rest of the part is inductive.
struct Mode
{
    Figure fs;   ///< Hz, series resonance: the maximum of the motional conductance
    Figure q;    ///< quality factor of the motional arm
    Figure g1;   ///< S, motional conductance at fs
    Figure f1;   ///< Hz, lower frequency of half the motional conductance
    Figure f2;   ///< Hz, upper one
    Figure zr;   ///< Ohm, modulus of the impedance at fs, C0 and other modes included
    Figure r1;   ///< Ohm
    Figure l1;   ///< H
    Figure c1;   ///< F
    Figure c0;   ///< F, of what is left at fs when the motional arm is taken away
    Figure fp;   ///< Hz, parallel resonance
    Figure keff; ///< effective coupling factor
    /// S, of the fitted curve at fs, all modes and the rest of the part included.
    double conductance = std::numeric_limits<double>::quiet_NaN();
    double susceptance = std::numeric_limits<double>::quiet_NaN();
    double pointsPerBandwidth = 0;
    int degreesOfFreedom = 0;
    /// Half of a 95 % interval over the standard uncertainty (Student).
    double coverageFactor = std::numeric_limits<double>::quiet_NaN();
};

enum Flag : std::uint32_t
{
    EdgeFlag = 1,         ///< fs lies within a half-width of an end of the sweep
    ExtrapolatedFlag = 2, ///< F1 or F2 lies outside the sweep
    LowQFlag = 4,         ///< Q below 5
    CoarseFlag = 8,       ///< less than one point per bandwidth
    ClippedFlag = 16,     ///< a plateau was left out
    OverlapFlag = 32,     ///< fitted together with a neighbouring mode
    TurnedFlag = 64,      ///< the sweep was turned by 180 degrees
    ConjugatedFlag = 128, ///< the sign of the phase was changed
    LeftOutFlag = 256,    ///< points that are not finite, without frequency or shorted were left out
    AveragedFlag = 512,   ///< points of equal frequency were averaged
};

/// Why there is no resonance.
enum class Refusal : std::uint8_t
{
    None,
    NoPoints,
    NoPhase,
    TooFewPoints,
    NoPeak,
    NotAPole,     ///< a smooth curve describes the data as well, or the peak has not the shape of a resonance
    TooWeak,      ///< does not stand out of the noise
    TooUncertain, ///< Q is known to no better than 30 %
    TooCoarse,    ///< fewer than three points on the resonance
    Outside,      ///< fs lies outside the sweep
};

struct Solution
{
    static constexpr int kMostOthers = 7;

    bool found = false;
    Refusal refusal = Refusal::NoPoints;
    Mode mode;                            ///< the one of largest G1
    std::array<Mode, kMostOthers> others; ///< by falling G1
    int otherCount = 0;
    std::uint32_t flags = 0;
    int usedPoints = 0;
    int leftOut = 0;
};

/// Capacitance at low frequency.
struct LowFrequencyCapacitance
{
    bool found = false;
    double capacitance = std::numeric_limits<double>::quiet_NaN(); ///< F
    double frequency = std::numeric_limits<double>::quiet_NaN();   ///< Hz
};

/// A sentence about the refusal; empty for None.
std::string refusalText(Refusal refusal);

/// The flags in words, in a fixed order.
std::vector<std::string> flagTexts(const Solution& solution);

/// Half of a 95 % interval of Student's distribution in standard deviations; at least 1 degree of freedom.
double studentFactor95(int degreesOfFreedom);

} // namespace resonance
