// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>
#include <utility>

/// Readers of what stands behind a command word. Nothing for a text that is not what is wanted.
namespace sim::argument {

std::optional<double> number(std::string_view text);
/// To the nearest whole number within the bounds; halves go to the even one.
std::optional<int> wholeNumber(std::string_view text, int low, int high);
/// Any number but 0 is true.
std::optional<bool> flag(std::string_view text);
/// "1.28" of an enquiry.
std::optional<std::pair<int, int>> version(std::string_view text);

struct Pin
{
    int pin = 1; ///< 1 or 2
    int pen = 0; ///< the user's number, 1 to 10; 0 when none was told
};
/// The pin's digit with the pen's number directly behind it: "23" is pin 2 for pen 3, "110" is pin 1 for pen 10, "2" is
/// pin 2 with no pen told.
std::optional<Pin> pin(std::string_view text);

} // namespace sim::argument
