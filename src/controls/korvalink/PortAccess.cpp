// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/PortAccess.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
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

} // namespace

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
