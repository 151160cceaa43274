// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/FileLock.h"
#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace sim {

/// The entry under which hosts find a simulated instrument: the symbolic link "marrowick/devices/<serial>" in the
/// runtime folder, which points to the terminal device. A lock in "marrowick/locks/<serial>" is held as long as the
/// instrument lives, so that an entry left behind by a crash is told from one in use whatever its device has become
/// since.
class DeviceEntry
{
public:
    DeviceEntry() = default;
    ~DeviceEntry(); ///< withdraws the entry and gives the serial number back
    DeviceEntry(const DeviceEntry&) = delete;
    DeviceEntry& operator=(const DeviceEntry&) = delete;

    /// Reserves the serial number; the one reserved before is given back, and its entry is moved to the new name if it
    /// was published. Fails, leaving everything as it was, when a living instrument has that number.
    Outcome claim(const QByteArray& serial);
    /// Points the entry to the device, replacing whatever entry of that name was left behind. After claim().
    Outcome publish(const QByteArray& devicePath);
    /// Removes the entry, as at an unplugging; the serial number stays reserved. An entry of that name that somebody
    /// else has made since is left alone.
    void withdraw();

    QByteArray serial() const { return m_serial; }
    /// Where the link of the claimed serial number stands.
    QByteArray linkPath() const { return m_folder + "/devices/" + m_serial; }

    /// Where hosts look: $XDG_RUNTIME_DIR/marrowick. Without a runtime folder, or with one that is not the user's own,
    /// it is in a folder "runtime-USER" of mode 0700 in the folder for temporary files, as QStandardPaths has it for
    /// hosts too. A failure says that there is neither.
    static ValueOr<QByteArray> runtimeFolder();

private:
    void release();

    QByteArray lockPath(const QByteArray& serial) const { return m_folder + "/locks/" + serial; }

    QByteArray m_folder;
    QByteArray m_serial;
    QByteArray m_target; ///< published device; empty when there is no entry
    std::unique_ptr<FileLock> m_lock;
};

} // namespace sim
