// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/DocumentBench.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

struct PenDocumentPoints : ::testing::Test
{
    DocumentBench bench;

    /// No point of any subset holds data.
    static bool isEmpty(const PenDocument& document)
    {
        const GraphModel& graph = document.peGraph();
        for (int subset = 0; subset < graph.Subsets(); ++subset) {
            for (int point = 0; point < graph.Points(); ++point) {
                if (graph.XData(subset, point) != 0.0F || graph.YData(subset, point) != graph::kNullValue)
                    return false;
            }
        }
        return true;
    }
};

TEST_F(PenDocumentPoints, AmplitudePointsArriveBitForBitInFourSubsets)
{
    const auto document = bench.document(PenDocument::Amplitude);
    for (int pen : {0, 3, 9}) {
        document->setCurrentPen(pen);
        for (int i = 0; i < 1024; ++i) {
            const double frequency = 10.1 + i * 977.77, amplitude = -80.3 + i * 0.0771, phase = 0.123 + i * 0.17;
            const double sign = i % 3 == 0 ? -1.0 : 1.0;
            document->AddAmplitudePoint(frequency, amplitude, phase, sign, i);
            const GraphModel& graph = document->peGraph();
            for (int subset = pen; subset < 40; subset += 10)
                ASSERT_EQ(graph.XData(subset, i), static_cast<float>(frequency));
            ASSERT_EQ(graph.YData(pen, i), static_cast<float>(amplitude));
            ASSERT_EQ(graph.YData(pen + 10, i), static_cast<float>(-amplitude));
            ASSERT_EQ(graph.YData(pen + 20, i), static_cast<float>(-phase));
            ASSERT_EQ(graph.YData(pen + 30, i), static_cast<float>(phase * sign));
        }
    }
    EXPECT_TRUE(bench.messages.shown.empty());
}

TEST_F(PenDocumentPoints, ImpedancePointsArriveBitForBitInFourSubsets)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->setCurrentPen(4);
    for (int i = 0; i < 1024; ++i) {
        const double frequency = 1000.3 + i * 33.1, impedance = 0.017 + i * i * 0.91, phase = 89.9 - i * 0.08;
        const double sign = i % 2 == 0 ? 1.0 : -1.0;
        document->AddImpedancePoint(frequency, impedance, phase, sign, i);
        const GraphModel& graph = document->peGraph();
        for (int subset = 4; subset < 40; subset += 10)
            ASSERT_EQ(graph.XData(subset, i), static_cast<float>(frequency));
        ASSERT_EQ(graph.YData(4, i), static_cast<float>(impedance));
        ASSERT_EQ(graph.YData(14, i), static_cast<float>(1.0 / impedance));
        ASSERT_EQ(graph.YData(24, i), static_cast<float>(-phase));
        ASSERT_EQ(graph.YData(34, i), static_cast<float>(phase * sign));
    }
}

TEST_F(PenDocumentPoints, ReactancePointsArriveBitForBitInFourSubsets)
{
    const auto document = bench.document(PenDocument::Reactance);
    for (int i = 0; i < 1024; ++i) {
        const double frequency = 100.7 + i, reactance = -4000.7 + i * 8.3, resistance = 0.1 + i * 3.7;
        const double susceptance = 1e-6 * i - 1e-4, conductance = 3e-7 * i + 1e-9;
        document->AddReactancePoint(frequency, reactance, resistance, susceptance, conductance, i);
        const GraphModel& graph = document->peGraph();
        for (int subset = 0; subset < 40; subset += 10)
            ASSERT_EQ(graph.XData(subset, i), static_cast<float>(frequency));
        ASSERT_EQ(graph.YData(0, i), static_cast<float>(reactance));
        ASSERT_EQ(graph.YData(10, i), static_cast<float>(susceptance));
        ASSERT_EQ(graph.YData(20, i), static_cast<float>(conductance));
        ASSERT_EQ(graph.YData(30, i), static_cast<float>(resistance));
    }
}

