// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/Frame.h"

#include "values/Conversions.h"

namespace {

constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

} // namespace

bool Frame::ParseField(int pos, int len, std::int32_t& result) const noexcept
{
    const std::string_view field = columns(pos, len);
    // A count padded with blanks on the left is what instruments send; everything else takes the general road.
    std::size_t i = 0;
    while (i < field.size() && field[i] == ' ')
        ++i;
    std::int32_t value = 0;
    const std::size_t firstDigit = i;
    while (i < field.size() && isDigit(field[i]))
        value = value * 10 + (field[i++] - '0');
    if (i == field.size() && i > firstDigit) {
        result = value;
        return true;
    }
    if (field == "A") {
        result = 10;
        return true;
    }
    const auto strict = values::strictInt32(field);
    if (!strict)
        return false;
    result = *strict;
    return true;
}

void Frame::ParseNumber(int pos, double& result) const noexcept
{
    constexpr int kNumberWidth = 13;
    const char* p = m_bytes.data() + pos - 1;
    const char* const end = p + kNumberWidth;
    const std::string_view field(p, kNumberWidth);
    // Right-justified plain decimals are what instruments send. Thirteen digits and the power of ten are exact in a
    // double, so that the one division rounds correctly; everything else takes the general road.
    while (p != end && *p == ' ')
        ++p;
    const bool negative = p != end && *p == '-';
    p += negative ? 1 : 0;
    std::uint64_t mantissa = 0;
    const char* const digits = p;
    while (p != end && isDigit(*p))
        mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p++ - '0');
    int fraction = 0;
    if (p != end && *p == '.' && p != digits) {
        const char* const point = p++;
        while (p != end && isDigit(*p))
            mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p++ - '0');
        fraction = static_cast<int>(p - point) - 1;
    }
    if (p != end || p == digits) {
        result = values::tolerantNumber(field);
        return;
    }
    const double magnitude = static_cast<double>(mantissa) / kPowersOfTen[fraction];
    result = negative ? -magnitude : magnitude;
}

void Frame::ParseText(QString& result) const
{
    constexpr int kTextColumn = 5;
    constexpr int kTextWidth = 61;
    std::string_view text = columns(kTextColumn, kTextWidth);
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    result = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}
