// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace sim {

/// Measurement noise that depends on nothing but the seed and on where it is asked for: the same point of the same run
/// has the same noise however fast the run goes and whatever was measured in between.
class Noise
{
public:
    explicit Noise(std::uint64_t seed)
        : m_seed(seed)
    {}

    /// Normally distributed, mean 0, standard deviation 1.
    double gaussian(std::uint64_t run, std::uint64_t point, std::uint32_t channel) const;

private:
    std::uint64_t m_seed;
};

/// A stream of random numbers (SplitMix64 of Steele, Lea and Flood, 2014).
class Random
{
public:
    explicit Random(std::uint64_t seed)
        : m_state(seed)
    {}

    std::uint64_t next();
    /// From 0 to limit - 1; limit above 0.
    std::uint64_t below(std::uint64_t limit) { return next() % limit; }
    /// From low to below high.
    double uniform(double low, double high);
    /// True once in that many calls on average; never for 0.
    bool onceIn(std::uint64_t calls) { return calls != 0 && below(calls) == 0; }

private:
    std::uint64_t m_state;
};

} // namespace sim