TEST_F(PenDocumentPoints, ReactanceDocumentConvertsAnImpedancePointAndStoresIt)
{
    const auto document = bench.document(PenDocument::Reactance);
    document->AddImpedancePoint(1000, 500, 90, -1.0, 0);
    const GraphModel& graph = document->peGraph();
    EXPECT_TRUE(bench.messages.shown.empty());
    EXPECT_FLOAT_EQ(graph.XData(0, 0), 1000);
    EXPECT_FLOAT_EQ(graph.YData(0, 0), -500);
    EXPECT_FLOAT_EQ(graph.YData(10, 0), 0.002F);
    EXPECT_NEAR(graph.YData(20, 0), 0, 1e-9);
    EXPECT_NEAR(graph.YData(30, 0), 0, 1e-9);

    document->AddImpedancePoint(2000, 100, 60, 1.0, 1);
    EXPECT_FLOAT_EQ(graph.YData(30, 1), 50);
    EXPECT_FLOAT_EQ(graph.YData(0, 1), static_cast<float>(100 * std::sqrt(3.0) / 2));
    EXPECT_FLOAT_EQ(graph.YData(20, 1), 0.005F);
    EXPECT_FLOAT_EQ(graph.YData(10, 1), static_cast<float>(-0.01 * std::sqrt(3.0) / 2));
}

TEST_F(PenDocumentPoints, RectangularPointBecomesModulusAndSignedPhase)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->CalculateImpedance(1000, -400, 300, 0);
    const GraphModel& graph = document->peGraph();
    EXPECT_FLOAT_EQ(graph.YData(0, 0), 500);
    EXPECT_FLOAT_EQ(graph.YData(10, 0), 0.002F);
    const auto phase = static_cast<float>(std::atan2(-400.0, 300.0) * 180 / std::acos(-1.0));
    EXPECT_FLOAT_EQ(graph.YData(30, 0), phase);
    EXPECT_FLOAT_EQ(graph.YData(20, 0), -phase);
}

TEST_F(PenDocumentPoints, PhaseSubsetsCarryNegatedMagnitudeAndSignedPhase)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 50, 12, -1.0, 0);
    document->AddImpedancePoint(2000, 50, 12, 1.0, 1);
    const GraphModel& graph = document->peGraph();
    EXPECT_EQ(graph.YData(30, 0), -12.0F);
    EXPECT_EQ(graph.YData(20, 0), -12.0F);
    EXPECT_EQ(graph.YData(30, 1), 12.0F);
    EXPECT_EQ(graph.YData(20, 1), -12.0F);
}

TEST_F(PenDocumentPoints, AmplitudePoint1024PassesTheCheckAndIsRefusedByTheGraph)
{
    const auto document = bench.document(PenDocument::Amplitude);
    EXPECT_EQ(document->AddAmplitudePoint(1000, -3, 10, 1, 1024), PointAnswer::NoRoom);
    EXPECT_TRUE(isEmpty(*document));
}

TEST_F(PenDocumentPoints, AmplitudePoint1025IsTooMany)
{
    const auto document = bench.document(PenDocument::Amplitude);
    EXPECT_EQ(document->AddAmplitudePoint(1000, -3, 10, 1, 1025), PointAnswer::TooMany);
    EXPECT_TRUE(isEmpty(*document));
    EXPECT_FALSE(document->gbfModified());
}

TEST_F(PenDocumentPoints, ImpedancePoint2000IsRefusedByTheGraphAlone)
{
    const auto document = bench.document(PenDocument::Impedance);
    EXPECT_EQ(document->AddImpedancePoint(1000, 50, 10, 1, 2000), PointAnswer::NoRoom);
    EXPECT_TRUE(isEmpty(*document));
}

