// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

namespace sim {

using Duration = std::chrono::nanoseconds;
/// Time since an origin of the caller's choice; it only has to run forwards. Nothing in the simulation reads a clock by
/// itself except the program's run loop, so tests drive time by hand.
using Moment = std::chrono::nanoseconds;

constexpr Duration secondsToDuration(double seconds)
{
    return Duration(static_cast<Duration::rep>(seconds * 1e9));
}

} // namespace sim
