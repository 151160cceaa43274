// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <cstdint>

class QDateTime;

/// The arithmetic of the settings dialog, without its windows.
namespace settingsrules {

/// Keys of the frequency boxes: backspace (8), ".", digits and the suffix letters C G K M T c g k t pass; "m" becomes
/// "M", because mega is always meant there; 0 for any other key.
int FilterFrequencyKey(int key);

/// The number meant by a text with suffixes, as a whole number of 32 bits, rounded half to even. No digit gives 0.
std::int32_t wholeHertz(const QString& text);

/// The value held between the two limits; the lower one wins where they are crossed.
double clampToRange(double value, double minimum, double maximum);

// The monitor's bars and read-outs.
struct LevelBars
{
    static constexpr int kHighestLevel = 100;
    static constexpr int kHighestPhase = 360;
    int level = 0; ///< 0 to kHighestLevel
    int phase = 0; ///< 0 to kHighestPhase
    QString levelText;
    QString phaseText;
};
/// Level in dB: the bar is the level plus 90, the phase bar the phase plus 180. Phase is left out if there is none.
LevelBars amplitudeBars(double dB, double phase, bool showPhase);
/// Ohm: the bar is (ln(value) + 3) x 6.25, the phase bar twice the phase plus 180.
LevelBars impedanceBars(double ohms, double phase, bool showPhase);

/// The attenuation text for a slider that stands at value (code + 1).
QString attenuationText(int sliderValue, double step);

/// "calibrate CAL-hhmmssddmmyyyy" and the carriage return.
QString calibrateCommand(const QDateTime& now);

/// The counts of samples that a DT46 can average.
inline constexpr std::array<int, 11> kSampleCounts{1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024};
/// Index of the largest count that is not above the value; 0 for less than any.
int sampleIndex(double samples);

} // namespace settingsrules
