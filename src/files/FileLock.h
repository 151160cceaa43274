// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <chrono>

/// An exclusive lock on a file, held by at most one object among all processes of the machine. The system drops it when
/// its process ends, however it ends, so there are no stale locks. Programs started meanwhile do not inherit it.
class FileLock
{
public:
    /// The file is created when missing and stays behind; its folder must exist.
    explicit FileLock(QString path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Takes the lock, waiting for another holder no longer than told. False when it could not be had; whether because
    /// of another holder or because the file cannot be opened tells isUsable().
    bool tryLock(std::chrono::milliseconds patience = std::chrono::milliseconds::zero());
    void unlock();
    bool isHeld() const { return m_descriptor >= 0; }
    /// False after a tryLock that could not open the file.
    bool isUsable() const { return m_usable; }

private:
    enum class Attempt
    {
        Taken,
        Busy,
        Impossible
    };
    Attempt attempt();

    QString m_path;
    int m_descriptor = -1;
    bool m_usable = true;
};
