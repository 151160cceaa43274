// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/Noise.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace resonance {
namespace {

double medianOf(std::vector<double>& values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

} // namespace

Noise NoiseEstimator::estimate(const std::vector<double>& re, const std::vector<double>& im,
                               const std::vector<double>& modulusSquared)
{
    // Single precision is the least that a value can be wrong by.
    constexpr double kRounding = 3e-8 * 3e-8;
    const std::size_t count = re.size() - 3;
    m_square.resize(count);
    m_level.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double dr = re[i + 3] - re[i] + 3 * (re[i + 1] - re[i + 2]);
        const double di = im[i + 3] - im[i] + 3 * (im[i + 1] - im[i + 2]);
        m_square[i] = (dr * dr + di * di) / 20;
        m_level[i] =
            (modulusSquared[i] + modulusSquared[i + 3] + 9 * (modulusSquared[i + 1] + modulusSquared[i + 2])) / 20;
    }
    m_scratch = m_level;
    const double middle = medianOf(m_scratch);

    // The share of constant noise is the one of largest likelihood; what is far off counts no more than three sigma.
    static constexpr std::array<double, 9> shares = {0, 1e-3, 1e-2, 0.05, 0.2, 0.5, 0.8, 0.95, 1};
    Noise best;
    double bestCost = std::numeric_limits<double>::infinity();
    for (const double share : shares) {
        for (std::size_t i = 0; i < count; ++i)
            m_scratch[i] = m_square[i] / (share * middle + (1 - share) * m_level[i]);
        const double scale = medianOf(m_scratch) / (2 * std::numbers::ln2) + kRounding;
        double cost = 0;
        double product = 1; // the logarithm is taken of several factors at once
        for (std::size_t i = 0; i < count; ++i) {
            const double variance = scale * (share + (1 - share) * (m_level[i] / middle));
            product *= variance;
            if (product < 1e-200 || product > 1e200 || i % 4 == 3) {
                cost += std::log(product);
                product = 1;
            }
            cost += std::min(m_square[i] / (2 * variance * middle), 9.0);
        }
        cost += std::log(product);
        if (cost < bestCost) {
            bestCost = cost;
            best = {scale * share * middle, scale * (1 - share) + kRounding};
        }
    }
    return best;
}

} // namespace resonance
