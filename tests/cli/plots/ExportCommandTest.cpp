// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/ExportCommand.h"

#include "cli/CommandWords.h"
#include "cli/plots/Workspace.h"
#include "controls/graph/GraphFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace cli;
using ::testing::HasSubstr;

namespace {

using namespace Qt::StringLiterals;
using Words = CommandWords<ExportCommand>;

class ExportPlotsTest : public ::testing::Test
{
protected:
    QString path(const QString& name) const { return m_folder.filePath(name); }

    /// An impedance plot with two points of pen 1 and one of pen 3.
    QString plot(const QString& name)
    {
        PenDocument& document = m_workspace.newDocument(PenDocument::Impedance, true);
        document.AddImpedancePoint(1000, 5, 6, -1, 0);
        document.AddImpedancePoint(2000, 7, 8, 1, 1);
        document.setCurrentPen(2);
        document.AddImpedancePoint(3000, 9, 10, 1, 0);
        return save(document, name);
    }

    QString save(PenDocument& document, const QString& name)
    {
        const Outcome saved = GraphFile::PEsavetofile(document.peGraph(), path(name));
        EXPECT_TRUE(saved) << saved.sentence().toStdString();
        return path(name);
    }

    /// Exports with those words; "%" stands for the folder.
    ExitCode run(QString words)
    {
        m_results.clear();
        m_problems.clear();
        const Words command(words.replace(u"%"_s, m_folder.path()).toUtf8().constData());
        EXPECT_EQ(command.problem(), "");
        return exportPlots(command.options(), m_console);
    }

    std::string content(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll().toStdString() : "cannot be read";
    }

    void write(const QString& name, const QByteArray& bytes)
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    std::string results() const { return QString(m_results).replace(m_folder.path(), u"%"_s).toStdString(); }
    std::string problems() const { return QString(m_problems).replace(m_folder.path(), u"%"_s).toStdString(); }

    QTemporaryDir m_folder;
    QString m_results, m_problems;
    Console m_console{u"marrowick"_s, Console::into(m_results), Console::into(m_problems), false};
    ConsoleMessages m_messages{m_console};
    Workspace m_workspace{m_messages};
};

/// The refusal of words in a folder of its own.
std::string refusal(const char* words)
{
    return Words(words).problem();
}

} // namespace

TEST(ExportOptions, PenFormatAndFilesAreRead)
{
    const Words plain("plots/a.gzd b.gad");
    EXPECT_EQ(plain.problem(), "");
    EXPECT_EQ(plain.options().pen, TextStore::kAllPens);
    EXPECT_FALSE(plain.options().format.header || plain.options().format.comma || plain.options().format.unixEnd);
    EXPECT_FALSE(plain.options().force || plain.options().json || streams(plain.options().files));
    ASSERT_EQ(plain.options().files.size(), 2);
    EXPECT_EQ(plain.options().files[0].plot, u"plots/a.gzd"_s);
    EXPECT_EQ(plain.options().files[0].file.name(), u"plots/a.txt"_s);
    EXPECT_EQ(plain.options().files[1].file.name(), u"b.txt"_s);
    const Words full("a.gzd --pen 10 --header --comma --unix --force --json --jobs 3 --output texts");
    EXPECT_EQ(full.problem(), "");
    EXPECT_EQ(full.options().pen, 9);
    EXPECT_TRUE(full.options().format.header && full.options().format.comma && full.options().format.unixEnd);
    EXPECT_TRUE(full.options().force && full.options().json);
    EXPECT_EQ(full.options().jobs, 3);
    EXPECT_EQ(full.options().files.at(0).file.name(), u"texts/a.txt"_s);
    EXPECT_EQ(Words("a --pen all").options().pen, TextStore::kAllPens);
}

TEST(ExportOptions, OnlyTheLastExtensionGivesWayToTxt)
{
    const Words words("a.b.gzd c .gzd d.TXT/e");
    std::vector<QString> names;
    for (const PlotOutput& file : words.options().files)
        names.push_back(file.file.name());
    EXPECT_EQ(names, (std::vector<QString>{u"a.b.txt"_s, u"c.txt"_s, u".gzd.txt"_s, u"d.TXT/e.txt"_s}));
}

