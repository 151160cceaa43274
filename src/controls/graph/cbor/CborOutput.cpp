// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/cbor/CborOutput.h"

#include <QtEndian>

#include <bit>

namespace graph {
namespace {

template <typename T>
void appendWithHead(QByteArray& bytes, std::uint8_t head, T value)
{
    char item[1 + sizeof(T)] = {static_cast<char>(head)};
    qToBigEndian(value, item + 1);
    bytes.append(item, sizeof item);
}

} // namespace

void CborOutput::writeHead(std::uint8_t major, std::uint64_t value)
{
    if (value < 24)
        m_bytes.append(static_cast<char>(major | value));
    else if (value <= 0xFF)
        appendWithHead(m_bytes, major | 24, static_cast<quint8>(value));
    else if (value <= 0xFFFF)
        appendWithHead(m_bytes, major | 25, static_cast<quint16>(value));
    else if (value <= 0xFFFFFFFF)
        appendWithHead(m_bytes, major | 26, static_cast<quint32>(value));
    else
        appendWithHead(m_bytes, major | 27, static_cast<quint64>(value));
}

void CborOutput::writeInteger(std::int64_t value)
{
    if (value >= 0)
        writeHead(0x00, static_cast<std::uint64_t>(value));
    else
        writeHead(0x20, static_cast<std::uint64_t>(-1 - value));
}

void CborOutput::writeFloat(float value)
{
    appendWithHead(m_bytes, 0xFA, std::bit_cast<quint32>(value));
}

void CborOutput::writeDouble(double value)
{
    appendWithHead(m_bytes, 0xFB, std::bit_cast<quint64>(value));
}

void CborOutput::writeBytes(QByteArrayView value)
{
    writeHead(0x40, static_cast<std::uint64_t>(value.size()));
    m_bytes.append(value);
}

void CborOutput::writeText(QByteArrayView utf8)
{
    writeHead(0x60, static_cast<std::uint64_t>(utf8.size()));
    m_bytes.append(utf8);
}

void CborOutput::writeText(QStringView value)
{
    writeText(QByteArrayView(value.toUtf8()));
}

} // namespace graph
