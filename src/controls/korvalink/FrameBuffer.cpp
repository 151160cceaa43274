// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/FrameBuffer.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr qint64 kFirstCapacity = 64 * 1024;
constexpr qint64 kIdleCapacity = 1024 * 1024; // what an empty buffer may go on holding

const char* findReturn(const char* data, qint64 size)
{
    return static_cast<const char*>(std::memchr(data, '\r', std::size_t(size)));
}

} // namespace

FrameBuffer::FrameBuffer(qint64 longestRun, qint64 limit)
    : m_longestRun(longestRun)
    , m_limit(limit)
{}

void FrameBuffer::append(const char* data, qint64 size)
{
    while (size > 0) {
        qint64 used = 0;
        switch (m_state) {
        case State::InFrame: {
            // One byte more than allowed is enough to know that a run is too long.
            const qint64 looked = std::min(size, m_longestRun + 1 - (m_end - m_whole));
            const char* found = findReturn(data, looked);
            used = found ? found - data + 1 : looked;
            keep(data, used);
            if (found) {
                m_state = State::LastByte;
            } else if (m_end - m_whole > m_longestRun) {
                m_dropped += m_end - m_whole;
                m_end = m_whole;
                m_state = State::SkipRun;
            }
            break;
        }
        case State::LastByte:
            used = 1;
            keep(data, used);
            finishFrame();
            m_state = State::InFrame;
            break;
        case State::SkipRun: {
            const char* found = findReturn(data, size);
            used = found ? found - data + 1 : size;
            m_dropped += used;
            if (found)
                m_state = State::SkipLastByte;
            break;
        }
        case State::SkipLastByte:
            used = 1;
            m_dropped += used;
            m_state = State::InFrame;
            break;
        }
        data += used;
        size -= used;
    }
}

void FrameBuffer::keep(const char* data, qint64 size)
{
    makeRoom(size);
    std::memcpy(m_storage.data() + m_end, data, std::size_t(size));
    m_end += size;
}

void FrameBuffer::makeRoom(qint64 size)
{
    if (m_end + size <= capacity())
        return;
    // Moving down is worth its copy only while at least half of the storage becomes free; otherwise grow.
    const qint64 held = m_end - m_begin;
    if (m_begin > 0 && held <= capacity() / 2) {
        std::memmove(m_storage.data(), m_storage.data() + m_begin, std::size_t(held));
        m_whole -= m_begin;
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_end + size > capacity())
        m_storage.resize(std::size_t(std::max({kFirstCapacity, 2 * capacity(), m_end + size})));
}

void FrameBuffer::finishFrame()
{
    if (m_end - m_begin > m_limit) {
        m_dropped += m_end - m_whole;
        m_end = m_whole;
    } else {
        m_whole = m_end;
    }
}

qint64 FrameBuffer::wholeWithin(qint64 limit) const
{
    if (limit >= wholeBytes())
        return wholeBytes();
    const char* const first = front();
    qint64 fits = 0;
    while (fits < limit) {
        const char* found = findReturn(first + fits, limit - fits);
        // The byte behind the carriage return belongs to the frame and must fit too.
        if (!found || found - first + 2 > limit)
            break;
        fits = found - first + 2;
    }
    return fits;
}

qint64 FrameBuffer::read(char* buffer, qint64 size)
{
    const qint64 count = wholeWithin(std::max<qint64>(size, 0));
    if (count == 0)
        return 0;
    std::memcpy(buffer, front(), std::size_t(count));
    m_begin += count;
    if (m_begin == m_end) {
        m_begin = m_whole = m_end = 0;
        if (capacity() > kIdleCapacity)
            std::vector<char>().swap(m_storage);
    }
    return count;
}

void FrameBuffer::clear()
{
    m_begin = m_whole = m_end = 0;
    m_dropped = 0;
    m_state = State::InFrame;
    if (capacity() > kIdleCapacity)
        std::vector<char>().swap(m_storage);
}
