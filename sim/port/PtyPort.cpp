// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/PtyPort.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace sim {

const char* PtyPort::openMaster(int& avoided)
{
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (m_master < 0)
        return "posix_openpt";
    if (::grantpt(m_master) != 0)
        return "grantpt";
    if (::unlockpt(m_master) != 0)
        return "unlockpt";
    char path[128];
    if (::ptsname_r(m_master, path, sizeof path) != 0)
        return "ptsname";
    m_devicePath = path;
    if (m_devicePath != m_notOn || avoided >= 0)
        return nullptr;
    // As long as it is open nobody is given it again, so the next one is another.
    avoided = std::exchange(m_master, -1);
    return openMaster(avoided);
}

Outcome PtyPort::open()
{
    close();
    const auto failed = [this](const char* step) {
        const QString reason = QString::fromLocal8Bit(std::strerror(errno));
        close();
        return Outcome::failure(
            QCoreApplication::translate("sim::PtyPort", "No pseudo-terminal could be opened (%1): %2.")
                .arg(QLatin1String(step), reason));
    };
    int avoided = -1;
    const char* const failedStep = openMaster(avoided);
    const int reasonOfStep = errno;
    if (avoided >= 0)
        ::close(avoided);
    errno = reasonOfStep;
    if (failedStep)
        return failed(failedStep);
    const QByteArray path = m_devicePath;

    // Opened once from the host's side: the raw mode set there stays, so that nothing is echoed to a host that has not
    // set its own yet; and closing it makes "no host" the same state at the beginning as it is later.
    const int device = ::open(path.constData(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (device < 0)
        return failed("open");
    termios mode;
    const bool raw = ::tcgetattr(device, &mode) == 0 && (::cfmakeraw(&mode), ::tcsetattr(device, TCSANOW, &mode) == 0);
    if (!raw) {
        const int reason = errno;
        ::close(device);
        errno = reason;
        return failed("tcsetattr");
    }
    ::close(device);

    if (::fcntl(m_master, F_SETFL, ::fcntl(m_master, F_GETFL) | O_NONBLOCK) != 0)
        return failed("fcntl");
    return Outcome::success();
}

void PtyPort::close()
{
    if (m_master >= 0)
        ::close(std::exchange(m_master, -1));
    m_devicePath.clear();
}

bool PtyPort::hostPresent() const
{
    pollfd watched{m_master, POLLIN, 0};
    return m_master >= 0 && ::poll(&watched, 1, 0) >= 0 && (watched.revents & POLLHUP) == 0;
}

std::ptrdiff_t PtyPort::read(char* buffer, std::size_t size)
{
    const ssize_t count = ::read(m_master, buffer, size);
    if (count > 0)
        return count;
    return count < 0 && (errno == EAGAIN || errno == EINTR) ? 0 : -1;
}

std::ptrdiff_t PtyPort::write(const char* bytes, std::size_t size)
{
    const ssize_t count = ::write(m_master, bytes, size);
    if (count >= 0)
        return count;
    return errno == EAGAIN || errno == EINTR ? 0 : -1;
}

void PtyPort::discardOutput()
{
    // From this end only what is still on its way can be taken back; what has arrived waits at the other end.
    ::tcflush(m_master, TCOFLUSH);
    const int device = ::open(m_devicePath.constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (device < 0)
        return; // the next host has it for itself already
    ::tcflush(device, TCIFLUSH);
    ::close(device);
}

} // namespace sim
