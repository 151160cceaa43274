// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstdint>

namespace graph {

/// A cursor over encoded CBOR items (RFC 8949) that copies nothing but strings in chunks. It believes no length or
/// count beyond the bytes that are there, and its work is bounded by their number.
///
/// A read of an item of another kind is false and leaves the cursor where it was. Bytes that are no CBOR make every
/// read from there on false, and isBroken() true.
class CborInput
{
public:
    /// The bytes must outlive the cursor and the views it gives.
    explicit CborInput(QByteArrayView bytes)
        : m_bytes(bytes)
    {}

    bool readBool(bool& value);
    /// The value is magnitude, or -1 - magnitude when negative.
    bool readInteger(std::uint64_t& magnitude, bool& negative);
    /// Floating point of any width; an integer is another kind.
    bool readFloat(double& value);
    /// Steps over this tag, no other.
    bool readTag(std::uint64_t tag);
    /// The view is of the input, or of joined where the string stands in chunks. Texts are valid UTF-8.
    bool readBytes(QByteArrayView& value, QByteArray& joined) { return readString(Major::Bytes, value, joined); }
    bool readText(QByteArrayView& value, QByteArray& joined) { return readString(Major::Text, value, joined); }

    /// A list that has been entered: what of it is to come.
    struct List
    {
        std::uint64_t left = 0;
        bool open = false; ///< of unknown length, ended by a break
    };
    bool enterArray(List& list) { return enter(Major::Array, list); }
    bool enterMap(List& list) { return enter(Major::Map, list); }
    /// Whether an entry follows (of a map: key and value); steps out of the list when none does.
    bool hasNext(List& list);

    /// Steps over one item of any kind, with lists in it nested no deeper than told. False for deeper ones too.
    bool skip(int deepest);

    qsizetype offset() const { return m_at; }
    bool isAtEnd() const { return m_at == m_bytes.size(); }
    bool isBroken() const { return m_broken; }
    /// Items looked at so far: a measure of the work done.
    std::uint64_t items() const { return m_items; }

private:
    enum class Major : std::uint8_t
    {
        Unsigned,
        Negative,
        Bytes,
        Text,
        Array,
        Map,
        Tag,
        Simple
    };
    struct Head
    {
        Major major;
        std::uint8_t info; ///< 24 to 27: width of the value; kOpen: no length
        std::uint64_t value;
        qsizetype end;
    };
    static constexpr std::uint8_t kOpen = 31;

    bool breakOff()
    {
        m_broken = true;
        return false;
    }
    bool look(Head& head);
    bool take(Major major, Head& head);
    bool enter(Major major, List& list);
    bool openList(const Head& head, List& list);
    bool readString(Major major, QByteArrayView& value, QByteArray& joined);
    bool takeString(const Head& head, QByteArrayView& value);
    bool skipChunks(Major major, QByteArray* joined);
    bool isBreak() const { return m_at < m_bytes.size() && static_cast<std::uint8_t>(m_bytes[m_at]) == 0xFF; }

    QByteArrayView m_bytes;
    qsizetype m_at = 0;
    std::uint64_t m_items = 0;
    bool m_broken = false;
};

} // namespace graph
