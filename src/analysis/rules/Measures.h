// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/Resonance.h"

#include <QString>
#include <QStringList>

#include <span>

/// What the figures of a resonance are called and what they mean, for tables, tool tips and the command line.
namespace measures {

struct Measure
{
    const char* key;        ///< in JSON and, with the unit behind it, in tables
    const char* name;       ///< as shown
    const char* unit;       ///< "Hz", "Ohm", "H", "F" or empty
    const char* definition; ///< one sentence without a full stop; to be translated in context "measures"
    resonance::Figure resonance::Mode::*figure;
};

/// F1, F2, Fr, Zr and Q, in the order of the line of results.
std::span<const Measure> ofResonance();
/// Elements of the equivalent circuit and what follows from them.
std::span<const Measure> ofCircuit();
QString definition(const Measure& measure);
/// Of the capacitance at low frequency.
QString capacitanceDefinition();

/// "40.00031 kHz ± 830 mHz": as many digits as the standard uncertainty leaves, without prefix where there is no unit;
/// "N/A" where there is no value.
QString valueText(const resonance::Figure& figure, const QString& unit);
/// "95 of 100 intervals of 1.98 times the uncertainties hold the true value".
QString coverageText(const resonance::Mode& mode);
/// "12.5 points per bandwidth, 1024 points used".
QString pointsText(const resonance::Solution& solution);
/// The flags in words.
QStringList flags(const resonance::Solution& solution);

} // namespace measures
