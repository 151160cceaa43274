// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/ScriptAnalysis.h"

#include "analysis/rules/AnalysisBench.h"
#include "analysis/rules/ResultLine.h"
#include "controls/resonance/ResonanceEngine.h"

#include <QLocale>

#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

/// Switches for the test to set.
struct SettableSwitches : ResultSwitches
{
    std::int16_t ShowF1() const override { return f1; }
    std::int16_t ShowF2() const override { return f2; }
    std::int16_t ShowFr() const override { return fr; }
    std::int16_t ShowZr() const override { return zr; }
    std::int16_t ShowQ() const override { return q; }
    void SetAnalysisMode(std::int16_t mode) override { modes << mode; }

    std::int16_t f1 = 0, f2 = 0, fr = 0, zr = 0, q = 0;
    QList<int> modes;
};

class ScriptAnalysisTest : public ::testing::Test, protected AnalysisBench
{
protected:
    ScriptAnalysisTest()
    {
        QLocale::setDefault(QLocale(QLocale::English));
        analysis.setSwitches(switches);
        QObject::connect(&analysis, &ScriptAnalysis::analysed, [this] { ++analysed; });
    }

    ~ScriptAnalysisTest() override { QLocale::setDefault(QLocale::c()); }

    std::string text(int pen, int penClf = ScriptAnalysis::kNone)
    {
        analysis.AnalysisFeed(pen, penClf);
        return analysis.AnalysisText(pen, penClf).toStdString();
    }

    ResonanceEngine engine;
    ScriptAnalysis analysis{engine, active};
    SettableSwitches switches;
    int analysed = 0;
};

std::string shownLine(PenDocument& document)
{
    return cellText(document, 0, 0, 1).toStdString();
}

} // namespace

TEST_F(ScriptAnalysisTest, EachSwitchAddsItsMeasureInTheirOrder)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 1, partAt(40e3));
    made->setPenName(1, u"Horn"_s);
    switches.fr = 1;
    EXPECT_THAT(text(1), MatchesRegex("2\\) \\[Horn\\] - Fr:[34][0-9],[0-9]{3}\\.[0-9]{2} Hz "));
    switches.f1 = -1;
    switches.f2 = switches.zr = switches.q = 1;
    EXPECT_THAT(text(1), MatchesRegex("2\\) \\[Horn\\] - F1:39,80[0-9]\\.[0-9]{2} Hz F2:40,20[0-9]\\.[0-9]{2} Hz "
                                      "Fr:(39,999|40,000)\\.[0-9]{2} Hz Zr:99\\.50 Ohms Q:(99\\.99|100\\.0[0-9])"));
}

TEST_F(ScriptAnalysisTest, F1IsShownUnlessItsSwitchIsZeroTheOthersAboveZero)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    switches.f1 = switches.f2 = switches.fr = switches.zr = switches.q = -1;
    EXPECT_THAT(text(0), MatchesRegex("1\\) \\[.*\\] - F1:[0-9,.]* Hz "));
}

TEST_F(ScriptAnalysisTest, ThePenThatIsNoneAndAFailedSolveLeaveTheirPartOut)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    capacitor(*made, 1);
    switches.q = 1;
    const std::string both = text(0, 1);
    EXPECT_THAT(both, MatchesRegex("1\\) \\[.*\\] - Q:.*: 2\\) \\[.*\\] - Clf at 30,[0-9.]* Hz = 1\\.000 nF"));
    EXPECT_THAT(text(ScriptAnalysis::kNone, 1), StartsWith("2) "));
    EXPECT_THAT(text(1, 1), StartsWith("2) [" + made->peGraph().SubsetLabels(1).toStdString() + "] - Clf at "));
    // Pen 5 was never swept.
    EXPECT_EQ(text(5), "");
    EXPECT_EQ(text(ScriptAnalysis::kNone), "");
    EXPECT_THAT(text(0, 5), ::testing::Not(HasSubstr("Clf")));
}

TEST_F(ScriptAnalysisTest, ClfPenEqualToThePenFeedsOnce)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    analysis.AnalysisFeed(0, 0);
    EXPECT_EQ(engine.solution(0).usedPoints, kPoints);
    EXPECT_FALSE(engine.solution(0).flags & resonance::AveragedFlag) << "no point came twice";
    analysis.AnalysisText(0, 0);
    EXPECT_EQ(engine.solveCount(), 1);
}

TEST_F(ScriptAnalysisTest, FeedingOnePenKeepsTheSetsOfOthers)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    sweep(*made, 1, partAt(42e3));
    analysis.AnalysisFeed(0, ScriptAnalysis::kNone);
    analysis.AnalysisFeed(1, ScriptAnalysis::kNone);
    EXPECT_TRUE(engine.hasPoints(0));
    EXPECT_TRUE(engine.hasPoints(1));
}

