// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/NearestWord.h"

namespace cli {

using values::nearestWord;

/// "; did you mean X?" with the nearest candidate behind prefix, or otherwise when none is near.
QString suggestion(const QString& word, const QStringList& candidates, const QString& prefix, const QString& otherwise);

} // namespace cli
