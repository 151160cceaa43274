// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/script/ScriptRunner.h"

#include <QByteArray>

#include <memory>
#include <optional>

namespace sim {

/// The one script that the instrument holds: its transfer, and the run of it.
class ScriptSlot
{
public:
    static constexpr int kLongestScript = 1024 * 1024;
    static constexpr Duration kTransferSilence = std::chrono::seconds(1);

    /// Without a runner a script is kept, but not run.
    ScriptSlot(QByteArray script, std::unique_ptr<ScriptRunner> runner);

    const QByteArray& script() const { return m_script; }

    /// So many bytes will come. What was loaded before is gone.
    void announce(std::int32_t length, Moment now);
    bool isTransferring() const { return m_transferring; }
    void take(const QByteArray& bytes, Moment now);
    enum class Transfer
    {
        Loaded,
        TooLong
    };
    /// When the last byte has come.
    Transfer endTransfer();
    /// Nothing has come for kTransferSilence.
    bool hasFallenSilent(Moment now) const { return m_transferring && now - m_lastByte >= kTransferSilence; }
    /// The script is gone.
    void giveUpTransfer();

    bool canRun() const { return m_runner != nullptr; }
    bool isRunning() const { return m_running; }
    /// Only while none runs and one can. A failure is one of the script's beginning: none runs then.
    Outcome run(ScriptHost& host, Moment now);
    /// Only while one runs.
    void stop();
    /// The runner has said so by itself.
    void finished();
    void acknowledge(Moment now);
    /// A run of the instrument is over. The runner is told at the next advance(), since it may be what began or stopped
    /// that run.
    void runEnded(bool completed);
    /// The run that ended was replaced by another, for whose end the script waits now.
    void forgetRunEnd() { m_runEnded.reset(); }

    void advance(Moment now);
    std::optional<Moment> nextDue(Moment now) const;
    /// The host is gone: ends transfer and run without a word.
    void drop();

private:
    QByteArray m_script;
    std::unique_ptr<ScriptRunner> m_runner;
    bool m_running = false;
    std::optional<bool> m_runEnded; ///< completed or not; until the runner is told
    bool m_transferring = false;
    bool m_tooLong = false;
    Moment m_lastByte{0};
};

} // namespace sim
