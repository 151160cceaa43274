// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/Noise.h"

#include <cmath>
#include <numbers>

namespace sim {

namespace {

std::uint64_t scramble(std::uint64_t x)
{
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9ULL;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebULL;
    return x ^ (x >> 31);
}

constexpr std::uint64_t kGamma = 0x9e3779b97f4a7c15ULL;

/// In (0, 1], so that its logarithm exists.
double unit(std::uint64_t bits)
{
    return static_cast<double>((bits >> 11) + 1) * 0x1p-53;
}

} // namespace

double Noise::gaussian(std::uint64_t run, std::uint64_t point, std::uint32_t channel) const
{
    std::uint64_t key = scramble(m_seed + kGamma);
    key = scramble(key ^ (run + kGamma));
    key = scramble(key ^ (point * kGamma + channel));
    const double radius = std::sqrt(-2.0 * std::log(unit(key)));
    return radius * std::cos(2.0 * std::numbers::pi * unit(scramble(key + kGamma)));
}

std::uint64_t Random::next()
{
    m_state += kGamma;
    return scramble(m_state);
}

double Random::uniform(double low, double high)
{
    return low + (high - low) * static_cast<double>(next() >> 11) * 0x1p-53;
}

} // namespace sim
