// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// Which measures a line of results shows, as the script control tells it. This one, for a program without scripts,
/// shows all of them.
class ResultSwitches
{
public:
    virtual ~ResultSwitches() = default;

    virtual std::int16_t ShowF1() const { return 1; } ///< shown unless 0
    virtual std::int16_t ShowF2() const { return 1; } ///< this and the others: shown above 0
    virtual std::int16_t ShowFr() const { return 1; }
    virtual std::int16_t ShowZr() const { return 1; }
    virtual std::int16_t ShowQ() const { return 1; }
    /// The number that came with the wish for an analysis, before its line is made.
    virtual void SetAnalysisMode(std::int16_t mode) { static_cast<void>(mode); }
};