TEST_F(PenDocumentPoints, NegativePointNumbersAreRefusedByTheGraph)
{
    const auto amplitude = bench.document(PenDocument::Amplitude);
    amplitude->AddAmplitudePoint(1000, -3, 10, 1, -1);
    amplitude->AddAmplitudePoint(1000, -3, 10, 1, std::numeric_limits<std::int32_t>::min());
    EXPECT_TRUE(isEmpty(*amplitude));
    const auto impedance = bench.document(PenDocument::Impedance);
    impedance->AddImpedancePoint(1000, 50, 10, 1, -1);
    EXPECT_TRUE(isEmpty(*impedance));
}

TEST_F(PenDocumentPoints, ImpedanceDocumentRefusesAmplitudePoints)
{
    const auto document = bench.document(PenDocument::Impedance);
    EXPECT_EQ(document->AddAmplitudePoint(1000, -3, 10, 1, 0), PointAnswer::WrongType);
    EXPECT_TRUE(isEmpty(*document));
    EXPECT_FALSE(document->gbfModified());
}

TEST_F(PenDocumentPoints, AmplitudeDocumentRefusesImpedancePoints)
{
    const auto document = bench.document(PenDocument::Amplitude);
    EXPECT_EQ(document->AddImpedancePoint(1000, 50, 10, 1, 0), PointAnswer::WrongType);
    EXPECT_TRUE(isEmpty(*document));
}

TEST_F(PenDocumentPoints, AmplitudeDocumentRefusesReactancePoints)
{
    const auto document = bench.document(PenDocument::Amplitude);
    EXPECT_EQ(document->AddReactancePoint(1000, 1, 2, 3, 4, 0), PointAnswer::WrongType);
    EXPECT_TRUE(isEmpty(*document));
}

TEST_F(PenDocumentPoints, ZeroImpedanceIsStoredWithInfiniteAdmittance)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 0.0, 10, 1, 0);
    EXPECT_EQ(document->peGraph().YData(0, 0), 0.0F);
    EXPECT_TRUE(std::isinf(document->peGraph().YData(10, 0)));
    EXPECT_TRUE(bench.messages.shown.empty());
}

TEST_F(PenDocumentPoints, PointOnAHiddenPenShowsThePen)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->UpdatePenHide(2, true);
    document->setCurrentPen(2);
    EXPECT_EQ(document->peGraph().RandomSubsetsToGraph(2), -1);
    document->AddImpedancePoint(1000, 50, 10, 1, 0);
    EXPECT_EQ(document->GetPenDisplay(2), 0);
    EXPECT_EQ(document->peGraph().RandomSubsetsToGraph(2), 2);
}

TEST_F(PenDocumentPoints, PointsDoNotMarkTheDocumentAsModified)
{
    const auto document = bench.document(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 50, 10, 1, 0);
    EXPECT_FALSE(document->gbfModified());
}

TEST_F(PenDocumentPoints, ALockedPenTakesNoPoints)
{
    const auto amplitude = bench.document(PenDocument::Amplitude);
    amplitude->LockAllPens();
    EXPECT_EQ(amplitude->AddAmplitudePoint(1000, -3, 10, 1, 0), PointAnswer::Locked);
    EXPECT_TRUE(isEmpty(*amplitude));
    const auto impedance = bench.document(PenDocument::Impedance);
    impedance->LockAllPens();
    EXPECT_EQ(impedance->AddImpedancePoint(1000, 50, 10, 1, 0), PointAnswer::Locked);
    EXPECT_EQ(impedance->CalculateImpedance(1000, 50, 10, 0), PointAnswer::Locked);
    EXPECT_TRUE(isEmpty(*impedance));
    const auto reactance = bench.document(PenDocument::Reactance);
    reactance->LockAllPens();
    EXPECT_EQ(reactance->AddImpedancePoint(1000, 50, 10, 1, 0), PointAnswer::Locked);
    EXPECT_EQ(reactance->AddReactancePoint(1000, 1, 2, 3, 4, 0), PointAnswer::Locked);
    EXPECT_TRUE(isEmpty(*reactance));
}

} // namespace
