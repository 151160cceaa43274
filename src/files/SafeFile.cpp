// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/SafeFile.h"

#include "files/SafeFileCalls.h"

#include <QByteArrayList>
#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <dirent.h>
#include <optional>
#include <utility>

namespace files {
namespace {

/// A file descriptor that is closed with its scope.
class Descriptor
{
public:
    Descriptor(int fd, int (*closeCall)(int))
        : m_fd(fd)
        , m_close(closeCall)
    {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_fd; }
    bool isOpen() const { return m_fd >= 0; }
    /// False, with errno, when the system tells of bytes that it could not keep.
    bool close() { return !isOpen() || m_close(std::exchange(m_fd, -1)) == 0 || errno == EINTR; }

private:
    int m_fd;
    int (*m_close)(int);
};

/// Where a save goes to.
struct Place
{
    int folder;
    QByteArray name;
    std::optional<mode_t> oldMode; ///< of the file that is there
};

/// All but Replaced with errno.
enum class Result
{
    Replaced,
    NotDurable, ///< replaced, but a power failure may undo it
    Failed,
    NoNamelessFiles
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

bool keepMode(int fd, const Place& place, const SafeFileCalls& calls)
{
    constexpr mode_t kPermissions = 07777;
    struct stat made = {};
    // File systems without permissions refuse every change of them.
    if (!place.oldMode || (::fstat(fd, &made) == 0 && ((made.st_mode ^ *place.oldMode) & kPermissions) == 0))
        return true;
    return calls.fchmod(fd, *place.oldMode & kPermissions) == 0;
}

/// What stands for a name in the names of its hidden files: these must be allowed wherever the name is.
QByteArray stemOf(const QByteArray& name)
{
    constexpr qsizetype kLongest = 64;
    if (name.size() <= kLongest)
        return name;
    std::uint64_t hash = 0xCBF29CE484222325; // FNV-1a
    for (const char byte : name)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    return QByteArray::number(qulonglong{hash}, 16);
}

constexpr char kSaving[] = ".saving";

QByteArray hiddenName(const QByteArray& name)
{
    return '.' + stemOf(name) + kSaving;
}

constexpr qsizetype kUniqueDigits = 16;

/// A hidden name that no other save uses.
QByteArray uniqueHiddenName(const QByteArray& name)
{
    const QByteArray digits = QByteArray::number(QRandomGenerator::system()->generate64(), 16);
    return '.' + stemOf(name) + '.' + digits.rightJustified(kUniqueDigits, '0') + kSaving;
}

bool isUniqueHiddenName(const QByteArray& entry, const QByteArray& name)
{
    const QByteArray start = '.' + stemOf(name) + '.';
    if (entry.size() != start.size() + kUniqueDigits + qsizetype{sizeof kSaving} - 1 || !entry.startsWith(start) ||
        !entry.endsWith(kSaving))
        return false;
    const QByteArray digits = entry.sliced(start.size(), kUniqueDigits);
    return std::all_of(digits.begin(), digits.end(), [](char c) { return std::strchr("0123456789abcdef", c); });
}

/// Gives the nameless file a name beside the old one and moves it over the old one.
bool putInPlace(int fd, const Place& place, const SafeFileCalls& calls)
{
    const QByteArray source = "/proc/self/fd/" + QByteArray::number(fd);
    const QByteArray saving = hiddenName(place.name);
    // Another program that saves the same name may take the hidden file away in between; its bytes are whole as well.
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (calls.linkat(AT_FDCWD, source.constData(), place.folder, saving.constData(), AT_SYMLINK_FOLLOW) != 0) {
            if (errno != EEXIST)
                return false;
            calls.unlinkat(place.folder, saving.constData(), 0);
            continue;
        }
        if (calls.renameat(place.folder, saving.constData(), place.folder, place.name.constData()) == 0)
            return true;
        if (errno != ENOENT) {
            const int error = errno;
            calls.unlinkat(place.folder, saving.constData(), 0);
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

Result saveNameless(const Place& place, const QByteArray& bytes, const SafeFileCalls& calls)
{
    Descriptor file(calls.openTemporary(place.folder, O_TMPFILE | O_WRONLY | O_CLOEXEC), calls.close);
    if (!file.isOpen()) {
        const bool unknown = errno == EOPNOTSUPP || errno == EISDIR || errno == ENOENT || errno == EINVAL;
        return unknown ? Result::NoNamelessFiles : Result::Failed;
    }
    if (!keepMode(file.get(), place, calls) || !writeAll(file.get(), bytes, calls))
        return Result::Failed;
    if (!putInPlace(file.get(), place, calls)) {
        // No hard links here, or no /proc to make one from.
        const bool unknown = errno == EOPNOTSUPP || errno == EPERM || errno == ENOENT;
        return unknown ? Result::NoNamelessFiles : Result::Failed;
    }
    const bool closed = file.close();
    const int error = errno;
    if (!syncFolder(place.folder, calls))
        return Result::NotDurable;
    errno = error;
    return closed ? Result::Replaced : Result::NotDurable;
}

/// What saves left behind that were killed. One that still runs finds its hidden file gone and begins anew.
void removeLeftovers(const Place& place, const SafeFileCalls& calls)
{
    const int fd = ::openat(place.folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* const folder = fd >= 0 ? ::fdopendir(fd) : nullptr;
    if (folder == nullptr) {
        if (fd >= 0)
            ::close(fd);
        return;
    }
    QByteArrayList leftovers;
    while (const dirent* const entry = ::readdir(folder)) {
        const QByteArray name = entry->d_name;
        if (name == hiddenName(place.name) || isUniqueHiddenName(name, place.name))
            leftovers.append(name);
    }
    ::closedir(folder);
    for (const QByteArray& leftover : std::as_const(leftovers))
        calls.unlinkat(place.folder, leftover.constData(), 0);
}

/// For file systems without nameless files, network shares and FAT above all. There a full quota may show as late as
/// the file is closed.
Result saveNamed(const Place& place, const QByteArray& bytes, const SafeFileCalls& calls)
{
    removeLeftovers(place, calls);
    for (int attempt = 0; attempt < 10; ++attempt) {
        const QByteArray saving = uniqueHiddenName(place.name);
        Descriptor file(calls.openNamed(place.folder, saving.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC),
                        calls.close);
        if (!file.isOpen())
            return Result::Failed;
        const bool whole = keepMode(file.get(), place, calls) && writeAll(file.get(), bytes, calls) && file.close();
        if (whole && calls.renameat(place.folder, saving.constData(), place.folder, place.name.constData()) == 0)
            return syncFolder(place.folder, calls) ? Result::Replaced : Result::NotDurable;
        const int error = errno;
        file.close();
        calls.unlinkat(place.folder, saving.constData(), 0);
        errno = error;
        if (!whole || error != ENOENT)
            break;
    }
    return Result::Failed;
}

/// Up to and including the last separator; empty when there is none.
QByteArray folderOf(const QByteArray& path)
{
    return path.first(path.lastIndexOf('/') + 1);
}

/// The path at the end of a chain of symbolic links, also where no file is there yet; empty, with errno, for a chain
/// that has no end.
QByteArray endOfLinks(QByteArray path)
{
    constexpr int kLongestChain = 40;
    for (int link = 0; link <= kLongestChain; ++link) {
        char target[PATH_MAX];
        const ssize_t length = ::readlink(path.constData(), target, sizeof target);
        if (length < 0)
            return path;
        const QByteArray next(target, length);
        path = next.startsWith('/') ? next : folderOf(path) + next;
    }
    errno = ELOOP;
    return {};
}

} // namespace

Outcome writeFile(const QString& fileName, const QByteArray& bytes)
{
    return writeFile(fileName, bytes, SafeFileCalls());
}

Outcome writeFile(const QString& fileName, const QByteArray& bytes, const SafeFileCalls& calls)
{
    const QByteArray given = QFile::encodeName(fileName);
    struct stat old = {};
    const bool exists = ::stat(given.constData(), &old) == 0;
    if (given.isEmpty() || given.endsWith('/') || (exists && !S_ISREG(old.st_mode)))
        return failed(fileName, QCoreApplication::translate("SafeFile", "it is not a file"));
    if (exists && ::access(given.constData(), W_OK) != 0)
        return failed(fileName, reasonOf(errno));
    const QByteArray path = endOfLinks(given);
    if (path.isEmpty())
        return failed(fileName, reasonOf(errno));

    const QByteArray folderName = folderOf(path);
    const Descriptor folder(
        ::open(folderName.isEmpty() ? "." : folderName.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), ::close);
    if (!folder.isOpen())
        return failed(fileName, reasonOf(errno));
    const Place place{folder.get(), path.sliced(folderName.size()),
                      exists ? std::optional(old.st_mode) : std::optional<mode_t>()};
    Result result = saveNameless(place, bytes, calls);
    if (result == Result::NoNamelessFiles)
        result = saveNamed(place, bytes, calls);
    switch (result) {
    case Result::Replaced:
        return Outcome::success();
    case Result::NotDurable:
        return Outcome::failure(
            QCoreApplication::translate("SafeFile",
                                        "%1 is written, but may not survive a power failure: %2. Save it again.")
                .arg(fileName, reasonOf(errno)));
    default:
        return failed(fileName, reasonOf(errno));
    }
}

} // namespace files
