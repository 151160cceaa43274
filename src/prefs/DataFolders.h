// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class Preferences;

/// The four folders of the user's data.
namespace DataFolders {

/// Called with each folder that could not be made, as it is written in the path.
using Failed = std::function<void(const QString& candidate)>;

/// The folders to look up so that the last exists, from the root's child downwards: the path up to and with each
/// separator, then the whole path. The first character is never a candidate of its own.
QStringList candidates(const QString& path);

/// Makes what is missing of each path in turn. A failure ends nothing: the remaining folders and paths are still tried.
/// False when any failed.
bool MakeDefaultDirectories(const QStringList& paths, const Failed& failed);

/// False when any of the four paths is unset or empty. Otherwise makes their folders, whatever comes of it, and gives
/// true.
bool boolArePathsSet(const Preferences& preferences, const Failed& failed);

} // namespace DataFolders
