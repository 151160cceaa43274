// SPDX-License-Identifier: GPL-3.0-or-later
#include "values/Colours.h"

namespace colours {
namespace {

constexpr int kGreenShift = 8;
constexpr int kBlueShift = 16;
constexpr std::uint32_t kColourBits = 0xFFFFFF;

constexpr int byteAt(std::uint32_t colour, int shift)
{
    return static_cast<int>(colour >> shift & 0xFF);
}

std::int16_t component(std::int32_t colour, int shift)
{
    const bool isColour = colour >= kBlack && colour <= kWhite;
    return static_cast<std::int16_t>(isColour ? byteAt(static_cast<std::uint32_t>(colour), shift) : -1);
}

} // namespace

std::int16_t ColourRed(std::int32_t lColour)
{
    return component(lColour, 0);
}

std::int16_t ColourGreen(std::int32_t lColour)
{
    return component(lColour, kGreenShift);
}

std::int16_t ColourBlue(std::int32_t lColour)
{
    return component(lColour, kBlueShift);
}

std::int32_t ContrastColour(std::int32_t lColour)
{
    const int weight = 5 * ColourGreen(lColour) + 2 * ColourRed(lColour) + ColourBlue(lColour);
    return weight < 401 ? kWhite : kBlack;
}

Components componentsOf(std::uint32_t lColour)
{
    return {byteAt(lColour, 0), byteAt(lColour, kGreenShift), byteAt(lColour, kBlueShift)};
}

std::uint32_t fromComponents(const Components& components)
{
    const auto byte = [](int value) { return static_cast<std::uint32_t>(value) & 0xFFu; };
    return byte(components.red) | byte(components.green) << kGreenShift | byte(components.blue) << kBlueShift;
}

std::uint32_t labelTextColour(std::uint32_t lColour)
{
    return static_cast<std::uint32_t>(ContrastColour(static_cast<std::int32_t>(lColour & kColourBits)));
}

QString colourText(std::uint32_t lColour)
{
    const Components parts = componentsOf(lColour);
    return QString::asprintf("#%02x%02x%02x", static_cast<unsigned>(parts.red), static_cast<unsigned>(parts.green),
                             static_cast<unsigned>(parts.blue));
}

} // namespace colours
