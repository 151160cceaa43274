// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

class GraphModel;

/// The records of the recovery journal. docs/recovery.md describes the layout. Nothing that a journal says is believed:
/// what does not decode is no record.
namespace recovery {

/// The points of one pen: X and the Y of its four subsets, all equally long.
struct PenData
{
    std::vector<float> x;
    std::array<std::vector<float>, 4> y;

    static constexpr std::uint32_t kNoPoint = 0x7FFFFFFF; ///< past the points of any graph

    int points() const { return static_cast<int>(x.size()); }
    /// Up to the last point that holds a value in any of the subsets.
    static PenData of(const GraphModel& graph, int pen);
    /// These points and no others are the pen's.
    void writeTo(GraphModel& graph, int pen) const;
    bool operator==(const PenData&) const = default;
};

enum class RecordType : std::uint8_t
{
    PenGone = 1,  ///< PenRecord: data that a document holds no longer
    PlotGone = 2, ///< PlotRecord: a document that was closed, or loaded over, with unsaved changes
    Snapshot = 3, ///< PlotRecord: a document with unsaved changes as it was then
    PenState = 4, ///< PenRecord: the pen holds this and nothing else from then on
    Points = 5,   ///< PointsRecord
    Settled = 6   ///< SettledRecord
};

struct PenRecord
{
    QDateTime when;
    std::uint32_t document = 0; ///< number of the document within its journal
    QString caption;
    QString fileName;
    std::int16_t testType = 0;
    std::int32_t pen = 0; ///< from 0
    QString name;
    PenData data;

    QByteArray encoded() const;
    static std::optional<PenRecord> decoded(const QByteArray& payload);
};

struct PlotRecord
{
    QDateTime when;
    std::uint32_t document = 0;
    QString caption;
    QString fileName;
    std::int16_t testType = 0;
    QByteArray plot; ///< as GraphFile stores it

    QByteArray encoded() const;
    static std::optional<PlotRecord> decoded(const QByteArray& payload);
};

struct StoredPoint
{
    std::uint32_t number = 0; ///< from 0
    float x = 0;
    std::array<float, 4> y{};
};

/// Points that were added to a pen.
struct PointsRecord
{
    std::uint32_t document = 0;
    std::int32_t pen = 0;
    std::vector<StoredPoint> points;

    QByteArray encoded() const;
    static std::optional<PointsRecord> decoded(const QByteArray& payload);
};

/// A document that was saved, loaded or closed: nothing of it is unsaved.
struct SettledRecord
{
    std::uint32_t document = 0;

    QByteArray encoded() const;
    static std::optional<SettledRecord> decoded(const QByteArray& payload);
};

/// What a journal file begins with.
inline constexpr char kFileMark[] = "MGRECOV1";
inline constexpr qint64 kFileMarkSize = 8;

/// A record as it stands in the file: length, checksum, type, payload.
QByteArray framed(RecordType type, const QByteArray& payload);

/// Reads one journal file from its begin to the first record that is not whole: a torn tail ends it like an end.
class RecordReader
{
public:
    struct Record
    {
        RecordType type;
        QByteArray payload;
        qint64 offset; ///< where it begins
    };
    explicit RecordReader(const QString& file);

    std::optional<Record> next();
    /// The record that begins there.
    std::optional<Record> at(qint64 offset);

private:
    QFile m_file;
};

} // namespace recovery
