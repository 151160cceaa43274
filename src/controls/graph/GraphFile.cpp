// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphFile.h"

#include "controls/graph/CborArchive.h"
#include "controls/graph/GraphModel.h"
#include "files/SafeFile.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <span>
#include <zlib.h>

namespace GraphFile {
namespace {

constexpr auto kSelfDescribed = QCborTag(55799);
constexpr auto kEncodedItem = QCborTag(24);   // RFC 8949, 3.4.5.1: a byte string that holds a data item
constexpr auto kFloat32Little = QCborTag(85); // RFC 8746, 2.1: array of IEEE 754 binary32, little endian
constexpr QLatin1StringView kFormat("MarrowickGraph plot");

QString tr(const char* text)
{
    return QCoreApplication::translate("GraphFile", text);
}

Outcome damaged()
{
    return Outcome::failure(tr("The file is damaged or is no plot file."));
}

quint32 checksum(QByteArrayView bytes)
{
    const uLong start = crc32(0, nullptr, 0);
    return static_cast<quint32>(
        crc32(start, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

void appendFloats(QCborStreamWriter& writer, std::span<const float> values)
{
    writer.append(kFloat32Little);
    if constexpr (Q_BYTE_ORDER == Q_BIG_ENDIAN) {
        std::vector<float> swapped(values.size());
        qToLittleEndian<quint32>(values.data(), static_cast<qsizetype>(values.size()), swapped.data());
        writer.appendByteString(reinterpret_cast<const char*>(swapped.data()),
                                static_cast<qsizetype>(values.size_bytes()));
    } else {
        writer.appendByteString(reinterpret_cast<const char*>(values.data()),
                                static_cast<qsizetype>(values.size_bytes()));
    }
}

bool readFloats(QCborStreamReader& reader, graph::CborReader& archive, std::size_t count, std::vector<float>& values)
{
    QByteArray bytes;
    if (!reader.isTag() || reader.toTag() != kFloat32Little || !reader.next() || !archive.read(bytes) ||
        static_cast<std::size_t>(bytes.size()) != count * sizeof(float))
        return false;
    values.resize(count);
    if constexpr (Q_BYTE_ORDER == Q_BIG_ENDIAN)
        qFromLittleEndian<quint32>(bytes.constData(), static_cast<qsizetype>(count), values.data());
    else
        std::memcpy(values.data(), bytes.constData(), count * sizeof(float));
    return true;
}

/// The content before it goes into a graph.
struct Content
{
    int subsets = 0;
    int points = 0;
    std::vector<float> x;
    std::vector<float> y;
    graph::Properties properties;
};

void storeContent(QCborStreamWriter& writer, const GraphModel& model)
{
    const graph::Properties& properties = model.properties();
    graph::CborWriter archive(writer);
    graph::FieldCount count;
    graph::describe(count, properties);
    writer.startMap(count.fields + 4 + properties.otherEntries.size());
    archive("Subsets", model.Subsets());
    archive("Points", model.Points());
    writer.append(QLatin1StringView("XData"));
    appendFloats(writer, model.allX());
    writer.append(QLatin1StringView("YData"));
    appendFloats(writer, model.allY());
    graph::describe(archive, properties);
    for (const auto& [name, item] : properties.otherEntries) {
        writer.append(QStringView(name));
        writer.device()->write(item); // already encoded, and checked when it was read
    }
    // The writer counts what passes through it, not what was written behind its back: the end of a map of known length
    // has no byte of its own, so it is left out.
}

/// One entry of the content that this program does not know: its encoded bytes.
bool keepUnknown(const QByteArray& bytes, QCborStreamReader& reader, graph::CborReader& archive, const QString& name,
                 Content& content)
{
    const qint64 start = reader.currentOffset();
    if (!archive.skip())
        return false;
    const qint64 end = reader.currentOffset();
    return content.properties.otherEntries.emplace(name, bytes.mid(start, end - start)).second;
}

bool readContent(const QByteArray& bytes, const GraphModel& model, Content& content)
{
    QCborStreamReader reader(bytes);
    graph::CborReader archive(reader);
    const auto count = static_cast<std::size_t>(model.Subsets()) * static_cast<std::size_t>(model.Points());
    if (!reader.isMap() || !reader.enterContainer())
        return false;
    std::set<QString> seen;
    while (reader.lastError() == QCborError::NoError && reader.hasNext()) {
        QString name;
        if (!archive.read(name) || !seen.insert(name).second)
            return false;
        bool good = true;
        if (name == QLatin1StringView("Subsets"))
            good = archive.read(content.subsets) && content.subsets == model.Subsets();
        else if (name == QLatin1StringView("Points"))
            good = archive.read(content.points) && content.points == model.Points();
        else if (name == QLatin1StringView("XData"))
            good = readFloats(reader, archive, count, content.x);
        else if (name == QLatin1StringView("YData"))
            good = readFloats(reader, archive, count, content.y);
        else {
            int found = -1;
            good = archive.readField(name, content.properties, found);
            if (good && found < 0)
                good = keepUnknown(bytes, reader, archive, name, content);
        }
        if (!good)
            return false;
    }
    return reader.lastError() == QCborError::NoError && reader.leaveContainer() &&
           reader.currentOffset() == bytes.size() && content.subsets > 0 && content.points > 0 &&
           content.x.size() == count && content.y.size() == count;
}

struct Envelope
{
    QString format;
    std::uint32_t version = 0;
    std::uint32_t checksum = 0;
    QByteArray content;
};

bool readEnvelope(const QByteArray& bytes, Envelope& envelope)
{
    QCborStreamReader reader(bytes);
    graph::CborReader archive(reader);
    if (!reader.isTag() || reader.toTag() != kSelfDescribed || !reader.next() || !reader.isMap() ||
        !reader.enterContainer())
        return false;
    std::set<QString> seen;
    while (reader.lastError() == QCborError::NoError && reader.hasNext()) {
        QString name;
        if (!archive.read(name) || !seen.insert(name).second)
            return false;
        bool good = false;
        if (name == QLatin1StringView("format"))
            good = archive.read(envelope.format);
        else if (name == QLatin1StringView("version"))
            good = archive.read(envelope.version);
        else if (name == QLatin1StringView("crc32"))
            good = archive.read(envelope.checksum);
        else if (name == QLatin1StringView("content"))
            good = reader.isTag() && reader.toTag() == kEncodedItem && reader.next() && archive.read(envelope.content);
        if (!good)
            return false;
    }
    return reader.lastError() == QCborError::NoError && reader.leaveContainer() &&
           reader.currentOffset() == bytes.size() && seen.size() == 4;
}

} // namespace

// All in one buffer: a second one of this size would cost more than the encoding. So the length of the content is
// filled in behind it, and its checksum follows it.
QByteArray PEstore(const GraphModel& model)
{
    constexpr char kLength32 = 0x5A; // a byte string whose length follows in four bytes, most significant first
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(model.Subsets()) * model.Points() * 8 + 65536);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    QCborStreamWriter writer(&buffer);
    writer.append(kSelfDescribed);
    writer.startMap(4);
    writer.append(QLatin1StringView("format"));
    writer.append(kFormat);
    writer.append(QLatin1StringView("version"));
    writer.append(quint64(kFormatVersion));
    writer.append(QLatin1StringView("content"));
    writer.append(kEncodedItem);
    buffer.write(QByteArray(5, kLength32));
    const qsizetype start = bytes.size();
    QCborStreamWriter content(&buffer);
    storeContent(content, model);
    const qsizetype size = bytes.size() - start;
    qToBigEndian(static_cast<quint32>(size), bytes.data() + start - 4);
    // The first writer still waits for the value of "content", which was written behind its back.
    QCborStreamWriter end(&buffer);
    end.append(QLatin1StringView("crc32"));
    end.append(quint64(checksum(QByteArrayView(bytes).sliced(start, size))));
    return bytes;
}

Outcome PEload(GraphModel& model, const QByteArray& bytes)
{
    if (bytes.size() > kLargestFile)
        return Outcome::failure(tr("The file is too large for a plot file."));
    Envelope envelope;
    if (!readEnvelope(bytes, envelope) || envelope.format != kFormat || envelope.version < 1)
        return damaged();
    if (envelope.version > kFormatVersion)
        return Outcome::failure(tr("The file was written by a newer program."));
    if (envelope.checksum != checksum(envelope.content))
        return damaged();
    Content content;
    if (!readContent(envelope.content, model, content) ||
        !model.replaceAll(content.properties, std::move(content.x), std::move(content.y)))
        return damaged();
    return Outcome::success();
}

Outcome PEsavetofile(const GraphModel& model, const QString& fileName)
{
    return files::writeFile(fileName, PEstore(model));
}

Outcome PEloadfromfile(GraphModel& model, const QString& fileName)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile())
        return Outcome::failure(tr("%1 is not a file.").arg(fileName));
    if (info.size() > kLargestFile)
        return Outcome::failure(tr("The file is too large for a plot file."));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return Outcome::failure(tr("Cannot read %1: %2.").arg(fileName, file.errorString()));
    // One byte more than allowed tells a file that has grown since.
    const QByteArray bytes = file.read(kLargestFile + 1);
    if (file.error() != QFileDevice::NoError)
        return Outcome::failure(tr("Cannot read %1: %2.").arg(fileName, file.errorString()));
    return PEload(model, bytes);
}

} // namespace GraphFile
