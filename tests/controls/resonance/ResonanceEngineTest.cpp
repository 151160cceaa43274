// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/ResonanceEngine.h"

#include "controls/resonance/SyntheticPart.h"

#include <gtest/gtest.h>

using namespace synthetic;
using resonance::Refusal;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void feedPolar(ResonanceEngine& engine, std::int32_t pen, const Part& part, const std::vector<double>& frequencies)
{
    std::int32_t index = 0;
    for (const double f : frequencies) {
        const std::complex<double> z = 1.0 / part(f);
        engine.AnalysisAddPolar(f, std::abs(z), std::arg(z) * 180 / std::numbers::pi, pen, index);
        ++index;
    }
}

const std::vector<double> kSweep = logarithmic(20e3, 80e3, 600);

} // namespace

TEST(ResonanceEngine, AnswersAnImpedancePenInTheTermsOfTheHost)
{
    ResonanceEngine engine;
    feedPolar(engine, 3, Part{}, kSweep);
    ASSERT_TRUE(engine.AnalysisSolve(3, -1));
    EXPECT_NEAR(engine.ResultFr(), 40e3, 0.04);
    EXPECT_NEAR(engine.ResultQ(), 100, 0.01);
    const double root = std::sqrt(1 + 1 / 40000.0);
    EXPECT_NEAR(engine.ResultF1(), 40e3 * (root - 0.005), 0.05);
    EXPECT_NEAR(engine.ResultF2(), 40e3 * (root + 0.005), 0.05);
    EXPECT_NEAR(engine.ResultZr(), 100 / std::sqrt(1.01), 0.01);
}

TEST(ResonanceEngine, AnswersAReactancePenTheSame)
{
    ResonanceEngine polar;
    ResonanceEngine rectangular;
    feedPolar(polar, 0, Part{}, kSweep);
    std::int32_t index = 0;
    for (const double f : kSweep) {
        const std::complex<double> y = Part{}(f);
        const std::complex<double> z = 1.0 / y;
        rectangular.AnalysisAddRect(f, z.real(), z.imag(), y.imag(), y.real(), 0, index);
        ++index;
    }
    ASSERT_TRUE(polar.AnalysisSolve(0, -1));
    ASSERT_TRUE(rectangular.AnalysisSolve(0, -1));
    EXPECT_NEAR(polar.ResultFr(), rectangular.ResultFr(), 1e-6);
    EXPECT_NEAR(polar.ResultQ(), rectangular.ResultQ(), 1e-6);
}

TEST(ResonanceEngine, TakesTheAdmittanceFromTheImpedanceWhereNoneIsGiven)
{
    ResonanceEngine engine;
    std::int32_t index = 0;
    for (const double f : kSweep) {
        const std::complex<double> z = 1.0 / Part{}(f);
        engine.AnalysisAddRect(f, z.real(), z.imag(), 0, 0, 0, index);
        ++index;
    }
    ASSERT_TRUE(engine.AnalysisSolve(0, -1));
    EXPECT_NEAR(engine.ResultFr(), 40e3, 0.04);
}

TEST(ResonanceEngine, IndexZeroBeginsThePensSetAnew)
{
    ResonanceEngine engine;
    Part other;
    other.arms[0].fs = 30e3;
    feedPolar(engine, 0, Part{}, logarithmic(20e3, 80e3, 900));
    feedPolar(engine, 0, other, logarithmic(20e3, 60e3, 500));
    EXPECT_EQ(engine.solution(0).usedPoints, 500);
    ASSERT_TRUE(engine.AnalysisSolve(0, -1));
    EXPECT_NEAR(engine.ResultFr(), 30e3, 0.1);
    EXPECT_EQ(engine.solution(0).otherCount, 0);
}

TEST(ResonanceEngine, HoldsASetForEachPenAndOneForTheUser)
{
    ResonanceEngine engine;
    for (int pen = 0; pen < ResonanceEngine::kPens; ++pen) {
        Part part;
        part.arms[0].fs = 35e3 + 1000 * pen;
        feedPolar(engine, pen, part, logarithmic(25e3, 60e3, 300));
    }
    for (int pen = 0; pen < ResonanceEngine::kPens; ++pen) {
        ASSERT_TRUE(engine.AnalysisSolve(pen, -1)) << pen;
        EXPECT_NEAR(engine.ResultFr(), 35e3 + 1000 * pen, 0.1);
    }
}

