// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/tarnload/file/FirmwareFile.h"
#include "sim/boot/Flash.h"

#include <optional>

namespace sim {

/// One of the two places for images: the header with its seal, then the blocks, each with a check value behind it. So a
/// block that was only partly written is told from a whole one without any count being kept.
class Slot
{
public:
    static constexpr int kBlockSize = 1024;
    static constexpr std::uint32_t kLargestImage = 1024 * 1024;

    Slot(Flash& flash, Flash::Area area)
        : m_flash(&flash)
        , m_area(area)
    {}

    bool isErased() const { return m_flash->bytes(m_area).isEmpty(); }
    /// Header and seal behind one another; empty when there is none that was written to its end.
    QByteArray sealedHeader() const;
    std::optional<firmware::Header> header() const;
    /// The check value of sealedHeader(); 0 without one.
    std::uint32_t headerCheck() const;
    /// Blocks from the first on that are whole.
    int blocksHeld() const;
    int blocksInAll() const;
    /// The image is complete and the one that the header tells of.
    bool isWhole() const;

    /// False when power goes.
    bool begin(const QByteArray& sealedHeader);
    bool writeBlock(int number, const QByteArray& bytes);
    /// Bytes of that block; 0 for one that the image does not have.
    qsizetype blockLength(int number) const;

private:
    Flash* m_flash;
    Flash::Area m_area;
};

/// CRC-32 of the number (four bytes, the lowest first) and the bytes.
std::uint32_t blockCheck(int number, const QByteArray& bytes);
/// CRC-32.
std::uint32_t checkOf(const QByteArray& bytes);

} // namespace sim
