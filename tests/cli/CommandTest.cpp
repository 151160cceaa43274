// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Command.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

using namespace cli;
using ::testing::HasSubstr;

namespace {

using namespace Qt::StringLiterals;

/// A command that tells what reached it.
class Weigh : public Command
{
public:
    explicit Weigh(Files files)
        : m_files(files)
    {}

    QString name() const override { return u"weigh"_s; }
    QString summary() const override { return u"weighs parts"_s; }
    QString description() const override { return u"Weighs each part."_s; }
    QList<QCommandLineOption> options() const override { return {m_unit}; }
    Files files() const override { return m_files; }

    ExitCode run(Arguments& arguments, Console& console) override
    {
        const CommonOptions& common = arguments.common();
        console.result(u"%1 %2 json=%3 quiet=%4 jobs=%5"_s.arg(arguments.text(m_unit), arguments.files().join(u'+'))
                           .arg(common.json)
                           .arg(common.quiet)
                           .arg(common.jobs));
        return ExitCode::Done;
    }

private:
    Files m_files;
    QCommandLineOption m_unit{u"unit"_s, u"Unit of the result."_s, u"unit"_s, u"kg"_s};
};

class CommandTest : public ::testing::Test
{
protected:
    ExitCode run(const char* words, Command::Files files = Command::Files::Many)
    {
        CommandTable table;
        table.push_back(std::make_unique<Weigh>(files));
        m_results.clear();
        m_problems.clear();
        const QStringList arguments = QStringList{QCoreApplication::arguments().constFirst()} +
                                      QString::fromUtf8(words).split(u' ', Qt::SkipEmptyParts);
        return runCommandLine(table, arguments, m_console);
    }
    std::string results() const { return m_results.toStdString(); }
    /// The sentence of a refusal, which must be one.
    std::string refusal(const char* words, Command::Files files = Command::Files::Many)
    {
        EXPECT_EQ(run(words, files), ExitCode::Usage) << words;
        EXPECT_EQ(results(), "") << words;
        return m_problems.toStdString();
    }

    QString m_results, m_problems;
    Console m_console{u"marrowick"_s, Console::into(m_results), Console::into(m_problems), false};
};

} // namespace

TEST_F(CommandTest, ACommandGetsItsOptionsTheCommonOnesAndItsFiles)
{
    EXPECT_EQ(run("weigh a --unit g b --json -q --jobs 3 -"), ExitCode::Done);
    EXPECT_EQ(results(), "g a+b+- json=1 quiet=1 jobs=3\n");
    EXPECT_EQ(run("weigh -j 64 a"), ExitCode::Done);
    EXPECT_EQ(results(), "kg a json=0 quiet=0 jobs=64\n");
    EXPECT_EQ(run("weigh a", Command::Files::One), ExitCode::Done);
    EXPECT_THAT(results(), HasSubstr("kg a json=0"));
}

TEST_F(CommandTest, JobsAreUnderstoodWhereManyFilesAreTakenOnly)
{
    EXPECT_EQ(refusal("weigh a --jobs 3", Command::Files::One),
              "marrowick: There is no option --jobs; marrowick weigh --help lists them.\n");
    for (const char* count : {"0", "65", "many", "-1"})
        EXPECT_EQ(refusal((std::string("weigh a --jobs=") + count).c_str()),
                  std::string("marrowick: --jobs needs a whole number from 1 to 64, not \"") + count + "\".\n");
}

TEST_F(CommandTest, WhatIsNotUnderstoodIsRefusedWithTheNearest)
{
    EXPECT_EQ(refusal(""), "marrowick: A command is missing; marrowick --help lists them.\n");
    EXPECT_EQ(refusal("wiegh"), "marrowick: \"wiegh\" is no command; did you mean weigh?\n");
    EXPECT_EQ(refusal("measure"), "marrowick: \"measure\" is no command; marrowick --help lists them.\n");
    EXPECT_EQ(refusal("--verson"), "marrowick: --verson is no option of marrowick itself; did you mean --version?\n");
    EXPECT_EQ(refusal("--unit g"), "marrowick: --unit is no option of marrowick itself; a command comes first.\n");
    EXPECT_EQ(refusal("weigh a --unti g"), "marrowick: There is no option --unti; did you mean --unit?\n");
    EXPECT_EQ(refusal("weigh a -unti g"), "marrowick: There is no option --unti; did you mean --unit?\n");
    EXPECT_EQ(refusal("weigh a --colour"),
              "marrowick: There is no option --colour; marrowick weigh --help lists them.\n");
    EXPECT_EQ(refusal("weigh a b", Command::Files::One),
              "marrowick: \"b\" has no place here; options begin with \"--\".\n");
    EXPECT_EQ(refusal("weigh 38k", Command::Files::None),
              "marrowick: \"38k\" has no place here; options begin with \"--\".\n");
    EXPECT_EQ(refusal("weigh unit", Command::Files::None),
              "marrowick: \"unit\" has no place here; did you mean --unit?\n");
    EXPECT_EQ(refusal("weigh"), "marrowick: A plot file is missing.\n");
    EXPECT_EQ(refusal("weigh - a -"), "marrowick: Standard input can be read once only.\n");
    EXPECT_THAT(refusal("weigh a --unit"), HasSubstr("unit"));
    EXPECT_THAT(refusal("weigh a --json=yes"), HasSubstr("json"));
}

TEST_F(CommandTest, HelpIsMadeFromTheTable)
{
    EXPECT_EQ(run("--help"), ExitCode::Done);
    EXPECT_THAT(results(), HasSubstr("\n  weigh  weighs parts\n"));
    EXPECT_THAT(results(), HasSubstr("Exit codes: 0 done, 1 usage, "));
    EXPECT_EQ(run("weigh --help --nonsense"), ExitCode::Done);
    EXPECT_THAT(results(), HasSubstr("Usage: marrowick weigh [options] FILE...\nWeighs each part.\n"));
    for (const char* option : {"--unit <unit>", "--json", "-q, --quiet", "-j, --jobs <count>", "-h, --help"})
        EXPECT_THAT(results(), HasSubstr(option));
    EXPECT_THAT(results(), HasSubstr("Exit codes: 0 done, 1 usage, "));
    EXPECT_EQ(run("--version"), ExitCode::Done);
    EXPECT_EQ(m_results, QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion() + u'\n');
}

TEST_F(CommandTest, ResultsThatGetLostMakeAFileErrorOfASuccess)
{
    CommandTable table;
    table.push_back(std::make_unique<Weigh>(Command::Files::Many));
    for (const QStringList& words :
         {QStringList{u"x"_s, u"weigh"_s, u"a"_s}, QStringList{u"x"_s, u"--help"_s},
          QStringList{u"x"_s, u"--version"_s}, QStringList{u"x"_s, u"weigh"_s, u"--help"_s}}) {
        QString problems;
        Console full(
            u"marrowick"_s, [](const QByteArray&) { return Outcome::failure(u"Full."_s); }, Console::into(problems),
            false);
        EXPECT_EQ(runCommandLine(table, words, full), ExitCode::FileError);
        EXPECT_EQ(problems, u"marrowick: Full.\n"_s);
    }
}
