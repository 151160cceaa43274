// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/Device.h"
#include "sim/StatusLine.h"
#include "sim/port/DeviceEntry.h"
#include "sim/port/Line.h"
#include "sim/port/PtyPort.h"

namespace sim {

/// Joins a device to its port and keeps both going until it is told to end.
///
/// A pseudo-terminal tells that its other end is closed, not that it was: a host that leaves and another that comes
/// before the station has looked are one host to it. It looks at every wake-up, and fifty times a second while no host
/// is there.
class Station
{
public:
    /// How long the cable stays out after the fault "unplug".
    static constexpr Duration kUnpluggedTime = std::chrono::milliseconds(1500);

    /// How long an instrument is away that restarts.
    static constexpr Duration kRestartTime = std::chrono::milliseconds(700);

    /// All four outlive the station. The entry has been claimed. The port is on any terminal but notOn.
    Station(Device& device, Line& line, DeviceEntry& entry, StatusLine& status, const QByteArray& notOn = {});

    /// Opens the port and publishes the entry.
    Outcome plugIn();
    QByteArray devicePath() const { return m_port.devicePath(); }
    /// Runs until the descriptor becomes readable; that is how a signal or a test ends it. A failure is one of the
    /// port.
    Outcome run(int endDescriptor);

private:
    static Moment clock();
    void noticeHost(Moment now);
    void hostGone();
    void unplug(Moment now, Duration away);
    bool leaves(Moment now);
    bool readCommands(Moment now);
    bool writeFrames(Moment now);
    bool serve(Moment now);
    /// False when the end was asked for.
    bool waitForWork(int endDescriptor, Moment now);
    void showStatus(Moment now);

    Device& m_device;
    Line& m_line;
    DeviceEntry& m_entry;
    StatusLine& m_status;
    PtyPort m_port;
    bool m_hostPresent = false;
    bool m_outputBlocked = false;
    std::optional<Moment> m_plugInDue;
    bool m_restarts = false; ///< as soon as what the device has sent is out
    std::uint64_t m_framesAtLastStatus = 0;
    Moment m_lastStatus{0};
};

} // namespace sim
