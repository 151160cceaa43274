// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// Internal to SafeFile.cpp and its test: the system calls of a save, so that a test can let each of them fail.
/// Everybody else calls files::writeFile() of SafeFile.h.
namespace files {

/// As the system's functions of these names; openTemporary is openat() of a file without a name in that folder,
/// openNamed openat() of a new one with a name.
struct SafeFileCalls
{
    int (*openTemporary)(int folder, int flags) = [](int folder, int flags) {
        return ::openat(folder, ".", flags, 0666);
    };
    int (*openNamed)(int folder, const char* name, int flags) = [](int folder, const char* name, int flags) {
        return ::openat(folder, name, flags, 0666);
    };
    ssize_t (*write)(int fd, const void* bytes, std::size_t size) = ::write;
    int (*fsync)(int fd) = ::fsync;
    int (*fchmod)(int fd, mode_t mode) = ::fchmod;
    int (*close)(int fd) = ::close;
    int (*linkat)(int oldFolder, const char* oldName, int newFolder, const char* newName, int flags) = ::linkat;
    int (*renameat)(int oldFolder, const char* oldName, int newFolder, const char* newName) = ::renameat;
    int (*unlinkat)(int folder, const char* name, int flags) = ::unlinkat;
};

Outcome writeFile(const QString& fileName, const QByteArray& bytes, const SafeFileCalls& calls);

} // namespace files
