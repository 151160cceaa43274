// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/KorvaLink.h"
#include "controls/tarnload/BootAnswer.h"

#include <QObject>

#include <deque>
#include <functional>
#include <optional>

class DeviceList;

namespace tarnload {

/// A conversation with the boot side of an instrument: one question, one answer, events in between.
class BootLink : public QObject
{
    Q_OBJECT

public:
    /// The devices outlive the conversation.
    explicit BootLink(DeviceList& devices, QObject* parent = nullptr);

    /// The device of that index as the list stands.
    bool open(int index);
    void close() { m_link.Close(); }
    bool isOpen() const { return m_link.Connected(); }

    /// Sends the command and waits until an answer is accepted; what came before is forgotten, other answers are passed
    /// over. Nothing when the time is over or the link is lost.
    std::optional<BootAnswer> ask(const QByteArray& command, const std::function<bool(const BootAnswer&)>& accepted,
                                  int milliseconds);
    /// Waits with events; ends early when the link is lost.
    void wait(int milliseconds);

Q_SIGNALS:
    void something();

private:
    void read();

    DeviceList& m_devices;
    KorvaLink m_link;
    std::deque<BootAnswer> m_answers;
};

} // namespace tarnload
