// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/Line.h"

#include "tests/sim/ReadFrame.h"

namespace {

sim::FaultPlan plan(const char* text)
{
    sim::FaultPlan faults;
    const Outcome added = faults.add(QLatin1String(text));
    EXPECT_TRUE(added.ok()) << added.sentence().toStdString();
    return faults;
}

sim::Frame point(int number)
{
    return sim::numberFrame('F', 1, {1000.0 + number, 50, 10, -1, number});
}

/// Everything the line lets through, waiting out its pauses; counts the pieces.
std::string drain(sim::Line& line, sim::Moment& now, int* pieces = nullptr)
{
    std::string bytes;
    while (line.pending() > 0) {
        const std::string_view ready = line.ready(now);
        if (ready.empty()) {
            EXPECT_TRUE(line.stalledUntil());
            if (!line.stalledUntil())
                break;
            now = *line.stalledUntil();
            continue;
        }
        bytes += ready;
        line.written(ready.size());
        if (pieces)
            ++*pieces;
    }
    return bytes;
}

struct Passed
{
    std::string bytes;
    int pieces = 0;
    sim::Duration took{0};
};

Passed pass(const char* faults, int frames, std::uint64_t seed = 1)
{
    sim::Line line(plan(faults), seed);
    sim::Moment now{std::chrono::seconds(1)};
    const sim::Moment start = now;
    Passed passed;
    for (int i = 0; i < frames; ++i)
        line.send(point(i));
    passed.bytes = drain(line, now, &passed.pieces);
    passed.took = now - start;
    return passed;
}

/// Frames that a strict host would take, found the way it looks for them: cut one byte behind each carriage return.
std::vector<ReadFrame> goodFrames(const std::string& bytes)
{
    std::vector<ReadFrame> frames;
    std::size_t from = 0;
    for (std::size_t at = bytes.find('\r'); at != std::string::npos && at + 1 < bytes.size();
         at = bytes.find('\r', from)) {
        const std::string cut = bytes.substr(from, at + 2 - from);
        from = at + 2;
        if (cut.size() == 67 && cut[1] == ':')
            frames.push_back(readFrame(std::string_view(cut)));
    }
    return frames;
}

} // namespace

TEST(Line, WithoutAnyTheBytesAreTheFrames)
{
    sim::Line line({}, 1);
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        const sim::Frame frame = point(i);
        line.send(frame);
        expected.append(frame.data(), frame.size());
    }
    sim::Moment now{0};
    EXPECT_EQ(line.ready(now), expected);
    line.written(10);
    EXPECT_EQ(line.pending(), expected.size() - 10);
    EXPECT_EQ(drain(line, now), expected.substr(10));
    EXPECT_EQ(line.framesSent(), 100u);
}

TEST(Line, GarbageStandsBetweenFramesAndSpoilsOnlyThoseItTouches)
{
    const Passed passed = pass("garbage:10", 2000);
    EXPECT_GT(passed.bytes.size(), 2000u * 67u + 2000u);
    const auto frames = goodFrames(passed.bytes);
    EXPECT_GT(frames.size(), 1600u);
    EXPECT_LT(frames.size(), 2000u);
}

TEST(Line, LostBytesShortenFrames)
{
    const Passed passed = pass("lost:10", 2000);
    EXPECT_LT(passed.bytes.size(), 2000u * 67u - 200u);
    EXPECT_GT(goodFrames(passed.bytes).size(), 1600u);
}

TEST(Line, SplitWritesKeepEveryByteButComeInPieces)
{
    const Passed passed = pass("split:1", 500);
    const auto frames = goodFrames(passed.bytes);
    ASSERT_EQ(frames.size(), 500u);
    EXPECT_EQ(frames[499].i, 499);
    EXPECT_GT(passed.pieces, 700);
    EXPECT_GT(passed.took, std::chrono::milliseconds(500));
}

TEST(Line, AStallHoldsTheLineForAPartOfASecond)
{
    const Passed passed = pass("stall:50", 500);
    EXPECT_EQ(goodFrames(passed.bytes).size(), 500u);
    EXPECT_GT(passed.took, std::chrono::seconds(1));
    EXPECT_LT(passed.took, std::chrono::seconds(20));
}

TEST(Line, AFloodIsMadeOfFramesWithoutMeaning)
{
    const auto frames = goodFrames(pass("flood:100", 1000).bytes);
    EXPECT_GT(frames.size(), 1000u + 500u);
    int number = 0;
    for (const ReadFrame& frame : frames) {
        if (frame.code == 'F')
            EXPECT_EQ(frame.i, number++);
        else
            EXPECT_EQ(frame.code, '*');
    }
    EXPECT_EQ(number, 1000);
}

