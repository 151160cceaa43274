// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/Record.h"

#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"
#include "document/content/TestType.h"

#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <zlib.h>

namespace recovery {

namespace {

constexpr QDataStream::Version kStream = QDataStream::Qt_6_0;
constexpr qint64 kHeadSize = 9; // length, checksum, type
constexpr qint64 kLongestRecord = GraphFile::kLargestFile + 65536;
/// A point on the way: its number and five singles.
constexpr qsizetype kPointSize = 4 + 5 * 4;

std::uint32_t checksum(char type, const QByteArray& payload)
{
    const uLong start = crc32(crc32(0, nullptr, 0), reinterpret_cast<const Bytef*>(&type), 1);
    return static_cast<std::uint32_t>(
        crc32(start, reinterpret_cast<const Bytef*>(payload.constData()), static_cast<uInt>(payload.size())));
}

QDataStream& ready(QDataStream& stream)
{
    stream.setVersion(kStream);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    return stream;
}

void put(QDataStream& stream, const QDateTime& when)
{
    stream << qint64{when.toMSecsSinceEpoch()};
}

bool take(QDataStream& stream, QDateTime& when)
{
    qint64 milliseconds = 0;
    stream >> milliseconds;
    when = QDateTime::fromMSecsSinceEpoch(milliseconds);
    return stream.status() == QDataStream::Ok;
}

bool take(QDataStream& stream, std::vector<float>& values, std::uint32_t count)
{
    values.resize(count);
    const auto size = static_cast<int>(count * sizeof(float));
    if (stream.readRawData(reinterpret_cast<char*>(values.data()), size) != size)
        return false;
    qFromBigEndian<float>(values.data(), static_cast<qsizetype>(count), values.data());
    return true;
}

/// In the order of the stream, all at once: a sweep at full speed writes thousands of them in no time.
void append(QByteArray& payload, const std::vector<float>& values)
{
    const qsizetype place = payload.size();
    const auto count = static_cast<qsizetype>(values.size());
    payload.resize(place + count * qsizetype{sizeof(float)});
    qToBigEndian<float>(values.data(), count, payload.data() + place);
}

} // namespace

// Pen data ------------------------------------------------------------------------------------------------------------

PenData PenData::of(const GraphModel& graph, int pen)
{
    PenData data;
    std::size_t count = 0;
    for (int subset = pen; subset < pen + plot::kSubsets; subset += plot::kPens) {
        const auto y = graph.yArray(subset);
        for (std::size_t point = y.size(); point > count; --point) {
            if (y[point - 1] != graph::kNullValue) {
                count = point;
                break;
            }
        }
    }
    const auto x = graph.xArray(pen);
    count = std::min(count, x.size());
    data.x.assign(x.begin(), x.begin() + static_cast<std::ptrdiff_t>(count));
    for (std::size_t part = 0; part < data.y.size(); ++part) {
        const auto y = graph.yArray(pen + static_cast<int>(part) * plot::kPens);
        data.y[part].assign(count, graph::kNullValue);
        std::copy_n(y.begin(), std::min(count, y.size()), data.y[part].begin());
    }
    return data;
}

void PenData::writeTo(GraphModel& graph, int pen) const
{
    for (std::size_t part = 0; part < y.size(); ++part) {
        const int subset = pen + static_cast<int>(part) * plot::kPens;
        for (int point = 0; point < graph.Points(); ++point) {
            const auto index = static_cast<std::size_t>(point);
            if (index < x.size())
                graph.setPoint(subset, point, x[index], y[part][index]);
            else
                graph.setYData(subset, point, graph::kNullValue);
        }
    }
}

// Payloads ------------------------------------------------------------------------------------------------------------

QByteArray PenRecord::encoded() const
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    put(ready(stream), when);
    stream << quint32{document} << caption << fileName << qint16{testType} << qint32{pen} << name
           << static_cast<quint32>(data.points());
    append(payload, data.x);
    for (const auto& values : data.y)
        append(payload, values);
    return payload;
}

std::optional<PenRecord> PenRecord::decoded(const QByteArray& payload)
{
    QDataStream stream(payload);
    PenRecord record;
    if (!take(ready(stream), record.when))
        return std::nullopt;
    quint32 count = 0;
    stream >> record.document >> record.caption >> record.fileName >> record.testType >> record.pen >> record.name >>
        count;
    const qint64 left = stream.device()->bytesAvailable();
    if (stream.status() != QDataStream::Ok || record.pen < 0 || record.pen >= plot::kPens || left != qint64{count} * 20)
        return std::nullopt;
    bool whole = take(stream, record.data.x, count);
    for (auto& values : record.data.y)
        whole = whole && take(stream, values, count);
    return whole ? std::optional(std::move(record)) : std::nullopt;
}

