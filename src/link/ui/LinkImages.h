// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QSvgWidget;

namespace linkimages {

/// Shows the picture of that name ("t46", "r52", "unknown", "marrowickgraph") in its own proportions.
void load(QSvgWidget& widget, const QString& name);

} // namespace linkimages
