// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <vector>

namespace resonance {

/// Noise of one component: variance a^2 + b^2 |Y|^2.
struct Noise
{
    double constant = 0;     ///< a^2
    double proportional = 0; ///< b^2

    double variance(double modulusSquared) const { return constant + proportional * modulusSquared; }
};

/// Estimates the noise from the third differences of a smooth complex curve.
class NoiseEstimator
{
public:
    /// The curve's two components and the squared modulus that the noise goes by; four points or more.
    Noise estimate(const std::vector<double>& re, const std::vector<double>& im,
                   const std::vector<double>& modulusSquared);

private:
    double medianOf(const std::vector<double>& values);

    std::vector<double> m_square;   ///< squared modulus of a third difference, over 20
    std::vector<double> m_level;    ///< mean squared modulus of its points
    std::vector<double> m_relative; ///< squares over their variance, up to a factor
    std::vector<double> m_scratch;
};

} // namespace resonance