QByteArray PlotRecord::encoded() const
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    put(ready(stream), when);
    // Most of a plot is empty pens: the quickest way of packing takes nine tenths away.
    stream << quint32{document} << caption << fileName << qint16{testType} << qCompress(plot, 1);
    return payload;
}

std::optional<PlotRecord> PlotRecord::decoded(const QByteArray& payload)
{
    QDataStream stream(payload);
    PlotRecord record;
    if (!take(ready(stream), record.when))
        return std::nullopt;
    QByteArray packed;
    stream >> record.document >> record.caption >> record.fileName >> record.testType >> packed;
    if (stream.status() != QDataStream::Ok || packed.size() < 4)
        return std::nullopt;
    // The first four bytes announce the size, which would be allocated unseen.
    std::uint32_t size = 0;
    for (const char byte : packed.first(4))
        size = size << 8U | static_cast<unsigned char>(byte);
    if (size > GraphFile::kLargestFile)
        return std::nullopt;
    record.plot = qUncompress(packed);
    return record.plot.isEmpty() ? std::nullopt : std::optional(std::move(record));
}

QByteArray PointsRecord::encoded() const
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    ready(stream) << quint32{document} << qint32{pen} << static_cast<quint32>(points.size());
    const qsizetype head = payload.size();
    payload.resize(head + static_cast<qsizetype>(points.size()) * kPointSize);
    char* target = payload.data() + head;
    for (const StoredPoint& point : points) {
        qToBigEndian(point.number, target);
        qToBigEndian(point.x, target + 4);
        qToBigEndian<float>(point.y.data(), 4, target + 8);
        target += kPointSize;
    }
    return payload;
}

std::optional<PointsRecord> PointsRecord::decoded(const QByteArray& payload)
{
    QDataStream stream(payload);
    PointsRecord record;
    quint32 count = 0;
    ready(stream) >> record.document >> record.pen >> count;
    if (stream.status() != QDataStream::Ok || record.pen < 0 || record.pen >= plot::kPens ||
        stream.device()->bytesAvailable() != qint64{count} * kPointSize)
        return std::nullopt;
    record.points.resize(count);
    for (StoredPoint& point : record.points) {
        stream >> point.number >> point.x;
        for (float& y : point.y)
            stream >> y;
    }
    return stream.status() == QDataStream::Ok ? std::optional(std::move(record)) : std::nullopt;
}

QByteArray SettledRecord::encoded() const
{
    QByteArray payload;
    QDataStream stream(&payload, QIODevice::WriteOnly);
    ready(stream) << quint32{document};
    return payload;
}

std::optional<SettledRecord> SettledRecord::decoded(const QByteArray& payload)
{
    QDataStream stream(payload);
    SettledRecord record;
    ready(stream) >> record.document;
    return stream.status() == QDataStream::Ok ? std::optional(record) : std::nullopt;
}

// File ----------------------------------------------------------------------------------------------------------------

QByteArray framed(RecordType type, const QByteArray& payload)
{
    QByteArray record;
    record.reserve(kHeadSize + payload.size());
    QDataStream stream(&record, QIODevice::WriteOnly);
    ready(stream) << static_cast<quint32>(payload.size()) << checksum(static_cast<char>(type), payload)
                  << static_cast<quint8>(type);
    return record + payload;
}

RecordReader::RecordReader(const QString& file)
    : m_file(file)
{
    if (!m_file.open(QIODevice::ReadOnly) || m_file.read(kFileMarkSize) != QByteArray(kFileMark, kFileMarkSize))
        m_file.close();
}

std::optional<RecordReader::Record> RecordReader::next()
{
    if (!m_file.isOpen())
        return std::nullopt;
    const qint64 offset = m_file.pos();
    const QByteArray head = m_file.read(kHeadSize);
    if (head.size() != kHeadSize)
        return std::nullopt;
    QDataStream stream(head);
    quint32 length = 0, sum = 0;
    quint8 type = 0;
    ready(stream) >> length >> sum >> type;
    if (length > kLongestRecord || length > m_file.size() - m_file.pos())
        return std::nullopt;
    Record record{static_cast<RecordType>(type), m_file.read(length), offset};
    if (record.payload.size() != static_cast<qsizetype>(length) ||
        checksum(static_cast<char>(type), record.payload) != sum)
        return std::nullopt;
    return record;
}

std::optional<RecordReader::Record> RecordReader::at(qint64 offset)
{
    if (!m_file.isOpen() || !m_file.seek(offset))
        return std::nullopt;
    return next();
}

} // namespace recovery