TEST(ResonanceEngine, APenOutOfRangeOrFedNothingHasNoSet)
{
    ResonanceEngine engine;
    feedPolar(engine, 11, Part{}, kSweep);
    feedPolar(engine, -1, Part{}, kSweep);
    for (const std::int32_t pen : {-1, 0, 10, 11, 65535}) {
        EXPECT_FALSE(engine.hasPoints(pen));
        EXPECT_FALSE(engine.AnalysisSolve(pen, -1));
        EXPECT_FALSE(engine.AnalysisSolveClf(pen));
        EXPECT_EQ(engine.solution(pen).refusal, Refusal::NoPoints);
    }
}

TEST(ResonanceEngine, AnalysisClearForgetsAllPoints)
{
    ResonanceEngine engine;
    feedPolar(engine, 0, Part{}, kSweep);
    ASSERT_TRUE(engine.AnalysisSolve(0, -1));
    engine.AnalysisClear();
    EXPECT_FALSE(engine.hasPoints(0));
    EXPECT_FALSE(engine.AnalysisSolve(0, -1));
    EXPECT_TRUE(std::isnan(engine.ResultFr()));
}

TEST(ResonanceEngine, PointsWithoutPhaseGiveNoResonanceAndSayWhy)
{
    ResonanceEngine engine;
    std::int32_t index = 0;
    for (const double f : kSweep) {
        engine.AnalysisAddPolar(f, std::abs(1.0 / Part{}(f)), ResonanceEngine::kNoPhase, 0, index);
        ++index;
    }
    EXPECT_FALSE(engine.AnalysisSolve(0, -1));
    EXPECT_FALSE(engine.AnalysisSolveClf(0));
    EXPECT_EQ(engine.solution(0).refusal, Refusal::NoPhase);
    EXPECT_EQ(resonance::refusalText(engine.solution(0).refusal), "the points were measured without phase");
    feedPolar(engine, 0, Part{}, kSweep);
    EXPECT_TRUE(engine.AnalysisSolve(0, -1));
}

TEST(ResonanceEngine, SolvesOnceForEachChangeOfData)
{
    ResonanceEngine engine;
    feedPolar(engine, 0, Part{}, kSweep);
    engine.AnalysisSolve(0, -1);
    engine.AnalysisSolveClf(0);
    engine.AnalysisSolve(0, -1);
    EXPECT_EQ(engine.solveCount(), 1);
    std::int32_t index = static_cast<std::int32_t>(kSweep.size());
    const std::complex<double> z = 1.0 / Part{}(81e3);
    engine.AnalysisAddPolar(81e3, std::abs(z), std::arg(z) * 180 / std::numbers::pi, 0, index);
    engine.AnalysisSolve(0, -1);
    EXPECT_EQ(engine.solveCount(), 2);
}

TEST(ResonanceEngine, TheSamePointsFedAgainAreNotSolvedAgain)
{
    ResonanceEngine engine;
    for (int reader = 0; reader < 3; ++reader) {
        engine.AnalysisClear();
        feedPolar(engine, 0, Part{}, kSweep);
        EXPECT_TRUE(engine.AnalysisSolve(0, -1));
        EXPECT_NEAR(engine.ResultFr(), 40e3, 0.04);
    }
    EXPECT_EQ(engine.solveCount(), 1);
    Part other;
    other.arms[0].fs = 41e3;
    feedPolar(engine, 0, other, kSweep);
    EXPECT_TRUE(engine.AnalysisSolve(0, -1));
    EXPECT_NEAR(engine.ResultFr(), 41e3, 0.04);
    EXPECT_EQ(engine.solveCount(), 2);
}

TEST(ResonanceEngine, TellsTheIndexOfThePointNearestToTheResonance)
{
    ResonanceEngine engine;
    // Every second index, as where points are absent.
    for (std::size_t i = 0; i < kSweep.size(); ++i) {
        const std::complex<double> z = 1.0 / Part{}(kSweep[i]);
        auto index = static_cast<std::int32_t>(2 * i);
        engine.AnalysisAddPolar(kSweep[i], std::abs(z), std::arg(z) * 180 / std::numbers::pi, 0, index);
    }
    ASSERT_TRUE(engine.AnalysisSolve(0, -1));
    const auto at = static_cast<std::size_t>(engine.ResultPointIndex() / 2);
    ASSERT_LT(at, kSweep.size() - 1);
    EXPECT_LE(std::abs(kSweep[at] - 40e3), std::abs(kSweep[at + 1] - 40e3));
    EXPECT_LE(std::abs(kSweep[at] - 40e3), std::abs(kSweep[at - 1] - 40e3));
    EXPECT_FALSE(engine.AnalysisSolve(1, -1));
    EXPECT_EQ(engine.ResultPointIndex(), -1);
}

