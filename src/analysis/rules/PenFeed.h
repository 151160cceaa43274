// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/content/TestType.h"

#include <array>

class PenDocument;
class ResonanceEngine;

/// How the pens of a document reach the analysis engine.
namespace penfeed {

/// Impedance and reactance documents have a resonance; amplitude documents have none.
bool takesAnalysis(const PenDocument& document);

/// Gives the engine the points of a pen in their order, up to the first without frequency or value. Returns how many;
/// 0, with nothing fed, for an index that is no pen and for a document without analysis.
int feed(ResonanceEngine& engine, const PenDocument& document, int pen);

/// The pens that the document's graph shows in its present view.
std::array<bool, plot::kPens> displayedPens(const PenDocument& document);

} // namespace penfeed
