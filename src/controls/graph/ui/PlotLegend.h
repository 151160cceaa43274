// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/AxisRange.h"
#include "controls/graph/ui/PlotLibrary.h"
#include "controls/graph/ui/PlotStyle.h"

#include <optional>
#include <vector>

class LegendHolder;
class TracePlottable;

/// Which curves the legend of a plot names, and how its entries stand: in a column, or in rows as wide as the plot.
class PlotLegend
{
public:
    /// The legend belongs to its plot, and so does the holder once it stands in the layout.
    explicit PlotLegend(QCPLegend& legend);

    /// One entry a pen: a curve on the right stands for its pen only where the pen has none on the left. (Labels of
    /// right subsets may also carry texts that are not names.) None where the legend is not shown.
    static std::vector<int> entriesOf(const graph::Properties& properties, const std::vector<int>& drawn,
                                      const std::vector<graph::Extent>& extents);

    /// False when these are the entries that stand there already.
    bool setEntries(const std::vector<int>& subsets);
    /// Fonts, names and places may all be new: the next entries are taken even if they are the same.
    void forget() { m_entries.reset(); }
    bool isEmpty() const { return !m_entries || m_entries->empty(); }
    void setStyle(const PlotStyle& style);
    /// Puts the entries into columns and rows for a plot of that width; nothing to do without entries set.
    void arrange(const graph::Properties& properties, const PlotStyle& style,
                 const std::vector<TracePlottable*>& traces, int width);
    LegendHolder* holder() const { return m_holder; }

private:
    QCPLegend& m_legend;
    LegendHolder* m_holder;
    std::optional<std::vector<int>> m_entries; ///< subsets
    int m_wrap = -1;                           ///< entries a row; 0: one column; -1: not arranged
};
