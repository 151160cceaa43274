// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/Noise.h"

#include "controls/resonance/Sums.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace resonance {

/// The middle one by size, as std::nth_element has it.
double NoiseEstimator::medianOf(const std::vector<double>& values)
{
    constexpr std::size_t kSample = 31;
    constexpr std::size_t kMargin = 7; // two and a half deviations of the rank in the sample
    std::size_t rank = values.size() / 2;
    m_scratch.resize(values.size());
    std::size_t inside = 0;
    if (values.size() >= 4 * kSample) {
        // A sample tells between which values the middle lies; only those are sorted.
        std::array<double, kSample> sample;
        for (std::size_t i = 0; i < kSample; ++i)
            sample[i] = values[i * values.size() / kSample];
        std::sort(sample.begin(), sample.end());
        const double low = sample[kSample / 2 - kMargin];
        const double high = sample[kSample / 2 + kMargin];
        std::size_t below = 0;
        for (const double value : values) {
            m_scratch[inside] = value;
            inside += static_cast<std::size_t>(value >= low) & static_cast<std::size_t>(value <= high);
            below += static_cast<std::size_t>(value < low);
            if (inside == m_scratch.size())
                break;
        }
        if (rank >= below && rank - below < inside)
            rank -= below;
        else
            inside = 0;
    }
    if (inside == 0) {
        std::copy(values.begin(), values.end(), m_scratch.begin());
        inside = values.size();
    }
    const auto middle = m_scratch.begin() + static_cast<std::ptrdiff_t>(rank);
    std::nth_element(m_scratch.begin(), middle, m_scratch.begin() + static_cast<std::ptrdiff_t>(inside));
    return *middle;
}

Noise NoiseEstimator::estimate(const std::vector<double>& re, const std::vector<double>& im,
                               const std::vector<double>& modulusSquared)
{
    // Single precision is the least that a value can be wrong by.
    constexpr double kRounding = 3e-8 * 3e-8;
    // Neighbouring differences share three of four points: every second tells nearly as much.
    constexpr std::size_t kMany = 256;
    const std::size_t stride = re.size() > kMany ? 2 : 1;
    const std::size_t count = (re.size() - 4) / stride + 1;
    m_square.resize(count);
    m_level.resize(count);
    m_relative.resize(count);
    for (std::size_t k = 0; k < count; ++k) {
        const std::size_t i = k * stride;
        const double dr = re[i + 3] - re[i] + 3 * (re[i + 1] - re[i + 2]);
        const double di = im[i + 3] - im[i] + 3 * (im[i + 1] - im[i + 2]);
        m_square[k] = (dr * dr + di * di) / 20;
        m_level[k] =
            (modulusSquared[i] + modulusSquared[i + 3] + 9 * (modulusSquared[i + 1] + modulusSquared[i + 2])) / 20;
    }
    const double middle = medianOf(m_level);
    for (std::size_t k = 0; k < count; ++k) {
        m_square[k] /= middle;
        m_level[k] /= middle;
    }

    // The share of constant noise is the one of largest likelihood; what is far off counts no more than three sigma.
    // The likelihood has one maximum: behind it there is nothing to look for.
    constexpr int kFalls = 2;
    int falls = 0;
    static constexpr std::array<double, 9> shares = {0, 1e-3, 1e-2, 0.05, 0.2, 0.5, 0.8, 0.95, 1};
    Noise best;
    double bestCost = std::numeric_limits<double>::infinity();
    for (const double share : shares) {
        const double logarithms =
            sums::relativeSquares(m_square.data(), m_level.data(), static_cast<int>(count), share, m_relative.data());
        const double scale = medianOf(m_relative) / (2 * std::numbers::ln2) + kRounding;
        const double cost = static_cast<double>(count) * std::log(scale) + logarithms +
                            sums::clipped(m_relative.data(), static_cast<int>(count), 0.5 / scale, 9);
        if (cost >= bestCost) {
            if (++falls == kFalls)
                break;
        } else {
            falls = 0;
            bestCost = cost;
            best = {scale * share * middle, scale * (1 - share) + kRounding};
        }
    }
    return best;
}

} // namespace resonance
