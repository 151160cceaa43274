// SPDX-License-Identifier: GPL-3.0-or-later
// Plot files: any bytes, as a whole file and as the content of a file with a good checksum.
#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"

#include <QCborMap>
#include <QCborValue>

#include <cstdint>
#include <cstdlib>
#include <zlib.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static GraphModel model(4, 4);
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));

    // What was read must be written so that it is read again as the same.
    const auto check = [](const QByteArray& file) {
        if (!GraphFile::PEload(model, file).ok())
            return;
        const QByteArray stored = GraphFile::PEstore(model);
        if (!GraphFile::PEload(model, stored).ok() || GraphFile::PEstore(model) != stored)
            std::abort();
    };
    check(bytes);

    QCborMap map;
    map[QStringLiteral("format")] = QStringLiteral("MarrowickGraph plot");
    map[QStringLiteral("version")] = 1;
    map[QStringLiteral("crc32")] =
        qint64(crc32(crc32(0, nullptr, 0), reinterpret_cast<const Bytef*>(data), static_cast<uInt>(size)));
    map[QStringLiteral("content")] = QCborValue(QCborTag(24), bytes);
    check(QCborValue(QCborTag(55799), map).toCbor());
    return 0;
}
