// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QWidget>

#include <cstdio>
#include <cstdlib>

/// The control of that name in a window. Ends the test program when there is none, with the names that there are.
template <typename Control>
Control* findControl(const QWidget* window, const char* name)
{
    if (auto* const control = window->findChild<Control*>(QLatin1String(name)))
        return control;
    QStringList names;
    const auto all = window->findChildren<Control*>();
    for (const Control* control : all)
        names += control->objectName();
    std::fprintf(stderr, "%s has no %s \"%s\"; it has: %s\n", qPrintable(window->objectName()),
                 Control::staticMetaObject.className(), name, qPrintable(names.join(QStringLiteral(", "))));
    std::abort();
}
