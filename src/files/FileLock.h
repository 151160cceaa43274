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
    /// Unlocks and takes the file away, so that none gather. Nobody else can come to hold a lock on the file that goes.
    void removeAndUnlock();
    bool isHeld() const { return m_descriptor >= 0; }
    /// False after a tryLock that could not open or lock the file, for another reason than a holder.
    bool isUsable() const { return m_error == 0; }
    /// That reason, as errno; 0 when isUsable().
    int error() const { return m_error; }

private:
    enum class Attempt
    {
        Taken,
        Busy,
        Gone, ///< the file that was locked bears the name no longer
        Impossible
    };
    Attempt attempt();

    QString m_path;
    int m_descriptor = -1;
    int m_error = 0;
};
