// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/content/TestType.h"

#include <QString>

#include <array>

class PenDocument;
class ResonanceEngine;

/// The table of all pens' measures and the line that is put together from it.
class AnalysisTable
{
public:
    struct Row
    {
        bool shown = false;     ///< the document shows the pen
        bool hasPoints = false; ///< its measures may go onto the graph, even where they are not available
        bool found = false;
        bool capFound = false;       ///< its capacitance may go onto the graph
        QString label;               ///< of the pen
        QString f1, f2, fr, zr, q;   ///< two decimals, "N/A", or empty for a pen that is not shown
        QString cap, capFrequency;   ///< "4.076 nF" and its frequency in Hz
        QString measuresTip, capTip; ///< what the figures mean, how sure they are, what is doubtful; lines
    };
    /// What the user wants on the graph.
    struct Ticks
    {
        bool f1 = false, f2 = false, fr = false, zr = false, q = false, clf = false;
    };

    /// Feeds and solves the pens that the document shows; nothing else is left in the engine.
    void fill(const PenDocument& document, ResonanceEngine& engine);
    const Row& row(int pen) const { return m_rows[static_cast<std::size_t>(pen)]; }
    /// The first pen with a resonance, and the first with a capacitance; -1 where there is none.
    int firstFound() const;
    int firstCap() const;
    /// The line of the chosen rows (-1: none); empty where nothing is wanted or nothing can be had.
    QString line(int resonancePen, int capPen, const Ticks& ticks) const;

private:
    std::array<Row, plot::kPens> m_rows;
};
