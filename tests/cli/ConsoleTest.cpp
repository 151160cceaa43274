// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"

#include <QJsonObject>

#include <gtest/gtest.h>

using namespace cli;

namespace {

class ConsoleTest : public ::testing::Test
{
protected:
    std::string results() { return m_results.toStdString(); }
    std::string problems() { return m_problems.toStdString(); }

    QString m_results, m_problems;
    Console console(bool interactive = false)
    {
        return Console(QStringLiteral("marrowick"), Console::into(m_results), Console::into(m_problems), interactive);
    }
};

} // namespace

TEST_F(ConsoleTest, ResultsAndProblemsGoTheirOwnWays)
{
    Console console = this->console();
    console.result(QStringLiteral("3 points"));
    console.progress(QStringLiteral("1 of 3 points"));
    console.problem(QStringLiteral("No instrument was found."));
    EXPECT_EQ(results(), "3 points\n");
    EXPECT_EQ(problems(), "marrowick: No instrument was found.\n");
}

TEST_F(ConsoleTest, ProgressIsTakenAwayBeforeALine)
{
    Console console = this->console(true);
    console.progress(QStringLiteral("1 of 3 points"));
    console.result(QStringLiteral("3 points"));
    console.endProgress();
    EXPECT_EQ(results(), "3 points\n");
    EXPECT_EQ(problems(), "\r\033[K1 of 3 points\r\033[K");
}

TEST_F(ConsoleTest, MessagesArePrintedWithTheirTitle)
{
    Console console = this->console();
    ConsoleMessages messages(console);
    EXPECT_FALSE(messages.takeSaid());
    messages.message(QStringLiteral("All pens are locked!"), UserMessages::Information, QStringLiteral("Information"));
    EXPECT_EQ(problems(), "marrowick: Information: All pens are locked!\n");
    EXPECT_TRUE(messages.takeSaid());
    EXPECT_FALSE(messages.takeSaid());
}

TEST_F(ConsoleTest, QuestionsAreAnsweredSoThatAnUnattendedRunGoesOn)
{
    Console console = this->console();
    ConsoleMessages messages(console);
    const auto reply = [&messages](int style) { return messages.message(QStringLiteral("?"), style, QString()); };
    EXPECT_EQ(reply(UserMessages::OkOnly | UserMessages::Stop), UserMessages::ReplyOk);
    EXPECT_EQ(reply(UserMessages::OkCancel | UserMessages::Question), UserMessages::ReplyOk);
    EXPECT_EQ(reply(UserMessages::YesNo | UserMessages::Question), UserMessages::ReplyYes);
    EXPECT_EQ(reply(UserMessages::YesNoCancel), UserMessages::ReplyYes);
    EXPECT_EQ(reply(UserMessages::AbortRetryIgnore), UserMessages::ReplyIgnore);
    EXPECT_EQ(reply(UserMessages::RetryCancel), UserMessages::ReplyCancel);
}

TEST_F(ConsoleTest, ResultsThatCannotBeWrittenAreToldOnceAndRemembered)
{
    int tries = 0;
    Console console(
        QStringLiteral("marrowick"),
        [&tries](const QByteArray&) {
            return ++tries == 1 ? Outcome::success() : Outcome::failure(QStringLiteral("The disk is full."));
        },
        Console::into(m_problems), false);
    console.result(QStringLiteral("first"));
    EXPECT_FALSE(console.resultsLost());
    console.result(QStringLiteral("second"));
    console.result(QJsonObject());
    EXPECT_TRUE(console.resultsLost());
    EXPECT_EQ(tries, 2);
    EXPECT_EQ(problems(), "marrowick: The disk is full.\n");
}

TEST_F(ConsoleTest, AnObjectIsOneLine)
{
    Console console = this->console();
    console.result(QJsonObject{{QStringLiteral("a"), 1}, {QStringLiteral("b"), QStringLiteral("x\ny")}});
    EXPECT_EQ(results(), "{\"a\":1,\"b\":\"x\\ny\"}\n");
}
