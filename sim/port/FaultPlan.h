// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QString>
#include <QStringList>

#include <array>

namespace sim {

enum class Fault
{
    Garbage,
    LostBytes,
    SplitWrites,
    Stall,
    Unplug,
    Flood,
    WrongLength,
    NonNumeric,
    PowerLost,
    CableLost,
    DeadImage
};
inline constexpr std::size_t kFaultCount = 11;

/// Which faults the line has, and how often: each strikes once in so many frames on average (for an unplugging, point
/// frames since it was plugged in); 0 is never. The last three belong to firmware updates and strike once a run: at the
/// block of that number, and at the first run of so many new images.
struct FaultPlan
{
    std::array<std::uint32_t, kFaultCount> everyFrames{};

    std::uint32_t every(Fault fault) const { return everyFrames[static_cast<std::size_t>(fault)]; }
    /// Anything that happens to frames.
    bool any() const;

    /// Adds what a text like "garbage" or "split:3,stall" names; the number behind a colon is the average distance.
    Outcome add(const QString& text);
    /// Name and one line of explanation of each kind, in the order of Fault.
    static QStringList names();
    static QStringList explanations();
};

} // namespace sim
