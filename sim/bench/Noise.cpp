// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/Noise.h"

#include "sim/bench/SplitMix.h"

#include <cmath>
#include <numbers>

namespace sim {

namespace {

/// In (0, 1], so that its logarithm exists.
double unit(std::uint64_t bits)
{
    return static_cast<double>((bits >> 11) + 1) * 0x1p-53;
}

} // namespace

double Noise::gaussian(std::uint64_t run, std::uint64_t point, std::uint32_t channel) const
{
    std::uint64_t key = splitmix::scramble(m_seed + splitmix::kGamma);
    key = splitmix::scramble(key ^ (run + splitmix::kGamma));
    key = splitmix::scramble(key ^ (point * splitmix::kGamma + channel));
    const double radius = std::sqrt(-2.0 * std::log(unit(key)));
    return radius * std::cos(2.0 * std::numbers::pi * unit(splitmix::scramble(key + splitmix::kGamma)));
}

} // namespace sim
