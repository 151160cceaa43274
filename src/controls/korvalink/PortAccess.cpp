// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/PortAccess.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("PortAccess", text);
}

QString groupName(gid_t group)
{
    const struct group* entry = ::getgrgid(group);
    return entry ? QString::fromLocal8Bit(entry->gr_name) : QString::number(group);
}

/// Where QSerialPort locks a port: in the first of these folders that it may write to.
QString lockFileOf(const QString& device)
{
    const QString port = QString(device).remove(QLatin1String("/dev/")).replace(u'/', u'_');
    for (const char* folder : {"/var/lock", "/etc/locks", "/var/spool/locks", "/var/spool/uucp", "/tmp"}) {
        const QFileInfo status{QLatin1String(folder)};
        if (status.isReadable() && status.isWritable())
            return QLatin1String(folder) + QLatin1String("/LCK..") + port;
    }
    return {};
}

bool isDead(qint64 process)
{
    return process > 0 && ::kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH;
}

} // namespace

QString portInUse(const QString& device, const QString& shownName)
{
    const QString file = lockFileOf(device);
    qint64 process = 0;
    QString host, program;
    if (!file.isEmpty() && QLockFile(file).getLockInfo(&process, &host, &program) && isDead(process))
        return translated("The device %1 is locked by a program that has ended without taking its lock away, and the "
                          "lock belongs to somebody else. Have the file %2 removed.")
            .arg(shownName, file);
    return translated("The device %1 is in use by another program.").arg(shownName);
}

Outcome portAccess(const QString& path)
{
    const QByteArray file = QFile::encodeName(path);
    if (::faccessat(AT_FDCWD, file.constData(), R_OK | W_OK, AT_EACCESS) == 0)
        return Outcome::success();
    const int reason = errno;
    struct stat status
    {};
    if (reason != EACCES || ::stat(file.constData(), &status) != 0)
        return Outcome::failure(
            translated("The device %1 cannot be opened: %2.").arg(path, QString::fromLocal8Bit(std::strerror(reason))));

    constexpr mode_t kGroupAccess = S_IRGRP | S_IWGRP;
    if ((status.st_mode & kGroupAccess) == kGroupAccess && status.st_gid != 0)
        return Outcome::failure(
            translated("You may not open the device %1. It belongs to the group \"%2\": add yourself to that group "
                       "and log in again, or install the udev rule 70-marrowick.rules.")
                .arg(path, groupName(status.st_gid)));
    return Outcome::failure(translated("You may not open the device %1. Install the udev rule 70-marrowick.rules, "
                                       "which gives it to the user at this computer, and plug the instrument in again.")
                                .arg(path));
}