TEST(ExportOptions, StandardInputGoesToStandardOutput)
{
    const Words words("- a.gzd");
    EXPECT_EQ(words.problem(), "");
    EXPECT_TRUE(words.options().files.at(0).file.isStandardOutput());
    EXPECT_FALSE(words.options().files.at(1).file.isStandardOutput());
    EXPECT_TRUE(streams(words.options().files));
    EXPECT_TRUE(Words("a.gzd --output -").options().files.at(0).file.isStandardOutput());
    EXPECT_TRUE(Words("- --output -").options().files.at(0).file.isStandardOutput());
}

TEST(ExportOptions, WhatDoesNotFitIsRefused)
{
    for (const char* pen : {"0", "11", "-1", "two", "1.5", "ALL", ""})
        EXPECT_EQ(refusal((std::string("a.gzd --pen=") + pen).c_str()),
                  std::string("--pen needs a pen from 1 to 10 or all, not \"") + pen + "\".");
    EXPECT_EQ(refusal("a.gzd b.gzd --output -"), "--output - takes one plot, not 2.");
    EXPECT_EQ(refusal("- --output texts"), "A plot from standard input has no name for a file in texts.");
    EXPECT_EQ(refusal("a.gzd --output - --json"), "--json prints to standard output; no text can go there beside it.");
    EXPECT_EQ(refusal("- --json"), "--json prints to standard output; no text can go there beside it.");
    EXPECT_EQ(refusal("a.gzd a.gad"), "a.gzd and a.gad both want to write a.txt.");
    EXPECT_EQ(refusal("x/a.gzd y/a.gzd --output ."), "x/a.gzd and y/a.gzd both want to write ./a.txt.");
    EXPECT_EQ(refusal("a.txt --force"), "The text of a.txt would replace the plot a.txt.");
    EXPECT_EQ(refusal("a.gzd ./a.txt --force"), "The text of a.gzd would replace the plot ./a.txt.");
}

TEST_F(ExportPlotsTest, ATextIsWrittenBesideEachPlotAndToldInALine)
{
    plot(u"a.gzd"_s);
    plot(u"b.gzd"_s);
    EXPECT_EQ(run(u"%/a.gzd %/b.gzd"_s), ExitCode::Done);
    EXPECT_EQ(results(), "%/a.txt: 3 points\n%/b.txt: 3 points\n");
    EXPECT_EQ(problems(), "");
    for (const QString& name : {u"a.txt"_s, u"b.txt"_s})
        EXPECT_EQ(content(name), "1\t1000\t5\t-6\r\n1\t2000\t7\t8\r\n3\t3000\t9\t10\r\n");
}

TEST_F(ExportPlotsTest, OptionsSayPenFormatAndFolder)
{
    plot(u"a.gzd"_s);
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(u"texts"_s));
    EXPECT_EQ(run(u"%/a.gzd --pen 1 --comma --unix --header --output %/texts"_s), ExitCode::Done);
    EXPECT_EQ(results(), "%/texts/a.txt: 2 points\n");
    EXPECT_THAT(content(u"texts/a.txt"_s), HasSubstr("\n# Pen 1: "));
    EXPECT_THAT(content(u"texts/a.txt"_s),
                HasSubstr("\n# Frequency (Hz), Impedance (Ohm), Phase (degrees)\n1000, 5, -6\n2000, 7, 8\n"));
    EXPECT_EQ(content(u"texts/a.txt"_s).substr(0, 17), "# MarrowickGraph ");
    EXPECT_EQ(run(u"%/a.gzd --pen 2"_s), ExitCode::Done);
    EXPECT_EQ(results(), "%/a.txt: 0 points\n");
    EXPECT_EQ(content(u"a.txt"_s), "");
}

