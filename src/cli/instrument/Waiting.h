// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QEventLoop>
#include <QTimer>

namespace cli {

/// Runs the loop until the condition holds, until wanted() no longer does, or for that time; negative: without end.
/// Whoever changes what they ask about quits the loop. Returns whether the condition holds.
template <typename Condition, typename Wanted>
bool waitIn(QEventLoop& loop, const Condition& condition, const Wanted& wanted, int milliseconds)
{
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    if (milliseconds >= 0)
        limit.start(milliseconds);
    while (!condition() && wanted() && (milliseconds < 0 || limit.isActive()))
        loop.exec();
    return condition();
}

} // namespace cli
