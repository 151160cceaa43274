// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/sim/SimBench.h"

#include <numbers>

namespace {

std::vector<ReadFrame> sweep(SimBench& bench, const std::string& command)
{
    bench.recorder.clear();
    bench.write("y\r" + command + "\r");
    bench.finishRun();
    return bench.recorder.of(command == "amptest" ? 'H' : 'F');
}

void setRange(SimBench& bench, double from, double to, int points)
{
    bench.write("startfreq " + std::to_string(from) + "\rendfreq " + std::to_string(to) + "\rpoints " +
                std::to_string(points) + "\rsweepmode 0\r");
}

std::string body(std::size_t points, char code)
{
    return std::string(points, code);
}

} // namespace

TEST(Sweep, AnImpedanceSweepOf1024PointsIsCompleteAndItsResonanceIsThatOfThePart)
{
    SimBench bench;
    setRange(bench, 39000, 43000, 1024);
    const std::vector<ReadFrame> points = sweep(bench, "imptest");
    ASSERT_EQ(points.size(), 1024u);
    EXPECT_EQ(bench.recorder.codes(), "ED" + body(1024, 'F') + "EY");
    const auto part = SimBench::shipped("langevin40k");
    std::size_t lowest = 0, highest = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const ReadFrame& point = points[i];
        EXPECT_EQ(point.i, static_cast<int>(i));
        const std::complex<double> expected = part->impedance(point.n1);
        ASSERT_NEAR(point.n2 / std::abs(expected), 1, 0.002) << point.n1;
        ASSERT_NEAR(point.n3 * point.n4, std::arg(expected) * 180 / std::numbers::pi, 0.1) << point.n1;
        ASSERT_GE(point.n3, 0);
        ASSERT_TRUE(point.n4 == 1 || point.n4 == -1);
        if (point.n2 < points[lowest].n2)
            lowest = i;
        if (point.n2 > points[highest].n2)
            highest = i;
    }
    const sim::MotionalBranch& main = part->branches()[0];
    EXPECT_NEAR(points[lowest].n1, main.seriesResonance(), 5);
    EXPECT_NEAR(points[lowest].n2, part->seriesResistance() + main.resistance, 0.1);
    // At the parallel resonance the static capacitance is joined by the second branch, which is still below its own.
    const sim::MotionalBranch& second = part->branches()[1];
    const double apart = points[highest].n1 / second.seriesResonance();
    const double parallel = part->staticCapacitance() + second.capacitance / (1 - apart * apart);
    EXPECT_NEAR(points[highest].n1, main.seriesResonance() * std::sqrt(1 + main.capacitance / parallel), 5);
}

TEST(Sweep, AnAmplitudeSweepOf1024PointsIsTheDividerOfTheSamePart)
{
    SimBench bench;
    setRange(bench, 39000, 43000, 1024);
    const std::vector<ReadFrame> points = sweep(bench, "amptest");
    ASSERT_EQ(points.size(), 1024u);
    const auto part = SimBench::shipped("langevin40k");
    for (const ReadFrame& point : points) {
        const std::complex<double> gain = 100.0 / (100.0 + part->impedance(point.n1));
        // Five standard deviations: the detector's own noise, and a floor of 2e-5 that weighs more the weaker the
        // signal.
        const double floor = 5 * 2e-5 / std::abs(gain);
        ASSERT_NEAR(point.n2, 20 * std::log10(std::abs(gain)), 0.02 + 8.7 * floor) << point.n1;
        ASSERT_NEAR(point.n3 * point.n4, std::arg(gain) * 180 / std::numbers::pi, 0.06 + 57.3 * floor) << point.n1;
    }
    EXPECT_EQ(bench.recorder.codes(), "ED" + body(1024, 'H') + "EY");
}

TEST(Sweep, EveryShippedPartIsMeasuredRightByBothModels)
{
    for (const QString& name : sim::partfile::shippedNames()) {
        for (const sim::Model model : {sim::Model::T46, sim::Model::DT46}) {
            SimBench bench([&](sim::Instrument::Setup& setup) {
                setup.model = model;
                setup.specimen = SimBench::shipped(name.toLatin1().constData());
            });
            const auto part = SimBench::shipped(name.toLatin1().constData());
            setRange(bench, 1000, 1000000, 300);
            for (const ReadFrame& point : sweep(bench, "imptest")) {
                const double expected = std::clamp(std::abs(part->impedance(point.n1)), 0.01, 1e6);
                ASSERT_NEAR(point.n2 / expected, 1, 0.002) << name.toStdString() << ' ' << point.n1;
            }
        }
    }
}

