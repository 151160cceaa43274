// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/JournalFolder.h"

#include "files/FileLock.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace recovery {

namespace {

constexpr QLatin1String kJournal(".journal");
constexpr QLatin1String kLock(".lock");
constexpr QLatin1String kTold(".told");

QString toldFile(const QString& folder, const QString& session)
{
    return folder + QLatin1Char('/') + session + kTold;
}

QString sessionOf(const QString& file)
{
    return file.section(QLatin1Char('.'), 0, 0);
}

QStringList entries(const QString& folder, QLatin1String ending)
{
    return QDir(folder).entryList({QLatin1Char('*') + ending}, QDir::Files | QDir::NoSymLinks, QDir::Name);
}

/// Lock and mark of a session that has no journal left.
void removeLeftovers(const QString& folder)
{
    const QStringList alive = sessions(folder);
    const auto locks = entries(folder, kLock);
    for (const QString& name : locks) {
        if (alive.contains(sessionOf(name)))
            continue;
        FileLock lock(folder + QLatin1Char('/') + name);
        if (lock.tryLock())
            lock.removeAndUnlock();
    }
    const auto marks = entries(folder, kTold);
    for (const QString& name : marks) {
        if (!alive.contains(sessionOf(name)))
            QFile::remove(folder + QLatin1Char('/') + name);
    }
}

} // namespace

QString stateFolder()
{
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    // A relative path there counts as none.
    if (!state.startsWith(QLatin1Char('/')))
        state = QDir::homePath() + QStringLiteral("/.local/state");
    return QDir::cleanPath(state) + QStringLiteral("/marrowick/recovery");
}

int makeFolder(const QString& folder)
{
    const QString parent = QFileInfo(folder).path();
    if (!QFileInfo::exists(parent) && parent != folder) {
        if (const int error = makeFolder(parent); error != 0)
            return error;
    }
    return ::mkdir(QFile::encodeName(folder).constData(), 0700) == 0 || errno == EEXIST ? 0 : errno;
}

QString newSession()
{
    const QString time = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    return QStringLiteral("%1-%2").arg(time).arg(::getpid());
}

QString lockFile(const QString& folder, const QString& session)
{
    return folder + QLatin1Char('/') + session + kLock;
}

QString journalFile(const QString& folder, const QString& session, int number)
{
    return QStringLiteral("%1/%2.%3%4").arg(folder, session).arg(number, 6, 10, QLatin1Char('0')).arg(kJournal);
}

QStringList sessions(const QString& folder)
{
    QStringList names;
    const auto files = entries(folder, kJournal);
    for (const QString& file : files) {
        if (const QString session = sessionOf(file); !names.contains(session))
            names.append(session);
    }
    return names;
}

QStringList journals(const QString& folder, const QString& session)
{
    QStringList files;
    const auto all = entries(folder, kJournal);
    for (const QString& file : all) {
        if (sessionOf(file) == session)
            files.append(folder + QLatin1Char('/') + file);
    }
    return files;
}

bool isRunning(const QString& folder, const QString& session)
{
    const QString file = lockFile(folder, session);
    if (!QFileInfo::exists(file))
        return false;
    FileLock lock(file);
    return !lock.tryLock() && lock.isUsable();
}

bool markTold(const QString& folder, const QString& session)
{
    QFile mark(toldFile(folder, session));
    return mark.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner);
}

bool isTold(const QString& folder, const QString& session)
{
    return QFileInfo::exists(toldFile(folder, session));
}

void prune(const QString& folder, const Limits& limits)
{
    const QDateTime oldest = QDateTime::currentDateTime().addSecs(-limits.seconds);
    qint64 total = 0;
    QStringList mayGo, mayGoLast;
    const auto known = sessions(folder);
    for (const QString& session : known) {
        const QStringList files = journals(folder, session);
        const bool running = isRunning(folder, session);
        for (const QString& file : files) {
            const QFileInfo info(file);
            if (running && file == files.last()) {
                total += info.size();
            } else if (info.lastModified() < oldest) {
                QFile::remove(file);
            } else {
                total += info.size();
                // What a crash has left and nobody was told of yet outlasts all else.
                (file == files.last() && !isTold(folder, session) ? mayGoLast : mayGo).append(file);
            }
        }
    }
    const auto older = [](const QString& one, const QString& other) {
        return QFileInfo(one).lastModified() < QFileInfo(other).lastModified();
    };
    std::stable_sort(mayGo.begin(), mayGo.end(), older);
    std::stable_sort(mayGoLast.begin(), mayGoLast.end(), older);
    for (const QString& file : mayGo + mayGoLast) {
        if (total <= limits.bytes)
            break;
        total -= QFileInfo(file).size();
        QFile::remove(file);
    }
    removeLeftovers(folder);
}

} // namespace recovery
