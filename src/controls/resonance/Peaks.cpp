// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/Peaks.h"

#include <algorithm>
#include <cmath>

namespace resonance {
namespace {

constexpr std::size_t kMostPeaks = 8;

/// The lowest conductance met before a higher one than that of the point, going one way; the point's own at the end of
/// the sweep. The walk is bounded.
double valley(const Sweep& sweep, std::size_t from, int way)
{
    double lowest = sweep.g[from];
    for (std::size_t i = from; way < 0 ? i > 0 : i + 1 < sweep.size();) {
        way < 0 ? --i : ++i;
        if (sweep.g[i] > sweep.g[from])
            break;
        lowest = std::min(lowest, sweep.g[i]);
    }
    return lowest;
}

/// Distance to where the conductance falls below a level, between samples; 0 when it does not.
double distanceTo(const Sweep& sweep, std::size_t from, int way, double level)
{
    for (std::size_t i = from; way < 0 ? i > 0 : i + 1 < sweep.size();) {
        const std::size_t last = i;
        way < 0 ? --i : ++i;
        if (sweep.g[i] > level)
            continue;
        const double share = (sweep.g[last] - level) / std::max(sweep.g[last] - sweep.g[i], 1e-300);
        return std::abs(sweep.f[last] + share * (sweep.f[i] - sweep.f[last]) - sweep.f[from]);
    }
    return 0;
}

double widthOf(const Sweep& sweep, std::size_t index, double prominence)
{
    const double level = sweep.g[index] - prominence / 2;
    const double left = distanceTo(sweep, index, -1, level);
    const double right = distanceTo(sweep, index, 1, level);
    if (left > 0 && right > 0)
        return left + right;
    const double known = 2 * std::max(left, right);
    return known > 0 ? known : sweep.f.back() - sweep.f.front();
}

} // namespace

void findPeaks(const Sweep& sweep, const Noise& noise, std::vector<Peak>& peaks)
{
    peaks.clear();
    const std::size_t size = sweep.size();
    std::size_t highest = 0;
    double lowest = sweep.g[0];
    for (std::size_t i = 1; i < size; ++i) {
        if (sweep.g[i] > sweep.g[highest])
            highest = i;
        lowest = std::min(lowest, sweep.g[i]);
    }
    const double least = 0.01 * (sweep.g[highest] - lowest);
    if (!(least > 0))
        return;
    for (std::size_t i = 0; i < size; ++i) {
        const bool rises = i == 0 || sweep.g[i] > sweep.g[i - 1];
        const bool falls = i + 1 == size || sweep.g[i] >= sweep.g[i + 1];
        if (!rises || !falls)
            continue;
        const double threshold = std::max(least, 8 * std::sqrt(noise.variance(sweep.modulusSquared(i))));
        // What a point stands over its neighbours of the valley cannot be more than it stands over the lowest.
        if (i != highest && sweep.g[i] - lowest < threshold)
            continue;
        const double left = i == 0 ? lowest : valley(sweep, i, -1);
        const double right = i + 1 == size ? lowest : valley(sweep, i, 1);
        const double prominence =
            i == highest ? sweep.g[i] - std::min(left, right) : sweep.g[i] - std::max(left, right);
        if (i == highest || prominence > threshold)
            peaks.push_back({i, prominence, 0});
    }
    std::sort(peaks.begin(), peaks.end(), [](const Peak& a, const Peak& b) {
        return a.prominence != b.prominence ? a.prominence > b.prominence : a.index < b.index;
    });
    std::size_t kept = 0;
    for (std::size_t i = 0; i < peaks.size() && kept < kMostPeaks; ++i) {
        Peak peak = peaks[i];
        peak.width = widthOf(sweep, peak.index, peak.prominence);
        const bool near =
            std::any_of(peaks.begin(), peaks.begin() + static_cast<std::ptrdiff_t>(kept), [&](const Peak& other) {
                return std::abs(sweep.f[other.index] - sweep.f[peak.index]) < std::min(other.width, 4 * peak.width) / 2;
            });
        if (!near)
            peaks[kept++] = peak;
    }
    peaks.resize(kept);
}

} // namespace resonance
