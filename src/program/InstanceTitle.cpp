// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/InstanceTitle.h"

#include "files/RuntimeFolder.h"

#include <QDir>
#include <QUrl>

#include <utility>

QString settleInstanceTitle(const QString& strAppTitle, TitleRegistry& registry)
{
    if (registry.take(strAppTitle))
        return strAppTitle;
    int number = 1;
    while (number <= kLastNumberTried && !registry.take(strAppTitle + QString::number(number)))
        ++number;
    return strAppTitle + QString::number(number);
}

LockedTitles::LockedTitles(QString folder)
    : m_folder(std::move(folder))
{
    if (m_folder.isEmpty()) {
        m_folder = files::runtimeFolder();
        if (!m_folder.isEmpty())
            m_folder += QLatin1String("/marrowick/titles");
    }
}

bool LockedTitles::take(const QString& title)
{
    if (m_folder.isEmpty() || !QDir().mkpath(m_folder))
        return true;
    const QString name = QString::fromLatin1(QUrl::toPercentEncoding(title));
    auto lock = std::make_unique<FileLock>(m_folder + u'/' + name + QLatin1String(".lock"));
    if (!lock->tryLock())
        return !lock->isUsable();
    m_held.push_back(std::move(lock));
    return true;
}
