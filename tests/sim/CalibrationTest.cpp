// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/sim/SimBench.h"

namespace {

/// Amplitude of a plain wire (loopback) at some frequencies.
std::vector<double> wireLevels(SimBench& bench)
{
    bench.write("loopback 1\rstartfreq 10\rendfreq 50000000\rpoints 200\rsweepmode 0\ramptest\r");
    bench.recorder.clear();
    bench.finishRun();
    bench.write("loopback 0\r");
    std::vector<double> levels;
    for (const ReadFrame& point : bench.recorder.of('H'))
        levels.push_back(point.n2);
    return levels;
}

double farthestFromZero(const std::vector<double>& levels)
{
    double farthest = 0;
    for (const double level : levels)
        farthest = std::max(farthest, std::fabs(level));
    return farthest;
}

} // namespace

TEST(Calibration, ACalibratedInstrumentReadsAWireAsZeroDecibel)
{
    SimBench bench;
    const std::vector<double> levels = wireLevels(bench);
    ASSERT_EQ(levels.size(), 200u);
    EXPECT_LT(farthestFromZero(levels), 0.02);
}

TEST(Calibration, WithoutItsCalibrationTheDetectorReadsOff)
{
    SimBench bench;
    bench.write("calon 0\r");
    const double off = farthestFromZero(wireLevels(bench));
    EXPECT_GT(off, 0.1);
    EXPECT_LT(off, 2) << "the host draws the curve two decibel either way";
    bench.write("calon 1\r");
    EXPECT_LT(farthestFromZero(wireLevels(bench)), 0.02);
}

TEST(Calibration, CalibrateSendsTheCurveAndThenR)
{
    SimBench bench;
    bench.recorder.clear();
    bench.write("y\rcalibrate CAL-14050902032021\r");
    bench.finishRun();
    const std::string codes = bench.recorder.codes();
    EXPECT_EQ(codes, "EPD" + std::string(sim::kCalibrationPoints, 'H') + "EYRP");
    for (const ReadFrame& point : bench.recorder.of('H'))
        ASSERT_LT(std::fabs(point.n2), 2);
    EXPECT_EQ(bench.recorder.of('P')[0].n1, sim::kCalibrationPoints);
    EXPECT_EQ(bench.recorder.of('P')[1].n1, 100) << "afterwards the user's number of points again";
    EXPECT_EQ(bench.recorder.of('D')[0].n2, 10);
    EXPECT_EQ(bench.recorder.of('D')[0].n3, 50e6);
    EXPECT_EQ(bench.recorder.of('E').back().n2, 1000) << "and the user's range";
    const ReadFrame calibrated = bench.recorder.of('R')[0];
    EXPECT_EQ(calibrated.n1, 140509);
    EXPECT_EQ(calibrated.n2, 2032021);
    EXPECT_EQ(calibrated.n3, 1);
    ASSERT_TRUE(bench.kept);
    EXPECT_EQ(bench.kept->constants.calibration.stamp, QByteArray("CAL-14050902032021"));
    EXPECT_LT(farthestFromZero(wireLevels(bench)), 0.03) << "the new curve serves";
}

TEST(Calibration, AStoppedCalibrationLeavesTheOldOne)
{
    SimBench bench;
    const sim::Calibration before = bench.instrument->state().constants.calibration;
    bench.recorder.clear();
    bench.write("calibrate CAL-14050902032021\r");
    bench.instrument->advance(bench.now, 20);
    bench.write("y\r");
    EXPECT_EQ(bench.recorder.codes(), "PD" + std::string(20, 'H') + "EP");
    EXPECT_EQ(bench.instrument->state().constants.calibration, before);
    EXPECT_FALSE(bench.kept);
}

TEST(Calibration, PhaseCalibrationTriesEveryTrimCodeAndKeepsTheBest)
{
    SimBench bench;
    const int best = bench.instrument->state().constants.vrefCode;
    bench.write("setvref 10 0\r");
    bench.recorder.clear();
    bench.write("y\rphasecal \r");
    bench.finishRun();
    EXPECT_EQ(bench.recorder.codes(), "EPD" + std::string(256, 'H') + "EYCP");
    const std::vector<ReadFrame> points = bench.recorder.of('H');
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(points[i].n1, 255.0 - static_cast<double>(i)) << "code 0 is the last";
        EXPECT_EQ(points[i].i, static_cast<int>(i));
    }
    EXPECT_EQ(bench.recorder.of('C')[0].n4, best);
    EXPECT_EQ(bench.instrument->state().constants.vrefCode, best);
    // The dip of the level stands at the code that was kept.
    const auto dip = std::min_element(points.begin(), points.end(),
                                      [](const ReadFrame& a, const ReadFrame& b) { return a.n2 < b.n2; });
    EXPECT_EQ(dip->n1, best);
}

