// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/Resonance.h"

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

/// Parts whose truth is known in closed form, and what an instrument would read of them.
namespace synthetic {

struct Arm
{
    double fs = 40e3; ///< Hz
    double q = 100;
    double g1 = 0.01; ///< S
};

struct Part
{
    std::vector<Arm> arms = std::vector<Arm>(1);
    double c0 = 0.001 / (2 * std::numbers::pi * 40e3); ///< F, M = 10 for the arm above
    double loss = 0;

    std::complex<double> operator()(double f) const
    {
        std::complex<double> y = std::complex<double>(loss, 1) * (2 * std::numbers::pi * f * c0);
        for (const Arm& arm : arms)
            y += arm.g1 / std::complex<double>(1, arm.q * (f / arm.fs - arm.fs / f));
        return y;
    }
};

inline std::vector<double> logarithmic(double low, double high, int points)
{
    std::vector<double> f;
    for (int i = 0; i < points; ++i)
        f.push_back(low * std::pow(high / low, i / (points - 1.0)));
    return f;
}

inline std::vector<double> linear(double low, double high, int points)
{
    std::vector<double> f;
    for (int i = 0; i < points; ++i)
        f.push_back(low + (high - low) * i / (points - 1.0));
    return f;
}

/// Noise is relative to the modulus; values are rounded to single precision, as the host keeps them.
template <typename Admittance>
std::vector<resonance::Sample> measured(const Admittance& part, const std::vector<double>& frequencies,
                                        double noise = 0, unsigned seed = 1)
{
    std::mt19937_64 random(seed);
    std::normal_distribution<double> normal;
    std::vector<resonance::Sample> samples;
    for (const double f : frequencies) {
        const double re = normal(random);
        const double im = normal(random);
        const std::complex<double> y = part(f) * (1.0 + noise * std::complex<double>(re, im) / std::numbers::sqrt2);
        samples.push_back({f, static_cast<float>(y.real()), static_cast<float>(y.imag())});
    }
    return samples;
}

} // namespace synthetic
