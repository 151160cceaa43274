// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recovery/JournalFolder.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace recovery {

/// Puts bytes into the journal files of a session, in a thread of its own: no disk, however slow, holds up the caller.
/// The first call makes the folder, takes the session's lock and prunes the folder. After a failure nothing is written
/// before resume().
class JournalWriter
{
public:
    /// failed is called in the thread, with the error as errno, once for each time that writing ends.
    JournalWriter(QString folder, QString session, const Limits& limits, std::function<void(int)> failed);
    /// Waits two seconds at most for what is not written yet.
    ~JournalWriter();
    JournalWriter(const JournalWriter&) = delete;
    JournalWriter& operator=(const JournalWriter&) = delete;

    /// What follows goes into a new file.
    void startFile();
    /// Tries again behind a failure: what follows is to begin with startFile().
    void resume();
    /// One write to the system. Counts as a failure (ENOBUFS) when the disk is behind by more than kMostWaiting bytes.
    void append(const QByteArray& bytes);
    /// What was appended so far goes to the disk itself.
    void sync();
    /// True when all of it has been done before the time is over. False after a failure.
    bool drain(std::chrono::milliseconds patience) const;

    std::uint64_t bytesWritten() const;
    /// Calls of write() and fdatasync().
    std::uint64_t systemCalls() const;

    static constexpr qint64 kMostWaiting = 32LL * 1024 * 1024;

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace recovery
