// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/LoopGraph.h"

#include "analysis/rules/AnalysisBench.h"
#include "analysis/rules/ResultLine.h"
#include "controls/resonance/ResonanceEngine.h"

#include <QLocale>

#include <algorithm>
#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;
using Quantity = LoopGraph::Quantity;

class LoopGraphTest : public ::testing::Test, protected AnalysisBench
{
protected:
    void build(const PenDocument& document, Quantity quantity = Quantity::Admittance)
    {
        loop.copyLook(document);
        loop.BuildLoop(document, engine, quantity);
        loop.SetLoopAxes();
        loop.solve(engine);
    }
    GraphModel& graph() { return loop.graph(); }
    /// How far at most the straight line between two points of a sweep from 30 to 50 kHz lies from the curve: a mark
    /// may stand midway, half a step from the top of a circle 0.01 S across that is run through in 400 Hz.
    static double chordDepth(int points)
    {
        const double share = 20e3 / (points - 1) / 2 / 200;
        return 0.01 * share * share + 1e-6;
    }
    double x(int pen, int point) { return static_cast<double>(graph().XData(pen, point)); }
    double y(int pen, int point) { return static_cast<double>(graph().YData(pen, point)); }

    ResonanceEngine engine;
    LoopGraph loop;
};

} // namespace

TEST_F(LoopGraphTest, EachPointStandsAtItsConductanceAndSusceptanceInEitherType)
{
    for (const auto type : {PenDocument::Impedance, PenDocument::Reactance}) {
        const auto made = document(type);
        sweep(*made, 2, partAt(40e3));
        build(*made);
        const std::vector<double> frequencies = synthetic::linear(30e3, 50e3, kPoints);
        for (int i = 0; i < kPoints; i += 37) {
            const std::complex<double> expected = partAt(40e3)(frequencies[static_cast<std::size_t>(i)]);
            EXPECT_NEAR(x(2, i), expected.real(), 1e-6 * std::abs(expected) + 1e-9);
            EXPECT_NEAR(y(2, i), expected.imag(), 1e-6 * std::abs(expected) + 1e-9);
            EXPECT_NEAR(loop.frequency(2, i), frequencies[static_cast<std::size_t>(i)], 0.01);
        }
        EXPECT_EQ(graph().XAxisLabel(), u"Conductance G - Siemens"_s);
        EXPECT_EQ(graph().YAxisLabel(), u"Susceptance B - Siemens"_s);
    }
}

TEST_F(LoopGraphTest, AnAbsentPointStaysAbsent)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    GraphModel& original = made->peGraph();
    original.setXData(0, 10, 0);
    original.setYData(0, 20, graph::kNullValue);
    original.setYData(30, 30, graph::kNullValue);
    build(*made);
    for (const int absent : {10, 20, 30, kPoints, 1023}) {
        EXPECT_EQ(graph().XData(0, absent), 65536.0F) << absent;
        EXPECT_EQ(graph().YData(0, absent), graph::kNullValue) << absent;
        EXPECT_EQ(loop.frequency(0, absent), 0) << absent;
        EXPECT_EQ(loop.readOut(0, absent), QString()) << absent;
    }
    // The others count, those behind it too.
    EXPECT_NE(graph().YData(0, 31), graph::kNullValue);
    EXPECT_EQ(engine.solution(0).usedPoints, kPoints - 3);
}

TEST_F(LoopGraphTest, APenHiddenInTheDocumentIsNotDrawnAndHasNoResults)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    sweep(*made, 1, partAt(42e3));
    made->UpdatePenHide(1, true);
    for (const bool alternate : {false, true}) {
        made->graphSetAlternateView(alternate);
        build(*made);
        EXPECT_TRUE(loop.isSkipped(1));
        EXPECT_FALSE(graph().SubsetsToShow(1));
        EXPECT_FALSE(loop.result(1).found);
        EXPECT_FALSE(engine.hasPoints(1));
        EXPECT_FALSE(loop.isSkipped(0));
        EXPECT_TRUE(graph().SubsetsToShow(0));
        EXPECT_TRUE(loop.result(0).found);
    }
}

TEST_F(LoopGraphTest, APenWithNoResonanceShowsAllFivePanelsAsNotAvailable)
{
    const auto made = document(PenDocument::Impedance);
    capacitor(*made, 0);
    build(*made);
    EXPECT_EQ(loop.resultTexts(0), (QStringList{u"F1:N/A"_s, u"F2:N/A"_s, u"Fr:N/A"_s, u"Zr:N/A"_s, u"Q:N/A"_s}));
    EXPECT_EQ(loop.resultTexts(7), loop.resultTexts(0));
}

