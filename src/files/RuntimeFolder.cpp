// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/RuntimeFolder.h"

#include <QDir>
#include <QStandardPaths>

#include <sys/stat.h>
#include <unistd.h>

namespace files {
namespace {

bool isOwnFolder(const QByteArray& path)
{
    struct stat folder = {};
    return ::stat(path.constData(), &folder) == 0 && S_ISDIR(folder.st_mode) && folder.st_uid == ::geteuid();
}

bool hasTemporaryFolder()
{
    const QString folder = QDir::tempPath();
    return QDir::isAbsolutePath(folder) && QDir(folder).exists() && !QDir(folder).isRoot();
}

} // namespace

QString runtimeFolder()
{
    const QByteArray given = qgetenv("XDG_RUNTIME_DIR");
    // Asking QStandardPaths would make the folder wherever the program stands, or, without a folder for temporary
    // files, in the root of the file system.
    const bool relative = !given.isEmpty() && !given.startsWith('/');
    if (relative || (!isOwnFolder(given) && !hasTemporaryFolder()))
        return {};
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
}

} // namespace files
