// SPDX-License-Identifier: GPL-3.0-or-later
#include "values/Conversions.h"

#include "values/FloatText.h"

#include <QVarLengthArray>

#include <charconv>
#include <cmath>
#include <limits>
#include <type_traits>

namespace values {
namespace {

constexpr bool isBlank(char c) noexcept
{
    return c == ' ' || c == '\t';
}

constexpr unsigned digitOf(char c) noexcept
{
    return static_cast<unsigned>(static_cast<unsigned char>(c)) - '0';
}

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kExactPower = 22; // 10^22 is the largest power of ten that a double holds exactly
constexpr std::uint64_t kExactMantissa = std::uint64_t{1} << 53;
constexpr int kMantissaDigits = 19;         // as many as a 64-bit integer surely holds
constexpr int kExponentBound = 100'000'000; // one more digit still fits into an int

struct Parsed
{
    double value = 0;
    const char* end = nullptr; ///< behind the last character used; null when there is no number
};

/// The rare case: more digits or a larger power of ten than plain arithmetic can do without a second rounding.
/// [begin, end) is an unsigned decimal, `order` the power of ten of its first significant digit, roughly.
double roundExactly(const char* begin, const char* end, bool isZero, int order) noexcept
{
    if (isZero)
        return 0;
    double value = 0;
    if (std::from_chars(begin, end, value).ec == std::errc::result_out_of_range)
        return order > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return value;
}

/// The number at the start of [begin, end), blanks already skipped.
inline Parsed parseNumber(const char* begin, const char* end) noexcept
{
    const char* p = begin;
    bool negative = false;
    if (p != end && (*p == '-' || *p == '+'))
        negative = *p++ == '-';

    const char* const unsignedBegin = p;
    std::uint64_t mantissa = 0;
    unsigned digit = 0;
    while (p != end && (digit = digitOf(*p)) <= 9) {
        mantissa = mantissa * 10 + digit; // may wrap: found out below by the count of characters
        ++p;
    }
    auto digits = p - unsignedBegin;
    std::ptrdiff_t fraction = 0;
    if (p != end && *p == '.') {
        const char* const point = p++;
        while (p != end && (digit = digitOf(*p)) <= 9) {
            mantissa = mantissa * 10 + digit;
            ++p;
        }
        fraction = p - point - 1;
        digits += fraction;
    }
    if (digits == 0)
        return {};

    int exponent = 0;
    if (p != end && (*p == 'e' || *p == 'E')) {
        const char* q = p + 1;
        bool negativeExponent = false;
        if (q != end && (*q == '-' || *q == '+'))
            negativeExponent = *q++ == '-';
        if (q != end && digitOf(*q) <= 9) {
            while (q != end && (digit = digitOf(*q)) <= 9) {
                if (exponent < kExponentBound)
                    exponent = exponent * 10 + static_cast<int>(digit);
                ++q;
            }
            if (negativeExponent)
                exponent = -exponent;
            p = q;
        }
    }

    double value = 0;
    const std::ptrdiff_t power = exponent - fraction;
    if (digits <= kMantissaDigits && mantissa <= kExactMantissa && power >= -kExactPower && power <= kExactPower) {
        // Both operands are exact, so the one operation rounds correctly.
        value = static_cast<double>(mantissa);
        if (power < 0)
            value /= kPowersOfTen[-power];
        else
            value *= kPowersOfTen[power];
    } else {
        const char* significant = unsignedBegin;
        std::ptrdiff_t integerDigits = digits - fraction;
        while (significant != p && (*significant == '0' || *significant == '.')) {
            if (*significant != '.')
                --integerDigits;
            ++significant;
        }
        const bool isZero = significant == p || digitOf(*significant) > 9;
        const std::ptrdiff_t order = exponent + integerDigits;
        value = roundExactly(unsignedBegin, p, isZero, order > 0 ? 1 : -1);
    }
    return {negative ? -value : value, p};
}

std::string_view withoutBlanks(std::string_view text) noexcept
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// The text one character for one; what is not ASCII becomes a character no number holds.
using AsciiText = QVarLengthArray<char, 64>;
AsciiText toAscii(QStringView text)
{
    AsciiText ascii(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        ascii[i] = unit < 128 ? static_cast<char>(unit) : '?';
    }
    return ascii;
}

std::string_view viewOf(const AsciiText& ascii)
{
    return {ascii.data(), static_cast<std::size_t>(ascii.size())};
}

template <typename T>
std::optional<T> strictInteger(std::string_view text) noexcept
{
    const std::optional<double> number = strictNumber(text);
    if (!number)
        return {};
    const double rounded = std::nearbyint(*number);
    if (!(rounded >= std::numeric_limits<T>::min() && rounded <= std::numeric_limits<T>::max()))
        return {};
    return static_cast<T>(rounded);
}

template <typename T>
T roundClamped(double value) noexcept
{
    if (std::isnan(value))
        return 0;
    if (value <= std::numeric_limits<T>::min())
        return std::numeric_limits<T>::min();
    if (value >= std::numeric_limits<T>::max())
        return std::numeric_limits<T>::max();
    return static_cast<T>(std::nearbyint(value));
}

std::size_t copyText(std::string_view text, char* buffer) noexcept
{
    text.copy(buffer, text.size());
    return text.size();
}

template <typename T>
std::size_t writeShortest(T value, char* buffer) noexcept
{
    if (std::isnan(value))
        return copyText("nan", buffer);
    if (std::isinf(value))
        return copyText(value < 0 ? "-inf" : "inf", buffer);
    if (value == 0)
        return copyText("0", buffer);
    const T magnitude = std::fabs(value);
    if constexpr (std::is_same_v<T, float>) {
        const std::size_t sign = std::signbit(value) ? copyText("-", buffer) : 0;
        if (const std::size_t length = writeShortestPlain(magnitude, buffer + sign); length > 0)
            return sign + length;
    }
    const bool plain = magnitude >= T(1e-7) && magnitude <= T(1e15);
    const auto format = plain ? std::chars_format::fixed : std::chars_format::scientific;
    return static_cast<std::size_t>(std::to_chars(buffer, buffer + kDecimalTextSize, value, format).ptr - buffer);
}

template <typename T>
QString shortestText(T value)
{
    char buffer[kDecimalTextSize];
    return QString::fromLatin1(buffer, static_cast<qsizetype>(writeShortest(value, buffer)));
}

} // namespace

double tolerantNumber(std::string_view text) noexcept
{
    const char* p = text.data();
    const char* const end = p + text.size();
    while (p != end && isBlank(*p))
        ++p;
    return parseNumber(p, end).value;
}

double tolerantNumber(QStringView text)
{
    return tolerantNumber(viewOf(toAscii(text)));
}

std::optional<double> strictNumber(std::string_view text) noexcept
{
    const std::string_view number = withoutBlanks(text);
    const char* const end = number.data() + number.size();
    const Parsed parsed = parseNumber(number.data(), end);
    if (parsed.end == nullptr || parsed.end != end || std::isinf(parsed.value))
        return {};
    return parsed.value;
}

std::optional<double> strictNumber(QStringView text)
{
    return strictNumber(viewOf(toAscii(text)));
}

std::optional<std::int16_t> strictInt16(std::string_view text) noexcept
{
    return strictInteger<std::int16_t>(text);
}

std::optional<std::int16_t> strictInt16(QStringView text)
{
    return strictInt16(viewOf(toAscii(text)));
}

std::optional<std::int32_t> strictInt32(std::string_view text) noexcept
{
    return strictInteger<std::int32_t>(text);
}

std::optional<std::int32_t> strictInt32(QStringView text)
{
    return strictInt32(viewOf(toAscii(text)));
}

std::optional<bool> strictBool(QStringView text)
{
    const QStringView word = text.trimmed();
    if (word.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (word.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    const std::optional<double> number = strictNumber(text);
    if (!number)
        return {};
    return *number != 0;
}

std::int16_t roundToInt16(double value) noexcept
{
    return roundClamped<std::int16_t>(value);
}

std::int32_t roundToInt32(double value) noexcept
{
    return roundClamped<std::int32_t>(value);
}

QString decimalText(double value)
{
    return shortestText(value);
}

QString decimalText(float value)
{
    return shortestText(value);
}

QString decimalText(int value)
{
    return QString::number(value);
}

std::size_t writeDecimal(double value, char* buffer) noexcept
{
    return writeShortest(value, buffer);
}

std::size_t writeDecimal(float value, char* buffer) noexcept
{
    return writeShortest(value, buffer);
}

QString plainDecimalText(double value)
{
    if (!std::isfinite(value) || value == 0)
        return shortestText(value);
    char buffer[512]; // the longest is the smallest subnormal: sign, "0.", 323 zeros, digits
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    return QString::fromLatin1(buffer, static_cast<qsizetype>(written.ptr - buffer));
}

QString booleanText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

} // namespace values
