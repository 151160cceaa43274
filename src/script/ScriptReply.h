// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

class KorvaLink;

/// The answer to one frame of a running script. It goes to the connection over which the frame came: once that has
/// ended, nothing is written.
class ScriptReply
{
public:
    /// Made while the frame is being handled, ahead of any nested event loop. The device outlives it.
    explicit ScriptReply(KorvaLink& device);

    /// The action is done.
    void goOn() const;
    /// The script shall stop.
    void stop() const;
    /// The same, ahead of and behind everything else: the answer of a user.
    void stopFlushed() const;

private:
    bool isAwaited() const;

    KorvaLink& m_device;
    quint64 m_session;
};
