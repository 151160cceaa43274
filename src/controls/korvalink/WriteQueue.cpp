// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/WriteQueue.h"

#include <algorithm>

bool WriteQueue::push(QByteArrayView text)
{
    if (size() + text.size() > m_limit)
        return false;
    // Gone bytes are cleared away in large steps, so a queue that never runs empty costs no move per write.
    if (m_begin > m_limit) {
        m_bytes.remove(0, m_begin);
        m_begin = 0;
    }
    m_bytes.append(text);
    return true;
}

void WriteQueue::drop(qint64 count)
{
    m_begin += std::clamp<qint64>(count, 0, size());
    if (m_begin == m_bytes.size())
        clear();
}

void WriteQueue::clear()
{
    // resize() keeps the memory, which is bounded, for the next command.
    m_bytes.resize(0);
    m_begin = 0;
}
