// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

/// The eleven shades of the graticule, from light (0) to dark (10).
namespace GraticuleShade {

/// The first stop whose colour has exactly this text; stop 0 when none has.
int stopOf(const QString& text);

/// Nothing for a stop outside 0 to 10.
std::optional<std::uint32_t> colourOf(int stop);

} // namespace GraticuleShade
