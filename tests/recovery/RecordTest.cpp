// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/Record.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <limits>

using namespace recovery;

namespace {

PointsRecord block(int count)
{
    PointsRecord record;
    record.document = 3;
    record.pen = 4;
    for (int i = 0; i < count; ++i)
        record.points.push_back(
            {static_cast<std::uint32_t>(i), 1000.5F + static_cast<float>(i), {1.5F, -2, 3, -65536}});
    return record;
}

QByteArray fileOf(const QList<QByteArray>& records)
{
    QByteArray bytes(kFileMark, kFileMarkSize);
    for (const QByteArray& record : records)
        bytes += record;
    return bytes;
}

struct RecordFile : ::testing::Test
{
    QTemporaryDir folder;
    QString name = folder.filePath(QStringLiteral("a.journal"));

    void write(const QByteArray& bytes) const
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    int wholeRecords() const
    {
        RecordReader reader(name);
        int count = 0;
        while (reader.next())
            ++count;
        return count;
    }
};

TEST(Record, PenComesBackBitForBit)
{
    PenRecord pen;
    pen.when = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123);
    pen.document = 7;
    pen.caption = QStringLiteral("Document 1");
    pen.fileName = QStringLiteral("/tmp/ä.gzd");
    pen.testType = 2;
    pen.pen = 9;
    pen.name = QStringLiteral("12:00:00");
    pen.data.x = {1000.1F, std::numeric_limits<float>::denorm_min()};
    pen.data.y = {std::vector{1.0F, std::numeric_limits<float>::infinity()}, std::vector{-0.0F, 4.0F},
                  std::vector{5.0F, 6.0F}, std::vector{7.0F, -65536.0F}};
    const auto back = PenRecord::decoded(pen.encoded());
    ASSERT_TRUE(back);
    EXPECT_EQ(back->when, pen.when);
    EXPECT_EQ(back->document, 7U);
    EXPECT_EQ(back->caption, pen.caption);
    EXPECT_EQ(back->fileName, pen.fileName);
    EXPECT_EQ(back->testType, 2);
    EXPECT_EQ(back->pen, 9);
    EXPECT_EQ(back->name, pen.name);
    EXPECT_EQ(back->data, pen.data);
    EXPECT_TRUE(std::signbit(back->data.y[1][0]));
}

TEST(Record, PayloadCutOrLengthenedAnywhereIsNoRecord)
{
    const QByteArray points = block(3).encoded();
    ASSERT_TRUE(PointsRecord::decoded(points));
    PenRecord pen;
    pen.name = QStringLiteral("a");
    pen.data.x = {1};
    pen.data.y.fill({2});
    const QByteArray penBytes = pen.encoded();
    ASSERT_TRUE(PenRecord::decoded(penBytes));
    PlotRecord plot;
    plot.plot = "plot";
    const QByteArray plotBytes = plot.encoded();
    ASSERT_TRUE(PlotRecord::decoded(plotBytes));
    for (qsizetype length = 0; length < points.size(); ++length)
        EXPECT_FALSE(PointsRecord::decoded(points.first(length))) << length;
    for (qsizetype length = 0; length < penBytes.size(); ++length)
        EXPECT_FALSE(PenRecord::decoded(penBytes.first(length))) << length;
    for (qsizetype length = 0; length < plotBytes.size(); ++length)
        EXPECT_FALSE(PlotRecord::decoded(plotBytes.first(length))) << length;
    EXPECT_FALSE(PointsRecord::decoded(points + 'x'));
    EXPECT_FALSE(PenRecord::decoded(penBytes + 'x'));
}

TEST(Record, PlotThatAnnouncesMoreThanAnyPlotHasIsNoRecord)
{
    PlotRecord plot;
    plot.plot = QByteArray(1000, 'p');
    QByteArray bytes = plot.encoded();
    // The announced size stands in front of the packed bytes.
    const qsizetype place = bytes.indexOf(qCompress(plot.plot, 1));
    ASSERT_GT(place, 0);
    bytes[place] = '\x7f';
    EXPECT_FALSE(PlotRecord::decoded(bytes));
}

TEST_F(RecordFile, TornTailIsCutAtEveryLength)
{
    const QByteArray one = framed(RecordType::Points, block(2).encoded());
    const QByteArray two = framed(RecordType::Settled, SettledRecord{5}.encoded());
    const QByteArray whole = fileOf({one, two});
    for (qsizetype length = 0; length <= whole.size(); ++length) {
        write(whole.first(length));
        const int expected = length == whole.size() ? 2 : length >= kFileMarkSize + one.size() ? 1 : 0;
        EXPECT_EQ(wholeRecords(), expected) << length;
    }
}

TEST_F(RecordFile, ChangedByteEndsTheFileThere)
{
    const QByteArray record = framed(RecordType::Points, block(2).encoded());
    const QByteArray whole = fileOf({record, record});
    for (qsizetype place = kFileMarkSize + record.size(); place < whole.size(); ++place) {
        QByteArray bytes = whole;
        bytes[place] = static_cast<char>(bytes[place] ^ 0x10);
        write(bytes);
        EXPECT_EQ(wholeRecords(), 1) << place;
    }
}

} // namespace
