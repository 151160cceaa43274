// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"

class Preferences;

/// How graphs look, apart from what they show. Nothing here redraws.
namespace graphstyle {

/// A new graph: fonts, legend, pen colours and grid of the preferences, and the tables that every plot carries.
void setDefaults(GraphModel& graph, const Preferences& preferences);
/// What every graph takes whatever it was saved with: unit prefixes, null value, monochrome colours, no sweep cursor.
void update(GraphModel& graph);

} // namespace graphstyle
