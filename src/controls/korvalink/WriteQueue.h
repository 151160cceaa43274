// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// Bytes on their way to an instrument, in order, never more than the limit.
class WriteQueue
{
public:
    explicit WriteQueue(qint64 limit)
        : m_limit(limit)
    {}

    /// Takes the whole text, or nothing of it when it does not fit (false).
    bool push(QByteArrayView text);
    /// What waits, from its first byte; valid until the next push() or drop().
    QByteArrayView waiting() const { return QByteArrayView(m_bytes).sliced(m_begin); }
    /// The first count bytes have gone.
    void drop(qint64 count);
    qint64 size() const { return m_bytes.size() - m_begin; }
    void clear();

private:
    QByteArray m_bytes;
    qint64 m_begin = 0;
    const qint64 m_limit;
};
