// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace values {

/// The candidate that a mistyped word most likely means: fewest letters wrong, missing, too many or swapped, case
/// aside, at most one in three; or the first that begins with the word, from three letters on. Empty when none is near.
QString nearestWord(const QString& word, const QStringList& candidates);

} // namespace values
