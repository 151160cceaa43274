// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/cbor/CborInput.h"

#include <QFloat16>
#include <QUtf8StringView>
#include <QtEndian>

#include <bit>

namespace graph {

bool CborInput::look(Head& head)
{
    if (m_broken || m_at >= m_bytes.size())
        return breakOff();
    const auto* at = reinterpret_cast<const uchar*>(m_bytes.data()) + m_at;
    head.major = static_cast<Major>(*at >> 5);
    head.info = *at & 31;
    const qsizetype width = head.info >= 24 && head.info <= 27 ? qsizetype{1} << (head.info - 24) : 0;
    const bool hasOpenForm = head.major >= Major::Bytes && head.major <= Major::Map;
    if ((head.info > 27 && !(head.info == kOpen && hasOpenForm)) || width > m_bytes.size() - m_at - 1)
        return breakOff();
    switch (width) {
    case 0:
        head.value = head.info;
        break;
    case 1:
        head.value = at[1];
        break;
    case 2:
        head.value = qFromBigEndian<quint16>(at + 1);
        break;
    case 4:
        head.value = qFromBigEndian<quint32>(at + 1);
        break;
    default:
        head.value = qFromBigEndian<quint64>(at + 1);
        break;
    }
    if (head.major == Major::Simple && head.info == 24 && head.value < 32) // has a shorter form, which alone is valid
        return breakOff();
    head.end = m_at + 1 + width;
    ++m_items;
    return true;
}

bool CborInput::take(Major major, Head& head)
{
    if (!look(head) || head.major != major)
        return false;
    m_at = head.end;
    return true;
}

bool CborInput::readBool(bool& value)
{
    Head head{};
    if (!look(head) || head.major != Major::Simple || (head.info != 20 && head.info != 21))
        return false;
    value = head.info == 21;
    m_at = head.end;
    return true;
}

bool CborInput::readInteger(std::uint64_t& magnitude, bool& negative)
{
    Head head{};
    if (!look(head) || head.major > Major::Negative)
        return false;
    magnitude = head.value;
    negative = head.major == Major::Negative;
    m_at = head.end;
    return true;
}

bool CborInput::readFloat(double& value)
{
    Head head{};
    if (!look(head) || head.major != Major::Simple || head.info < 25)
        return false;
    if (head.info == 25)
        value = static_cast<double>(static_cast<float>(std::bit_cast<qfloat16>(static_cast<quint16>(head.value))));
    else if (head.info == 26)
        value = static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(head.value)));
    else
        value = std::bit_cast<double>(head.value);
    m_at = head.end;
    return true;
}

bool CborInput::readTag(std::uint64_t tag)
{
    Head head{};
    if (!look(head) || head.major != Major::Tag || head.value != tag)
        return false;
    m_at = head.end;
    return true;
}

bool CborInput::takeString(const Head& head, QByteArrayView& value)
{
    if (head.value > static_cast<std::uint64_t>(m_bytes.size() - m_at))
        return breakOff();
    value = m_bytes.sliced(m_at, static_cast<qsizetype>(head.value));
    if (head.major == Major::Text && !QUtf8StringView(value.data(), value.size()).isValidUtf8())
        return breakOff();
    m_at += value.size();
    return true;
}

bool CborInput::skipChunks(Major major, QByteArray* joined)
{
    while (!isBreak()) {
        Head chunk{};
        QByteArrayView bytes;
        if (!take(major, chunk) || chunk.info == kOpen || !takeString(chunk, bytes))
            return breakOff();
        if (joined != nullptr)
            joined->append(bytes);
    }
    ++m_at;
    return true;
}

bool CborInput::readString(Major major, QByteArrayView& value, QByteArray& joined)
{
    Head head{};
    if (!take(major, head))
        return false;
    if (head.info != kOpen)
        return takeString(head, value);
    joined.clear();
    if (!skipChunks(major, &joined))
        return false;
    value = joined;
    return true;
}

bool CborInput::openList(const Head& head, List& list)
{
    list.open = head.info == kOpen;
    list.left = list.open ? 0 : head.value;
    // Every entry takes a byte at least.
    return list.left <= static_cast<std::uint64_t>(m_bytes.size() - m_at) || breakOff();
}

bool CborInput::enter(Major major, List& list)
{
    Head head{};
    return take(major, head) && openList(head, list);
}

bool CborInput::hasNext(List& list)
{
    if (m_broken)
        return false;
    if (list.open) {
        if (!isBreak())
            return true;
        ++m_at;
        list.open = false;
        return false;
    }
    if (list.left == 0)
        return false;
    --list.left;
    return true;
}

bool CborInput::skip(int deepest)
{
    Head head{};
    do {
        if (!look(head))
            return false;
        m_at = head.end;
    } while (head.major == Major::Tag);
    switch (head.major) {
    case Major::Bytes:
    case Major::Text: {
        QByteArrayView bytes;
        return head.info == kOpen ? skipChunks(head.major, nullptr) : takeString(head, bytes);
    }
    case Major::Array:
    case Major::Map: {
        List list;
        if (deepest <= 0 || !openList(head, list))
            return false;
        while (hasNext(list)) {
            if (!skip(deepest - 1) || (head.major == Major::Map && !skip(deepest - 1)))
                return false;
        }
        return !m_broken;
    }
    default:
        return true;
    }
}

} // namespace graph
