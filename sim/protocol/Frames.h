// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace sim {

inline constexpr std::size_t kFrameSize = 67;
inline constexpr std::size_t kNumberWidth = 13;
inline constexpr std::size_t kTextWidth = 61;

/// One frame as it goes over the wire: code, ":", F, then N1 to N4 (13 columns each, columns 5, 19, 33, 47) and I (5
/// columns at 61), or a text in columns 5 to 65; carriage return at column 66, line feed at 67. Separators are blanks.
using Frame = std::array<char, kFrameSize>;

struct FrameNumbers
{
    double n1 = 0;
    double n2 = 0;
    double n3 = 0;
    double n4 = 0;
    int i = 0; ///< kept within -9999 to 99999
};

/// F is 0 to 10; 10 is written "A". Anything else is written "0".
Frame numberFrame(char code, int field, const FrameNumbers& numbers);
/// Blanks behind the text; what does not fit is cut, a character that is no printable ASCII becomes "?".
Frame textFrame(char code, int field, std::string_view text);
/// As textFrame, with any printable character in column 3.
Frame selectorFrame(char code, char selector, std::string_view text);

/// Writes the number right-aligned into 13 columns with as many significant digits as fit: at least nine for 0 and for
/// magnitudes from 0.001 to 9 999 999 999 (so a single precision value reads back as itself), plain decimals there, an
/// exponent only where that keeps more digits. Not a number is written 0.
void writeNumber(double value, char* columns);

inline char frameCode(const Frame& frame)
{
    return frame[0];
}

} // namespace sim
