// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/Sweep.h"

#include <algorithm>
#include <cmath>

namespace resonance {
namespace {

bool usable(const Sample& s)
{
    // Bounded, so that no square overflows or vanishes; what is no number is in no bounds.
    const double square = s.conductance * s.conductance + s.susceptance * s.susceptance;
    return s.frequency > 1e-9 && s.frequency < 1e18 && square > 1e-60 && square < 1e60;
}

} // namespace

void Sweep::load(const std::vector<Sample>& samples)
{
    flags = 0;
    m_sorted.clear();
    for (const Sample& s : samples) {
        if (usable(s))
            m_sorted.push_back(s);
    }
    leftOut = static_cast<int>(samples.size() - m_sorted.size());
    if (leftOut > 0)
        flags |= LeftOutFlag;
    sort();
    averageEqual();
    turn();
}

void Sweep::sort()
{
    const auto lower = [](const Sample& one, const Sample& two) { return one.frequency < two.frequency; };
    const auto higher = [](const Sample& one, const Sample& two) { return one.frequency > two.frequency; };
    if (std::is_sorted(m_sorted.begin(), m_sorted.end(), lower))
        return;
    if (std::is_sorted(m_sorted.begin(), m_sorted.end(), higher)) {
        std::reverse(m_sorted.begin(), m_sorted.end());
        return;
    }
    // The library's stable sort takes memory at every call.
    m_placed.clear();
    for (const Sample& sample : m_sorted)
        m_placed.push_back({sample, m_placed.size()});
    std::sort(m_placed.begin(), m_placed.end(), [](const Placed& one, const Placed& two) {
        return one.sample.frequency != two.sample.frequency ? one.sample.frequency < two.sample.frequency
                                                            : one.place < two.place;
    });
    for (std::size_t i = 0; i < m_sorted.size(); ++i)
        m_sorted[i] = m_placed[i].sample;
}

void Sweep::averageEqual()
{
    f.clear();
    g.clear();
    b.clear();
    for (std::size_t i = 0; i < m_sorted.size();) {
        std::size_t end = i;
        double sumG = 0;
        double sumB = 0;
        for (; end < m_sorted.size() && m_sorted[end].frequency == m_sorted[i].frequency; ++end) {
            sumG += m_sorted[end].conductance;
            sumB += m_sorted[end].susceptance;
        }
        const double count = static_cast<double>(end - i);
        if (end - i > 1)
            flags |= AveragedFlag;
        f.push_back(m_sorted[i].frequency);
        g.push_back(sumG / count);
        b.push_back(sumB / count);
        i = end;
    }
}

void Sweep::turn()
{
    if (f.empty())
        return;
    // R = G/|Y|^2 has the sign of G: the median of R is negative where most of G is.
    const auto negative = std::count_if(g.begin(), g.end(), [](double value) { return value < 0; });
    if (2 * static_cast<std::size_t>(negative) <= g.size())
        return;
    // A loss-free part under noise has as many negative as positive ones: no reason to turn it.
    m_scratch.clear();
    for (std::size_t i = 0; i < size(); ++i)
        m_scratch.push_back(g[i] / std::sqrt(modulusSquared(i)));
    const auto middle = m_scratch.begin() + static_cast<std::ptrdiff_t>(m_scratch.size() / 2);
    std::nth_element(m_scratch.begin(), middle, m_scratch.end());
    const double median = *middle;
    double sum = 0;
    double largest = 0;
    for (const double value : g) {
        sum += value;
        largest = std::max(largest, std::abs(value));
    }
    if (median > -1e-9 || sum >= 0)
        return;
    for (std::size_t i = 0; i < size(); ++i) {
        g[i] = -g[i];
        b[i] = -b[i];
    }
    flags |= TurnedFlag;
}

void Sweep::leaveOutPlateau()
{
    constexpr double kEqual = 1e-12;
    double maxG = 0;
    double maxY = 0;
    for (std::size_t i = 0; i < size(); ++i) {
        maxG = std::max(maxG, g[i]);
        maxY = std::max(maxY, modulusSquared(i));
    }
    const auto atTop = [&](std::size_t i) {
        return g[i] >= maxG * (1 - kEqual) || modulusSquared(i) >= maxY * (1 - kEqual);
    };
    std::size_t kept = 0;
    for (std::size_t i = 0; i < size();) {
        std::size_t end = i;
        while (end < size() && atTop(end))
            ++end;
        if (end - i >= 3) {
            flags |= ClippedFlag;
            i = end;
            continue;
        }
        end = std::max(end, i + 1);
        for (; i < end; ++i, ++kept) {
            f[kept] = f[i];
            g[kept] = g[i];
            b[kept] = b[i];
        }
    }
    f.resize(kept);
    g.resize(kept);
    b.resize(kept);
}

void Sweep::conjugate()
{
    for (double& value : b)
        value = -value;
    flags |= ConjugatedFlag;
}

} // namespace resonance
