#include "app/FirstPaintMark.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <cstdio>

FirstPaintMark::FirstPaintMark()
{
    if (qEnvironmentVariableIsSet("MARROWICK_STARTUP_MARK"))
        QCoreApplication::instance()->installEventFilter(this);
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
