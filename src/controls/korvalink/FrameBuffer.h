// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <vector>

/// Cuts a byte stream into whole frames and keeps them until they are read. A frame ends one byte behind a carriage
/// return, whatever that byte is; how the stream was split into chunks makes no difference.
///
/// A run of more than longestRun bytes without a carriage return is dropped up to its carriage return and the byte
/// behind it. A frame that would take the waiting bytes past the limit is dropped; older ones stay. Memory is bounded
/// by twice the sum of both, is taken as it is needed and given back when the buffer has run empty; no allocation
/// happens per frame.
class FrameBuffer
{
public:
    FrameBuffer(qint64 longestRun, qint64 limit);

    void append(const char* data, qint64 size);

    /// Bytes of whole frames waiting.
    qint64 wholeBytes() const { return m_whole - m_begin; }
    /// Bytes of the whole frames at the front that fit into limit bytes together.
    qint64 wholeWithin(qint64 limit) const;
    /// Copies the whole frames that fit into size bytes and forgets them; returns their bytes. 0 when the first one
    /// does not fit.
    qint64 read(char* buffer, qint64 size);
    /// The waiting whole frames in place; valid until the next append(), read() or clear().
    const char* front() const { return m_storage.data() + m_begin; }

    /// Forgets everything, also an unfinished frame, and starts counting anew.
    void clear();
    /// Bytes dropped since the last clear(), for runs too long and for frames past the limit.
    qint64 droppedBytes() const { return m_dropped; }
    /// Bytes of memory held.
    qint64 capacity() const { return qint64(m_storage.size()); }

private:
    enum class State
    {
        InFrame,
        LastByte,
        SkipRun,
        SkipLastByte
    };

    void keep(const char* data, qint64 size);
    void makeRoom(qint64 size);
    void finishFrame();

    std::vector<char> m_storage; // [m_begin, m_whole) whole frames, [m_whole, m_end) the unfinished one
    qint64 m_begin = 0;
    qint64 m_whole = 0;
    qint64 m_end = 0;
    qint64 m_dropped = 0;
    const qint64 m_longestRun;
    const qint64 m_limit;
    State m_state = State::InFrame;
};
