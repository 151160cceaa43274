// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/rules/Frame.h"

#include "values/Conversions.h"

#include <charconv>
#include <cmath>

bool Frame::ParseField(int pos, int len, std::int32_t& result) const noexcept
{
    constexpr std::int32_t kTenth = 10; // what the letter stands for, so that a pen fits into one column
    const std::string_view field = columns(pos, len);
    if (const auto strict = values::strictInt32(field))
        result = *strict;
    else if (field == "A")
        result = kTenth;
    else
        return false;
    return true;
}

void Frame::ParseNumber(int pos, double& result) const noexcept
{
    constexpr int kNumberWidth = 13;
    result = values::tolerantNumber(columns(pos, kNumberWidth));
}

bool Frame::isNumber(int n) const noexcept
{
    std::string_view field = columns(5 + 14 * (n - 1), 13);
    while (!field.empty() && field.front() == ' ')
        field.remove_prefix(1);
    while (!field.empty() && field.back() == ' ')
        field.remove_suffix(1);
    if (field.size() > 1 && field.front() == '+')
        field.remove_prefix(1);
    double number = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    return error == std::errc() && end == field.data() + field.size() && std::isfinite(number);
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
