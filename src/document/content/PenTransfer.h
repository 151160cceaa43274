// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/content/TestType.h"

#include <QString>

class Pens;

/// One pen as a grid of text (PenGrid.h) out of a graph and into another.
namespace pentransfer {

/// Whether a document of a type takes grids of another: its own, and impedance and reactance from each other.
bool fits(std::int16_t gridType, std::int16_t documentType);
/// True for a text whose header names a grid that a document of this type takes.
bool canPaste(const QString& text, std::int16_t documentType);

/// Header and points of the pen up to its end mark. Numbers are the shortest texts that give the singles back.
QString copied(const GraphModel& graph, int pen, std::int16_t documentType);

struct Pasted
{
    bool named = false;     ///< the header was one: the pen bears its name
    bool phaseLost = false; ///< a point had no phase and could not be converted; the points before it are there
    int points = 0;
};
/// Writes the points of a grid into the pen from point 0 on; a grid of a type that does not fit names the pen and
/// writes none. Ends at the first line that is no point.
Pasted paste(GraphModel& graph, Pens& pens, int pen, const QString& grid, std::int16_t documentType);

} // namespace pentransfer
