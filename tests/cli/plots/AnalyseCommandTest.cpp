// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/AnalyseCommand.h"

#include "cli/CommandWords.h"
#include "cli/plots/Workspace.h"
#include "controls/graph/GraphFile.h"
#include "controls/resonance/SyntheticPart.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace cli;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

using namespace Qt::StringLiterals;
using Words = CommandWords<AnalyseCommand>;

class AnalysePlotsTest : public ::testing::Test
{
protected:
    PenDocument& newDocument(PenDocument::TestType type = PenDocument::Impedance)
    {
        return m_workspace.newDocument(type, true);
    }

    /// Fills a pen (from 1) with the sweep of a part.
    static void sweep(PenDocument& document, int pen, const synthetic::Part& part, double low = 30e3,
                      double high = 60e3)
    {
        document.setCurrentPen(pen - 1);
        std::int32_t index = 0;
        for (const double f : synthetic::linear(low, high, 500)) {
            const std::complex<double> z = 1.0 / part(f);
            const double phase = std::arg(z) * 180 / std::numbers::pi;
            document.AddImpedancePoint(f, std::abs(z), std::abs(phase), phase < 0 ? -1 : 1, index++);
        }
        document.setCurrentPen(0);
    }

    static synthetic::Part resonator(double fs = 40e3)
    {
        synthetic::Part part;
        part.arms[0].fs = fs;
        return part;
    }
    static synthetic::Part capacitor()
    {
        synthetic::Part part;
        part.arms.clear();
        return part;
    }

    void save(PenDocument& document, const QString& name)
    {
        const Outcome saved = GraphFile::PEsavetofile(document.peGraph(), m_folder.filePath(name));
        ASSERT_TRUE(saved) << saved.sentence().toStdString();
    }

    /// Analyses with those words; "%" stands for the folder.
    ExitCode run(QString words)
    {
        m_results.clear();
        m_problems.clear();
        const Words command(words.replace(u"%"_s, m_folder.path()).toUtf8().constData());
        EXPECT_EQ(command.problem(), "");
        return analysePlots(command.options(), m_console);
    }

    std::string results() const { return QString(m_results).replace(m_folder.path(), u"%"_s).toStdString(); }
    std::string problems() const { return QString(m_problems).replace(m_folder.path(), u"%"_s).toStdString(); }
    QJsonArray pens() const { return QJsonDocument::fromJson(m_results.toUtf8()).object().value("pens"_L1).toArray(); }
    /// The rows of a table without quotes in it, the heading first.
    QList<QStringList> rows() const
    {
        QList<QStringList> result;
        for (const QString& line : m_results.split(u'\n', Qt::SkipEmptyParts))
            result += line.split(u',');
        return result;
    }

    QTemporaryDir m_folder;
    QString m_results, m_problems;
    Console m_console{u"marrowick"_s, Console::into(m_results), Console::into(m_problems), false};
    ConsoleMessages m_messages{m_console};
    Workspace m_workspace{m_messages};
};

} // namespace

TEST(AnalyseOptions, PensDetailAndFormAreRead)
{
    const Words plain("a.gzd b.gxd");
    EXPECT_EQ(plain.problem(), "");
    EXPECT_EQ(plain.options().pen, 0);
    EXPECT_EQ(plain.options().clf, 0);
    EXPECT_FALSE(plain.options().csv || plain.options().json || plain.options().detail.circuit ||
                 plain.options().detail.modes);
    const Words full("a.gzd --pen 10 --clf 1 --csv --modes --circuit --jobs 3");
    EXPECT_EQ(full.problem(), "");
    EXPECT_EQ(full.options().pen, 10);
    EXPECT_EQ(full.options().clf, 1);
    EXPECT_EQ(full.options().jobs, 3);
    EXPECT_TRUE(full.options().csv && full.options().detail.circuit && full.options().detail.modes);
}

TEST(AnalyseOptions, WhatDoesNotFitIsRefused)
{
    EXPECT_EQ(Words("a --pen 11").problem(), "--pen needs a pen from 1 to 10 or all, not \"11\".");
    EXPECT_EQ(Words("a --clf all").problem(), "--clf needs a pen from 1 to 10, not \"all\".");
    EXPECT_EQ(Words("a --csv --json").problem(),
              "--csv and --json both print to standard output; one of them is enough.");
}

