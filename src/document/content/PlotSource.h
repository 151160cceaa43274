// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Where plots come from, as far as documents ask: the connected instrument's name and limits, as plain values. This
/// class answers for a program without an instrument; the instrument's side derives from it.
class PlotSource
{
public:
    /// Ranges of a new graph's axes. Frequencies in Hz, levels in dB, impedances in Ohm, susceptance and conductance in
    /// Siemens.
    struct Limits
    {
        double sweepStart = 1000, sweepEnd = 1000000; ///< the sweep that is set up, in either order
        double lowestFrequency = 10, highestFrequency = 50000000;
        double lowestLevel = -90, highestLevel = 10;
        double lowestImpedance = 0.01, highestImpedance = 999999;
        double reactanceMin = -50000, reactanceMax = 50000;
        double resistanceMin = 0, resistanceMax = 500000;
        double susceptanceMin = -500, susceptanceMax = 500;
        double conductanceMin = 0, conductanceMax = 100;
    };

    virtual ~PlotSource() = default;

    /// Name, firmware and calibration of the connected instrument, as plots record it; empty when none is connected.
    virtual QString instrument() const { return {}; }
    virtual Limits limits() const { return {}; }
    /// A run over several pens is going on: its extent is not to be changed.
    virtual bool extentHeld() const { return false; }
    /// The sweep follows the extent of the graph.
    virtual bool followsExtent() const { return false; }
};
