// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/scripts/CheckCommand.h"

#include "tests/cli/CommandWords.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <memory>

using namespace cli;

namespace {

class CheckCommandTest : public ::testing::Test
{
protected:
    QString script(const char* name, const QByteArray& content)
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    QString path(const char* name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    static CheckOptions files(const QStringList& names, const char* model = "", double firmware = 0)
    {
        return {names, QLatin1String(model), firmware, false, 1};
    }

    int check(const CheckOptions& options)
    {
        m_results.clear();
        m_problems.clear();
        Console console(QStringLiteral("marrowick"), Console::into(m_results), Console::into(m_problems), false);
        return static_cast<int>(checkScripts(options, console));
    }

    std::string results() const
    {
        return QString(m_results).replace(m_folder.path(), QStringLiteral("DIR")).toStdString();
    }
    std::string problems() const
    {
        return QString(m_problems).replace(m_folder.path(), QStringLiteral("DIR")).toStdString();
    }

    QTemporaryDir m_folder;
    QString m_results;
    QString m_problems;
};

} // namespace

TEST_F(CheckCommandTest, ACleanScriptIsCalledCleanAndEndsWith0)
{
    EXPECT_EQ(check(files({script("a.mgs", "wait 1\n")})), 0);
    EXPECT_EQ(results(), "DIR/a.mgs: clean\n");
    EXPECT_EQ(problems(), "");
}

TEST_F(CheckCommandTest, WarningsEndWith1AndErrorsWith2AndTheWorstDecides)
{
    const QString clean = script("clean.mgs", "wait 1\n");
    const QString warned = script("warned.mgs", "finish\nwait 1\n");
    const QString wrong = script("wrong.mgs", "waitt 1\nuse pen 11\n");
    EXPECT_EQ(check(files({clean, warned})), 1);
    EXPECT_EQ(results(), "DIR/clean.mgs: clean\n"
                         "DIR/warned.mgs:2:1: warning: This statement is never reached.\n"
                         "    wait 1\n"
                         "    ^\n"
                         "DIR/warned.mgs: one warning\n");
    EXPECT_EQ(check(files({wrong, warned, clean})), 2);
    EXPECT_EQ(results(), "DIR/wrong.mgs:1:1: error: No statement begins with \"waitt\".\n"
                         "    waitt 1\n"
                         "    ^\n"
                         "    Did you mean \"wait\"?\n"
                         "DIR/wrong.mgs:2:9: error: The pen is 11, outside 1 to 10.\n"
                         "    use pen 11\n"
                         "            ^\n"
                         "DIR/wrong.mgs: 2 errors\n"
                         "DIR/warned.mgs:2:1: warning: This statement is never reached.\n"
                         "    wait 1\n"
                         "    ^\n"
                         "DIR/warned.mgs: one warning\n"
                         "DIR/clean.mgs: clean\n");
}

TEST_F(CheckCommandTest, AFileThatCannotBeReadEndsWith5AndTheOthersAreChecked)
{
    const QString clean = script("clean.mgs", "wait 1\n");
    EXPECT_EQ(check(files({path("none.mgs"), clean})), 5);
    EXPECT_EQ(results(), "DIR/clean.mgs: clean\n");
    EXPECT_EQ(problems(), "marrowick: DIR/none.mgs cannot be read: No such file or directory.\n");
    EXPECT_EQ(check(files({script("binary.mgs", QByteArray("a\0b", 3)), script("wrong.mgs", "waitt")})), 5);
    EXPECT_EQ(problems(), "marrowick: DIR/binary.mgs: This is no script: it holds bytes that no text has.\n");
    EXPECT_EQ(check(files({script("large.mgs", QByteArray(1024 * 1024 + 1, '\n'))})), 5);
}

TEST_F(CheckCommandTest, TheModelAndItsFirmwareDecide)
{
    const QString fast = script("fast.mgs", "needs firmware 1.2\nset end 6M\n");
    EXPECT_EQ(check(files({fast}, "T46", 1.28)), 0);
    EXPECT_EQ(check(files({fast}, "DT46", 1.28)), 2);
    EXPECT_EQ(check(files({fast}, "T46", 1.1)), 2);
    EXPECT_EQ(check(files({fast})), 0);
}

TEST_F(CheckCommandTest, JsonHoldsWhatTheTextSays)
{
    CheckOptions options = files({script("wrong.mgs", "waitt 1\n"), script("clean.mgs", "wait 1\n")});
    options.json = true;
    EXPECT_EQ(check(options), 2);
    const QJsonArray scripts =
        QJsonDocument::fromJson(m_results.toUtf8()).object().value(QLatin1String("scripts")).toArray();
    ASSERT_EQ(scripts.size(), 2);
    EXPECT_EQ(scripts[0][QLatin1String("errors")].toInt(), 1);
    EXPECT_EQ(scripts[0][QLatin1String("leftOut")].toInt(), 0);
    const QJsonObject finding = scripts[0][QLatin1String("findings")].toArray().at(0).toObject();
    EXPECT_EQ(finding.value(QLatin1String("severity")).toString(), QLatin1String("error"));
    EXPECT_EQ(finding.value(QLatin1String("line")).toInt(), 1);
    EXPECT_EQ(finding.value(QLatin1String("column")).toInt(), 1);
    EXPECT_EQ(finding.value(QLatin1String("sentence")).toString(),
              QLatin1String("No statement begins with \"waitt\"."));
    EXPECT_EQ(finding.value(QLatin1String("suggestion")).toString(), QLatin1String("Did you mean \"wait\"?"));
    EXPECT_EQ(scripts[1][QLatin1String("findings")].toArray().size(), 0);
    EXPECT_EQ(scripts[1][QLatin1String("file")].toString(), path("clean.mgs"));
}

TEST_F(CheckCommandTest, WithoutAScriptItSaysSoAndDoesNotEndAsWarningsDo)
{
    const auto told = [this](const QStringList& words) {
        CommandTable table;
        table.push_back(std::make_unique<CheckCommand>());
        m_results.clear();
        m_problems.clear();
        Console console(QStringLiteral("marrowick"), Console::into(m_results), Console::into(m_problems), false);
        return static_cast<int>(
            runCommandLine(table, QStringList{QCoreApplication::arguments().constFirst()} + words, console));
    };
    EXPECT_EQ(told({QStringLiteral("check")}), 2);
    EXPECT_EQ(problems(), "marrowick: A script is missing.\n");
    EXPECT_EQ(told({QStringLiteral("check"), QStringLiteral("--model"), QStringLiteral("T47"), path("a.mgs")}), 2);
    EXPECT_EQ(told({QStringLiteral("check"), QStringLiteral("--help")}), 0);
    EXPECT_NE(results().find("Scripts; \"-\" is standard input."), std::string::npos) << results();
    EXPECT_NE(results().find("Exit codes: 0 all clean, 1 warnings, 2 errors or usage, 5 not read.\n"),
              std::string::npos)
        << results();
}

TEST_F(CheckCommandTest, ReadsItsOptions)
{
    const CommandWords<CheckCommand> words("--model DT46 --firmware 1.23 --json --jobs 2 a.mgs b.mgs");
    EXPECT_EQ(words.problem(), "");
    EXPECT_EQ(words.options().model, QLatin1String("DT46"));
    EXPECT_DOUBLE_EQ(words.options().firmware, 1.23);
    EXPECT_TRUE(words.options().json);
    EXPECT_EQ(words.options().jobs, 2);
    EXPECT_EQ(words.options().files.size(), 2);
    EXPECT_NE(CommandWords<CheckCommand>("--model T47 a.mgs").problem(), "");
    EXPECT_EQ(CommandWords<CheckCommand>("--firmware new a.mgs").problem(),
              "--firmware needs a version as 1.28, not \"new\".");
}
