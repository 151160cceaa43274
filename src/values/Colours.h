// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>

/// Colours as the program and its files keep them: 0x00BBGGRR, red is the low byte.
namespace colours {

inline constexpr std::int32_t kWhite = 0xFFFFFF;
inline constexpr std::int32_t kBlack = 0;

/// Components 0 to 255; -1 for a value that is no colour (below 0 or above 0xFFFFFF).
std::int16_t ColourRed(std::int32_t lColour);
std::int16_t ColourGreen(std::int32_t lColour);
std::int16_t ColourBlue(std::int32_t lColour);
/// White or black, whichever is readable on the colour; white for a value that is no colour.
std::int32_t ContrastColour(std::int32_t lColour);

struct Components
{
    int red = 0; ///< each 0 to 255
    int green = 0;
    int blue = 0;
    friend bool operator==(const Components&, const Components&) = default;
};
/// Of a stored colour, which always is one: its highest byte does not count.
Components componentsOf(std::uint32_t lColour);
/// Of each component the low eight bits count.
std::uint32_t fromComponents(const Components& components);

/// The contrast colour for a text on a stored colour, the number of a pen on its label for one.
std::uint32_t labelTextColour(std::uint32_t lColour);
/// "#rrggbb", as pages and other programs write a colour.
QString colourText(std::uint32_t lColour);

} // namespace colours
