// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"

#include <QCborMap>
#include <QCborValue>

#include <zlib.h>

/// Plot files made and taken apart by an independent CBOR library and an independent checksum.
namespace plotfiles {

/// The file of an encoded content with the right checksum around it.
inline QByteArray envelope(const QByteArray& content)
{
    QCborMap map;
    map[QStringLiteral("format")] = QStringLiteral("MarrowickGraph plot");
    map[QStringLiteral("version")] = 1;
    map[QStringLiteral("crc32")] = qint64(crc32(
        crc32(0, nullptr, 0), reinterpret_cast<const Bytef*>(content.constData()), static_cast<uInt>(content.size())));
    map[QStringLiteral("content")] = QCborValue(QCborTag(24), content);
    return QCborValue(QCborTag(55799), map).toCbor();
}

inline QByteArray envelope(const QCborMap& content)
{
    return envelope(content.toCborValue().toCbor());
}

inline QCborMap contentOf(const GraphModel& model)
{
    const QCborValue file = QCborValue::fromCbor(GraphFile::PEstore(model));
    return QCborValue::fromCbor(file.taggedValue().toMap()[QStringLiteral("content")].taggedValue().toByteArray())
        .toMap();
}

/// The content of a graph of 2 x 2 with nothing but what a file must have.
inline QCborMap leastContent()
{
    const QCborValue floats(QCborTag(85), QByteArray(16, '\0'));
    return {{QStringLiteral("Subsets"), 2},
            {QStringLiteral("Points"), 2},
            {QStringLiteral("XData"), floats},
            {QStringLiteral("YData"), floats}};
}

} // namespace plotfiles
