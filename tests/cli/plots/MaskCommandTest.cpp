// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/MaskCommand.h"

#include "cli/CommandWords.h"
#include "cli/plots/Workspace.h"
#include "controls/graph/GraphFile.h"
#include "document/content/GraphTexts.h"
#include "mask/MaskTest.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace cli;

namespace {

using namespace Qt::StringLiterals;
using Words = CommandWords<MaskCommand>;

constexpr int kInside = 0, kOutside = 1, kNoVerdict = 2, kFileError = 5;

class MaskCommandTest : public ::testing::Test
{
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

    /// Pen 1 at 9 Ohm, pen 2 at 11 Ohm, of 150 Hz; a mask of 5 to 10 Ohm from 100 to 200 Hz where wanted.
    void plot(bool withMask, PenDocument::TestType type = PenDocument::Impedance)
    {
        GraphModel& graph = m_workspace.newDocument(type, true).peGraph();
        graph.setPoint(0, 0, 150, 9);
        graph.setPoint(1, 0, 150, 11);
        if (withMask) {
            for (const auto& [pen, limit] : {std::pair(mask::kUpper, 10.0F), std::pair(mask::kLower, 5.0F)}) {
                graph.setPoint(pen, 0, 100, limit);
                graph.setPoint(pen, 1, 200, limit);
            }
            graph.setWorkingTable(graphtexts::kMaskTable);
            graph.setTAText(0, 0, graphtexts::kMask);
        }
        save();
    }
    void save() { ASSERT_TRUE(GraphFile::PEsavetofile(m_workspace.document().peGraph(), path(u"p.gzd"_s))); }
    PenDocument& saved()
    {
        const auto document = m_workspace.openPlot(path(u"p.gzd"_s));
        EXPECT_TRUE(document);
        return *document.value();
    }

    void write(const QString& name, const QByteArray& bytes)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(bytes);
    }
    QByteArray content(const QString& name)
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// "%" stands for the folder.
    int run(QString words)
    {
        m_results.clear();
        m_problems.clear();
        const Words command(words.replace(u"%"_s, m_folder.path()).toUtf8().constData());
        EXPECT_EQ(command.problem(), "");
        return static_cast<int>(maskPlot(command.options(), m_console));
    }
    std::string results() const { return QString(m_results).replace(m_folder.path(), u"%"_s).toStdString(); }
    std::string problems() const { return QString(m_problems).replace(m_folder.path(), u"%"_s).toStdString(); }
    QJsonObject object() const { return QJsonDocument::fromJson(m_results.toUtf8()).object(); }

    QTemporaryDir m_folder;
    QString m_results, m_problems;
    Console m_console{u"marrowick"_s, Console::into(m_results), Console::into(m_problems), false};
    ConsoleMessages m_messages{m_console};
    Workspace m_workspace{m_messages};
};

TEST_F(MaskCommandTest, TheExitCodeIsTheVerdict)
{
    plot(true);
    EXPECT_EQ(run(u"--pen 1 %/p.gzd"_s), kInside);
    EXPECT_EQ(results(), "Pen 1 is within mask\nWorst point: 150 Hz, 9 Ohm; upper limit 10 Ohm\nMargin: 1 Ohm\n");
    EXPECT_EQ(run(u"--pen 2 %/p.gzd"_s), kOutside);
    EXPECT_EQ(results(), "Pen 2 is not within mask\nWorst point: 150 Hz, 11 Ohm; upper limit 10 Ohm\n"
                         "Outside by 1 Ohm\n");
    EXPECT_EQ(run(u"--pen 3 %/p.gzd"_s), kNoVerdict);
    EXPECT_EQ(results(), "Pen 3 contains no data\n");
    EXPECT_EQ(problems(), "");
}

