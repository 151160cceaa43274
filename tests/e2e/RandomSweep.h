// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "e2e/SweepJudge.h"
#include "support/instrument/ScriptedInstrument.h"

#include <random>

namespace e2e {

/// The same seed throws the same numbers.
class Dice
{
public:
    explicit Dice(int seed)
        : m_engine(static_cast<unsigned>(seed))
    {}
    /// From low to high, both included.
    int number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_engine); }
    bool oneIn(int sides) { return number(1, sides) == 1; }

private:
    std::mt19937 m_engine;
};

/// Late, doubled, cut and turned answers in some mixture.
played::Manners someManners(Dice& dice);
/// Every kind of fault of a line together, each at a rate of its own.
played::LineFaults someFaults(Dice& dice);
/// Any sweep that the played instrument can make.
AskedSweep someSweep(Dice& dice);

} // namespace e2e
