// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace values {

/// Writes a float above 0 as std::to_chars writes it in its shortest fixed form, in half of the time, without a
/// terminating zero. Returns the number of characters, at most 17, of the 32 that the buffer has at least; what is
/// behind them is undefined. 0 for what it leaves to std::to_chars: below 1e-7, above 1e15, powers of two, what is no
/// finite number above 0.
std::size_t writeShortestPlain(float value, char* buffer) noexcept;

} // namespace values