TEST(ResonanceEngine, AFailedSolveLeavesNoFigureOfTheOneBefore)
{
    ResonanceEngine engine;
    feedPolar(engine, 0, Part{}, kSweep);
    ASSERT_TRUE(engine.AnalysisSolve(0, -1));
    EXPECT_FALSE(engine.AnalysisSolve(1, -1));
    for (const double result :
         {engine.ResultFr(), engine.ResultZr(), engine.ResultQ(), engine.ResultF1(), engine.ResultF2()})
        EXPECT_TRUE(std::isnan(result));
}

TEST(ResonanceEngine, OtherModesAreAskedForByNumber)
{
    ResonanceEngine engine;
    Part part;
    part.arms.push_back({55e3, 150, 0.003});
    feedPolar(engine, 0, part, logarithmic(20e3, 80e3, 900));
    ASSERT_TRUE(engine.AnalysisSolve(0, -1));
    EXPECT_NEAR(engine.ResultFr(), 40e3, 0.5);
    ASSERT_TRUE(engine.AnalysisSolve(0, 1));
    EXPECT_NEAR(engine.ResultFr(), 55e3, 1);
    EXPECT_FALSE(engine.AnalysisSolve(0, 2));
}

TEST(ResonanceEngine, TellsTheCapacitanceAtLowFrequencyByTheMedianOfTheFirstPoints)
{
    ResonanceEngine engine;
    Part part;
    part.arms[0].g1 = 1e-4; // hardly adds to C0
    feedPolar(engine, 0, part, logarithmic(1e3, 80e3, 250));
    ASSERT_TRUE(engine.AnalysisSolveClf(0));
    // Five points: the third is the middle one.
    EXPECT_NEAR(engine.ResultClfFrequency(), 1e3 * std::pow(80, 2 / 249.0), 1e-6);
    const double c1 = 1e-4 / (2 * std::numbers::pi * 40e3 * 100);
    EXPECT_NEAR(engine.ResultClf(), part.c0 + c1, 1e-4 * part.c0);
}

TEST(ResonanceEngine, AnInductorOrALossyPartHasNoCapacitanceAtLowFrequency)
{
    ResonanceEngine engine;
    for (const double phase : {60.0, 0.0, -44.0}) {
        for (std::int32_t i = 0; i < 100; ++i) {
            std::int32_t index = i;
            engine.AnalysisAddPolar(1000 + i, 50, phase, 0, index);
        }
        EXPECT_FALSE(engine.AnalysisSolveClf(0)) << phase;
    }
    for (std::int32_t i = 0; i < 100; ++i) {
        std::int32_t index = i;
        engine.AnalysisAddPolar(1000 + i, 50, -46, 0, index);
    }
    EXPECT_TRUE(engine.AnalysisSolveClf(0));
}

TEST(ResonanceEngine, NoCapacitanceAboveHalfOfTheResonance)
{
    ResonanceEngine engine;
    feedPolar(engine, 0, Part{}, logarithmic(25e3, 80e3, 600));
    EXPECT_TRUE(engine.AnalysisSolve(0, -1));
    EXPECT_FALSE(engine.AnalysisSolveClf(0));
    EXPECT_TRUE(std::isnan(engine.ResultClf()));
}

TEST(ResonanceEngine, FormatsFourSignificantDigitsAndAPrefix)
{
    const auto text = [](double value) { return ResonanceEngine::FormatEngineering(value).toStdString(); };
    EXPECT_EQ(text(4.076e-9), "4.076 n");
    EXPECT_EQ(text(4.0764e-9), "4.076 n");
    EXPECT_EQ(text(40.76e-12), "40.76 p");
    EXPECT_EQ(text(407.6e-15), "407.6 f");
    EXPECT_EQ(text(999.96), "1.000 k");
    EXPECT_EQ(text(999.94), "999.9 ");
    EXPECT_EQ(text(1), "1.000 ");
    EXPECT_EQ(text(-12345), "-12.35 k");
    EXPECT_EQ(text(1e7), "10.00 M");
    EXPECT_EQ(text(1.5e-3), "1.500 m");
}

TEST(ResonanceEngine, FormatsNeitherMinusZeroNorExponentsNorInfinities)
{
    const auto text = [](double value) { return ResonanceEngine::FormatEngineering(value).toStdString(); };
    EXPECT_EQ(text(0), "0.000 ");
    EXPECT_EQ(text(-0.0), "0.000 ");
    EXPECT_EQ(text(-1e-300), "0.000 ");
    EXPECT_EQ(text(kNaN), "N/A");
    EXPECT_EQ(text(INFINITY), "N/A");
    EXPECT_EQ(text(-INFINITY), "N/A");
    for (int power = -40; power <= 40; ++power)
        EXPECT_EQ(text(1.234 * std::pow(10.0, power)).find('e'), std::string::npos) << power;
    EXPECT_EQ(text(1.234e22), "12340 E");
}
