// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/content/TestType.h"

#include <QString>

#include <array>
#include <optional>

/// The ten pens of a graph: lock, display, colour, name and data of each, over the four subsets that it has. Pens count
/// from 0; a number outside 0 to 9 changes nothing and reads as a free, shown pen without name. Nothing here redraws.
class Pens
{
public:
    /// The graph outlives the pens.
    explicit Pens(GraphModel& graph)
        : m_graph(graph)
    {}

    static bool isPen(int pen) { return pen >= 0 && pen < plot::kPens; }

    bool isLocked(int pen) const { return isPen(pen) && m_locked[static_cast<std::size_t>(pen)]; }
    void setLocked(int pen, bool locked);
    void setAllLocked(bool locked) { m_locked.fill(locked); }
    /// The first unlocked pen behind that one, wrapping round, itself last; nothing when every pen is locked.
    std::optional<int> nextUnlocked(int pen) const;
    /// The locks ride in the graph as ten characters, "X" locked and "0" free.
    void storeLocks();
    void readLocks();

    bool isHidden(int pen) const { return isPen(pen) && m_hidden[static_cast<std::size_t>(pen)]; }
    void setHidden(int pen, bool hidden);
    void setAllHidden(bool hidden) { m_hidden.fill(hidden); }
    bool areAllHidden() const;

    /// 0x00BBGGRR, for all four subsets.
    std::uint32_t colour(int pen) const { return m_graph.SubsetColors(pen); }
    void setColour(int pen, std::uint32_t colour);
    /// graph::LineSolid and so on, for all four subsets.
    void setLineType(int pen, int type);

    QString name(int pen) const { return isPen(pen) ? m_graph.SubsetLabels(pen) : QString(); }
    /// The name stands at both of the pen's main subsets, so that the alternate view shows it too.
    void setName(int pen, const QString& name);
    /// "Pen 1" for pen 0.
    void resetName(int pen);
    /// False while the pen bears its number or the time of a plot: such a name gives way to that of the next plot.
    bool isNamedByUser(int pen) const;

    /// Every Y becomes the null value; X stays, since the null Y alone ends the data. False for a locked pen, which
    /// keeps its data.
    bool erase(int pen);
    /// True when any of the points holds a value.
    bool hasData(int pen) const;

private:
    GraphModel& m_graph;
    std::array<bool, plot::kPens> m_locked{};
    std::array<bool, plot::kPens> m_hidden{};
};
