// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/LogPlayer.h"

#include "sim/Replay.h"
#include "tests/sim/SimBench.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

namespace {

using linklog::Entry;

QByteArray bytesOf(const sim::Frame& frame)
{
    return QByteArray(frame.data(), static_cast<qsizetype>(frame.size()));
}

/// enquire, V and X; imptest, D, two points half a second apart, E, Y; a fragment.
QByteArray recording()
{
    const std::vector<Entry> entries{
        {0, Entry::Remark, "connected T46-77"},
        {1000, Entry::ToInstrument, "enquire 1.28\r"},
        {2000, Entry::FromInstrument, bytesOf(sim::textFrame('V', 0, "T46-77"))},
        {2100, Entry::FromInstrument, bytesOf(sim::numberFrame('X', 2, {1000, 2000, 2, -1, 0}))},
        {900000, Entry::ToInstrument, "y\rimptest\r"},
        {901000, Entry::FromInstrument, bytesOf(sim::numberFrame('D', 0, {1, 1000, 2000, 0, 0}))},
        {902000, Entry::FromInstrument, bytesOf(sim::numberFrame('F', 1, {1000, 50, 1, 1, 0}))},
        {1402000, Entry::FromInstrument, bytesOf(sim::numberFrame('F', 1, {2000, 60, 1, 1, 1}))},
        {1402100, Entry::FromInstrument, bytesOf(sim::numberFrame('E', 0, {}))},
        {1402200, Entry::FromInstrument, bytesOf(sim::numberFrame('Y', 0, {}))},
        {1402300, Entry::FromInstrument, "broken\r\n"},
    };
    QByteArray text = QByteArray(linklog::kHeader) + "\n";
    for (const Entry& entry : entries)
        text += linklog::lineOf(entry) + "\n";
    return text;
}

std::vector<Entry> readRecording()
{
    QByteArray text = recording();
    QBuffer buffer(&text);
    EXPECT_TRUE(buffer.open(QIODevice::ReadOnly));
    ValueOr<std::vector<Entry>> entries = sim::LogPlayer::readLog(buffer);
    EXPECT_TRUE(entries.ok()) << entries.sentence().toStdString();
    return entries.value();
}

struct Player
{
    explicit Player(const sim::Pace& pace)
        : device(readRecording(), "T46-77", pace, recorder)
    {
        device.hostArrived(now);
    }
    void pass(sim::Duration duration)
    {
        const sim::Moment end = now + duration;
        for (;;) {
            device.advance(now, 64);
            const std::optional<sim::Moment> due = device.nextDue();
            if (!due || *due > end)
                break;
            now = std::max(now, *due);
        }
        now = end;
    }

    Recorder recorder;
    sim::Moment now{std::chrono::seconds(100)};
    sim::LogPlayer device;
};

constexpr sim::Pace kFast{sim::Pace::Kind::Fast, 0};

} // namespace

TEST(LogPlayer, TheSerialNumberIsTheRecordedOne)
{
    EXPECT_EQ(sim::LogPlayer::recordedSerial(readRecording()), QByteArray("T46-77"));
    EXPECT_EQ(sim::LogPlayer::recordedSerial({}), QByteArray());
}

TEST(LogPlayer, ItWaitsForTheHostWhereTheRecordedHostWrote)
{
    Player player(kFast);
    player.pass(std::chrono::seconds(1));
    EXPECT_EQ(player.recorder.codes(), "");
    player.device.receive("enquire 1.99\r", player.now);
    player.pass(std::chrono::seconds(1));
    EXPECT_EQ(player.recorder.codes(), "VX");
    player.device.receive("y\r", player.now);
    player.pass(std::chrono::seconds(1));
    EXPECT_EQ(player.recorder.codes(), "VX") << "two commands were recorded";
    player.device.receive("amptest\r", player.now);
    player.pass(std::chrono::seconds(1));
    EXPECT_EQ(player.recorder.codes(), "VXDFFEY");
    EXPECT_EQ(player.recorder.raw.back(), "broken\r\n");
    EXPECT_FALSE(player.device.nextDue());
}

TEST(LogPlayer, AHostThatKeepsSilentGetsTheRestAfterAWhile)
{
    Player player(kFast);
    player.pass(2 * sim::LogPlayer::kLongestWait + std::chrono::milliseconds(1));
    EXPECT_EQ(player.recorder.codes(), "VXDFFEY");
}

TEST(LogPlayer, TheRecordedTimesAreKept)
{
    Player player({});
    player.device.receive("enquire 1.28\ry\rimptest\r", player.now);
    player.pass(std::chrono::milliseconds(400));
    EXPECT_EQ(player.recorder.codes(), "VXDF");
    player.pass(std::chrono::milliseconds(200));
    EXPECT_EQ(player.recorder.codes(), "VXDFFEY");
}

TEST(LogPlayer, ANewHostGetsItFromTheBeginning)
{
    Player player(kFast);
    player.device.receive("enquire 1.28\ry\rimptest\r", player.now);
    player.pass(std::chrono::seconds(1));
    player.device.hostLeft();
    EXPECT_FALSE(player.device.nextDue());
    player.recorder.clear();
    player.device.hostArrived(player.now);
    player.device.receive("enquire 1.28\ry\rimptest\r", player.now);
    player.pass(std::chrono::seconds(1));
    EXPECT_EQ(player.recorder.codes(), "VXDFFEY");
}

TEST(Replay, TellsLogsFromTables)
{
    QTemporaryDir folder;
    const auto file = [&folder](const char* name, const QByteArray& text) {
        QFile target(folder.filePath(name));
        EXPECT_TRUE(target.open(QIODevice::WriteOnly));
        target.write(text);
        return target.fileName();
    };
    const ValueOr<sim::Replay> log = sim::Replay::load(file("a.log", recording()));
    ASSERT_TRUE(log.ok()) << log.sentence().toStdString();
    EXPECT_EQ(log.value().log.size(), 10u);
    EXPECT_FALSE(log.value().table);
    const ValueOr<sim::Replay> table = sim::Replay::load(file("a.csv", "1000,2,3\n"));
    ASSERT_TRUE(table.ok());
    EXPECT_TRUE(table.value().table);
    EXPECT_TRUE(table.value().log.empty());
}

TEST(Replay, WhatCannotBeReplayedIsNamedWithTheReason)
{
    QTemporaryDir folder;
    EXPECT_TRUE(sim::Replay::load("/nowhere/x.csv").sentence().startsWith("\"/nowhere/x.csv\" cannot be replayed: "));
    QFile empty(folder.filePath("empty.log"));
    ASSERT_TRUE(empty.open(QIODevice::WriteOnly));
    empty.write(QByteArray(linklog::kHeader) + "\n0.000000 > y\\r\n");
    empty.close();
    EXPECT_TRUE(
        sim::Replay::load(empty.fileName()).sentence().endsWith("The link log holds no frame of an instrument."));
}
