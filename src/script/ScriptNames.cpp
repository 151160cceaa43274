// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptNames.h"

#include <QCoreApplication>

namespace scriptnames {

QString inFolder(const QString& folder, const QString& name)
{
    QString path = folder.isEmpty() ? QCoreApplication::applicationDirPath() : folder;
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    return path + name;
}

QString stamped(const QString& name, const QDateTime& when, const QString& serial)
{
    return name + when.toString(QStringLiteral("'_'yyyyMMdd'_'HHmmss'_'")) + serial;
}

QString cutAtDot(const QString& name)
{
    return name.left(name.indexOf(QLatin1Char('.')));
}

QString withTextExtension(const QString& name)
{
    constexpr QLatin1String kText(".txt");
    return name.contains(kText, Qt::CaseInsensitive) ? name : name + kText;
}

} // namespace scriptnames
