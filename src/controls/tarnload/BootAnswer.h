// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <optional>

namespace tarnload {

/// One frame that the instrument sends while its firmware is written, as docs/instrument-protocol.md tables it.
struct BootAnswer
{
    enum class Kind
    {
        Version,    ///< frame "O": n1 major, n2 minor, n3 build, n4 board revision
        Serial,     ///< frame "V": text
        Model,      ///< frame "l", slot 6: text
        State,      ///< n1 state, n2 blocks held, n3 blocks in all, n4 check of the running image's header
        Begun,      ///< n1 next block, n2 blocks in all, n3 block size, n4 check of the header
        BlockTaken, ///< n1 number
        Refused,    ///< n1 reason, n2 next block
        Switches    ///< n1 check of the header
    };
    Kind kind = Kind::State;
    std::int64_t n1 = 0, n2 = 0, n3 = 0, n4 = 0;
    QString text;

    /// Nothing for any other frame, and for one whose numbers are not whole numbers from 0 to 2^32 - 1.
    static std::optional<BootAnswer> fromFrame(QByteArrayView bytes);
};

/// The commands, with whatever follows them.
QByteArray askCommand();
QByteArray beginCommand(const QByteArray& sealedHeader, bool olderWanted);
QByteArray blockCommand(int number, const QByteArray& bytes);
QByteArray switchCommand(bool olderWanted);
/// CRC-32.
std::uint32_t checkOf(const QByteArray& bytes);

} // namespace tarnload
