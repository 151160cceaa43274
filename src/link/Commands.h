// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Conversions.h"

#include <QString>

/// Texts of commands to the instrument: a word, a blank, the argument as plain decimal text, a carriage return.
namespace command {

inline QString text(QLatin1String word)
{
    return word + QLatin1Char('\r');
}
inline QString text(QLatin1String word, const QString& argument)
{
    return word + QLatin1Char(' ') + argument + QLatin1Char('\r');
}
inline QString text(QLatin1String word, double argument)
{
    return text(word, values::plainDecimalText(argument));
}
inline QString text(QLatin1String word, int argument)
{
    return text(word, QString::number(argument));
}
/// 1 for true, 0 for false.
inline QString text(QLatin1String word, bool argument)
{
    return text(word, argument ? 1 : 0);
}

inline constexpr QLatin1String kStartFreq("startfreq");
inline constexpr QLatin1String kEndFreq("endfreq");
inline constexpr QLatin1String kIdleFreq("idlefreq");
inline constexpr QLatin1String kSpotFreq("spotfreq");
inline constexpr QLatin1String kPoints("points");
inline constexpr QLatin1String kAtten("atten");
inline constexpr QLatin1String kRepeat("repeat");
inline constexpr QLatin1String kSweepMode("sweepmode");
inline constexpr QLatin1String kPeriod("period");
inline constexpr QLatin1String kPhase("phase");
inline constexpr QLatin1String kSamples("samples");
inline constexpr QLatin1String kAmpSpot("ampspot");
inline constexpr QLatin1String kImpSpot("impspot");
inline constexpr QLatin1String kAmpTest("amptest");
inline constexpr QLatin1String kImpTest("imptest");
inline constexpr QLatin1String kEnquire("enquire");
/// Ends what runs in the instrument. Written on its own, never behind a lone blank.
inline constexpr QLatin1String kStop("y");

} // namespace command
