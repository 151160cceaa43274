// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/AnalysisTable.h"

#include "analysis/rules/AnalysisBench.h"
#include "controls/resonance/ResonanceEngine.h"

#include <QLocale>

#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

constexpr AnalysisTable::Ticks kAll{true, true, true, true, true, true};

class AnalysisTableTest : public ::testing::Test, protected AnalysisBench
{
protected:
    AnalysisTableTest() { QLocale::setDefault(QLocale(QLocale::English)); }
    ~AnalysisTableTest() override { QLocale::setDefault(QLocale::c()); }

    std::string line(int resonancePen, int capPen, const AnalysisTable::Ticks& ticks = kAll)
    {
        return table.line(resonancePen, capPen, ticks).toStdString();
    }

    ResonanceEngine engine;
    AnalysisTable table;
};

} // namespace

TEST_F(AnalysisTableTest, EveryDisplayedPenHasItsRow)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    sweep(*made, 4, partAt(42e3));
    capacitor(*made, 6);
    sweep(*made, 7, partAt(43e3));
    made->UpdatePenHide(7, true);
    table.fill(*made, engine);
    EXPECT_THAT(table.row(0).fr.toStdString(), MatchesRegex("(40,000|39,999)\\.[0-9]{2}"));
    EXPECT_THAT(table.row(4).fr.toStdString(), MatchesRegex("(42,000|41,999)\\.[0-9]{2}"));
    EXPECT_THAT(table.row(4).q.toStdString(), MatchesRegex("(100\\.0|99\\.9)[0-9]"));
    EXPECT_THAT(table.row(4).zr.toStdString(), MatchesRegex("99\\.[0-9]{2}"));
    for (const QString& text : {table.row(6).f1, table.row(6).f2, table.row(6).fr, table.row(6).zr, table.row(6).q,
                                table.row(0).cap, table.row(0).capFrequency})
        EXPECT_EQ(text, u"N/A"_s);
    EXPECT_EQ(table.row(6).cap, u"1.000 nF"_s);
    EXPECT_THAT(table.row(6).capFrequency.toStdString(), MatchesRegex("30,[0-9]{3}\\.[0-9]{2}"));
    EXPECT_FALSE(table.row(7).shown);
    EXPECT_EQ(table.row(7).fr, QString());
    EXPECT_EQ(table.firstFound(), 0);
    EXPECT_EQ(table.firstCap(), 6);
    EXPECT_EQ(engine.solveCount(), 3) << "each pen with points once";
}

TEST_F(AnalysisTableTest, NoPenWithDataGivesATableOfNotAvailableAndAddsNothing)
{
    const auto made = document(PenDocument::Reactance);
    table.fill(*made, engine);
    for (int pen = 0; pen < plot::kPens; ++pen) {
        const AnalysisTable::Row& row = table.row(pen);
        for (const QString& text : {row.f1, row.f2, row.fr, row.zr, row.q, row.cap, row.capFrequency})
            EXPECT_EQ(text, u"N/A"_s);
        EXPECT_EQ(line(pen, pen), "");
    }
    EXPECT_EQ(table.firstFound(), -1);
    EXPECT_EQ(table.firstCap(), -1);
    EXPECT_EQ(line(-1, -1), "");
}

TEST_F(AnalysisTableTest, TickedValuesMakeTheLineInTheirOrder)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    capacitor(*made, 1);
    made->setPenName(0, u"Horn"_s);
    table.fill(*made, engine);
    const AnalysisTable::Row& row = table.row(0);
    const std::string measures = "1) [Horn] - F1:" + row.f1.toStdString() + " Hz F2:" + row.f2.toStdString() +
                                 " Hz Fr:" + row.fr.toStdString() + " Hz Zr:" + row.zr.toStdString() +
                                 " Ohms Q:" + row.q.toStdString() + " ";
    EXPECT_EQ(line(0, -1), measures);
    const std::string capacitance = "2) [" + table.row(1).label.toStdString() + "] - Clf at " +
                                    table.row(1).capFrequency.toStdString() + " Hz = 1.000 nF";
    EXPECT_EQ(line(-1, 1), capacitance);
    EXPECT_EQ(line(0, 1), measures + ": " + capacitance);
    EXPECT_EQ(line(0, 1, {false, false, false, false, true, false}), "1) [Horn] - Q:" + row.q.toStdString() + " ");
    EXPECT_EQ(line(0, 1, {}), "");
}

TEST_F(AnalysisTableTest, AValueThatIsNotAvailableIsAddedAsItStandsWhenItsBoxIsTicked)
{
    const auto made = document(PenDocument::Impedance);
    capacitor(*made, 0);
    table.fill(*made, engine);
    EXPECT_THAT(line(0, -1), HasSubstr("F1:N/A Hz F2:N/A Hz Fr:N/A Hz Zr:N/A Ohms Q:N/A "));
    // The option of a capacitance that was not found is disabled.
    sweep(*made, 1, partAt(40e3));
    table.fill(*made, engine);
    EXPECT_FALSE(table.row(1).capFound);
    EXPECT_EQ(line(-1, 1), "");
}

TEST_F(AnalysisTableTest, ARowTellsWhatItsFiguresMeanAndHowSureTheyAre)
{
    const auto made = document(PenDocument::Impedance);
    synthetic::Part coarse = partAt(40e3 + 12);
    coarse.arms[0].q = 1000;
    sweep(*made, 0, coarse);
    sweep(*made, 1, partAt(40e3));
    capacitor(*made, 2);
    table.fill(*made, engine);
    EXPECT_THAT(table.row(0).measuresTip.toStdString(), HasSubstr("\nFlag: coarse: sweep 3"));
    const std::string tip = table.row(1).measuresTip.toStdString();
    EXPECT_THAT(tip, HasSubstr("Fr: "));
    EXPECT_THAT(tip, HasSubstr(" \u00b1 "));
    EXPECT_THAT(tip, HasSubstr("series resonance, where the motional conductance is largest\n"));
    EXPECT_THAT(tip, HasSubstr("intervals of "));
    EXPECT_THAT(tip, HasSubstr("points per bandwidth"));
    EXPECT_THAT(tip, ::testing::Not(HasSubstr("Flag:")));
    EXPECT_THAT(table.row(2).measuresTip.toStdString(), ::testing::StartsWith("No resonance: "));
    EXPECT_THAT(table.row(2).capTip.toStdString(), ::testing::StartsWith("Clf: "));
    EXPECT_THAT(table.row(1).capTip.toStdString(), ::testing::StartsWith("No capacitance: "));
}
