// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"
#include "values/Outcome.h"

#include <QString>

/// What a plot file keeps beside the curves, and where in the graph it rides: title, version text in the title of the
/// top X axis, format number in a table.
namespace plotfile {

/// Writes the graph, with its title set when it never had one and the version text stamped. After a failure the graph
/// is as it was.
Outcome save(GraphModel& graph, const QString& fileName, const QString& versionText);

struct Format
{
    std::int16_t number = 1;
    bool current = true; ///< a plot of any other format may only be viewed
};
/// The format of a loaded graph. One without a format cell is given the current number. Table 1 is selected afterwards.
Format readFormat(GraphModel& graph);

/// The subtitle shows the version text, where there is a subtitle and a version text to show.
void showVersionInSubTitle(GraphModel& graph);

} // namespace plotfile
