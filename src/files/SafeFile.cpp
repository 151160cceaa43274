// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/SafeFile.h"

#include "files/SafeFileCalls.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <cstring>

namespace files {
namespace {

/// A file descriptor that is closed with its scope.
class Descriptor
{
public:
    explicit Descriptor(int fd)
        : m_fd(fd)
    {}
    ~Descriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }
    bool isOpen() const { return m_fd >= 0; }

private:
    int m_fd;
};

Outcome failed(const QString& fileName, const QString& reason)
{
    return Outcome::failure(QCoreApplication::translate("SafeFile", "Cannot save %1: %2. The file is as it was before.")
                                .arg(fileName, reason));
}

QString reasonOf(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

bool sync(int fd, const SafeFileCalls& calls)
{
    int result = 0;
    do
        result = calls.fsync(fd);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

bool writeAll(int fd, const QByteArray& bytes, const SafeFileCalls& calls)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = calls.write(fd, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (n == 0)
            errno = ENOSPC;
        if (n == 0 || (n < 0 && errno != EINTR))
            return false;
        done += n > 0 ? n : 0;
    }
    return sync(fd, calls);
}

/// Gives the nameless file a name beside the old one and moves it over the old one.
bool putInPlace(int fd, int folder, const QByteArray& name, const SafeFileCalls& calls)
{
    const QByteArray source = "/proc/self/fd/" + QByteArray::number(fd);
    const QByteArray saving = '.' + name + ".saving";
    // Another program that saves the same name may take the hidden file away in between; its bytes are whole as well.
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (calls.linkat(AT_FDCWD, source.constData(), folder, saving.constData(), AT_SYMLINK_FOLLOW) != 0) {
            if (errno != EEXIST)
                return false;
            calls.unlinkat(folder, saving.constData(), 0);
            continue;
        }
        if (calls.renameat(folder, saving.constData(), folder, name.constData()) == 0)
            return true;
        if (errno != ENOENT) {
            const int error = errno;
            calls.unlinkat(folder, saving.constData(), 0);
            errno = error;
            return false;
        }
    }
    return false;
}

/// Not every file system can sync a folder.
bool syncFolder(int folder, const SafeFileCalls& calls)
{
    return sync(folder, calls) || errno == EINVAL || errno == EOPNOTSUPP;
}

/// For file systems without nameless files.
Outcome writeThroughSaveFile(const QString& fileName, const QByteArray& bytes)
{
    QSaveFile file(fileName);
    // Unbuffered: a buffer that cannot be written out when the file closes would go unnoticed.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(bytes) != bytes.size() || !file.commit())
        return failed(fileName, file.errorString());
    return Outcome::success();
}

} // namespace

Outcome writeFile(const QString& fileName, const QByteArray& bytes)
{
    return writeFile(fileName, bytes, SafeFileCalls());
}

Outcome writeFile(const QString& fileName, const QByteArray& bytes, const SafeFileCalls& calls)
{
    const QFileInfo given(fileName);
    const QFileInfo info(given.isSymLink() ? given.symLinkTarget() : given.absoluteFilePath());
    if (fileName.isEmpty() || info.fileName().isEmpty() || (info.exists() && !info.isFile()))
        return failed(fileName, QCoreApplication::translate("SafeFile", "it is not a file"));
    if (info.exists() && !info.isWritable())
        return failed(fileName, reasonOf(EACCES));

    const QByteArray name = QFile::encodeName(info.fileName());
    const Descriptor folder(
        ::open(QFile::encodeName(info.absolutePath()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen())
        return failed(fileName, reasonOf(errno));
    const Descriptor file(calls.openTemporary(folder.get(), O_TMPFILE | O_WRONLY | O_CLOEXEC));
    if (!file.isOpen()) {
        if (errno == EOPNOTSUPP || errno == EISDIR || errno == ENOENT || errno == EINVAL)
            return writeThroughSaveFile(info.filePath(), bytes);
        return failed(fileName, reasonOf(errno));
    }
    struct stat old = {};
    if (::fstatat(folder.get(), name.constData(), &old, 0) == 0 && calls.fchmod(file.get(), old.st_mode & 07777) != 0)
        return failed(fileName, reasonOf(errno));
    if (!writeAll(file.get(), bytes, calls) || !putInPlace(file.get(), folder.get(), name, calls))
        return failed(fileName, reasonOf(errno));
    if (!syncFolder(folder.get(), calls))
        return Outcome::failure(
            QCoreApplication::translate("SafeFile",
                                        "%1 is written, but may not survive a power failure: %2. Save it again.")
                .arg(fileName, reasonOf(errno)));
    return Outcome::success();
}

} // namespace files