TEST(Calibration, AWrongPhaseTrimTurnsThePhase)
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.specimen = SimBench::shipped("resistor1k"); });
    const double before = bench.ask("impspot 10000").at(0).n3;
    EXPECT_NEAR(before, 0, 0.1);
    const int code = bench.instrument->state().constants.vrefCode;
    bench.write("setvref " + std::to_string(code + 40) + " 0\r");
    EXPECT_NEAR(bench.ask("impspot 10000").at(0).n3, 10, 0.1);
}

TEST(Calibration, SlopeCalibrationAnswersWithTheSlopeAndReadsTrueAgain)
{
    SimBench bench;
    const double factory = bench.instrument->state().constants.calibrationSlope;
    const ReadFrame slope = bench.ask("zerocal").at(0);
    EXPECT_EQ(slope.code, 'B');
    EXPECT_NEAR(slope.n4, factory, 1e-4);
    EXPECT_EQ(slope.n3, 0);
}

TEST(Calibration, FrequencyCompensationMovesTheResonance)
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.specimen = SimBench::shipped("fork32k"); });
    const auto resonance = [&bench] {
        bench.write("startfreq 32700\rendfreq 32900\rpoints 1001\rlinear 1\rsweepmode 0\r");
        bench.recorder.clear();
        bench.write("imptest\r");
        bench.finishRun();
        const std::vector<ReadFrame> points = bench.recorder.of('F');
        return std::min_element(points.begin(), points.end(),
                                [](const ReadFrame& a, const ReadFrame& b) { return a.n2 < b.n2; })
            ->n1;
    };
    EXPECT_NEAR(resonance(), 32768, 1);
    const double compensation = bench.instrument->state().constants.frequencyCompensation;
    bench.write("setfreqcomp " + std::to_string(compensation + 1000) + "\r");
    EXPECT_EQ(bench.instrument->state().constants.frequencyCompensation, compensation)
        << "further off than any crystal";
    bench.write("setfreqcomp " + std::to_string(compensation + 500) + "\r");
    EXPECT_NEAR(resonance(), 32768 * (1 + 500e-6), 1.5);
}

TEST(Diagnosis, TwoPassesOf1007PointsTheFirstInLoopback)
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.specimen = SimBench::shipped("resistor1k"); });
    bench.recorder.clear();
    bench.write("y\rperiod 0\rdiagnose\r");
    bench.finishRun();
    const std::string pass = "D" + std::string(1007, 'H') + "EY";
    EXPECT_EQ(bench.recorder.codes(), "ESP" + pass + pass + "P");
    const std::vector<ReadFrame> points = bench.recorder.of('H');
    EXPECT_EQ(points[1006].i, 1006);
    EXPECT_EQ(points[1007].i, 0);
    EXPECT_NEAR(points[500].n2, 0, 0.02);
    EXPECT_NEAR(points[1507].n2, 20 * std::log10(100.0 / 1100.0), 0.05);
    EXPECT_EQ(bench.recorder.of('P')[0].n1, 1007);
}

TEST(Attenuation, LessSignalMeansMoreNoise)
{
    const auto spread = [](int code) {
        SimBench bench([](sim::Instrument::Setup& setup) { setup.specimen = SimBench::shipped("resistor1k"); });
        bench.write("atten " + std::to_string(code) + "\rstartfreq 10000\rendfreq 10000\rpoints 500\rimptest\r");
        bench.recorder.clear();
        bench.finishRun();
        double sum = 0;
        for (const ReadFrame& point : bench.recorder.of('F'))
            sum += (point.n2 - 1000) * (point.n2 - 1000);
        return std::sqrt(sum / 500);
    };
    EXPECT_NEAR(spread(2) / spread(0), 10, 1);
}

TEST(Samples, ADt46AveragesByTheSquareRootOfTheCount)
{
    const auto spread = [](int samples) {
        SimBench bench([](sim::Instrument::Setup& setup) {
            setup.model = sim::Model::DT46;
            setup.specimen = SimBench::shipped("resistor1k");
        });
        bench.write("samples " + std::to_string(samples) + "\rstartfreq 10000\rendfreq 10000\rpoints 500\rimptest\r");
        bench.recorder.clear();
        bench.finishRun();
        double sum = 0;
        for (const ReadFrame& point : bench.recorder.of('F'))
            sum += (point.n2 - 1000) * (point.n2 - 1000);
        return std::sqrt(sum / 500);
    };
    EXPECT_NEAR(spread(1) / spread(64), 8, 0.8);
}
