// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/PlotLegend.h"

#include "controls/graph/ui/PlotElements.h"
#include "controls/graph/ui/TracePlottable.h"

#include <algorithm>
#include <array>

namespace {

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

PlotLegend::PlotLegend(QCPLegend& legend)
    : m_legend(legend)
    , m_holder(new LegendHolder(&legend))
{}

std::vector<int> PlotLegend::entriesOf(const graph::Properties& properties, const std::vector<int>& drawn,
                                       const std::vector<graph::Extent>& extents)
{
    if (!properties.ShowLegend)
        return {};
    const auto isEntry = [&](int subset) {
        return !extents[at(subset)].empty && !properties.SubsetLabels[at(subset)].isEmpty();
    };
    std::vector<int> entries;
    std::array<bool, 10> hasLeft{};
    for (const int subset : drawn) {
        if (isEntry(subset) && !graph::isRightAxis(graph::yAxisOf(subset))) {
            entries.push_back(subset);
            hasLeft[at(subset % 10)] = true;
        }
    }
    for (const int subset : drawn) {
        if (isEntry(subset) && graph::isRightAxis(graph::yAxisOf(subset)) && !hasLeft[at(subset % 10)]) {
            entries.push_back(subset);
            hasLeft[at(subset % 10)] = true;
        }
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

bool PlotLegend::setEntries(const std::vector<int>& subsets)
{
    if (m_entries == subsets)
        return false;
    m_entries = subsets;
    m_wrap = -1;
    m_legend.setVisible(!subsets.empty());
    return true;
}

void PlotLegend::setStyle(const PlotStyle& style)
{
    m_legend.setFont(style.legend);
    m_legend.setTextColor(style.ink);
    m_legend.setBrush(style.paper);
    m_legend.setBorderPen(thinPen(style.grid.darker(115)));
    m_legend.setIconSize(static_cast<int>(style.textSize * 2), static_cast<int>(style.textSize));
    m_legend.setMargins(QMargins(7, 4, 7, 4));
    m_legend.setRowSpacing(1);
    m_legend.setColumnSpacing(14);
}

void PlotLegend::arrange(const graph::Properties& properties, const PlotStyle& style,
                         const std::vector<TracePlottable*>& traces, int width)
{
    if (!m_entries)
        return;
    const bool inside = properties.LegendStyle == graph::LegendInsideAxis;
    const bool sideways =
        !inside && (properties.LegendLocation == graph::LegendTop || properties.LegendLocation == graph::LegendBottom);
    int wrap = 0;
    if (sideways) {
        double widest = 1;
        const QFontMetrics metrics(style.legend);
        for (const int subset : *m_entries)
            widest =
                std::max(widest, style.textSize * 2 + 7.0 + metrics.horizontalAdvance(traces[at(subset)]->name()) + 14);
        wrap = std::max(1, static_cast<int>((width - 40) / widest));
    }
    if (wrap == m_wrap)
        return;
    m_wrap = wrap;
    m_legend.clearItems();
    m_legend.setFillOrder(sideways ? QCPLayoutGrid::foColumnsFirst : QCPLayoutGrid::foRowsFirst);
    m_legend.setWrap(wrap);
    for (const int subset : *m_entries)
        traces[at(subset)]->addToLegend(&m_legend);
    m_holder->setVertical(!sideways);
}
