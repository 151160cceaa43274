// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileLock.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

FileLock::FileLock(QString path)
    : m_path(std::move(path))
{}

FileLock::~FileLock()
{
    unlock();
}

FileLock::Attempt FileLock::attempt()
{
    const QByteArray path = QFile::encodeName(m_path);
    const int descriptor = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0) {
        m_error = errno;
        return Attempt::Impossible;
    }
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        ::close(descriptor);
        if (error == EWOULDBLOCK || error == EINTR)
            return Attempt::Busy;
        m_error = error;
        return Attempt::Impossible;
    }
    // Its holder may have removed the file between open and lock; then the name leads others to another file.
    struct stat held = {};
    struct stat named = {};
    if (::fstat(descriptor, &held) != 0 || ::stat(path.constData(), &named) != 0 || held.st_ino != named.st_ino ||
        held.st_dev != named.st_dev) {
        ::close(descriptor);
        return Attempt::Gone;
    }
    m_descriptor = descriptor;
    return Attempt::Taken;
}

bool FileLock::tryLock(std::chrono::milliseconds patience)
{
    if (isHeld())
        return true;
    constexpr int kMostGone = 100; // in a row, without a wait
    m_error = 0;
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (int gone = 0;;) {
        const Attempt result = attempt();
        if (result == Attempt::Taken || result == Attempt::Impossible)
            return result == Attempt::Taken;
        if (result == Attempt::Gone && ++gone < kMostGone)
            continue;
        gone = 0;
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void FileLock::unlock()
{
    if (m_descriptor >= 0)
        ::close(std::exchange(m_descriptor, -1));
}

void FileLock::removeAndUnlock()
{
    if (isHeld())
        ::unlink(QFile::encodeName(m_path).constData());
    unlock();
}