TEST_F(LoopGraphTest, ResultsHaveTwoDecimalsWithoutGroups)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    build(*made);
    QLocale::setDefault(QLocale(QLocale::English));
    const QStringList texts = loop.resultTexts(0);
    QLocale::setDefault(QLocale::c());
    EXPECT_THAT(texts[0].toStdString(), ::testing::MatchesRegex("F1:39800\\.[0-9]{2} Hz"));
    EXPECT_THAT(texts[1].toStdString(), ::testing::MatchesRegex("F2:40200\\.[0-9]{2} Hz"));
    EXPECT_THAT(texts[2].toStdString(), ::testing::MatchesRegex("Fr:(40000|39999)\\.[0-9]{2} Hz"));
    EXPECT_THAT(texts[3].toStdString(), ::testing::MatchesRegex("Zr:99\\.5[0-9] Ohms"));
    EXPECT_THAT(texts[4].toStdString(), ::testing::MatchesRegex("Q:(100\\.0|99\\.9)[0-9]"));
}

TEST_F(LoopGraphTest, TheAxesLeaveFivePerCentOfTheSpanOnEitherSide)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    build(*made);
    double least = 1;
    double most = -1;
    for (int i = 0; i < kPoints; ++i) {
        least = std::min(least, y(0, i));
        most = std::max(most, y(0, i));
    }
    graph().setWorkingAxis(0);
    EXPECT_EQ(graph().ManualScaleControlX(), graph::ScaleManual);
    EXPECT_EQ(graph().ManualScaleControlY(), graph::ScaleManual);
    EXPECT_NEAR(graph().ManualMaxY(), most + 0.05 * (most - least), 1e-9);
    EXPECT_NEAR(graph().ManualMinY(), least - 0.05 * (most - least), 1e-9);
}

TEST_F(LoopGraphTest, EqualScalesWidenOneAxisAboutItsMiddle)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    build(*made);
    const double width = graph().ManualMaxX() - graph().ManualMinX();
    const double height = graph().ManualMaxY() - graph().ManualMinY();
    for (const double proportion : {0.3, 1.0, 4.0}) {
        loop.SetLoopAxes(proportion);
        const double wide = graph().ManualMaxX() - graph().ManualMinX();
        const double high = graph().ManualMaxY() - graph().ManualMinY();
        EXPECT_NEAR(wide / high, proportion, 1e-9);
        EXPECT_GE(wide, width * (1 - 1e-12));
        EXPECT_GE(high, height * (1 - 1e-12));
        EXPECT_TRUE(wide < width * (1 + 1e-12) || high < height * (1 + 1e-12));
    }
    loop.SetLoopAxes();
    EXPECT_NEAR(graph().ManualMaxX() - graph().ManualMinX(), width, 1e-12);
}

TEST_F(LoopGraphTest, ADocumentWithoutPointsHasAutomaticAxesAndNoResults)
{
    const auto made = document(PenDocument::Reactance);
    build(*made);
    EXPECT_EQ(graph().ManualScaleControlX(), graph::ScaleAutomatic);
    EXPECT_TRUE(loop.marks().empty());
    EXPECT_TRUE(loop.circle(0).empty());
}

TEST_F(LoopGraphTest, TheResonanceAndBothHalfPowerPointsAreMarkedOnTheCurve)
{
    for (const bool down : {false, true}) {
        const auto made = document(PenDocument::Impedance);
        sweep(*made, 0, partAt(40e3), down ? 50e3 : 30e3, down ? 30e3 : 50e3, 1000);
        build(*made);
        const std::vector<LoopGraph::Mark> marks = loop.marks();
        ASSERT_EQ(marks.size(), 3U);
        const double root = std::sqrt(1 + 0.005 * 0.005);
        const std::pair<QString, double> expected[] = {
            {u"Fr"_s, 40e3}, {u"F1"_s, 40e3 * (root - 0.005)}, {u"F2"_s, 40e3 * (root + 0.005)}};
        for (std::size_t i = 0; i < 3; ++i) {
            const std::complex<double> place = partAt(40e3)(expected[i].second);
            EXPECT_EQ(marks[i].name, expected[i].first);
            EXPECT_NEAR(marks[i].place.x(), place.real(), chordDepth(1000));
            EXPECT_NEAR(marks[i].place.y(), place.imag(), chordDepth(1000));
        }
        EXPECT_NEAR(loop.frequency(0, loop.result(0).point), 40e3, 11);
    }
}

TEST_F(LoopGraphTest, WhatTheSweepDidNotReachIsNotMarked)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3), 39.9e3, 44e3);
    build(*made);
    ASSERT_TRUE(loop.result(0).found);
    QStringList names;
    for (const LoopGraph::Mark& mark : loop.marks())
        names += mark.name;
    EXPECT_EQ(names, (QStringList{u"Fr"_s, u"F2"_s}));
}

