// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/Resonance.h"

#include <cstddef>
#include <vector>

namespace resonance {

/// A sweep made ready: rising frequencies, all finite, equal ones averaged, turned to positive resistance.
class Sweep
{
public:
    /// Keeps its memory from one call to the next.
    void load(const std::vector<Sample>& samples);
    /// Three or more neighbours at the top of conductance or modulus are an instrument at its limit.
    void leaveOutPlateau();
    void conjugate();

    std::size_t size() const { return f.size(); }
    double modulusSquared(std::size_t i) const { return g[i] * g[i] + b[i] * b[i]; }

    std::vector<double> f; ///< Hz
    std::vector<double> g; ///< S
    std::vector<double> b; ///< S
    std::uint32_t flags = 0;
    int leftOut = 0;

private:
    void sort();
    void averageEqual();
    void turn();

    struct Placed
    {
        Sample sample;
        std::size_t place; ///< among the samples given: equal frequencies stay in their order
    };

    std::vector<Sample> m_sorted;
    std::vector<Placed> m_placed;
    std::vector<double> m_scratch;
};

} // namespace resonance
