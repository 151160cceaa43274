// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

#include <cstdint>

/// The program's colours (0x00BBGGRR) as the toolkit's, opaque, and back. The highest byte does not count.
QColor toQColor(std::uint32_t lColour);
std::uint32_t fromQColor(const QColor& colour);