TEST_F(AnalysePlotsTest, EveryMeasureIsToldWithUnitUncertaintyAndDefinition)
{
    PenDocument& document = newDocument();
    sweep(document, 1, resonator());
    save(document, u"a.gzd"_s);
    EXPECT_EQ(run(u"%/a.gzd"_s), ExitCode::Done);
    EXPECT_THAT(results(), HasSubstr("%/a.gzd, pen 1 ["));
    EXPECT_THAT(results(), ::testing::ContainsRegex("  Fr +(40|40\\.0000[0-9]*|39\\.9999[0-9]*) kHz \u00b1 .*"
                                                    "series resonance, where the motional conductance is largest\n"));
    EXPECT_THAT(results(), ::testing::ContainsRegex("  Zr +99\\.50[0-9]* Ohm \u00b1 "));
    EXPECT_THAT(results(), HasSubstr(" points per bandwidth, 500 points used"));
    EXPECT_THAT(results(), HasSubstr("intervals of "));
    EXPECT_THAT(results(), Not(HasSubstr("  C0 ")));
    EXPECT_EQ(run(u"%/a.gzd --circuit"_s), ExitCode::Done);
    for (const char* name : {"R1", "L1", "C1", "C0", "fp", "keff"})
        EXPECT_THAT(results(), HasSubstr(std::string("\n  ") + name + " ")) << name;
}

TEST_F(AnalysePlotsTest, ATableHasARowForEachPenOfEachPlotUnderOneHeading)
{
    PenDocument& first = newDocument();
    sweep(first, 1, resonator(40e3));
    sweep(first, 3, resonator(42e3));
    save(first, u"a.gzd"_s);
    PenDocument& second = newDocument(PenDocument::Reactance);
    sweep(second, 2, resonator(45e3));
    save(second, u"b.gxd"_s);
    EXPECT_EQ(run(u"%/a.gzd %/b.gxd --csv --circuit"_s), ExitCode::Done);
    const QList<QStringList> table = rows();
    ASSERT_EQ(table.size(), 4);
    const qsizetype fr = table[0].indexOf(u"fr_Hz"_s);
    ASSERT_GE(fr, 0);
    EXPECT_EQ(table[0][fr + 1], u"u_fr_Hz"_s);
    const double expected[] = {40e3, 42e3, 45e3};
    const char* const pen[] = {"1", "3", "2"};
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(table[i + 1].size(), table[0].size());
        EXPECT_EQ(table[i + 1][1].toStdString(), pen[i]);
        EXPECT_NEAR(table[i + 1][fr].toDouble(), expected[i], 1);
        EXPECT_GT(table[i + 1][fr + 1].toDouble(), 0);
        EXPECT_EQ(table[i + 1][table[0].indexOf(u"solved"_s)], u"yes"_s);
    }
    EXPECT_EQ(table[3][0], m_folder.filePath(u"b.gxd"_s));
}

TEST_F(AnalysePlotsTest, TheExitCodeTellsWhetherEveryPenWasSolved)
{
    PenDocument& document = newDocument();
    sweep(document, 1, resonator());
    sweep(document, 2, capacitor());
    save(document, u"a.gzd"_s);
    EXPECT_EQ(run(u"%/a.gzd --pen 1"_s), ExitCode::Done);
    EXPECT_EQ(run(u"%/a.gzd --pen 2"_s), ExitCode::NotSolved);
    EXPECT_THAT(results(), HasSubstr(": no resonance: "));
    EXPECT_EQ(run(u"%/a.gzd --csv"_s), ExitCode::NotSolved);
    ASSERT_EQ(rows().size(), 3);
    EXPECT_EQ(rows()[2][rows()[0].indexOf(u"fr_Hz"_s)], QString());
    EXPECT_FALSE(rows()[2].last().isEmpty()) << "the reason";
    EXPECT_EQ(run(u"%/a.gzd --pen 5"_s), ExitCode::NotSolved);
    EXPECT_THAT(results(), HasSubstr("there are no points"));
    EXPECT_EQ(run(u"%/a.gzd %/missing.gzd"_s), ExitCode::FileError);
    EXPECT_THAT(problems(), HasSubstr("missing.gzd"));
    EXPECT_THAT(results(), HasSubstr(": resonance\n"));
}

TEST_F(AnalysePlotsTest, AmplitudePlotsAndEmptyPlotsSayWhyTheyHaveNoResonance)
{
    PenDocument& amplitude = newDocument(PenDocument::Amplitude);
    amplitude.AddAmplitudePoint(1000, -3, 10, 1, 0);
    save(amplitude, u"a.gad"_s);
    EXPECT_EQ(run(u"%/a.gad"_s), ExitCode::NotSolved);
    EXPECT_EQ(results(), "%/a.gad: no resonance: an amplitude plot has no resonance\n");
    save(newDocument(), u"b.gzd"_s);
    EXPECT_EQ(run(u"%/b.gzd"_s), ExitCode::NotSolved);
    EXPECT_EQ(results(), "%/b.gzd: no resonance: there are no points\n");
}

