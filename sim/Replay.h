// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/linklog/LinkLog.h"
#include "sim/parts/MeasuredTable.h"
#include "values/Outcome.h"

#include <QString>

#include <memory>
#include <vector>

namespace sim {

/// What a file given for replay turned out to be: a table of measured points, or else the entries of a link log.
struct Replay
{
    std::shared_ptr<const MeasuredTable> table;
    std::vector<linklog::Entry> log;

    /// Tells the two kinds apart by the first line.
    static ValueOr<Replay> load(const QString& fileName);
};

} // namespace sim
