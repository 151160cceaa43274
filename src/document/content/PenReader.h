// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"

/// How every reader of a pen finds the end of its data.
namespace PenReader {

/// Number of points of a subset, counted from point 0: the first point whose X is 0 or whose Y is -65536 ends it.
int pointCount(const GraphModel& graph, int subset);

} // namespace PenReader
