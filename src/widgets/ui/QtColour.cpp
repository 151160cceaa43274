// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ui/QtColour.h"

#include "values/Colours.h"

QColor toQColor(std::uint32_t lColour)
{
    const colours::Components parts = colours::componentsOf(lColour);
    return QColor(parts.red, parts.green, parts.blue);
}

std::uint32_t fromQColor(const QColor& colour)
{
    return colours::fromComponents({colour.red(), colour.green(), colour.blue()});
}