TEST_F(ScriptAnalysisTest, AllSwitchesOffWithAGoodSolveLeaveTheAnnotationUntouched)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    made->peGraph().setSubsetLabels(20, u"kept"_s);
    const std::string before = shownLine(*made);
    analysis.analyse(0, ScriptAnalysis::kNone, 1);
    EXPECT_EQ(shownLine(*made), before);
    EXPECT_EQ(made->peGraph().SubsetLabels(20), u"kept"_s);
    EXPECT_EQ(analysed, 1) << "the loop hears of it whatever the line";
}

TEST_F(ScriptAnalysisTest, TheLineStandsUnderTheGraphWithItsLook)
{
    const auto made = document(PenDocument::Reactance);
    sweep(*made, 0, partAt(40e3));
    switches.q = 1;
    made->peGraph().setSubsetLabels(29, u"old"_s);
    analysis.analyse(0, ScriptAnalysis::kNone, 4);
    EXPECT_EQ(switches.modes, QList<int>{4});
    EXPECT_THAT(shownLine(*made), StartsWith("1) ["));
    GraphModel& graph = made->peGraph();
    EXPECT_EQ(graph.SubsetLabels(20).toStdString(), shownLine(*made));
    EXPECT_EQ(graph.SubsetLabels(29), QString());
    EXPECT_EQ(graph.WorkingTable(), 1);
    const TableScope scope(graph, 0);
    EXPECT_EQ(graph.TARows(), 1);
    EXPECT_EQ(graph.TAColumns(), 2);
    EXPECT_EQ(graph.TATextSize(), 100);
    EXPECT_TRUE(graph.ShowTableAnnotation());
    EXPECT_EQ(graph.TALocation(), 4);
    EXPECT_EQ(graph.TABackColor(), 1U);
    EXPECT_EQ(graph.TAJustification(0, 1), 1);
    EXPECT_EQ(graph.TABorder(), 2);
    EXPECT_FALSE(graph.TAHeaderColumn());
}

TEST_F(ScriptAnalysisTest, FIsTakenFromZeroToTenAndPenTenFindsNothing)
{
    const auto made = document(PenDocument::Impedance);
    for (int pen = 0; pen < PenDocument::kPens; ++pen)
        sweep(*made, pen, partAt(40e3));
    switches.q = 1;
    const std::string before = shownLine(*made);
    for (const int pen : {-1, 11, 65535})
        analysis.analyse(pen, ScriptAnalysis::kNone, 1);
    EXPECT_EQ(analysed, 0);
    analysis.analyse(10, ScriptAnalysis::kNone, 1);
    EXPECT_EQ(analysed, 1);
    EXPECT_EQ(shownLine(*made), before);
}

TEST_F(ScriptAnalysisTest, AmplitudeDocumentsAndNoDocumentGetNoAnalysis)
{
    switches.q = 1;
    analysis.analyse(0, 0, 1);
    EXPECT_EQ(analysis.AnalysisText(0, 0), QString());
    const auto made = document(PenDocument::Amplitude);
    made->AddAmplitudePoint(1000, -3, 10, 1, 0);
    const std::string before = shownLine(*made);
    analysis.analyse(0, 0, 1);
    EXPECT_EQ(shownLine(*made), before);
    EXPECT_EQ(analysed, 0);
}

TEST_F(ScriptAnalysisTest, NumbersFollowTheLocale)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    switches.zr = 1;
    QLocale::setDefault(QLocale(QLocale::German));
    const std::string german = text(0);
    EXPECT_THAT(german, HasSubstr("Zr:99,50 Ohms"));
}

TEST(ResultLine, ALineOf65CharactersTakesTwoLabelsOneOf64TakesOne)
{
    for (const int length : {1, 64, 65, 128, 129, 640, 700}) {
        GraphModel graph;
        for (int k = 20; k < 30; ++k)
            graph.setSubsetLabels(k, u"old"_s);
        QString line;
        for (int i = 0; i < length; ++i)
            line += QChar(u'a' + i % 26);
        EXPECT_TRUE(resultline::show(graph, line));
        const int pieces = std::min(10, (length + 63) / 64);
        for (int k = 0; k < 10; ++k)
            EXPECT_EQ(graph.SubsetLabels(20 + k), k < pieces ? line.mid(64 * k) : QString()) << length << ' ' << k;
    }
}

TEST(ResultLine, AnEmptyLineChangesNothing)
{
    GraphModel graph;
    graph.setSubsetLabels(20, u"kept"_s);
    const graph::Properties before = graph.properties();
    EXPECT_FALSE(resultline::show(graph, {}));
    EXPECT_EQ(graph.properties(), before);
}

TEST(ResultLine, RemovingBringsTheProgramsOwnLineBackAndClearsTheLabels)
{
    GraphModel graph;
    resultline::show(graph, QString(200, u'x'));
    resultline::remove(graph);
    for (int k = 20; k < 30; ++k)
        EXPECT_EQ(graph.SubsetLabels(k), QString());
    graph.setWorkingTable(0);
    EXPECT_EQ(graph.TAText(0, 1), u"Produced by Marrowick Instruments"_s);
}
