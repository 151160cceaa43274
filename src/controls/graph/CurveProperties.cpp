// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/CurveProperties.h"

namespace graph {
namespace {

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

template <typename List>
bool isIn(const List& list, int i)
{
    return i >= 0 && at(i) < static_cast<std::size_t>(list.size());
}

} // namespace

QString CurveProperties::SubsetLabels(int subset) const
{
    return has(subset) ? m_properties.SubsetLabels[at(subset)] : QString();
}

bool CurveProperties::setSubsetLabels(int subset, const QString& text)
{
    if (!has(subset))
        return false;
    assign(m_properties.SubsetLabels[at(subset)], text);
    return true;
}

std::uint32_t CurveProperties::SubsetColors(int subset) const
{
    return has(subset) ? m_properties.SubsetColors[at(subset)] : 0;
}

bool CurveProperties::setSubsetColors(int subset, std::uint32_t color)
{
    if (!has(subset))
        return false;
    assign(m_properties.SubsetColors[at(subset)], color & kColorMask);
    return true;
}

int CurveProperties::SubsetLineTypes(int subset) const
{
    return has(subset) ? m_properties.SubsetLineTypes[at(subset)] : 0;
}

bool CurveProperties::setSubsetLineTypes(int subset, int type)
{
    if (!has(subset) || type < 0)
        return false;
    assign(m_properties.SubsetLineTypes[at(subset)], type);
    return true;
}

int CurveProperties::RandomSubsetsToGraph(int i) const
{
    return isIn(m_properties.RandomSubsetsToGraph, i) ? m_properties.RandomSubsetsToGraph[at(i)] : 0;
}

bool CurveProperties::setRandomSubsetsToGraph(int i, int subset)
{
    if (!has(i) || (subset >= 0 && !has(subset)))
        return false;
    std::vector<int>& list = m_properties.RandomSubsetsToGraph;
    if (at(i) >= list.size()) {
        list.resize(at(i) + 1, -1);
        m_changed = true;
    }
    assign(list[at(i)], subset);
    return true;
}

bool CurveProperties::SubsetsToShow(int subset) const
{
    return has(subset) && m_properties.SubsetsToShow[at(subset)];
}

bool CurveProperties::setSubsetsToShow(int subset, bool on)
{
    if (!has(subset))
        return false;
    if (m_properties.SubsetsToShow[at(subset)] != on) {
        m_properties.SubsetsToShow[at(subset)] = on;
        m_changed = true;
    }
    return true;
}

} // namespace graph
