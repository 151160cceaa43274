// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/rules/SettingsRules.h"

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
    const QString text = QLocale::c().toString(value, 'f', 2).remove(QLatin1Char(','));
    return text == QLatin1String("-0.00") ? text.mid(1) : text;
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
    if (key == ',')
        return '.';
    if (key == kBackspace || key == '.' || (key >= '0' && key <= '9'))
        return key;
    return key > 0 && key < 128 && std::string_view("CGKMTcgkt").find(static_cast<char>(key)) != std::string_view::npos
               ? key
               : 0;
}

std::optional<QString> filteredFrequency(QStringView text)
{
    text = text.trimmed();
    if (text.endsWith(u"Hz", Qt::CaseInsensitive))
        text.chop(2);
    QString passed;
    for (const QChar character : text) {
        if (character.isSpace())
            continue;
        const int key = FilterFrequencyKey(character.unicode());
        if (key < ' ')
            return {};
        passed += QChar(key);
    }
    return passed;
}

std::optional<std::int32_t> wholeHertz(const QString& text)
{
    const std::optional<QString> filtered = filteredFrequency(text);
    if (!filtered)
        return {};
    qsizetype digits = 0, points = 0, suffixes = 0;
    for (const QChar character : *filtered)
        ++(character.isDigit() ? digits : character == u'.' ? points : suffixes);
    // A suffix in the place of the point is followed by digits: then there is no point besides.
    const bool suffixInside = suffixes == 1 && filtered->back().isDigit();
    if (digits == 0 || suffixes > 1 || points > (suffixInside ? 0 : 1) || filtered->front().isLetter())
        return {};
    QString number = *filtered;
    return values::roundToInt32(values::tolerantNumber(values::ParseEngineeringValue(number)));
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

QString attenuationText(int code, double step)
{
    return values::attenuationText(code, step);
}

QString calibrateCommand(const QDateTime& now)
{
    // The stamp is digits whatever the user's locale.
    return command::calibrate(QLocale::c().toString(now, QStringLiteral("hhmmssddMMyyyy")));
}

int offeredSamples(int samples)
{
    int offered = kSampleCounts.front();
    for (const int count : kSampleCounts)
        offered = count <= samples ? count : offered;
    return offered;
}

} // namespace settingsrules
