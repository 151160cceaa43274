// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/ResonanceSolver.h"

#include "controls/resonance/SyntheticPart.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace synthetic;
using namespace resonance;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

Solution solve(const std::vector<Sample>& samples)
{
    return ResonanceSolver().solve(samples);
}

void expectNear(const Figure& figure, double truth, double relative)
{
    EXPECT_NEAR(figure.value, truth, relative * truth);
    EXPECT_GE(figure.uncertainty, 0);
}

} // namespace

TEST(ResonanceSolver, RecoversTheFourElementsExactly)
{
    for (const double q : {5.5, 30.0, 300.0, 5000.0}) {
        for (const double m : {1.5, 10.0, 300.0}) {
            Part part;
            part.arms[0].q = q;
            const double omega = 2 * std::numbers::pi * 40e3;
            part.c0 = 0.01 / (m * omega);
            const Solution solution = solve(measured(part, linear(40e3 * (1 - 2 / (q + 3)), 40e3 * (1 + 3 / q), 200)));
            ASSERT_TRUE(solution.found) << q << ' ' << m;
            const Mode& mode = solution.mode;
            const double r1 = 100;
            const double c1 = 1 / (omega * q * r1);
            expectNear(mode.fs, 40e3, 1e-6);
            expectNear(mode.q, q, 1e-5);
            expectNear(mode.r1, r1, 1e-5);
            expectNear(mode.l1, q * r1 / omega, 1e-5);
            expectNear(mode.c1, c1, 1e-5);
            expectNear(mode.c0, part.c0, 1e-4);
            expectNear(mode.fp, 40e3 * std::sqrt(1 + c1 / part.c0), 1e-5);
            expectNear(mode.keff, std::sqrt(c1 / (c1 + part.c0)), 1e-4);
            expectNear(mode.zr, r1 / std::sqrt(1 + 1 / (m * m)), 1e-5);
            EXPECT_NEAR(mode.f2.value - mode.f1.value, mode.fs.value / mode.q.value, 1e-6 * mode.fs.value);
            EXPECT_NEAR(mode.f1.value * mode.f2.value, mode.fs.value * mode.fs.value, 1e-6 * 16e8);
        }
    }
}

TEST(ResonanceSolver, SaysTheSameOfTheSameData)
{
    const std::vector<Sample> samples = measured(Part{}, logarithmic(20e3, 80e3, 300), 0.01);
    ResonanceSolver used;
    used.solve(measured(Part{}, logarithmic(10e3, 90e3, 500), 0.02, 7));
    const Solution first = solve(samples);
    const Solution second = used.solve(samples);
    ASSERT_TRUE(first.found);
    EXPECT_EQ(first.mode.fs.value, second.mode.fs.value);
    EXPECT_EQ(first.mode.q.uncertainty, second.mode.q.uncertainty);
}

TEST(ResonanceSolver, OneToSixPointsGiveNoResonance)
{
    EXPECT_EQ(solve({}).refusal, Refusal::NoPoints);
    for (int points = 2; points <= 6; ++points) {
        const Solution solution = solve(measured(Part{}, linear(39.7e3, 40.3e3, points)));
        EXPECT_FALSE(solution.found);
        EXPECT_EQ(solution.refusal, Refusal::TooFewPoints);
    }
    EXPECT_EQ(solve({{40e3, 0.01, 0.001}}).refusal, Refusal::TooFewPoints);
}

TEST(ResonanceSolver, SevenPointsOnAResonanceAreEnough)
{
    const Solution solution = solve(measured(Part{}, linear(39.5e3, 40.5e3, 7)));
    ASSERT_TRUE(solution.found) << refusalText(solution.refusal);
    expectNear(solution.mode.fs, 40e3, 1e-5);
    expectNear(solution.mode.q, 100, 1e-3);
}

TEST(ResonanceSolver, LeavesOutAndCountsPointsThatAreNone)
{
    std::vector<Sample> samples = measured(Part{}, logarithmic(20e3, 80e3, 300));
    samples[10].conductance = kNaN;
    samples[150].susceptance = INFINITY;
    samples[151].frequency = -1;
    samples[20].frequency = 0;
    samples[30].conductance = samples[30].susceptance = 0;
    const Solution solution = solve(samples);
    ASSERT_TRUE(solution.found);
    EXPECT_EQ(solution.leftOut, 5);
    EXPECT_EQ(solution.usedPoints, 295);
    EXPECT_THAT(flagTexts(solution), testing::Contains("5 points left out"));
    expectNear(solution.mode.fs, 40e3, 1e-5);
    EXPECT_FALSE(solve(std::vector<Sample>(50, {kNaN, kNaN, kNaN})).found);
}