TEST(Line, FramesOfWrongLengthKeepTheirCarriageReturn)
{
    const Passed passed = pass("wrong-length:10", 2000);
    EXPECT_EQ(std::count(passed.bytes.begin(), passed.bytes.end(), '\r'), 2000);
    const auto frames = goodFrames(passed.bytes);
    EXPECT_GT(frames.size(), 1600u);
    EXPECT_LT(frames.size(), 1950u);
}

TEST(Line, NonNumericFieldsLeaveTheFrameItsLength)
{
    const Passed passed = pass("non-numeric:5", 1000);
    EXPECT_EQ(passed.bytes.size(), 67000u);
    int changed = 0;
    for (int i = 0; i < 1000; ++i) {
        const sim::Frame frame = point(i);
        const std::string sent = passed.bytes.substr(static_cast<std::size_t>(i) * 67, 67);
        if (sent != std::string(frame.data(), frame.size())) {
            ++changed;
            EXPECT_EQ(sent.substr(0, 2), "F:");
            EXPECT_EQ(sent.substr(65), "\r\n");
        }
    }
    EXPECT_GT(changed, 100);
    EXPECT_LT(changed, 300);
}

TEST(Line, TheUnpluggingComesInMidSweepAndOnce)
{
    sim::Line line(plan("unplug:20"), 1);
    bool unplugged = false;
    int sent = 0;
    for (; sent < 100 && !unplugged; ++sent) {
        line.send(sim::numberFrame('K', 0, {}));
        line.send(point(sent));
        unplugged = line.takeUnplugged();
    }
    ASSERT_TRUE(unplugged);
    EXPECT_LE(sent, 40);
    EXPECT_EQ(line.pending(), 0u);
    line.send(point(1));
    EXPECT_EQ(line.pending(), 0u) << "nothing passes a pulled cable";
    EXPECT_FALSE(line.takeUnplugged());
    line.plugIn();
    line.send(sim::numberFrame('K', 0, {}));
    EXPECT_EQ(line.pending(), 67u);
}

TEST(Line, TheSameSeedGivesTheSameFaults)
{
    const char* all = "garbage,lost,split,stall,flood,wrong-length,non-numeric";
    EXPECT_EQ(pass(all, 500, 9).bytes, pass(all, 500, 9).bytes);
    EXPECT_NE(pass(all, 500, 9).bytes, pass(all, 500, 10).bytes);
}

TEST(Line, TheSameSeedPullsThePlugBehindTheSamePointsEachTimeItIsPluggedIn)
{
    const auto points = [](std::uint64_t seed) {
        sim::Line line(plan("unplug:20,garbage,lost"), seed);
        std::vector<int> before;
        for (int times = 0; times < 5; ++times) {
            int sent = 0;
            while (!line.takeUnplugged())
                line.send(point(sent++));
            before.push_back(sent);
            line.plugIn();
        }
        return before;
    };
    EXPECT_EQ(points(5), points(5));
    EXPECT_NE(points(5), points(6));
}

TEST(Line, APointThatStillLooksWellIsOneThatWasSent)
{
    constexpr int kFrames = 300;
    std::vector<std::string> sent;
    for (int i = 0; i < kFrames; ++i) {
        const sim::Frame frame = point(i);
        sent.emplace_back(frame.data(), frame.size() - 1);
    }
    std::size_t good = 0;
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        const std::string bytes = pass("garbage:4,lost:4,split:2,flood:200,wrong-length:4", kFrames, seed).bytes;
        int last = -1;
        std::size_t from = 0;
        for (std::size_t at = bytes.find('\r'); at != std::string::npos && at + 1 < bytes.size();
             at = bytes.find('\r', from)) {
            const std::string cut = bytes.substr(from, at + 2 - from);
            from = at + 2;
            if (cut.size() != 67 || cut[1] != ':' || cut[0] != 'F')
                continue;
            const int number = readFrame(std::string_view(cut)).i;
            ASSERT_GT(number, last);
            ASSERT_EQ(cut.substr(0, 66), sent.at(static_cast<std::size_t>(number))) << "seed " << seed;
            last = number;
            ++good;
        }
    }
    EXPECT_GT(good, 200u * kFrames / 5);
}

TEST(Line, ARecordedFragmentPassesAsItStands)
{
    sim::Line line(plan("garbage:1,lost:1"), 1);
    line.sendRaw("half a fr");
    sim::Moment now{0};
    EXPECT_EQ(drain(line, now), "half a fr");
}
