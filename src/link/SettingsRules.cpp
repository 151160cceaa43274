// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/SettingsRules.h"

#include "instrument/Commands.h"
#include "values/Conversions.h"
#include "values/EngineeringText.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace settingsrules {
namespace {

int bar(double value, int highest)
{
    // Not a number stands for no level.
    return std::isnan(value) ? 0 : static_cast<int>(std::clamp(std::floor(value), 0.0, double(highest)));
}

QString twoDecimals(double value)
{
    return QLocale::c().toString(value, 'f', 2).remove(QLatin1Char(','));
}

void addPhase(LevelBars& bars, double barValue, double phase, bool showPhase)
{
    if (!showPhase)
        return;
    bars.phase = bar(barValue, LevelBars::kHighestPhase);
    bars.phaseText = twoDecimals(phase) + QLatin1String(" Deg");
}

} // namespace

int FilterFrequencyKey(int key)
{
    constexpr int kBackspace = 8;
    if (key == 'm')
        return 'M';
    if (key == kBackspace || key == '.' || (key >= '0' && key <= '9'))
        return key;
    return key > 0 && key < 128 && std::string_view("CGKMTcgkt").find(static_cast<char>(key)) != std::string_view::npos
               ? key
               : 0;
}

std::int32_t wholeHertz(const QString& text)
{
    QString trimmed = text;
    return values::roundToInt32(values::tolerantNumber(values::ParseEngineeringValue(trimmed)));
}

double clampToRange(double value, double minimum, double maximum)
{
    return std::max(std::min(value, maximum), minimum);
}

LevelBars amplitudeBars(double dB, double phase, bool showPhase)
{
    LevelBars bars;
    bars.level = bar(dB + 90, LevelBars::kHighestLevel);
    bars.levelText = twoDecimals(dB) + QLatin1String(" dB");
    addPhase(bars, phase + 180, phase, showPhase);
    return bars;
}

LevelBars impedanceBars(double ohms, double phase, bool showPhase)
{
    LevelBars bars;
    bars.level = bar((std::log(ohms) + 3) * 6.25, LevelBars::kHighestLevel);
    bars.levelText = twoDecimals(ohms) + QLatin1String(" Ohms");
    addPhase(bars, 2 * phase + 180, phase, showPhase);
    return bars;
}

QString attenuationText(int sliderValue, double step)
{
    return values::attenuationText(sliderValue - 1, step);
}

QString calibrateCommand(const QDateTime& now)
{
    // The stamp is digits whatever the user's locale.
    return command::calibrate(QLocale::c().toString(now, QStringLiteral("hhmmssddMMyyyy")));
}

int sampleIndex(double samples)
{
    int index = 0;
    while (index + 1 < static_cast<int>(kSampleCounts.size()) &&
           kSampleCounts[static_cast<std::size_t>(index) + 1] <= samples)
        ++index;
    return index;
}

} // namespace settingsrules