TEST(Sweep, TheFrequenciesAreSpacedByTheirLogarithmAndMeetBothEnds)
{
    SimBench bench;
    setRange(bench, 1000, 1000000, 4);
    const std::vector<ReadFrame> points = sweep(bench, "imptest");
    ASSERT_EQ(points.size(), 4u);
    EXPECT_EQ(points[0].n1, 1000);
    EXPECT_NEAR(points[1].n1, 10000, 1e-3);
    EXPECT_NEAR(points[2].n1, 100000, 1e-2);
    EXPECT_EQ(points[3].n1, 1000000);
}

TEST(Sweep, LinearSpacesThemEvenly)
{
    SimBench bench;
    setRange(bench, 1000, 4000, 4);
    bench.write("linear 1\r");
    const std::vector<ReadFrame> points = sweep(bench, "imptest");
    ASSERT_EQ(points.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(points[i].n1, 1000.0 * static_cast<double>(i + 1), 1e-6);
}

TEST(Sweep, BToARunsDownwardsAndCountsUpwards)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 16);
    bench.write("sweepmode 1\r");
    const std::vector<ReadFrame> points = sweep(bench, "imptest");
    ASSERT_EQ(points.size(), 16u);
    EXPECT_EQ(points.front().n1, 2000);
    EXPECT_EQ(points.back().n1, 1000);
    for (std::size_t i = 1; i < points.size(); ++i) {
        EXPECT_LT(points[i].n1, points[i - 1].n1);
        EXPECT_EQ(points[i].i, static_cast<int>(i));
    }
    const ReadFrame started = bench.recorder.of('D')[0];
    EXPECT_EQ(started.n2, 1000) << "D tells A and B, whichever comes first";
    EXPECT_EQ(started.n3, 2000);
}

TEST(Sweep, AHigherAThanBRunsDownwardsInModeAToB)
{
    SimBench bench;
    setRange(bench, 2000, 1000, 8);
    const std::vector<ReadFrame> points = sweep(bench, "imptest");
    ASSERT_EQ(points.size(), 8u);
    EXPECT_EQ(points.front().n1, 2000);
    EXPECT_EQ(points.back().n1, 1000);
}

TEST(Sweep, OnePointIsMeasuredAtTheEndTheSweepComesFrom)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 1);
    EXPECT_EQ(sweep(bench, "imptest").at(0).n1, 1000);
    bench.write("sweepmode 1\r");
    EXPECT_EQ(sweep(bench, "imptest").at(0).n1, 2000);
}

TEST(Sweep, StartAndEndTellTheStateInTheirFields)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 8);
    sweep(bench, "imptest");
    const ReadFrame started = bench.recorder.of('D').at(0);
    EXPECT_EQ(started.n1, 1);
    EXPECT_EQ(started.n4, 0);
    EXPECT_EQ(started.i, 1) << "idle output on";
    const ReadFrame ended = bench.recorder.of('E').back();
    EXPECT_EQ(ended.n1, 0);
    EXPECT_EQ(ended.n2, 1000);
    EXPECT_EQ(ended.n3, 2000);
    EXPECT_EQ(ended.n4, 0);
}

TEST(Sweep, AlternateRepeatsUpAndDownWithTheSweepFlagSetUntilItIsStopped)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 8);
    bench.write("sweepmode 2\rrepeat 1\r");
    bench.recorder.clear();
    bench.write("imptest\r");
    for (int i = 0; i < 5; ++i)
        bench.instrument->advance(bench.now, 8);
    bench.write("y\r");
    const std::string pass = "D" + body(8, 'F') + "EY";
    const std::string codes = bench.recorder.codes();
    EXPECT_EQ(codes, pass + pass + pass + pass + pass + "DE");
    const std::vector<ReadFrame> points = bench.recorder.of('F');
    EXPECT_EQ(points[0].n1, 1000);
    EXPECT_EQ(points[8].n1, 2000);
    EXPECT_EQ(points[16].n1, 1000);
    for (const ReadFrame& started : bench.recorder.of('D'))
        EXPECT_EQ(started.n4, 1);
    EXPECT_EQ(bench.recorder.of('E').front().n4, 1);
    EXPECT_EQ(bench.recorder.of('E').back().n4, 0);
}

TEST(Sweep, RepeatSwitchedOffLetsTheSweepUnderWayBeTheLast)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 8);
    bench.write("repeat 1\r");
    bench.recorder.clear();
    bench.write("amptest\r");
    bench.instrument->advance(bench.now, 12);
    bench.write("repeat 0\r");
    bench.finishRun();
    EXPECT_EQ(bench.recorder.codes(), "DHHHHHHHHEYDHHHHPHHHHEY");
}

