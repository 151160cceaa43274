// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

/// The three conversions between numbers and text that the whole program uses. None depends on the locale: the decimal
/// point is ".", there are no group separators. None allocates unless it returns a QString.
namespace values {

/// Tolerant conversion: leading blanks (space, tab) skipped, then the longest numeric prefix
/// (sign, digits, ".", digits, exponent with "e" or "E"); 0 when there is none. Never fails; overflow gives +-infinity.
/// "inf" and "nan" are not numbers.
double tolerantNumber(std::string_view text) noexcept;
double tolerantNumber(QStringView text);

/// Strict conversion: the whole text, blanks around it allowed, must be one number that a double can hold; anything
/// else is nothing.
std::optional<double> strictNumber(std::string_view text) noexcept;
std::optional<double> strictNumber(QStringView text);

/// Strict conversion to an integer: a fraction is rounded half to even. Nothing when the text is no number or the
/// rounded number does not fit.
std::optional<std::int16_t> strictInt16(std::string_view text) noexcept;
std::optional<std::int16_t> strictInt16(QStringView text);
std::optional<std::int32_t> strictInt32(std::string_view text) noexcept;
std::optional<std::int32_t> strictInt32(QStringView text);

/// Strict conversion to a flag: "True" and "False" whatever the case, or a number (0 is false).
std::optional<bool> strictBool(QStringView text);

/// Half to even, clamped to the range of the type; not a number gives 0.
std::int16_t roundToInt16(double value) noexcept;
std::int32_t roundToInt32(double value) noexcept;

/// Enough for any decimal text below, without a terminating zero.
inline constexpr std::size_t kDecimalTextSize = 32;

/// Ordinary decimal text: the shortest text that reads back to the same value; never an exponent between 1e-7 and 1e15;
/// "-0" is written "0"; non-finite values are written "inf", "-inf", "nan", which the conversions above do not read
/// back.
QString decimalText(double value);
QString decimalText(float value);
QString decimalText(int value);
/// The same into a buffer of at least kDecimalTextSize characters; returns the length.
std::size_t writeDecimal(double value, char* buffer) noexcept;
std::size_t writeDecimal(float value, char* buffer) noexcept;
/// For commands to the instrument: as decimalText, but never an exponent, whatever the magnitude.
QString plainDecimalText(double value);

/// "True" or "False", the text form of a flag in settings.
QString booleanText(bool value);

} // namespace values
