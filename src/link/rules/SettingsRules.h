// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <optional>

class QDateTime;

/// The arithmetic of the settings dialog, without its windows.
namespace settingsrules {

/// Keys of the frequency boxes: backspace (8), ".", digits and the suffix letters C G K M T c g k t pass; "m" becomes
/// "M", because mega is always meant there, and "," becomes "."; 0 for any other key.
int FilterFrequencyKey(int key);

/// A text from elsewhere as those keys would write it, without its blanks and its unit. Nothing when it holds any other
/// character: what would be left of it could mean another frequency.
std::optional<QString> filteredFrequency(QStringView text);

/// The frequency meant by a text: digits with at most one decimal point or comma, and at most one suffix letter, which
/// may stand in the place of the point ("4k7", "38,5k", "2M2"). Whole hertz of 32 bits, rounded half to even, at most
/// values::kLargestParsedValue. Nothing for any other text, an empty one included.
std::optional<std::int32_t> wholeHertz(const QString& text);

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

/// "-", code times step, " dB"; at most six significant digits, "0 dB" without attenuation.
QString attenuationText(int code, double step);

/// "calibrate CAL-hhmmssddmmyyyy" and the carriage return.
QString calibrateCommand(const QDateTime& now);

/// The counts of samples that a DT46 can average.
inline constexpr std::array<int, 11> kSampleCounts{1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024};
/// The largest of them that is not above the value, or the smallest.
int offeredSamples(int samples);

} // namespace settingsrules