TEST(Sweep, RepeatSwitchedOnLetsASingleSweepGoOn)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 4);
    bench.recorder.clear();
    bench.write("imptest\r");
    bench.instrument->advance(bench.now, 2);
    bench.write("repeat 1\r");
    bench.instrument->advance(bench.now, 4);
    bench.write("y\r");
    EXPECT_EQ(bench.recorder.codes(), "DFFPFFEYDFFE");
    EXPECT_EQ(bench.recorder.of('D')[0].n4, 0);
    EXPECT_EQ(bench.recorder.of('E')[0].n4, 1);
    EXPECT_EQ(bench.recorder.of('D')[1].n4, 1);
    EXPECT_EQ(bench.recorder.of('E')[1].n4, 0);
}

TEST(Sweep, TheEnquiryInMidSweepIsAnsweredBetweenTwoPoints)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 4);
    bench.recorder.clear();
    bench.write("imptest\r");
    bench.instrument->advance(bench.now, 2);
    bench.write("enquire 1.28\renquire 1.28\r");
    bench.finishRun();
    const std::string answer = "OVlllllllLMNABCJKPQRSstX";
    EXPECT_EQ(bench.recorder.codes(), "DFF" + answer + answer + "FFEY");
    EXPECT_EQ(bench.recorder.of('P')[0].field, '1') << "running";
}

TEST(Sweep, ATestOfOnePointMeasuresTheEndItBeginsWith)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 1);
    EXPECT_EQ(sweep(bench, "imptest").at(0).n1, 1000);
    bench.write("sweepmode 1\r");
    EXPECT_EQ(sweep(bench, "imptest").at(0).n1, 2000);
}

TEST(Sweep, AStoppedSweepEndsWithEAlone)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 100);
    bench.recorder.clear();
    bench.write("imptest\r");
    bench.instrument->advance(bench.now, 10);
    bench.write("y\r");
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.recorder.codes(), "D" + body(10, 'F') + "E");
}

TEST(Sweep, AStartWhileOneRunsBeginsAnew)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 6);
    bench.recorder.clear();
    bench.write("imptest\r");
    bench.instrument->advance(bench.now, 3);
    bench.write("y\ramptest\r");
    bench.finishRun();
    EXPECT_EQ(bench.recorder.codes(), "DFFFEDHHHHHHEY");
}

TEST(Sweep, SettingsChangedInMidSweepHoldFromTheNext)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 8);
    bench.recorder.clear();
    bench.write("imptest\r");
    bench.instrument->advance(bench.now, 4);
    bench.write("points 3\rstartfreq 500\r");
    bench.finishRun();
    EXPECT_EQ(bench.recorder.of('F').size(), 8u);
    EXPECT_EQ(bench.recorder.of('F').back().n1, 2000);
    EXPECT_EQ(bench.recorder.codes(), "DFFFFPsFFFFEYP");
    EXPECT_EQ(bench.recorder.of('P')[0].n1, 8) << "of the test that runs";
    EXPECT_EQ(bench.recorder.of('P')[1].n1, 3) << "and of the next";
    EXPECT_EQ(sweep(bench, "imptest").size(), 3u);
}

TEST(Sweep, PhaseOffIsToldByAPhaseOf65536)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 8);
    bench.write("phase 0\r");
    for (const char* test : {"imptest", "amptest"}) {
        for (const ReadFrame& point : sweep(bench, test)) {
            EXPECT_EQ(point.n3, 65536);
            EXPECT_EQ(point.n4, 1);
        }
    }
}

TEST(Sweep, TheMarkerIsSetOftenAndOnTheLastPoint)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 100);
    const std::vector<ReadFrame> points = sweep(bench, "imptest");
    ASSERT_EQ(points.size(), 100u);
    for (std::size_t i = 0; i < points.size(); ++i)
        EXPECT_EQ(points[i].field, (i + 1) % 32 == 0 || i == 99 ? '1' : '0') << i;
}

