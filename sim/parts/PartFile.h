// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/parts/PartModel.h"
#include "values/Outcome.h"

#include <QByteArray>
#include <QStringList>

/// Parts as JSON texts, and those that come with the program.
namespace sim::partfile {

inline constexpr int kLongestFile = 1024 * 1024;
inline constexpr int kMostBranches = 256;

/// From the JSON text of a part file. Every entry is checked; an entry that is not known is refused, since it is
/// most often a misspelt one. The sentence of a failure names the entry and what is expected there.
///
///     { "name": "40 kHz Langevin transducer",     text, needed
///       "source": "where the figures come from",  text
///       "seriesResistance": 0.1,                  Ohm, 0 or more; default 0
///       "staticCapacitance": 4e-9,                Farad, 0 or more; default 0
///       "leakageResistance": 1e9,                 Ohm, above 0; default none
///       "branches": [ { "resistance": 15, ... } ] default none
///     }
///
/// A branch has "resistance" (Ohm) and, at choice, "inductance" (Henry), "capacitance" (Farad), both, "resonance"
/// (Hz) with one of the two, or "resonance" with "quality".
ValueOr<PartModel> fromJson(const QByteArray& text);
/// A shipped part by its short name, or else a file.
ValueOr<PartModel> load(const QString& nameOrFile);
/// Short names of the shipped parts, in alphabetical order.
QStringList shippedNames();

} // namespace sim::partfile
