// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "architecture/Architecture.h"

/// Holds the newcomer's page, docs/architecture.md, against the tree and the map.
namespace architecture {

/// What the page says that does not hold, one sentence each: files, folders and names in `code` that are nowhere,
/// folders of the map that its table leaves out, and a folder that uses one further down in the table.
QStringList pageViolations(const QString& page, const std::vector<Target>& map, const QString& root);

/// Folders below tests that hold sources of tests and are built into no program, by the text of tests/CMakeLists.txt.
QStringList unbuiltTests(const QString& lists, const QString& root);

} // namespace architecture