TEST(Sweep, TheSameSeedGivesTheSameFramesWhateverThePace)
{
    const auto run = [](std::uint64_t seed, const sim::Pace& pace, double idleLevels) {
        SimBench bench([&](sim::Instrument::Setup& setup) {
            setup.seed = seed;
            setup.pace = pace;
            setup.idleLevelsPerSecond = idleLevels;
        });
        bench.write("enquire 1.28\r");
        bench.pass(std::chrono::seconds(3));
        setRange(bench, 1000, 100000, 64);
        std::string text;
        for (const char* test : {"imptest", "amptest"}) {
            bench.recorder.clear();
            bench.write(std::string(test) + "\r");
            bench.finishRun();
            for (const std::string& frame : bench.recorder.raw) {
                if (frame[0] == 'F' || frame[0] == 'H')
                    text += frame.substr(4); // without the marker, which follows the pace
            }
        }
        return text;
    };
    const std::string fast = run(5, {sim::Pace::Kind::Fast, 0}, 0);
    EXPECT_EQ(fast, run(5, {sim::Pace::Kind::Rate, 777}, 10));
    EXPECT_EQ(fast, run(5, sim::Pace(), 2));
    EXPECT_NE(fast, run(6, {sim::Pace::Kind::Fast, 0}, 0));
}

TEST(Sweep, ThePaceFollowsPeriodAndPoints)
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.pace = sim::Pace(); });
    setRange(bench, 100000, 200000, 50);
    bench.write("period 20\r");
    bench.write("imptest\r");
    const sim::Moment before = bench.now;
    bench.finishRun();
    const double seconds = std::chrono::duration<double>(bench.now - before).count();
    EXPECT_GE(seconds, 50 * 0.020);
    EXPECT_LE(seconds, 50 * 0.024);
}

TEST(Sweep, ARateGivesThatManyPointsASecond)
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.pace = {sim::Pace::Kind::Rate, 1000}; });
    setRange(bench, 10, 200000, 500);
    bench.write("imptest\r");
    const sim::Moment before = bench.now;
    bench.finishRun();
    EXPECT_NEAR(std::chrono::duration<double>(bench.now - before).count(), 0.5, 1e-6);
}

TEST(Sweep, AHostThatLeavesEndsWhateverRuns)
{
    SimBench bench;
    setRange(bench, 1000, 2000, 100);
    bench.write("imptest\r");
    bench.instrument->advance(bench.now, 10);
    bench.recorder.clear();
    bench.instrument->hostLeft();
    bench.pass(std::chrono::seconds(5));
    EXPECT_TRUE(bench.recorder.frames.empty());
    EXPECT_FALSE(bench.instrument->state().running);
    EXPECT_FALSE(bench.instrument->nextDue());
}

TEST(Levels, SpotMeasurementsComeUntilTheStop)
{
    SimBench bench;
    bench.recorder.clear();
    bench.write("y\rampspot 40000\r");
    bench.pass(std::chrono::milliseconds(950));
    const std::vector<ReadFrame> levels = bench.recorder.of('G');
    ASSERT_EQ(levels.size(), 10u);
    EXPECT_EQ(levels[0].n1, 40000);
    EXPECT_NEAR(levels[0].n2, 20 * std::log10(100.0 / 115.5), 0.05);
    bench.write("y\r");
    bench.recorder.clear();
    bench.pass(std::chrono::seconds(1));
    EXPECT_TRUE(bench.recorder.frames.empty());
}

TEST(Levels, ImpedanceSpotsAreFrameI)
{
    SimBench bench;
    bench.recorder.clear();
    bench.write("impspot 40000\r");
    bench.pass(std::chrono::milliseconds(450));
    const std::vector<ReadFrame> levels = bench.recorder.of('I');
    ASSERT_EQ(levels.size(), 5u);
    EXPECT_NEAR(levels[0].n2, 15.5, 0.1);
}

TEST(Levels, WithoutPhaseTheLevelFrameSaysSo)
{
    SimBench bench;
    bench.write("phase 0\r");
    EXPECT_EQ(bench.ask("ampspot 40000").at(0).n3, -65536);
    EXPECT_EQ(bench.ask("impspot 40000").at(0).n3, 0);
}

TEST(Levels, TheIdleLevelComesAfterTheEnquiryWhileTheOutputIsOn)
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.idleLevelsPerSecond = 2; });
    bench.recorder.clear();
    bench.pass(std::chrono::seconds(2));
    EXPECT_TRUE(bench.recorder.frames.empty()) << "nobody has asked yet";
    bench.write("enquire 1.28\r");
    bench.recorder.clear();
    bench.pass(std::chrono::seconds(2));
    EXPECT_EQ(bench.recorder.codes(), "GGGG");
    EXPECT_EQ(bench.recorder.frames[0].n1, 1000) << "at the start frequency";
    bench.write("idlefreq 5000\r");
    bench.recorder.clear();
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.recorder.of('G').at(0).n1, 5000);
    bench.write("idlefreq 0\r");
    bench.recorder.clear();
    bench.pass(std::chrono::seconds(2));
    EXPECT_TRUE(bench.recorder.frames.empty());
}
