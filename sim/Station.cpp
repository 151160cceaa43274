// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/Station.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <poll.h>
#include <unistd.h>

namespace sim {

namespace {

/// Bytes on their way to the host beyond which the instrument waits before it measures on, as one with a small buffer
/// would.
constexpr std::size_t kMeasureLimit = 8 * 1024;
/// And beyond which it reads no further commands, so that a host that never reads cannot make it grow.
constexpr std::size_t kAnswerLimit = 1024 * 1024;
constexpr int kFramesARound = 64;
/// A host that never stops writing must not keep the instrument from anything else.
constexpr int kReadsARound = 16;
/// A closed port cannot be waited for, only looked at.
constexpr Duration kHostLookInterval = std::chrono::milliseconds(20);
constexpr unsigned kLastAnswerTime = 50'000; // microseconds
constexpr Duration kLongestWait = std::chrono::seconds(1);
constexpr Duration kStatusInterval = std::chrono::milliseconds(250);

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::Station", text);
}

} // namespace

Station::Station(Device& device, Line& line, DeviceEntry& entry, StatusLine& status, const QByteArray& notOn)
    : m_device(device)
    , m_line(line)
    , m_entry(entry)
    , m_status(status)
    , m_port(notOn)
{}

Moment Station::clock()
{
    return std::chrono::duration_cast<Moment>(std::chrono::steady_clock::now().time_since_epoch());
}

Outcome Station::plugIn()
{
    if (Outcome opened = m_port.open(); !opened)
        return opened;
    m_line.plugIn();
    return m_entry.publish(m_port.devicePath());
}

void Station::noticeHost(Moment now)
{
    if (m_hostPresent)
        return;
    // What a host wrote that was gone again before it was noticed is not for the next one to answer for.
    std::array<char, 4096> buffer;
    std::ptrdiff_t early = 0;
    bool present = m_port.hostPresent();
    while (!present && (early = m_port.read(buffer.data(), buffer.size())) > 0)
        present = m_port.hostPresent();
    if (!present)
        return;
    m_hostPresent = true;
    m_outputBlocked = false;
    m_device.hostArrived(now);
    // Unless it came between the two looks, and with it the host.
    if (early > 0)
        m_device.receive({buffer.data(), static_cast<std::size_t>(early)}, now);
}

void Station::hostGone()
{
    m_hostPresent = false;
    m_device.hostLeft();
    m_line.clear();
    if (m_port.isOpen())
        m_port.discardOutput();
}

void Station::unplug(Moment now, Duration away)
{
    m_entry.withdraw();
    m_port.close();
    hostGone();
    m_plugInDue = now + away;
}

/// False when the host has gone.
bool Station::readCommands(Moment now)
{
    std::array<char, 4096> buffer;
    for (int reads = 0; reads < kReadsARound && m_line.pending() < kAnswerLimit; ++reads) {
        const std::ptrdiff_t count = m_port.read(buffer.data(), buffer.size());
        if (count < 0)
            return false;
        if (count == 0)
            return true;
        m_device.receive({buffer.data(), static_cast<std::size_t>(count)}, now);
    }
    return true;
}

/// False when the host has gone.
bool Station::writeFrames(Moment now)
{
    m_outputBlocked = false;
    for (;;) {
        const std::string_view bytes = m_line.ready(now);
        if (bytes.empty())
            return true;
        const std::ptrdiff_t count = m_port.write(bytes.data(), bytes.size());
        if (count < 0)
            return false;
        m_line.written(static_cast<std::size_t>(count));
        if (static_cast<std::size_t>(count) < bytes.size()) {
            m_outputBlocked = true;
            return true;
        }
    }
}

bool Station::serve(Moment now)
{
    if (!readCommands(now))
        return false;
    if (m_line.pending() < kMeasureLimit)
        m_device.advance(now, kFramesARound);
    if (m_line.takeUnplugged()) {
        unplug(now, kUnpluggedTime);
        return true;
    }
    if (leaves(now))
        return true;
    const bool hostThere = writeFrames(now);
    if (m_restarts && (m_line.pending() == 0 || !hostThere)) {
        m_restarts = false;
        // The host is to read the last answer before the device goes from under it.
        ::usleep(kLastAnswerTime);
        unplug(now, kRestartTime);
        return true;
    }
    return hostThere;
}

bool Station::leaves(Moment now)
{
    switch (m_device.takeLeave()) {
    case Device::Leave::No:
        return false;
    case Device::Leave::Restart:
        m_restarts = true;
        return false;
    case Device::Leave::CableLost:
    case Device::Leave::PowerLost:
        unplug(now, kUnpluggedTime);
        return true;
    }
    return false;
}

bool Station::waitForWork(int endDescriptor, Moment now)
{
    Moment until = now + kLongestWait;
    if (m_status.enabled())
        until = std::min(until, now + kStatusInterval);
    std::array<pollfd, 2> watched{{{endDescriptor, POLLIN, 0}, {-1, 0, 0}}};
    if (m_plugInDue) {
        until = std::min(until, *m_plugInDue);
    } else if (!m_hostPresent) {
        until = std::min(until, now + kHostLookInterval);
    } else {
        watched[1].fd = m_port.descriptor();
        if (m_line.pending() < kAnswerLimit)
            watched[1].events |= POLLIN;
        if (m_outputBlocked)
            watched[1].events |= POLLOUT;
        if (const auto stalled = m_line.stalledUntil())
            until = std::min(until, *stalled);
        if (m_line.pending() < kMeasureLimit) {
            if (const auto due = m_device.nextDue())
                until = std::min(until, *due);
        }
    }
    const Duration wait = std::max(Duration(0), until - now);
    const timespec timeout{static_cast<time_t>(wait.count() / 1'000'000'000),
                           static_cast<long>(wait.count() % 1'000'000'000)};
    ::ppoll(watched.data(), watched.size(), &timeout, nullptr);
    return watched[0].revents == 0;
}

void Station::showStatus(Moment now)
{
    if (!m_status.wanted(now))
        return;
    const std::uint64_t frames = m_line.framesSent();
    const double seconds = std::chrono::duration<double>(now - m_lastStatus).count();
    const double rate = static_cast<double>(frames - m_framesAtLastStatus) / std::max(seconds, 1e-3);
    m_framesAtLastStatus = frames;
    m_lastStatus = now;
    const QString state = m_plugInDue     ? tr("unplugged")
                          : m_hostPresent ? tr("host connected")
                                          : tr("waiting for a host");
    const QString steady = QString::fromLatin1(m_entry.serial()) + QLatin1String(": ") + state;
    m_status.show(steady,
                  m_hostPresent ? tr("%1; %2 frames/s").arg(m_device.activity()).arg(rate, 0, 'f', 0) : QString(), now);
}

Outcome Station::run(int endDescriptor)
{
    for (;;) {
        const Moment now = clock();
        if (m_plugInDue && now >= *m_plugInDue) {
            m_plugInDue.reset();
            if (Outcome plugged = plugIn(); !plugged)
                return plugged;
            m_device.powered(now);
        }
        if (m_port.isOpen())
            noticeHost(now);
        if (m_hostPresent && !serve(now))
            hostGone();
        showStatus(now);
        if (!waitForWork(endDescriptor, now))
            break;
    }
    m_entry.withdraw();
    m_port.close();
    return Outcome::success();
}

} // namespace sim
