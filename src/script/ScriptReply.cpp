// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptReply.h"

#include "controls/korvalink/KorvaLink.h"
#include "instrument/Commands.h"

ScriptReply::ScriptReply(KorvaLink& device)
    : m_device(device)
    , m_session(device.Session())
{}

bool ScriptReply::isAwaited() const
{
    return m_device.Connected() && m_device.Session() == m_session;
}

void ScriptReply::goOn() const
{
    if (isAwaited())
        m_device.Write(command::acknowledge());
}

void ScriptReply::stop() const
{
    if (isAwaited())
        m_device.Write(command::yes());
}

void ScriptReply::stopFlushed() const
{
    if (!isAwaited())
        return;
    m_device.Flush();
    m_device.Write(command::yes());
    m_device.Flush();
}
