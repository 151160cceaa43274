// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <cstdint>

namespace graph {

/// Appends encoded CBOR items (RFC 8949) to bytes, each in its shortest form but for floating point, which keeps its
/// width. Lists have their length in front and no end.
class CborOutput
{
public:
    /// The bytes must outlive the output.
    explicit CborOutput(QByteArray& bytes)
        : m_bytes(bytes)
    {}

    void writeBool(bool value) { m_bytes.append(static_cast<char>(value ? 0xF5 : 0xF4)); }
    void writeInteger(std::int64_t value);
    void writeFloat(float value);
    void writeDouble(double value);
    void writeTag(std::uint64_t tag) { writeHead(0xC0, tag); }
    void writeBytes(QByteArrayView value);
    void writeText(QStringView value);
    void writeText(QByteArrayView utf8);
    void startArray(std::size_t entries) { writeHead(0x80, entries); }
    void startMap(std::size_t entries) { writeHead(0xA0, entries); }
    /// Items that are encoded already.
    void writeEncoded(QByteArrayView items) { m_bytes.append(items); }

private:
    void writeHead(std::uint8_t major, std::uint64_t value);

    QByteArray& m_bytes;
};

} // namespace graph