TEST_F(MaskCommandTest, WithJsonTheVerdictIsAnObject)
{
    plot(true);
    EXPECT_EQ(run(u"--json --pen 2 %/p.gzd"_s), kOutside);
    EXPECT_EQ(object(), (QJsonObject{{u"plot"_s, path(u"p.gzd"_s)},
                                     {u"pen"_s, 2},
                                     {u"verdict"_s, u"outside"_s},
                                     {u"unit"_s, u"Ohm"_s},
                                     {u"worst"_s, QJsonObject{{u"point"_s, 1},
                                                              {u"frequency"_s, 150},
                                                              {u"value"_s, 11},
                                                              {u"line"_s, u"upper"_s},
                                                              {u"limit"_s, 10},
                                                              {u"margin"_s, -1}}}}));
    EXPECT_EQ(run(u"--json --pen 1 %/p.gzd"_s), kInside);
    EXPECT_EQ(object()[u"verdict"_s], u"inside"_s);
    EXPECT_EQ(run(u"--json --pen 3 %/p.gzd"_s), kNoVerdict);
    EXPECT_EQ(object()[u"verdict"_s], u"no data"_s);
    EXPECT_EQ(object()[u"worst"_s], QJsonValue::Null);
}

TEST_F(MaskCommandTest, WithoutAMaskThereIsNoVerdict)
{
    plot(false);
    EXPECT_EQ(run(u"--pen 1 %/p.gzd"_s), kNoVerdict);
    EXPECT_EQ(problems(), "marrowick: %/p.gzd: no mask data available.\n");
}

TEST_F(MaskCommandTest, AMaskOutOfOrderJudgesNothing)
{
    plot(true);
    m_workspace.document().peGraph().setPoint(mask::kLower, 1, 100, 5);
    save();
    EXPECT_EQ(run(u"--pen 1 %/p.gzd"_s), kNoVerdict);
    EXPECT_EQ(problems(), "marrowick: %/p.gzd: the mask data is not in incrementing order of frequency.\n");
}

TEST_F(MaskCommandTest, AReactancePlotHasNoMask)
{
    plot(false, PenDocument::Reactance);
    EXPECT_EQ(run(u"--pen 1 %/p.gzd"_s), kNoVerdict);
    EXPECT_EQ(problems(), "marrowick: %/p.gzd: only amplitude and impedance plots have masks.\n");
}

TEST_F(MaskCommandTest, APlotThatCannotBeReadIsAFileError)
{
    EXPECT_EQ(run(u"--pen 1 %/none.gzd"_s), kFileError);
    EXPECT_NE(problems().find("%/none.gzd"), std::string::npos);
    write(u"bad.gzd"_s, "nothing");
    EXPECT_EQ(run(u"--pen 1 %/bad.gzd"_s), kFileError);
}

TEST_F(MaskCommandTest, AMaskIsSetIntoThePlotAndSaved)
{
    plot(false);
    write(u"m.mgm"_s, "frequency_Hz upper_Ohm lower_Ohm\n100 10 -\n200 10 -\n");
    EXPECT_EQ(run(u"--set %/m.mgm %/p.gzd"_s), kInside);
    EXPECT_EQ(results(), "%/p.gzd: mask set\n");
    PenDocument& document = saved();
    EXPECT_TRUE(document.hasMasks());
    EXPECT_EQ(document.GetPenLock(mask::kUpper), 1);
    EXPECT_EQ(document.GetPenLock(mask::kLower), 1);
    EXPECT_EQ(document.peGraph().YData(mask::kUpper, 1), 10);
    EXPECT_EQ(document.peGraph().YData(0, 0), 9) << "what was measured stays";
    EXPECT_EQ(run(u"--pen 2 %/p.gzd"_s), kOutside);
    EXPECT_EQ(run(u"--json --set %/m.mgm %/p.gzd"_s), kInside) << "a mask that is there is replaced";
    EXPECT_EQ(object(), (QJsonObject{{u"plot"_s, path(u"p.gzd"_s)}, {u"mask"_s, path(u"m.mgm"_s)}}));
}

