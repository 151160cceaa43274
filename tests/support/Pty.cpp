// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Pty.h"

#include <QDir>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

Pty::Pty(HostEnd hostEnd)
{
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char name[64];
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0 ||
        ::ptsname_r(m_master, name, sizeof name) != 0) {
        unplug();
        return;
    }
    m_slavePath = QString::fromLocal8Bit(name);
    termios mode{};
    if (::tcgetattr(m_master, &mode) == 0) {
        ::cfmakeraw(&mode);
        ::tcsetattr(m_master, TCSANOW, &mode);
    }
    if (hostEnd == HostEnd::KeptOpen)
        m_slave = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
}

Pty::~Pty()
{
    unplug();
}

qint64 Pty::send(const QByteArray& bytes)
{
    const ssize_t sent = ::write(m_master, bytes.constData(), std::size_t(bytes.size()));
    return sent < 0 ? 0 : sent;
}

QByteArray Pty::receive()
{
    QByteArray bytes;
    char chunk[4096];
    for (;;) {
        const ssize_t count = ::read(m_master, chunk, sizeof chunk);
        if (count <= 0)
            return bytes;
        bytes.append(chunk, count);
    }
}

void Pty::unplug()
{
    for (int* const end : {&m_slave, &m_master}) {
        if (*end >= 0)
            ::close(*end);
        *end = -1;
    }
}

PtyHost::PtyHost(const QString& device)
    : m_file(::open(device.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
{
    termios mode{};
    if (m_file < 0 || ::tcgetattr(m_file, &mode) != 0) {
        m_lost = true;
        return;
    }
    ::cfmakeraw(&mode);
    ::tcsetattr(m_file, TCSANOW, &mode);
}

void PtyHost::close()
{
    if (m_file >= 0)
        ::close(m_file);
    m_file = -1;
}

bool PtyHost::wait(short events) const
{
    pollfd watched{m_file, events, 0};
    return ::poll(&watched, 1, static_cast<int>(std::chrono::milliseconds(kPatience).count())) > 0;
}

bool PtyHost::write(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t count = ::write(m_file, text.data(), text.size());
        if (count > 0)
            text.remove_prefix(static_cast<std::size_t>(count));
        else if ((errno != EAGAIN && errno != EINTR) || !wait(POLLOUT))
            return false;
    }
    return true;
}

bool PtyHost::readUntil(const std::function<bool()>& condition)
{
    // The condition may be about something else than bytes, so it is looked at now and then.
    constexpr int kGlance = 10;
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        std::array<char, 16384> chunk;
        const ssize_t count = ::read(m_file, chunk.data(), chunk.size());
        if (count > 0) {
            bytes.append(chunk.data(), static_cast<std::size_t>(count));
            reads.push_back(static_cast<std::size_t>(count));
            continue;
        }
        if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            m_lost = true;
            return condition();
        }
        if (std::chrono::steady_clock::now() > end)
            return false;
        pollfd watched{m_file, POLLIN, 0};
        ::poll(&watched, 1, kGlance);
    }
    return true;
}

OrdinaryUser::OrdinaryUser()
{
    constexpr uid_t kNobody = 65534;
    if (::geteuid() != 0)
        return;
    m_groups.resize(std::size_t(::getgroups(0, nullptr)));
    if (::getgroups(int(m_groups.size()), m_groups.data()) < 0 || ::setgroups(0, nullptr) != 0 ||
        ::setegid(kNobody) != 0 || ::seteuid(kNobody) != 0)
        std::abort();
    m_changed = true;
}

OrdinaryUser::~OrdinaryUser()
{
    if (m_changed && (::seteuid(0) != 0 || ::setegid(0) != 0 || ::setgroups(m_groups.size(), m_groups.data()) != 0))
        std::abort();
}

int openFiles()
{
    return int(QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
}
