// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/ScriptSlot.h"

#include <algorithm>
#include <utility>

namespace sim {

ScriptSlot::ScriptSlot(QByteArray script, std::unique_ptr<ScriptRunner> runner)
    : m_script(std::move(script))
    , m_runner(std::move(runner))
{}

void ScriptSlot::announce(std::int32_t length, Moment now)
{
    m_script.clear();
    m_transferring = true;
    m_tooLong = length > kLongestScript;
    m_lastByte = now;
}

void ScriptSlot::take(const QByteArray& bytes, Moment now)
{
    m_lastByte = now;
    if (!m_tooLong)
        m_script.append(bytes);
}

ScriptSlot::Transfer ScriptSlot::endTransfer()
{
    m_transferring = false;
    return m_tooLong ? Transfer::TooLong : Transfer::Loaded;
}

void ScriptSlot::giveUpTransfer()
{
    m_transferring = false;
    m_script.clear();
}

Outcome ScriptSlot::run(ScriptHost& host, Moment now)
{
    m_running = true;
    Outcome started = m_runner->start(m_script, host, now);
    if (!started)
        finished();
    return started;
}

void ScriptSlot::stop()
{
    finished();
    m_runner->stop();
}

void ScriptSlot::finished()
{
    m_running = false;
    m_runEnded.reset();
}

void ScriptSlot::acknowledge(Moment now)
{
    if (m_running)
        m_runner->acknowledged(now);
}

void ScriptSlot::runEnded(bool completed)
{
    if (m_running)
        m_runEnded = completed;
}

void ScriptSlot::advance(Moment now)
{
    if (const std::optional<bool> completed = std::exchange(m_runEnded, std::nullopt); completed && m_running)
        m_runner->runEnded(*completed, now);
    if (!m_running)
        return;
    const std::optional<Moment> due = m_runner->nextDue();
    if (due && *due <= now)
        m_runner->advance(now);
}

std::optional<Moment> ScriptSlot::nextDue(Moment now) const
{
    if (m_runEnded)
        return now;
    if (m_transferring)
        return m_lastByte + kTransferSilence;
    return m_running ? m_runner->nextDue() : std::nullopt;
}

void ScriptSlot::drop()
{
    if (m_running)
        stop();
    m_transferring = false;
}

} // namespace sim
