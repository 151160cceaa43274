// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphProperties.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace graph {

/// The points of a graph in single precision: subsets of equally many, X and Y each in one flat store. Data writes take
/// effect at once and raise no signal. A fresh store holds no data: every X is 0, every Y the null value.
class PointData
{
public:
    static constexpr int kMaxSubsets = graph::kMaxSubsets;
    static constexpr int kMaxPoints = 65536;
    /// Sizes are held to 1 to kMaxSubsets and 1 to kMaxPoints and never change again.
    PointData(int subsets, int points);

    int Subsets() const { return m_subsets; }
    int Points() const { return m_points; }
    float XData(int subset, int point) const { return has(subset, point) ? m_x[index(subset, point)] : 0.0F; }
    float YData(int subset, int point) const { return has(subset, point) ? m_y[index(subset, point)] : 0.0F; }
    bool setXData(int subset, int point, float value)
    {
        if (!has(subset, point))
            return false;
        m_x[index(subset, point)] = value;
        touch(subset);
        return true;
    }
    bool setYData(int subset, int point, float value)
    {
        if (!has(subset, point))
            return false;
        m_y[index(subset, point)] = value;
        touch(subset);
        return true;
    }
    /// X and Y of one point.
    bool setPoint(int subset, int point, float x, float y)
    {
        if (!has(subset, point))
            return false;
        m_x[index(subset, point)] = x;
        m_y[index(subset, point)] = y;
        touch(subset);
        return true;
    }
    /// Read-only arrays of one subset, Points() long; empty for a subset the graph does not have.
    std::span<const float> xArray(int subset) const;
    std::span<const float> yArray(int subset) const;
    /// The flat stores of X and Y: subset after subset, Points() values each.
    std::span<const float> allX() const { return m_x; }
    std::span<const float> allY() const { return m_y; }
    enum BulkProperty
    {
        PEP_faXDATA = 1,
        PEP_faYDATA = 2
    };
    /// Bulk write into the flat store of X or Y: start is subset x Points() + point. Refused whole when it does not
    /// fit.
    bool PEvsetEx(int property, int start, int count, const float* source);
    /// Bulk read, the twin of PEvsetEx.
    bool PEvgetEx(int property, int start, int count, float* target) const;
    /// Subsets with data written since the last call (bit s for subset s, from 0), and forgets them. Up to 64 subsets.
    std::uint64_t takeDirtySubsets();
    /// Grows with every data write: tells the view whether mapped coordinates are still good.
    std::uint64_t dataRevision(int subset) const;

protected:
    ~PointData() = default;
    /// Whether the stores have that many bytes each.
    bool fits(std::span<const std::byte> x, std::span<const std::byte> y) const
    {
        return x.size() == m_x.size() * sizeof(float) && y.size() == x.size();
    }
    /// Only where they fit.
    void replace(std::span<const std::byte> x, std::span<const std::byte> y);

private:
    bool has(int subset, int point) const
    {
        return subset >= 0 && subset < m_subsets && point >= 0 && point < m_points;
    }
    void touch(int subset)
    {
        ++m_revisions[static_cast<std::size_t>(subset)];
        m_dirty |= std::uint64_t{1} << subset;
    }
    std::size_t index(int subset, int point) const
    {
        return static_cast<std::size_t>(subset) * static_cast<std::size_t>(m_points) + static_cast<std::size_t>(point);
    }

    int m_subsets;
    int m_points;
    std::vector<float> m_x;
    std::vector<float> m_y;
    std::vector<std::uint64_t> m_revisions;
    std::uint64_t m_dirty = 0;
};

} // namespace graph
