// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/FrameBuffer.h"

#include "FrameText.h"

#include <gtest/gtest.h>
#include <random>

namespace {

constexpr qint64 kRun = 8192;
constexpr qint64 kLimit = 1024 * 1024;

QByteArray readAll(FrameBuffer& buffer)
{
    QByteArray bytes(buffer.wholeBytes(), '\0');
    bytes.resize(buffer.read(bytes.data(), bytes.size()));
    return bytes;
}

void append(FrameBuffer& buffer, const QByteArray& bytes)
{
    buffer.append(bytes.constData(), bytes.size());
}

TEST(FrameBufferTest, HandsOutAFrameOnlyWithTheByteBehindItsCarriageReturn)
{
    FrameBuffer buffer(kRun, kLimit);
    append(buffer, "abc\r");
    EXPECT_EQ(buffer.wholeBytes(), 0);
    append(buffer, "x");
    EXPECT_EQ(buffer.wholeBytes(), 5);
    append(buffer, "next");
    EXPECT_EQ(readAll(buffer), "abc\rx");
    append(buffer, "\r\n");
    EXPECT_EQ(readAll(buffer), "next\r\n");
}

TEST(FrameBufferTest, TakesACarriageReturnBehindACarriageReturnAsTheLastByteOfTheFrame)
{
    FrameBuffer buffer(kRun, kLimit);
    append(buffer, "a\r\rb\r\r");
    EXPECT_EQ(buffer.wholeBytes(), 6);
    char frame[8];
    ASSERT_EQ(buffer.read(frame, 4), 3);
    EXPECT_EQ(QByteArray(frame, 3), "a\r\r");
    EXPECT_EQ(readAll(buffer), "b\r\r");
}

// A stream of three frames of 67 bytes split into three reads in every way there is.
TEST(FrameBufferTest, LosesNoFrameWhateverTheSplitIntoThreeReads)
{
    const QByteArray frames[] = {frameText('F', 1000, 50, 12, -1, 0), frameText('F', 1010, 51, 13, 1, 1),
                                 frameText('E', 0, 1000, 2000, 0, 1)};
    const QByteArray stream = frames[0] + frames[1] + frames[2];
    ASSERT_EQ(stream.size(), 201);
    int splits = 0;
    for (qsizetype first = 0; first <= 201; ++first) {
        for (qsizetype second = first + 1; second <= 200; ++second) {
            FrameBuffer buffer(kRun, kLimit);
            QByteArray seen;
            for (const QByteArray& part :
                 {stream.first(first), stream.sliced(first, second - first), stream.sliced(second)}) {
                append(buffer, part);
                ASSERT_EQ(buffer.wholeBytes() % 67, 0);
                seen += readAll(buffer);
            }
            ASSERT_EQ(seen, stream) << first << ' ' << second;
            ++splits;
        }
    }
    EXPECT_EQ(splits, 20100);
}

TEST(FrameBufferTest, GivesOnlyWholeFramesThatFit)
{
    FrameBuffer buffer(kRun, kLimit);
    append(buffer, "1\r\n22\r\n333\r\n");
    char bytes[16];
    EXPECT_EQ(buffer.wholeWithin(2), 0);
    EXPECT_EQ(buffer.read(bytes, 2), 0);
    EXPECT_EQ(buffer.read(bytes, -1), 0);
    EXPECT_EQ(buffer.wholeWithin(3), 3);
    EXPECT_EQ(buffer.wholeWithin(6), 3);
    EXPECT_EQ(buffer.wholeWithin(7), 7);
    EXPECT_EQ(buffer.read(bytes, 6), 3);
    EXPECT_EQ(QByteArray(bytes, 3), "1\r\n");
    EXPECT_EQ(buffer.read(bytes, 16), 9);
    EXPECT_EQ(QByteArray(bytes, 9), "22\r\n333\r\n");
    EXPECT_EQ(buffer.wholeBytes(), 0);
}

TEST(FrameBufferTest, KeepsTheLongestRunAllowedAndDropsOneByteMore)
{
    FrameBuffer buffer(kRun, kLimit);
    const QByteArray longest(kRun, 'a');
    append(buffer, longest + "\r\n" + longest + "b\r\nnext\r\n");
    EXPECT_EQ(readAll(buffer), longest + "\r\nnext\r\n");
    EXPECT_EQ(buffer.droppedBytes(), kRun + 3);
}

TEST(FrameBufferTest, DropsARunTooLongInTheSameWayWhateverTheChunks)
{
    const QByteArray stream = "one\r\n" + QByteArray(3 * kRun, '.') + "\r\rtwo\r\n";
    for (qsizetype chunk : {1, 2, 3, 67, 4096, 8191, 8192, 8193, 8194, 30000}) {
        FrameBuffer buffer(kRun, kLimit);
        for (qsizetype at = 0; at < stream.size(); at += chunk)
            append(buffer, stream.mid(at, chunk));
        EXPECT_EQ(readAll(buffer), "one\r\ntwo\r\n") << chunk;
        EXPECT_EQ(buffer.droppedBytes(), 3 * kRun + 2) << chunk;
    }
}

TEST(FrameBufferTest, KeepsTheOldestFramesAndDropsNewOnesPastTheLimit)
{
    FrameBuffer buffer(kRun, 10 * 67);
    QByteArray kept;
    for (int i = 0; i < 25; ++i) {
        const QByteArray frame = frameText('F', i);
        if (i < 10)
            kept += frame;
        append(buffer, frame);
    }
    EXPECT_EQ(buffer.droppedBytes(), 15 * 67);
    EXPECT_EQ(readAll(buffer), kept);
    append(buffer, frameText('E'));
    EXPECT_EQ(readAll(buffer), frameText('E'));
}

TEST(FrameBufferTest, HoldsNoMoreMemoryThanPromisedAndGivesItBack)
{
    FrameBuffer buffer(kRun, kLimit);
    const QByteArray chunk = frameText('F').repeated(400);
    for (int i = 0; i < 500; ++i)
        append(buffer, chunk);
    EXPECT_LE(buffer.wholeBytes(), kLimit);
    EXPECT_LE(buffer.capacity(), 2 * (kLimit + kRun + 2));
    readAll(buffer);
    EXPECT_LE(buffer.capacity(), 1024 * 1024);
}

TEST(FrameBufferTest, StaysSmallWhileAReaderKeepsUpButNeverReadsItEmpty)
{
    FrameBuffer buffer(kRun, kLimit);
    const QByteArray chunk = frameText('F').repeated(50) + "F:1 unfinished";
    QByteArray rest;
    for (int i = 0; i < 2000; ++i) {
        append(buffer, chunk);
        readAll(buffer);
        append(buffer, "\r\n");
    }
    EXPECT_LE(buffer.capacity(), 64 * 1024);
}

TEST(FrameBufferTest, ForgetsAnUnfinishedFrameWhenCleared)
{
    FrameBuffer buffer(kRun, kLimit);
    append(buffer, "a\r\nhalf of one\r");
    buffer.clear();
    EXPECT_EQ(buffer.wholeBytes(), 0);
    append(buffer, "b\r\n");
    EXPECT_EQ(readAll(buffer), "b\r\n");
}

TEST(FrameBufferTest, AgreesWithTheObviousWayOfCuttingRandomBytes)
{
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        QByteArray stream;
        const int size = int(random() % 2000);
        for (int i = 0; i < size; ++i)
            stream += random() % 12 == 0 ? '\r' : char('a' + random() % 26);
        QByteArray expected;
        for (qsizetype at = 0;;) {
            const qsizetype found = stream.indexOf('\r', at);
            if (found < 0 || found + 1 >= stream.size())
                break;
            if (found - at <= 16)
                expected += stream.mid(at, found + 2 - at);
            at = found + 2;
        }
        FrameBuffer buffer(16, kLimit);
        QByteArray seen;
        for (qsizetype at = 0; at < stream.size();) {
            const qsizetype chunk = 1 + qsizetype(random() % 60);
            append(buffer, stream.mid(at, chunk));
            at += chunk;
            char part[64];
            const qint64 count = buffer.read(part, qint64(random() % 64));
            seen.append(part, count);
        }
        seen += readAll(buffer);
        ASSERT_EQ(seen, expected);
    }
}

} // namespace
