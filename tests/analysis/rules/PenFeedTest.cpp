// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/PenFeed.h"

#include "analysis/rules/AnalysisBench.h"
#include "controls/resonance/ResonanceEngine.h"

#include <gtest/gtest.h>

namespace {

class PenFeedTest : public ::testing::Test, protected AnalysisBench
{
protected:
    ResonanceEngine engine;
};

} // namespace

TEST_F(PenFeedTest, AnImpedanceAndAReactanceDocumentOfOnePartAnswerTheSame)
{
    double fr[2] = {};
    double q[2] = {};
    for (const auto type : {PenDocument::Impedance, PenDocument::Reactance}) {
        const auto made = document(type);
        sweep(*made, 3, partAt(40e3));
        EXPECT_EQ(penfeed::feed(engine, *made, 3), kPoints);
        ASSERT_TRUE(engine.AnalysisSolve(3, -1)) << type;
        const bool reactance = type == PenDocument::Reactance;
        fr[reactance] = engine.ResultFr();
        q[reactance] = engine.ResultQ();
    }
    EXPECT_NEAR(fr[0], 40e3, 0.05);
    EXPECT_NEAR(fr[1], fr[0], 0.05);
    EXPECT_NEAR(q[0], 100, 0.05);
    EXPECT_NEAR(q[1], q[0], 0.05);
}

TEST_F(PenFeedTest, TheWalkStopsAtTheFirstEmptyPoint)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    made->peGraph().setYData(0, 250, graph::kNullValue);
    EXPECT_EQ(penfeed::feed(engine, *made, 0), 250);
    made->peGraph().setXData(0, 100, 0);
    EXPECT_EQ(penfeed::feed(engine, *made, 0), 100);
    const auto other = document(PenDocument::Reactance);
    sweep(*other, 0, partAt(40e3));
    // The walk reads the conductance.
    other->peGraph().setYData(20, 50, graph::kNullValue);
    EXPECT_EQ(penfeed::feed(engine, *other, 0), 50);
}

TEST_F(PenFeedTest, AShorterSweepLeavesNoTailOfALongerOne)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    penfeed::feed(engine, *made, 0);
    made->graphEraseLine(0);
    sweep(*made, 0, partAt(35e3), 30e3, 38e3, 120);
    EXPECT_EQ(penfeed::feed(engine, *made, 0), 120);
    EXPECT_EQ(engine.solution(0).usedPoints, 120);
    ASSERT_TRUE(engine.AnalysisSolve(0, -1));
    EXPECT_NEAR(engine.ResultFr(), 35e3, 1);
}

TEST_F(PenFeedTest, AmplitudeDocumentsAndWhatIsNoPenFeedNothing)
{
    const auto amplitude = document(PenDocument::Amplitude);
    amplitude->AddAmplitudePoint(1000, -3, 10, 1, 0);
    EXPECT_FALSE(penfeed::takesAnalysis(*amplitude));
    EXPECT_EQ(penfeed::feed(engine, *amplitude, 0), 0);
    const auto impedance = document(PenDocument::Impedance);
    sweep(*impedance, 0, partAt(40e3));
    for (const int pen : {-1, 10, 65535})
        EXPECT_EQ(penfeed::feed(engine, *impedance, pen), 0);
    for (int pen = 0; pen < ResonanceEngine::kPens; ++pen)
        EXPECT_FALSE(engine.hasPoints(pen));
}

TEST_F(PenFeedTest, PointsMeasuredWithoutPhaseGiveNoResonance)
{
    for (const double sign : {1.0, -1.0}) {
        const auto made = document(PenDocument::Impedance);
        for (std::int32_t i = 0; i < kPoints; ++i)
            made->AddImpedancePoint(30e3 + 50 * i, 100, 65536, sign, i);
        penfeed::feed(engine, *made, 0);
        EXPECT_FALSE(engine.AnalysisSolve(0, -1));
        EXPECT_EQ(engine.solution(0).refusal, resonance::Refusal::NoPhase);
    }
}

TEST_F(PenFeedTest, DisplayedPensAreThoseThatTheGraphShowsInEitherView)
{
    for (const auto type : {PenDocument::Impedance, PenDocument::Reactance}) {
        const auto made = document(type);
        made->UpdatePenHide(0, true);
        made->UpdatePenHide(4, true);
        for (const bool alternate : {false, true}) {
            made->graphSetAlternateView(alternate);
            const auto displayed = penfeed::displayedPens(*made);
            for (int pen = 0; pen < PenDocument::kPens; ++pen)
                EXPECT_EQ(displayed[static_cast<std::size_t>(pen)], pen != 0 && pen != 4) << pen << alternate;
        }
    }
}
