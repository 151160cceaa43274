// SPDX-License-Identifier: GPL-3.0-or-later
// Firmware files from anywhere: refused, or one that is written again byte for byte. No file that nobody has signed is
// trusted.
#include "controls/tarnload/file/FirmwareFile.h"

#include <QBuffer>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    static const firmware::TrustedKeys keys = [] {
        firmware::TrustedKeys trusted;
        trusted.add(firmware::SigningKey::generate().publicKey());
        return trusted;
    }();
    QBuffer buffer(&bytes);
    if (!buffer.open(QBuffer::ReadOnly))
        std::abort();
    if (firmware::read(buffer, keys).problem == firmware::Problem::None)
        std::abort();
    buffer.seek(0);
    const firmware::ReadResult read = firmware::readUnjudged(buffer);
    if (read.problem == firmware::Problem::None && read.file.toBytes() != bytes)
        std::abort();
    static_cast<void>(firmware::PublicKey::fromText(bytes));
    static_cast<void>(firmware::SigningKey::fromText(bytes));
    return 0;
}
