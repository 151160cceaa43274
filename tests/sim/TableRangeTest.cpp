// SPDX-License-Identifier: GPL-3.0-or-later
// What the simulator says when it is asked for more than its table holds.
#include "sim/parts/MeasuredTable.h"
#include "tests/sim/SimBench.h"

namespace {

SimBench withTable()
{
    return SimBench([](sim::Instrument::Setup& setup) {
        const ValueOr<sim::MeasuredTable> table =
            sim::MeasuredTable::fromCsv("1000,50,-10\n100000,20,30\n", QStringLiteral("part.csv"));
        ASSERT_TRUE(table.ok()) << table.sentence().toStdString();
        setup.specimen = std::make_shared<sim::MeasuredTable>(table.value());
    });
}

QString beyond(const char* what)
{
    return "The " + QString(what) +
           " leaves the table \"part.csv\", which goes from 1000 to 100000 Hz: beyond its ends its first and last "
           "points are repeated.";
}

} // namespace

TEST(TableRange, ASweepThatLeavesItIsToldOnceARunAndNothingIsSentForIt)
{
    SimBench bench = withTable();
    bench.write("startfreq 1000\rendfreq 200000\rpoints 5\rsweepmode 2\rrepeat 1\r");
    bench.recorder.clear();
    bench.write("imptest\r");
    bench.instrument->advance(bench.now, 12);
    EXPECT_EQ(bench.told, QStringList(beyond("impedance sweep from 1000 to 200000 Hz"))) << "not for each pass";
    EXPECT_EQ(bench.recorder.codes(), "DFFFFFEYDFFFFFEYDFF");
    bench.write("y\rendfreq 500\ramptest\r");
    EXPECT_EQ(bench.told.value(1), beyond("amplitude sweep from 1000 to 500 Hz"));
}

TEST(TableRange, WithinItNothingIsSaid)
{
    SimBench bench = withTable();
    bench.write("startfreq 100000\rendfreq 1000\rpoints 5\rimptest\r");
    bench.finishRun();
    bench.write("impspot 1000\ry\rcalibrate CAL-14050902032021\r");
    bench.finishRun();
    bench.write("phasecal \r");
    bench.finishRun();
    EXPECT_EQ(bench.told, QStringList()) << "calibrations measure no part";
}

TEST(TableRange, SpotsDiagnosesAndLevelsBetweenTestsAreToldToo)
{
    SimBench bench = withTable();
    bench.write("ampspot 999\r");
    EXPECT_EQ(bench.told.value(0), beyond("measurement at one frequency at 999 Hz"));
    bench.write("diagnose\r");
    EXPECT_EQ(bench.told.value(1), beyond("diagnosis from 10 to 50000000 Hz"));

    SimBench idle = withTable();
    idle.write("idlefreq 20\renquire 1.28\r");
    idle.pass(std::chrono::seconds(3));
    EXPECT_EQ(idle.told, QStringList()) << "no levels come between tests here";
}

TEST(TableRange, LevelsBetweenTestsAreToldOncePerFrequency)
{
    SimBench bench([](sim::Instrument::Setup& setup) {
        setup.specimen = std::make_shared<sim::MeasuredTable>(
            sim::MeasuredTable::fromCsv("1000,50,-10\n100000,20,30\n", QStringLiteral("part.csv")).value());
        setup.idleLevelsPerSecond = 10;
    });
    bench.write("idlefreq 20\renquire 1.28\r");
    bench.pass(std::chrono::seconds(3));
    EXPECT_EQ(bench.told, QStringList(beyond("level between tests at 20 Hz")));
    bench.write("idlefreq 2000\r");
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.told.size(), 1);
    bench.write("idlefreq 30\r");
    bench.pass(std::chrono::seconds(1));
    EXPECT_EQ(bench.told.size(), 2);
}