TEST(ResonanceSolver, DescendingAndShuffledSweepsAnswerAsRisingOnes)
{
    const std::vector<Sample> rising = measured(Part{}, logarithmic(20e3, 80e3, 300), 0.01);
    std::vector<Sample> other(rising.rbegin(), rising.rend());
    const double fs = solve(rising).mode.fs.value;
    EXPECT_EQ(solve(other).mode.fs.value, fs);
    std::shuffle(other.begin(), other.end(), std::mt19937(5));
    EXPECT_EQ(solve(other).mode.fs.value, fs);
}

TEST(ResonanceSolver, AveragesEqualFrequencies)
{
    std::vector<Sample> samples = measured(Part{}, logarithmic(20e3, 80e3, 300));
    const std::vector<Sample> once = samples;
    for (const Sample& sample : once) {
        samples.push_back(sample);
        samples.back().conductance *= 1.02;
        samples[samples.size() - 301].conductance *= 0.98;
    }
    const Solution solution = solve(samples);
    ASSERT_TRUE(solution.found);
    EXPECT_EQ(solution.usedPoints, 300);
    EXPECT_TRUE(solution.flags & AveragedFlag);
    expectNear(solution.mode.fs, 40e3, 1e-5);
    EXPECT_FALSE(solve(std::vector<Sample>(50, {40e3, 0.01, 0.001})).found);
}

TEST(ResonanceSolver, TurnsASweepOfNegativeResistance)
{
    std::vector<Sample> samples = measured(Part{}, logarithmic(20e3, 80e3, 300), 1e-4);
    for (Sample& sample : samples) {
        sample.conductance = -sample.conductance;
        sample.susceptance = -sample.susceptance;
    }
    const Solution solution = solve(samples);
    ASSERT_TRUE(solution.found);
    EXPECT_TRUE(solution.flags & TurnedFlag);
    EXPECT_THAT(flagTexts(solution), testing::Contains("turned by 180 degrees"));
    expectNear(solution.mode.fs, 40e3, 1e-4);
    EXPECT_GT(solution.mode.r1.value, 0);
}

TEST(ResonanceSolver, ConjugatesASweepWhoseLoopRunsTheWrongWayRound)
{
    std::vector<Sample> samples = measured(Part{}, logarithmic(20e3, 80e3, 300), 1e-4);
    for (Sample& sample : samples)
        sample.susceptance = -sample.susceptance;
    const Solution solution = solve(samples);
    ASSERT_TRUE(solution.found);
    EXPECT_TRUE(solution.flags & ConjugatedFlag);
    expectNear(solution.mode.fs, 40e3, 1e-4);
    expectNear(solution.mode.c0, Part{}.c0, 0.01);
}

TEST(ResonanceSolver, BesideAnInductiveRestTheCapacitanceAndWhatNeedsItAreMissing)
{
    Part part;
    part.c0 = -part.c0;
    const Solution solution = solve(measured(part, logarithmic(35e3, 45e3, 300)));
    ASSERT_TRUE(solution.found) << refusalText(solution.refusal);
    expectNear(solution.mode.fs, 40e3, 1e-5);
    for (const Figure* figure : {&solution.mode.c0, &solution.mode.fp, &solution.mode.keff}) {
        EXPECT_TRUE(std::isnan(figure->value)) << figure->value;
        EXPECT_TRUE(std::isnan(figure->uncertainty)) << figure->uncertainty;
    }
}

TEST(ResonanceSolver, LeavesAClippedPlateauOutAndFitsTheFlanks)
{
    std::vector<Sample> samples = measured(Part{}, logarithmic(35e3, 45e3, 300));
    for (Sample& sample : samples) {
        const double modulus = std::hypot(sample.conductance, sample.susceptance);
        if (modulus > 0.008) {
            sample.conductance *= 0.008 / modulus;
            sample.susceptance *= 0.008 / modulus;
        }
    }
    const Solution solution = solve(samples);
    ASSERT_TRUE(solution.found) << refusalText(solution.refusal);
    EXPECT_TRUE(solution.flags & ClippedFlag);
    expectNear(solution.mode.fs, 40e3, 1e-5);
    expectNear(solution.mode.q, 100, 1e-3);
    expectNear(solution.mode.g1, 0.01, 1e-3);
}

