// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>

/// The names of the files that a script leaves.
namespace scriptnames {

/// The folder, or the program's own where none is set, with the name behind it.
QString inFolder(const QString& folder, const QString& name);
/// "NAME_yyyymmdd_hhmmss_SERIAL".
QString stamped(const QString& name, const QDateTime& when, const QString& serial);
/// All ahead of the first ".", which may stand in the name of a folder.
QString cutAtDot(const QString& name);
/// With ".txt" behind it unless that is in it already, whatever the case.
QString withTextExtension(const QString& name);

} // namespace scriptnames
