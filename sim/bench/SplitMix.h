// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// The mixing function of SplitMix64 (Steele, Lea and Flood, 2014).
namespace sim::splitmix {

inline constexpr std::uint64_t kGamma = 0x9e3779b97f4a7c15ULL;

constexpr std::uint64_t scramble(std::uint64_t x)
{
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

} // namespace sim::splitmix
