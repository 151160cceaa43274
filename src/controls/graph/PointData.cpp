// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/PointData.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace graph {
namespace {

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

PointData::PointData(int subsets, int points)
    : m_subsets(std::clamp(subsets, 1, kMaxSubsets))
    , m_points(std::clamp(points, 1, kMaxPoints))
    , m_x(at(m_subsets) * at(m_points), 0.0F)
    , m_y(at(m_subsets) * at(m_points), kNullValue)
    , m_revisions(at(m_subsets), 0)
{}

std::span<const float> PointData::xArray(int subset) const
{
    return has(subset, 0) ? std::span<const float>(m_x).subspan(index(subset, 0), at(m_points))
                          : std::span<const float>();
}

std::span<const float> PointData::yArray(int subset) const
{
    return has(subset, 0) ? std::span<const float>(m_y).subspan(index(subset, 0), at(m_points))
                          : std::span<const float>();
}

bool PointData::PEvsetEx(int property, int start, int count, const float* source)
{
    if (property != PEP_faXDATA && property != PEP_faYDATA)
        return false;
    std::vector<float>& store = property == PEP_faXDATA ? m_x : m_y;
    if (start < 0 || count < 0 || at(start) > store.size() || at(count) > store.size() - at(start))
        return false;
    if (count == 0)
        return true;
    if (source == nullptr)
        return false;
    std::copy_n(source, count, store.begin() + start);
    for (int subset = start / m_points; subset <= (start + count - 1) / m_points; ++subset)
        touch(subset);
    return true;
}

bool PointData::PEvgetEx(int property, int start, int count, float* target) const
{
    if (property != PEP_faXDATA && property != PEP_faYDATA)
        return false;
    const std::vector<float>& store = property == PEP_faXDATA ? m_x : m_y;
    if (start < 0 || count < 0 || at(start) > store.size() || at(count) > store.size() - at(start))
        return false;
    if (count == 0)
        return true;
    if (target == nullptr)
        return false;
    std::copy_n(store.begin() + start, count, target);
    return true;
}

std::uint64_t PointData::takeDirtySubsets()
{
    return std::exchange(m_dirty, 0);
}

std::uint64_t PointData::dataRevision(int subset) const
{
    return has(subset, 0) ? m_revisions[at(subset)] : 0;
}

void PointData::replace(std::span<const std::byte> x, std::span<const std::byte> y)
{
    std::memcpy(m_x.data(), x.data(), x.size());
    std::memcpy(m_y.data(), y.data(), y.size());
    for (int subset = 0; subset < m_subsets; ++subset)
        touch(subset);
}

} // namespace graph