TEST_F(AnalysePlotsTest, TheCapacitanceIsReadFromThePenThatIsNamed)
{
    PenDocument& document = newDocument();
    sweep(document, 1, resonator());
    synthetic::Part part = capacitor();
    part.c0 = 2e-9;
    sweep(document, 4, part, 1e3, 2e3);
    save(document, u"a.gzd"_s);
    EXPECT_EQ(run(u"%/a.gzd --pen 1 --clf 4 --json"_s), ExitCode::Done);
    ASSERT_EQ(pens().size(), 1);
    const QJsonObject clf = pens()[0].toObject().value("clf"_L1).toObject();
    EXPECT_EQ(clf.value("pen"_L1).toInt(), 4);
    EXPECT_NEAR(clf.value("value"_L1).toDouble(), 2e-9, 1e-13);
    EXPECT_LT(clf.value("frequency"_L1).toDouble(), 1100);
    EXPECT_EQ(run(u"%/a.gzd --pen 1 --json"_s), ExitCode::Done);
    EXPECT_TRUE(pens()[0].toObject().value("clf"_L1).isNull()) << "from 30 kHz on there is none below half of Fr";
    EXPECT_EQ(run(u"%/a.gzd --pen 1 --clf 4"_s), ExitCode::Done);
    EXPECT_THAT(results(), HasSubstr("the median of the first points of pen 4\n"));
}

TEST_F(AnalysePlotsTest, OtherModesAreToldWhenAskedFor)
{
    PenDocument& document = newDocument();
    synthetic::Part part = resonator();
    part.arms.push_back({52e3, 150, 0.003});
    sweep(document, 1, part);
    save(document, u"a.gzd"_s);
    EXPECT_EQ(run(u"%/a.gzd --json"_s), ExitCode::Done);
    EXPECT_FALSE(pens()[0].toObject().contains("modes"_L1));
    EXPECT_EQ(run(u"%/a.gzd --json --modes --circuit"_s), ExitCode::Done);
    const QJsonArray modes = pens()[0].toObject().value("modes"_L1).toArray();
    ASSERT_EQ(modes.size(), 1);
    EXPECT_NEAR(modes[0].toObject()["measures"_L1].toObject()["fr"_L1].toObject()["value"_L1].toDouble(), 52e3, 2);
    EXPECT_EQ(modes[0].toObject()["circuit"_L1].toObject()["r1"_L1].toObject()["unit"_L1].toString(), u"Ohm"_s);
    EXPECT_EQ(run(u"%/a.gzd --csv --modes"_s), ExitCode::Done);
    ASSERT_EQ(rows().size(), 3);
    EXPECT_EQ(rows()[2][3], u"2"_s);
    EXPECT_EQ(run(u"%/a.gzd --modes"_s), ExitCode::Done);
    EXPECT_THAT(results(), HasSubstr("\n  mode 2: Fr 5"));
}

TEST_F(AnalysePlotsTest, DoubtsAreToldInWords)
{
    PenDocument& document = newDocument();
    synthetic::Part sharp = resonator();
    sharp.arms[0].q = 800;
    sharp.arms[0].fs = 40020;
    sweep(document, 1, sharp);
    save(document, u"a.gzd"_s);
    run(u"%/a.gzd"_s);
    EXPECT_THAT(results(), HasSubstr("  flag: coarse: sweep 3"));
    run(u"%/a.gzd --json"_s);
    EXPECT_THAT(pens()[0].toObject()["flags"_L1].toArray()[0].toString().toStdString(), HasSubstr("coarse"));
    EXPECT_LT(pens()[0].toObject()["pointsPerBandwidth"_L1].toDouble(), 1);
}

TEST_F(AnalysePlotsTest, NamesOfPensCannotBreakTableOrTerminal)
{
    PenDocument& document = newDocument();
    sweep(document, 1, resonator());
    document.setPenName(0, u"a, \"b\"\n\x1b[2J"_s);
    save(document, u"a.gzd"_s);
    EXPECT_EQ(run(u"%/a.gzd --csv"_s), ExitCode::Done);
    EXPECT_THAT(results(), HasSubstr(",1,\"a, \"\"b\"\"  [2J\",1,yes,"));
    EXPECT_EQ(m_results.count(u'\n'), 2);
    EXPECT_EQ(run(u"%/a.gzd"_s), ExitCode::Done);
    EXPECT_FALSE(m_results.contains(u'\x1b'));
}

TEST_F(AnalysePlotsTest, ManyPlotsAtOnceGiveTheSameRowsInTheirOrder)
{
    QString words;
    for (int number = 0; number < 12; ++number) {
        PenDocument& document = newDocument();
        sweep(document, 1, resonator(38e3 + 500 * number));
        save(document, u"%1.gzd"_s.arg(number));
        words += u"%/"_s + QString::number(number) + u".gzd "_s;
    }
    EXPECT_EQ(run(words + u"--csv --jobs 1"_s), ExitCode::Done);
    const QString alone = m_results;
    EXPECT_EQ(run(words + u"--csv --jobs 8"_s), ExitCode::Done);
    EXPECT_EQ(m_results, alone);
    EXPECT_EQ(rows().size(), 13);
}