TEST_F(MaskCommandTest, AMaskIsSetAndAPenTestedAtOnce)
{
    plot(false);
    write(u"m.mgm"_s, "frequency_Hz upper_Ohm lower_Ohm\n100 10 -\n200 10 -\n");
    EXPECT_EQ(run(u"--set %/m.mgm --pen 2 %/p.gzd"_s), kOutside);
    EXPECT_TRUE(saved().hasMasks());
}

TEST_F(MaskCommandTest, MeasuredDataOfPensNineAndTenIsNotReplacedUnforced)
{
    plot(false);
    m_workspace.document().peGraph().setPoint(mask::kLower, 0, 150, 7);
    save();
    const QByteArray before = content(u"p.gzd"_s);
    write(u"m.mgm"_s, "frequency_Hz upper_Ohm lower_Ohm\n100 10 -\n200 10 -\n");
    EXPECT_EQ(run(u"--set %/m.mgm %/p.gzd"_s), kNoVerdict);
    EXPECT_EQ(problems(), "marrowick: Pens 9 and 10 of %/p.gzd hold data that a mask would replace; --force replaces "
                          "it.\n");
    EXPECT_EQ(content(u"p.gzd"_s), before);
    EXPECT_EQ(run(u"--force --set %/m.mgm %/p.gzd"_s), kInside);
    EXPECT_EQ(saved().peGraph().YData(mask::kLower, 0), graph::kNullValue);
}

TEST_F(MaskCommandTest, AMaskFileThatIsNoneLeavesThePlot)
{
    plot(false);
    const QByteArray before = content(u"p.gzd"_s);
    write(u"m.mgm"_s, "frequency_Hz upper_dB lower_dB\n100 10 -\n");
    EXPECT_EQ(run(u"--set %/m.mgm %/p.gzd"_s), kFileError);
    EXPECT_EQ(problems(), "marrowick: %/m.mgm, line 1: the limits are not in Ohm, which this plot needs.\n");
    EXPECT_EQ(run(u"--set %/none.mgm %/p.gzd"_s), kFileError);
    EXPECT_EQ(content(u"p.gzd"_s), before);
}

TEST(MaskWordsTest, WhatCannotBeCarriedOutIsRefused)
{
    EXPECT_EQ(Words("--pen 10 p.gzd").problem(), "");
    EXPECT_EQ(Words("--pen 10 -").problem(), "");
    EXPECT_EQ(Words("p.gzd").problem(), "The pen to test is missing: --pen 1 to --pen 10.");
    EXPECT_EQ(Words("--pen 11 p.gzd").problem(), "--pen needs a whole number from 1 to 10, not \"11\".");
    EXPECT_EQ(Words("--force --pen 1 p.gzd").problem(), "--force needs --set.");
    EXPECT_EQ(Words("--set m.mgm -").problem(), "A plot from standard input cannot be saved with a mask.");
    EXPECT_NE(Words("--set - p.gzd").problem(), "");
}

TEST(MaskWordsTest, ACommandLineInErrorIsNoVerdict)
{
    QString results, problems;
    Console console(u"marrowick"_s, Console::into(results), Console::into(problems), false);
    CommandTable table;
    table.push_back(std::make_unique<MaskCommand>());
    const auto code = [&](const QStringList& words) {
        return static_cast<int>(runCommandLine(table, QStringList{u"marrowick"_s, u"mask"_s} + words, console));
    };
    EXPECT_EQ(code({}), kNoVerdict);
    EXPECT_EQ(code({u"--nonsense"_s, u"p.gzd"_s}), kNoVerdict);
    EXPECT_EQ(code({u"--pen"_s, u"x"_s, u"p.gzd"_s}), kNoVerdict);
    EXPECT_EQ(code({u"--pen"_s, u"1"_s, u"a.gzd"_s, u"b.gzd"_s}), kNoVerdict);
    EXPECT_EQ(code({u"--help"_s}), 0);
    EXPECT_TRUE(results.contains(u"Exit codes: 0 inside, 1 outside, 2 no verdict"_s));
}

} // namespace
