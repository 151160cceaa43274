// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphFile.h"

#include "controls/graph/CborArchive.h"
#include "controls/graph/GraphModel.h"
#include "files/SafeFile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <cstddef>
#include <optional>
#include <span>
#include <utility>
#include <zlib.h>

namespace GraphFile {
namespace {

constexpr std::uint64_t kSelfDescribed = 55799;
constexpr char kFormat[] = "MarrowickGraph plot";

/// The whole of a graph in the file's order. P: graph::Properties, const where it is only written.
template <typename P>
struct Content
{
    explicit Content(P& p)
        : properties(p)
        , otherEntries(p.otherEntries)
    {}
    int subsets = 0;
    int points = 0;
    graph::FloatArray x;
    graph::FloatArray y;
    P& properties;
    decltype((std::declval<P&>().otherEntries)) otherEntries;
};

template <typename Archive, typename T>
requires requires(T& content)
{
    content.properties;
}
void describe(Archive& archive, T& content)
{
    archive("Subsets", content.subsets);
    archive("Points", content.points);
    archive("XData", content.x);
    archive("YData", content.y);
    graph::describe(archive, content.properties);
}

/// What stands around the content.
struct Envelope
{
    QString format;
    std::optional<std::uint32_t> version;
    std::optional<std::uint32_t> checksum;
    graph::EncodedItem content;
    QByteArray otherEntries;
};

template <typename Archive>
void describe(Archive& archive, Envelope& envelope)
{
    archive("format", envelope.format);
    archive("version", envelope.version);
    archive("crc32", envelope.checksum);
    archive("content", envelope.content);
}

QString tr(const char* text)
{
    return QCoreApplication::translate("GraphFile", text);
}

Outcome tooLarge()
{
    return Outcome::failure(tr("The file is too large for a plot file."));
}

Outcome invalid(const QString& problem)
{
    return Outcome::failure(tr("The plot file is not valid: %1.").arg(problem));
}

quint32 checksum(QByteArrayView bytes)
{
    const uLong start = crc32(0, nullptr, 0);
    return static_cast<quint32>(
        crc32(start, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

/// The file's order of bytes, which is this machine's on nearly all.
graph::FloatArray littleEndian(std::span<const float> values)
{
    graph::FloatArray array;
    const auto size = static_cast<qsizetype>(values.size_bytes());
    if constexpr (Q_BYTE_ORDER == Q_BIG_ENDIAN) {
        array.joined.resize(size);
        qToLittleEndian<quint32>(values.data(), static_cast<qsizetype>(values.size()), array.joined.data());
        array.bytes = array.joined;
    } else {
        array.bytes = QByteArrayView(reinterpret_cast<const char*>(values.data()), size);
    }
    return array;
}

std::span<const std::byte> nativeEndian(graph::FloatArray& array)
{
    if constexpr (Q_BYTE_ORDER == Q_BIG_ENDIAN) {
        QByteArray swapped(array.bytes.size(), Qt::Uninitialized);
        qFromLittleEndian<quint32>(array.bytes.data(), array.bytes.size() / 4, swapped.data());
        array.joined = swapped;
        array.bytes = array.joined;
    }
    return std::as_bytes(std::span(array.bytes.data(), static_cast<std::size_t>(array.bytes.size())));
}

Outcome readEnvelope(const QByteArray& bytes, Envelope& envelope, std::uint64_t& items)
{
    graph::CborInput input(bytes);
    graph::CborReader reader(input, bytes);
    const bool isTagged = input.readTag(kSelfDescribed);
    const bool isRead = isTagged && reader.read(envelope);
    items += input.items();
    if (!isTagged || (isRead && envelope.format != QLatin1StringView(kFormat)))
        return Outcome::failure(tr("The file is no plot file."));
    if (!isRead)
        return Outcome::failure(tr("The file is damaged or no plot file: %1.").arg(reader.problem()));
    if (!input.isAtEnd())
        return invalid(tr("something follows its end"));
    if (!envelope.otherEntries.isEmpty())
        return invalid(tr("there is more around its content than format, version and checksum"));
    if (!envelope.version || *envelope.version < 1)
        return invalid(tr("\"version\" is missing or 0"));
    if (*envelope.version > kFormatVersion)
        return Outcome::failure(tr("The file was written by a newer program."));
    if (!envelope.checksum || envelope.content.bytes.isEmpty())
        return invalid(tr("\"content\" or its checksum \"crc32\" is missing"));
    if (*envelope.checksum != checksum(envelope.content.bytes))
        return Outcome::failure(tr("The file is damaged: its checksum does not match its content."));
    return Outcome::success();
}

Outcome readContent(QByteArrayView bytes, GraphModel& model, std::uint64_t& items)
{
    graph::Properties properties;
    Content content(properties);
    graph::CborInput input(bytes);
    graph::CborReader reader(input, bytes);
    const bool isRead = reader.read(content);
    items += input.items();
    if (!isRead)
        return invalid(reader.problem());
    if (!input.isAtEnd())
        return invalid(tr("something follows the end of its content"));
    if (content.subsets != model.Subsets() || content.points != model.Points())
        return invalid(tr("its \"Subsets\" and \"Points\" are %1 and %2 instead of %3 and %4")
                           .arg(content.subsets)
                           .arg(content.points)
                           .arg(model.Subsets())
                           .arg(model.Points()));
    for (const auto& [name, array] : {std::pair("XData", &content.x), std::pair("YData", &content.y)}) {
        if (array->bytes.size() != static_cast<qsizetype>(model.allX().size_bytes()))
            return invalid(tr("\"%1\" has not as many values as the graph has points").arg(QLatin1StringView(name)));
    }
    graph::fillSubsetLists(properties, model.Subsets());
    if (const char* name = graph::firstInvalid(properties, model.Subsets()))
        return invalid(tr("\"%1\" has a value out of its range").arg(QLatin1StringView(name)));
    model.replaceAll(std::move(properties), nativeEndian(content.x), nativeEndian(content.y));
    return Outcome::success();
}

} // namespace

// All in one buffer: a second one of this size would cost more than the encoding. So the length of the content is
// filled in behind it, and its checksum follows it.
QByteArray PEstore(const GraphModel& model)
{
    constexpr char kLength32 = 0x5A; // a byte string whose length follows in four bytes, most significant first
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(model.Subsets()) * model.Points() * 8 + 65536);
    graph::CborOutput output(bytes);
    output.writeTag(kSelfDescribed);
    output.startMap(4);
    output.writeText(QByteArrayView("format"));
    output.writeText(QByteArrayView(kFormat));
    output.writeText(QByteArrayView("version"));
    output.writeInteger(kFormatVersion);
    output.writeText(QByteArrayView("content"));
    output.writeTag(graph::EncodedItem::kTag);
    bytes.append(5, kLength32);
    const qsizetype start = bytes.size();
    Content content(model.properties());
    content.subsets = model.Subsets();
    content.points = model.Points();
    content.x = littleEndian(model.allX());
    content.y = littleEndian(model.allY());
    graph::CborWriter(output).write(content);
    const qsizetype size = bytes.size() - start;
    qToBigEndian(static_cast<quint32>(size), bytes.data() + start - 4);
    output.writeText(QByteArrayView("crc32"));
    output.writeInteger(checksum(QByteArrayView(bytes).sliced(start, size)));
    return bytes;
}

Outcome PEload(GraphModel& model, const QByteArray& bytes, std::uint64_t* items)
{
    if (bytes.size() > kLargestFile)
        return tooLarge();
    std::uint64_t looked = 0;
    Envelope envelope;
    Outcome outcome = readEnvelope(bytes, envelope, looked);
    if (outcome)
        outcome = readContent(envelope.content.bytes, model, looked);
    if (items != nullptr)
        *items = looked;
    return outcome;
}

Outcome PEsavetofile(const GraphModel& model, const QString& fileName)
{
    const QByteArray bytes = PEstore(model);
    if (bytes.size() > kLargestFile)
        return Outcome::failure(tr("Cannot save %1: its texts make it larger than a plot file can be.").arg(fileName));
    return files::writeFile(fileName, bytes);
}

Outcome PEloadfromfile(GraphModel& model, const QString& fileName)
{
    const QFileInfo info(fileName);
    if (info.exists() && !info.isFile())
        return Outcome::failure(tr("%1 is not a file.").arg(fileName));
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return Outcome::failure(tr("Cannot read %1: %2.").arg(fileName, file.errorString()));
    if (file.size() > kLargestFile)
        return tooLarge();
    // One byte more than there should be tells a file that has grown since.
    QByteArray bytes(file.size() + 1, Qt::Uninitialized);
    const qint64 size = file.read(bytes.data(), bytes.size());
    if (size < 0)
        return Outcome::failure(tr("Cannot read %1: %2.").arg(fileName, file.errorString()));
    if (size == bytes.size())
        return Outcome::failure(tr("Cannot read %1: it grows at the moment.").arg(fileName));
    bytes.truncate(size);
    return PEload(model, bytes);
}

} // namespace GraphFile
