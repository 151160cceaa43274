// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/controls/resonance/SyntheticPart.h"

#include <bit>

namespace synthetic {

constexpr int kPoints = 1024; ///< as many as a pen holds

/// Sweeps that no part gives: many peaks, close peaks, steps, spikes, plateaus, wild numbers.
inline std::vector<resonance::Sample> wild(unsigned seed)
{
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> uniform;
    std::normal_distribution<double> normal;
    std::vector<resonance::Sample> samples;
    const unsigned kind = seed % 8;
    Part part;
    part.arms.clear();
    const int arms = kind < 3 ? 1 + static_cast<int>(12 * uniform(random)) : 0;
    for (int k = 0; k < arms; ++k)
        part.arms.push_back({40e3 * std::exp((kind == 1 ? 0.02 : 0.5) * normal(random)),
                             10 * std::pow(1000, uniform(random)), 0.001 * std::exp(normal(random))});
    double walk = 1;
    for (int i = 0; i < kPoints; ++i) {
        const double f = 20e3 * std::pow(4, i / (kPoints - 1.0));
        resonance::Sample sample{f, 1, 1};
        if (kind < 3) {
            const std::complex<double> y = part(f) * (1.0 + 1e-4 * normal(random));
            sample.conductance = y.real() + (kind == 2 ? 1e-3 * uniform(random) : 0);
            sample.susceptance = y.imag();
        } else if (kind == 3) { // any bits at all
            sample = {std::bit_cast<double>(random()), std::bit_cast<double>(random()),
                      std::bit_cast<double>(random())};
        } else if (kind == 4) { // spikes
            sample.conductance = uniform(random) < 0.02 ? 100 * uniform(random) : 1e-3;
            sample.susceptance = normal(random);
        } else if (kind == 5) { // a random walk over many decades
            walk *= std::exp(0.5 * normal(random));
            sample.conductance = walk;
            sample.susceptance = walk * normal(random);
        } else if (kind == 6) { // a comb
            sample.conductance = i % 3 == 0 ? 1 + 0.01 * i : 0.01;
            sample.susceptance = i % 2 == 0 ? 1 : -1;
        } else { // few frequencies, any order
            sample.frequency = 20e3 + std::floor(50 * uniform(random));
            sample.conductance = std::exp(20 * normal(random));
            sample.susceptance = -sample.conductance;
        }
        samples.push_back(sample);
    }
    return samples;
}

} // namespace synthetic
