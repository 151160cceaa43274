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

} // namespace sim
