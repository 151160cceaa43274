// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FirstPaintMark.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <cstdio>

FirstPaintMark::FirstPaintMark()
{
    if (qEnvironmentVariableIsSet("MARROWICK_STARTUP_MARK"))
        QCoreApplication::instance()->installEventFilter(this);
}

void FirstPaintMark::startedUp()
{
    if (!qEnvironmentVariableIsSet("MARROWICK_STARTUP_MARK"))
        return;
    // Timers come behind the requests to paint, which may bring about others of their kind once.
    QTimer::singleShot(0, this, [this] {
        QTimer::singleShot(0, this, [] {
            std::puts("started");
            std::fflush(stdout);
        });
    });
}

bool FirstPaintMark::eventFilter(QObject* watched, QEvent* event)
{
    // A whole window is on the screen when it has handled the request that paints all of it.
    if (event->type() != QEvent::UpdateRequest || watched->objectName() != QLatin1String("frmMain"))
        return false;
    auto* window = qobject_cast<QWidget*>(watched);
    if (!window || !window->isVisible())
        return false;
    QCoreApplication::instance()->removeEventFilter(this);
    watched->event(event);
    std::puts("first paint");
    std::fflush(stdout);
    return true;
}
