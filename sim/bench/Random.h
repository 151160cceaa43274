// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/SplitMix.h"

namespace sim {

/// A stream of random numbers, the same for the same seed.
class Random
{
public:
    explicit Random(std::uint64_t seed)
        : m_state(seed)
    {}

    std::uint64_t next()
    {
        m_state += splitmix::kGamma;
        return splitmix::scramble(m_state);
    }
    /// From 0 to limit - 1; limit above 0.
    std::uint64_t below(std::uint64_t limit) { return next() % limit; }
    /// From low to below high.
    double uniform(double low, double high) { return low + (high - low) * static_cast<double>(next() >> 11) * 0x1p-53; }
    /// True once in that many calls on average; never for 0.
    bool onceIn(std::uint64_t calls) { return calls != 0 && below(calls) == 0; }

private:
    std::uint64_t m_state;
};

} // namespace sim
