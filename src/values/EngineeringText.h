// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

/// Numbers as people of the field write them and as the program shows them, with suffixes, prefixes and units.
namespace values {

/// Largest number ParseEngineeringValue gives. There is no smallest.
inline constexpr double kLargestParsedValue = 2147483646.0;

/// The number meant by a text as people write component values, as ordinary decimal text: "4k7" is 4700, "2M2" 2200000.
/// The text is trimmed in place. A "-" anywhere negates. Digits count, the first decimal point counts, suffix letters
/// scale and take the place of the point (k K M g G t T c C, m u n p, and a for 1e-15); all else is skipped. Several
/// suffixes multiply. Never fails: no digit gives "0".
QString ParseEngineeringValue(QString& strValue);

/// The number that was typed into a box: as above, with a comma as decimal point, or with an exponent ("1.5E3").
/// Nothing for a text without a digit and for an "E" that makes no exponent.
std::optional<double> enteredNumber(const QString& text);

/// The strict reading for command lines: a number as "40000", "4.2e4", "42k", "4k7" or "2.2M", with or without "Hz"
/// behind it; nothing for anything else.
std::optional<double> frequencyOf(const QString& text);

/// A value with an engineering prefix from "p" to "T" before its unit: "39.982 kHz", "24.1 Ohm". At most that many
/// significant digits (1 or more); trailing zeros go, and so does the sign of zero.
QString engineeringText(double value, const QString& unit, int significant);

/// 1 or 0, for commands.
int BoolToDigit(bool bfValue);

/// A short text made without allocation: a status panel changes with every measured point.
class StatusText
{
public:
    operator std::string_view() const { return {m_buffer.data(), m_length}; }
    operator QString() const { return QString::fromLatin1(m_buffer.data(), static_cast<qsizetype>(m_length)); }

private:
    friend class StatusTextWriter;
    std::array<char, 64> m_buffer{}; // the longest number and what stands about it
    std::size_t m_length = 0;
};

// Status texts: the ordinary decimal text and the unit.
StatusText frequencyText(double hertz);         ///< " Hz"
StatusText pointsText(double points);           ///< " pts"
StatusText progressText(int point, int points); ///< point, "/", points, " pts"
StatusText millisecondsText(double ms);         ///< " mS"
/// " dB", of a level that was multiplied or measured: at most six significant digits, never "-0".
StatusText decibelText(double dB);
/// The level an attenuator's step stands for: minus code times step, as decibelText.
StatusText attenuationText(int code, double dblAttenuationStep);

} // namespace values
