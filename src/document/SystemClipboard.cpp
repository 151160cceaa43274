// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/SystemClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

QString SystemClipboard::text() const
{
    QString text = QGuiApplication::clipboard()->text();
    if (!text.contains(QLatin1Char('\n')))
        return text;
    return text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1String("\n"), QLatin1String("\r\n"));
}

void SystemClipboard::setText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}
