// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/MemoryTransport.h"

#include <algorithm>

void MemoryPeer::send(QByteArrayView bytes)
{
    if (isOpen())
        Q_EMIT m_transport->received(bytes.data(), bytes.size());
}

QByteArray MemoryPeer::takeWritten()
{
    return std::exchange(m_written, QByteArray());
}

void MemoryPeer::unplug(const QString& sentence)
{
    if (!isOpen())
        return;
    m_transport->m_open = false;
    Q_EMIT m_transport->lost(sentence);
}

void MemoryPeer::setRoom(qint64 bytes)
{
    m_room = bytes;
    if (m_room != 0 && isOpen())
        Q_EMIT m_transport->bytesWritten();
}

bool MemoryPeer::isOpen() const
{
    return m_transport && m_transport->m_open;
}

MemoryTransport::MemoryTransport(std::shared_ptr<MemoryPeer> peer, QObject* parent)
    : Transport(parent)
    , m_peer(std::move(peer))
{
    m_peer->m_transport = this;
}

std::pair<std::unique_ptr<MemoryTransport>, std::shared_ptr<MemoryPeer>> MemoryTransport::makePair()
{
    auto peer = std::make_shared<MemoryPeer>();
    return {std::make_unique<MemoryTransport>(peer), peer};
}

Outcome MemoryTransport::open()
{
    if (!m_peer->m_openFailure.isEmpty())
        return Outcome::failure(m_peer->m_openFailure);
    m_open = true;
    ++m_peer->m_timesOpened;
    return Outcome::success();
}

qint64 MemoryTransport::write(const char* data, qint64 size)
{
    if (!m_open)
        return 0;
    // The answer may close the link and with it destroy this object: the peer is held by itself.
    const std::shared_ptr<MemoryPeer> peer = m_peer;
    const qint64 taken = peer->m_room < 0 ? size : std::min(size, peer->m_room);
    if (peer->m_room >= 0)
        peer->m_room -= taken;
    peer->m_written.append(data, taken);
    if (taken > 0 && peer->onWritten) {
        // A copy: an answer that writes again moves what data points to.
        const QByteArray chunk(data, taken);
        peer->onWritten(chunk);
    }
    return taken;
}
