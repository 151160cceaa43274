// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/NearestWord.h"

#include <QCoreApplication>

namespace cli {

QString suggestion(const QString& word, const QStringList& candidates, const QString& prefix, const QString& otherwise)
{
    const QString nearest = nearestWord(word, candidates);
    return nearest.isEmpty() ? otherwise
                             : QCoreApplication::translate("cli", "; did you mean %1?").arg(prefix + nearest);
}

} // namespace cli
