// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/CommandArguments.h"

#include "values/Conversions.h"

#include <algorithm>
#include <cmath>

namespace sim::argument {

std::optional<double> number(std::string_view text)
{
    const std::optional<double> value = values::strictNumber(text);
    return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<int> wholeNumber(std::string_view text, int low, int high)
{
    const std::optional<double> value = number(text);
    if (!value)
        return {};
    return static_cast<int>(std::clamp(std::nearbyint(*value), static_cast<double>(low), static_cast<double>(high)));
}

std::optional<bool> flag(std::string_view text)
{
    const std::optional<double> value = number(text);
    if (!value)
        return {};
    return *value != 0;
}

std::optional<std::pair<int, int>> version(std::string_view text)
{
    const std::size_t dot = text.find('.');
    if (dot == std::string_view::npos)
        return {};
    const std::optional<std::int32_t> major = values::strictInt32(text.substr(0, dot));
    const std::optional<std::int32_t> minor = values::strictInt32(text.substr(dot + 1));
    if (!major || !minor)
        return {};
    return std::pair(*major, *minor);
}

std::optional<Pin> pin(std::string_view text)
{
    if (text.empty() || (text[0] != '1' && text[0] != '2'))
        return {};
    const int pin = text[0] - '0';
    const std::string_view pen = text.substr(1);
    if (pen.empty())
        return Pin{pin, 0};
    if (pen == "10")
        return Pin{pin, 10};
    if (pen.size() == 1 && pen[0] >= '1' && pen[0] <= '9')
        return Pin{pin, pen[0] - '0'};
    return {};
}

} // namespace sim::argument
