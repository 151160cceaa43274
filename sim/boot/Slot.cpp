// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/boot/Slot.h"

#include <QtEndian>

#include <algorithm>
#include <zlib.h>

namespace sim {

namespace {

constexpr qsizetype kNumberSize = 4;
constexpr qsizetype kBlocksBegin = 4096;
constexpr qsizetype kBlockStep = Slot::kBlockSize + kNumberSize;

QByteArray number(std::uint32_t value)
{
    QByteArray bytes(kNumberSize, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

std::uint32_t numberAt(const QByteArray& bytes, qsizetype offset)
{
    return bytes.size() >= offset + kNumberSize ? qFromLittleEndian<std::uint32_t>(bytes.constData() + offset) : 0;
}

int blocksOf(std::uint32_t imageSize)
{
    return static_cast<int>((imageSize + Slot::kBlockSize - 1) / Slot::kBlockSize);
}

qsizetype lengthOf(int block, std::uint32_t imageSize)
{
    if (block < 0 || block >= blocksOf(imageSize))
        return 0;
    return std::min<qsizetype>(Slot::kBlockSize, qsizetype(imageSize) - qsizetype(block) * Slot::kBlockSize);
}

} // namespace

std::uint32_t checkOf(const QByteArray& bytes)
{
    return static_cast<std::uint32_t>(
        ::crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()), static_cast<uInt>(bytes.size())));
}

std::uint32_t blockCheck(int blockNumber, const QByteArray& bytes)
{
    return checkOf(number(static_cast<std::uint32_t>(blockNumber)) + bytes);
}

QByteArray Slot::sealedHeader() const
{
    const QByteArray& bytes = m_flash->bytes(m_area);
    const std::uint32_t length = numberAt(bytes, 0);
    if (length == 0 || length > kBlocksBegin - 2 * kNumberSize)
        return {};
    QByteArray sealed = bytes.mid(2 * kNumberSize, length);
    return sealed.size() == qsizetype(length) && checkOf(sealed) == numberAt(bytes, kNumberSize) ? sealed
                                                                                                 : QByteArray();
}

std::optional<firmware::Header> Slot::header() const
{
    const QByteArray sealed = sealedHeader();
    if (sealed.size() <= firmware::kSealSize)
        return {};
    return firmware::Header::fromBytes(sealed.chopped(firmware::kSealSize));
}

std::uint32_t Slot::headerCheck() const
{
    const QByteArray sealed = sealedHeader();
    return sealed.isEmpty() ? 0 : checkOf(sealed);
}

int Slot::blocksInAll() const
{
    const std::optional<firmware::Header> told = header();
    return told ? blocksOf(told->imageSize) : 0;
}

qsizetype Slot::blockLength(int blockNumber) const
{
    const std::optional<firmware::Header> told = header();
    return told ? lengthOf(blockNumber, told->imageSize) : 0;
}

int Slot::blocksHeld() const
{
    const std::optional<firmware::Header> told = header();
    const QByteArray& bytes = m_flash->bytes(m_area);
    const int all = told ? blocksOf(told->imageSize) : 0;
    for (int i = 0; i < all; ++i) {
        const qsizetype begin = kBlocksBegin + i * kBlockStep, length = lengthOf(i, told->imageSize);
        if (bytes.size() < begin + length + kNumberSize ||
            numberAt(bytes, begin + length) != blockCheck(i, bytes.mid(begin, length)))
            return i;
    }
    return all;
}

bool Slot::isWhole() const
{
    const std::optional<firmware::Header> told = header();
    if (!told)
        return false;
    const int all = blocksOf(told->imageSize);
    if (blocksHeld() != all)
        return false;
    QByteArray image;
    image.reserve(told->imageSize);
    for (int i = 0; i < all; ++i)
        image += m_flash->bytes(m_area).mid(kBlocksBegin + i * kBlockStep, lengthOf(i, told->imageSize));
    return firmware::hashOf(image) == told->imageHash;
}

bool Slot::begin(const QByteArray& sealedHeader)
{
    return m_flash->erase(m_area) && m_flash->write(m_area, 0,
                                                    number(static_cast<std::uint32_t>(sealedHeader.size())) +
                                                        number(checkOf(sealedHeader)) + sealedHeader);
}

bool Slot::writeBlock(int blockNumber, const QByteArray& bytes)
{
    return m_flash->write(m_area, kBlocksBegin + blockNumber * kBlockStep,
                          bytes + number(blockCheck(blockNumber, bytes)));
}

} // namespace sim
