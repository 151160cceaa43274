// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "values/Outcome.h"

#include <QByteArray>

#include <cstddef>
#include <utility>

namespace sim {

/// The instrument's end of a pseudo-terminal in raw mode. Nothing here blocks.
class PtyPort
{
public:
    /// Opens on any terminal but that one.
    explicit PtyPort(QByteArray notOn = {})
        : m_notOn(std::move(notOn))
    {}
    ~PtyPort() { close(); }
    PtyPort(const PtyPort&) = delete;
    PtyPort& operator=(const PtyPort&) = delete;

    Outcome open();
    /// A host that has the port open reads the end of it, as when a cable is pulled.
    void close();
    bool isOpen() const { return m_master >= 0; }
    /// What the host opens, for example "/dev/pts/3".
    QByteArray devicePath() const { return m_devicePath; }
    int descriptor() const { return m_master; }

    /// Whether a host has the device open.
    bool hostPresent() const;
    /// Bytes read, 0 when none are waiting, -1 when the host has closed the device.
    std::ptrdiff_t read(char* buffer, std::size_t size);
    /// Bytes taken, 0 when the host has to read first, -1 when the device is gone.
    std::ptrdiff_t write(const char* bytes, std::size_t size);
    /// Takes back what a host that is gone has not read.
    void discardOutput();

private:
    /// The step that failed, errno set; nothing after success. The terminal to be avoided is left open in avoided.
    const char* openMaster(int& avoided);

    QByteArray m_notOn;
    int m_master = -1;
    QByteArray m_devicePath;
};

} // namespace sim
