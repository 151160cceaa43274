// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/Transport.h"

#include <QByteArrayView>
#include <QPointer>

#include <functional>
#include <memory>
#include <utility>

class MemoryTransport;

/// The other end of a MemoryTransport: the instrument as a test plays it. It outlives the transport, and everything it
/// does takes effect at once, inside the call.
class MemoryPeer
{
public:
    /// Bytes from the instrument, in one chunk. Nothing happens while the transport is closed.
    void send(QByteArrayView bytes);
    /// What was written since the last call.
    QByteArray takeWritten();
    /// The cable is pulled.
    void unplug(const QString& sentence = QStringLiteral("The instrument was unplugged."));

    /// How many more bytes the transport takes before it takes none; negative for no limit, which is the default. More
    /// room is reported through bytesWritten().
    void setRoom(qint64 bytes);
    /// The next open() fails with this sentence; an empty one lets it succeed again.
    void failOpen(const QString& sentence) { m_openFailure = sentence; }
    bool isOpen() const;
    int timesOpened() const { return m_timesOpened; }

    /// Called with every chunk the transport took, before write() returns: what a scripted instrument answers to.
    std::function<void(QByteArrayView)> onWritten;

private:
    friend class MemoryTransport;

    QPointer<MemoryTransport> m_transport;
    QByteArray m_written;
    QString m_openFailure;
    qint64 m_room = -1;
    int m_timesOpened = 0;
};

/// A transport without a device, for unit tests.
class MemoryTransport : public Transport
{
    Q_OBJECT

public:
    explicit MemoryTransport(std::shared_ptr<MemoryPeer> peer, QObject* parent = nullptr);
    static std::pair<std::unique_ptr<MemoryTransport>, std::shared_ptr<MemoryPeer>> makePair();

    Outcome open() override;
    void close() override { m_open = false; }
    bool isOpen() const override { return m_open; }
    qint64 write(const char* data, qint64 size) override;

private:
    friend class MemoryPeer;

    std::shared_ptr<MemoryPeer> m_peer;
    bool m_open = false;
};