TEST_F(ExportPlotsTest, AFileThatIsThereStaysUnlessForced)
{
    plot(u"a.gzd"_s);
    plot(u"b.gzd"_s);
    write(u"a.txt"_s, "mine");
    EXPECT_EQ(run(u"%/a.gzd %/b.gzd --unix --pen 3"_s), ExitCode::FileError);
    EXPECT_EQ(problems(), "marrowick: %/a.txt is there already; --force replaces it.\n");
    EXPECT_EQ(results(), "%/b.txt: 1 points\n");
    EXPECT_EQ(content(u"a.txt"_s), "mine");
    EXPECT_EQ(content(u"b.txt"_s), "3000\t9\t10\n");
    EXPECT_EQ(run(u"%/a.gzd --unix --pen 3 --force"_s), ExitCode::Done);
    EXPECT_EQ(problems(), "");
    EXPECT_EQ(content(u"a.txt"_s), "3000\t9\t10\n");
}

TEST_F(ExportPlotsTest, TheObjectTellsWhatWasWritten)
{
    plot(u"a.gzd"_s);
    EXPECT_EQ(run(u"%/a.gzd %/none.gzd --json"_s), ExitCode::FileError);
    EXPECT_EQ(results(), R"({"exports":[{"file":"%/a.txt","plot":"%/a.gzd","points":3}]})"
                         "\n");
    EXPECT_THAT(problems(), HasSubstr("%/none.gzd"));
    EXPECT_FALSE(QFile::exists(path(u"none.txt"_s)));
}

TEST_F(ExportPlotsTest, WhatCannotBeReadOrWrittenIsToldAndTheOthersAreExported)
{
    plot(u"good.gzd"_s);
    write(u"damaged.gzd"_s, "no plot at all");
    PenDocument& strange = m_workspace.newDocument(PenDocument::Impedance, true);
    strange.peGraph().setWorkingAxis(0);
    strange.peGraph().setYAxisLabel(u"Volts"_s);
    save(strange, u"strange.gzd"_s);
    EXPECT_EQ(run(u"%/damaged.gzd %/strange.gzd %/good.gzd"_s), ExitCode::FileError);
    EXPECT_THAT(problems(), HasSubstr("%/damaged.gzd"));
    EXPECT_THAT(problems(),
                HasSubstr("marrowick: %/strange.gzd: the plot is of no known type; there is nothing to export.\n"));
    EXPECT_EQ(results(), "%/good.txt: 3 points\n");
    EXPECT_FALSE(QFile::exists(path(u"damaged.txt"_s)));
    EXPECT_FALSE(QFile::exists(path(u"strange.txt"_s)));
    EXPECT_EQ(run(u"%/good.gzd --output %/none"_s), ExitCode::FileError);
    EXPECT_EQ(problems(), "marrowick: Cannot write %/none/good.txt: No such file or directory.\n");
    EXPECT_EQ(results(), "");
}

TEST_F(ExportPlotsTest, ManyPlotsAtOnceGiveTheSameFilesInTheirOrder)
{
    QString words, told;
    for (int number = 0; number < 20; ++number) {
        PenDocument& document = m_workspace.newDocument(PenDocument::Amplitude, true);
        document.AddAmplitudePoint(1000 + number, -1 - number, 45, 1, 0);
        save(document, u"%1.gad"_s.arg(number));
        words += u"%/"_s + QString::number(number) + u".gad "_s;
        told += u"%/"_s + QString::number(number) + u".txt: 1 points\n"_s;
    }
    EXPECT_EQ(run(words + u"--jobs 8 --pen 1 --unix"_s), ExitCode::Done);
    EXPECT_EQ(results(), told.toStdString());
    for (int number = 0; number < 20; ++number)
        EXPECT_EQ(content(u"%1.txt"_s.arg(number)),
                  u"%1\t%2\t45\n"_s.arg(1000 + number).arg(-1 - number).toStdString());
}

TEST_F(ExportPlotsTest, ThePlotStaysAsItWas)
{
    plot(u"a.gzd"_s);
    const std::string before = content(u"a.gzd"_s);
    EXPECT_EQ(run(u"%/a.gzd"_s), ExitCode::Done);
    EXPECT_EQ(content(u"a.gzd"_s), before);
}