TEST_F(LoopGraphTest, TheFittedCircleGoesThroughThePointsAboutTheResonance)
{
    for (const double turn : {1.0, -1.0}) {
        const auto made = document(PenDocument::Impedance);
        std::int32_t index = 0;
        for (const double f : synthetic::linear(30e3, 50e3, kPoints)) {
            const std::complex<double> z = turn / partAt(40e3)(f);
            const double phase = std::arg(z) * 180 / std::numbers::pi;
            made->AddImpedancePoint(f, std::abs(z), std::abs(phase), phase < 0 ? -1 : 1, index++);
        }
        build(*made);
        const LoopGraph::Result& result = loop.result(0);
        ASSERT_TRUE(result.found);
        EXPECT_NEAR(result.radius, 0.005, 1e-5);
        // The capacitance hardly changes over the half width.
        for (const LoopGraph::Mark& mark : loop.marks()) {
            const QPointF d = mark.place - result.centre;
            EXPECT_NEAR(std::hypot(d.x(), d.y()), result.radius, chordDepth(kPoints))
                << turn << mark.name.toStdString();
        }
        EXPECT_EQ(loop.circle(0).size(), 181U);
        EXPECT_EQ(loop.circle(0).front(), loop.circle(0).back());
    }
}

TEST_F(LoopGraphTest, AReactanceDocumentCanShowItsImpedance)
{
    const auto made = document(PenDocument::Reactance);
    sweep(*made, 0, partAt(40e3));
    build(*made, Quantity::Impedance);
    const std::complex<double> z = 1.0 / partAt(40e3)(30e3);
    EXPECT_NEAR(x(0, 0), z.real(), 1e-3 * std::abs(z));
    EXPECT_NEAR(y(0, 0), z.imag(), 1e-3 * std::abs(z));
    EXPECT_EQ(graph().XAxisLabel(), u"Resistance R - Ohms"_s);
    EXPECT_THAT(loop.readOut(0, 0).toStdString(),
                ::testing::MatchesRegex("F:30000 Hz R:[-0-9.]+ Ohms X:-[0-9.]+ Ohms"));
    EXPECT_TRUE(loop.result(0).found);
    // An impedance document has one view alone.
    const auto impedance = document(PenDocument::Impedance);
    sweep(*impedance, 0, partAt(40e3));
    build(*impedance, Quantity::Impedance);
    EXPECT_EQ(graph().XAxisLabel(), u"Conductance G - Siemens"_s);
}

TEST_F(LoopGraphTest, TheReadOutTellsFrequencyConductanceAndSusceptance)
{
    const auto made = document(PenDocument::Impedance);
    made->AddImpedancePoint(1000, 100, 0, 1, 0);
    build(*made);
    EXPECT_EQ(loop.readOut(0, 0), u"F:1000 Hz G:0.01 S B:0 S"_s);
    EXPECT_EQ(loop.readOut(-1, 0), QString());
    EXPECT_EQ(loop.readOut(0, 5000), QString());
}

TEST_F(LoopGraphTest, ItLooksLikeTheDocumentsOwnGraph)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 3, partAt(40e3));
    GraphModel& original = made->peGraph();
    made->SetPenColour(3, 0x123456);
    made->setPenName(3, u"Horn"_s);
    original.setTickColor(0x010203);
    original.setShowLegend(false);
    original.setFontSizeGlobalCntl(1.5);
    original.setLineWidth(3);
    original.setViewingStyle(graph::StyleMonochrome);
    original.setMainTitle(u"Title of the plot"_s);
    resultline::show(original, u"4) [Horn] - Q:100.00"_s);
    build(*made);
    EXPECT_EQ(graph().SubsetColors(3), 0x123456U);
    EXPECT_EQ(graph().SubsetLabels(3), u"Horn"_s);
    EXPECT_EQ(graph().TickColor(), 0x010203U);
    EXPECT_FALSE(graph().ShowLegend());
    EXPECT_EQ(graph().FontSizeGlobalCntl(), 1.5);
    EXPECT_EQ(graph().LineWidth(), 3);
    EXPECT_EQ(graph().ViewingStyle(), graph::StyleMonochrome);
    EXPECT_EQ(graph().MainTitle(), u"Title of the plot"_s);
    graph().setWorkingTable(0);
    EXPECT_EQ(graph().TAText(0, 1), u"4) [Horn] - Q:100.00"_s);
}

TEST_F(LoopGraphTest, TheDocumentIsOnlyRead)
{
    const auto made = document(PenDocument::Reactance);
    sweep(*made, 0, partAt(40e3));
    made->setModified(false);
    const QByteArray before = made->plotBytes();
    build(*made);
    EXPECT_EQ(made->plotBytes(), before);
    EXPECT_FALSE(made->gbfModified());
}

TEST_F(LoopGraphTest, PointsWithoutPhaseHaveNoPlaceInTheLoop)
{
    const auto made = document(PenDocument::Impedance);
    for (std::int32_t i = 0; i < 50; ++i)
        made->AddImpedancePoint(1000 + i, 100, 65536, 1, i);
    build(*made);
    EXPECT_EQ(graph().YData(0, 0), graph::kNullValue);
    EXPECT_EQ(engine.solution(0).refusal, resonance::Refusal::NoPhase);
    EXPECT_EQ(loop.resultTexts(0)[4], u"Q:N/A"_s);
}