TEST(ResonanceSolver, FlagsAModeAtEitherEdge)
{
    for (const bool upper : {false, true}) {
        const auto sweep = upper ? linear(36e3, 40.1e3, 200) : linear(39.9e3, 44e3, 200);
        const Solution solution = solve(measured(Part{}, sweep, 1e-4));
        ASSERT_TRUE(solution.found) << refusalText(solution.refusal);
        EXPECT_TRUE(solution.flags & EdgeFlag);
        EXPECT_TRUE(solution.flags & ExtrapolatedFlag);
        expectNear(solution.mode.fs, 40e3, 1e-4);
        expectNear(solution.mode.q, 100, 0.01);
    }
    EXPECT_FALSE(solve(measured(Part{}, linear(36e3, 39.9e3, 200), 1e-4)).found);
    EXPECT_FALSE(solve(measured(Part{}, linear(40.1e3, 44e3, 200), 1e-4)).found);
}

TEST(ResonanceSolver, FlagsACoarseSweepWithAdvice)
{
    Part part;
    part.arms[0].q = 500;
    const Solution solution = solve(measured(part, logarithmic(12.6e3, 126e3, 1000), 1e-3));
    ASSERT_TRUE(solution.found) << refusalText(solution.refusal);
    EXPECT_TRUE(solution.flags & CoarseFlag);
    EXPECT_LT(solution.mode.pointsPerBandwidth, 1);
    EXPECT_THAT(flagTexts(solution), testing::Contains("coarse: sweep 39600 to 40400 Hz for a better figure"));
    expectNear(solution.mode.fs, 40e3, 1e-4);
    expectNear(solution.mode.q, 500, 0.02);
}

TEST(ResonanceSolver, FlagsALowQ)
{
    Part part;
    part.arms[0].q = 2;
    const Solution solution = solve(measured(part, logarithmic(4e3, 400e3, 400), 1e-3));
    ASSERT_TRUE(solution.found) << refusalText(solution.refusal);
    EXPECT_TRUE(solution.flags & LowQFlag);
    expectNear(solution.mode.fs, 40e3, 1e-3);
    expectNear(solution.mode.q, 2, 5e-3);
}

TEST(ResonanceSolver, TellsTwoModesCloserThanSixHalfWidthsApart)
{
    for (const double apart : {1.5, 2.5, 5.0}) { // half-widths of 200 Hz
        Part part;
        part.arms.push_back({40e3 + 200 * apart, 100, 0.006});
        const Solution solution = solve(measured(part, linear(36e3, 45e3, 600), 1e-3));
        ASSERT_TRUE(solution.found) << apart;
        ASSERT_EQ(solution.otherCount, 1) << apart;
        EXPECT_TRUE(solution.flags & OverlapFlag);
        EXPECT_NEAR(solution.mode.fs.value, 40e3, 5 * solution.mode.fs.uncertainty);
        EXPECT_NEAR(solution.mode.q.value, 100, 5 * solution.mode.q.uncertainty);
        EXPECT_NEAR(solution.others[0].fs.value, 40e3 + 200 * apart, 5 * solution.others[0].fs.uncertainty);
        EXPECT_NEAR(solution.others[0].g1.value, 0.006, 5 * solution.others[0].g1.uncertainty);
    }
}

TEST(ResonanceSolver, FindsAWeakModeBesideAStrongOne)
{
    Part part;
    part.arms.push_back({47e3, 200, 0.0006});
    const Solution solution = solve(measured(part, logarithmic(20e3, 80e3, 1000), 1e-3));
    ASSERT_TRUE(solution.found);
    expectNear(solution.mode.fs, 40e3, 2e-5);
    ASSERT_EQ(solution.otherCount, 1);
    EXPECT_NEAR(solution.others[0].fs.value, 47e3, 5 * solution.others[0].fs.uncertainty);
    EXPECT_NEAR(solution.others[0].q.value, 200, 5 * solution.others[0].q.uncertainty);
}

TEST(ResonanceSolver, EqualDataIsNoResonance)
{
    std::vector<Sample> samples;
    for (int i = 0; i < 200; ++i)
        samples.push_back({1000.0 + i, 0.01, 0.002});
    EXPECT_FALSE(solve(samples).found);
}
