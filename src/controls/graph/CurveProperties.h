// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/PropertyStore.h"

namespace graph {

/// Names, colours and lines of the curves, and which of them are drawn.
class CurveProperties : public virtual PropertyStore
{
public:
    QString SubsetLabels(int subset) const;
    bool setSubsetLabels(int subset, const QString& text);
    std::uint32_t SubsetColors(int subset) const;
    bool setSubsetColors(int subset, std::uint32_t color);
    int SubsetLineTypes(int subset) const;
    bool setSubsetLineTypes(int subset, int type);
    /// The i-th subset to draw, i from 0 to Subsets() - 1. While no entry was ever written all subsets are drawn.
    int RandomSubsetsToGraph(int i) const;
    bool setRandomSubsetsToGraph(int i, int subset);
    /// A subset switched off here is not drawn, whatever RandomSubsetsToGraph names.
    bool SubsetsToShow(int subset) const;
    bool setSubsetsToShow(int subset, bool on);

protected:
    CurveProperties() = default;
    ~CurveProperties() = default;

private:
    bool has(int subset) const
    {
        return subset >= 0 && static_cast<std::size_t>(subset) < m_properties.SubsetLabels.size();
    }
};

} // namespace graph
