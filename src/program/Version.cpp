// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/Version.h"

namespace version {

int majorNumber()
{
    return MG_VERSION_MAJOR;
}

int minorNumber()
{
    return MG_VERSION_MINOR;
}

int revision()
{
    return MG_VERSION_REVISION;
}

QString text()
{
    return shortText() + u'.' + QString::number(revision());
}

QString shortText()
{
    return QString::number(majorNumber()) + u'.' + QString::number(minorNumber());
}

QString programTitle()
{
    return QStringLiteral("MarrowickGraph");
}

QString titled(const QString& title)
{
    return title + QLatin1String(" V") + text();
}

} // namespace version
