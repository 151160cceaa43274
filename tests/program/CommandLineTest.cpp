// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/CommandLine.h"

#include <gtest/gtest.h>

namespace {

TEST(CommandLine, WithAScriptAndRerunAsksForBoth)
{
    const CommandLine line = CommandLine::parse(QStringLiteral("\"/home/me/my test.mgs\" -rerun"));
    EXPECT_TRUE(line.scriptFile);
    EXPECT_TRUE(line.rerun);
    EXPECT_FALSE(line.plotFile);
    EXPECT_EQ(line.strFileName, QStringLiteral("/home/me/my test.mgs -rerun"));

    const CommandLine split = CommandLine::parse({QStringLiteral("/home/me/my test.mgs"), QStringLiteral("-rerun")});
    EXPECT_TRUE(split.scriptFile);
    EXPECT_TRUE(split.rerun);
    EXPECT_EQ(split.strFileName, QStringLiteral("/home/me/my test.mgs -rerun"));
    EXPECT_EQ(split.files, QStringList(QStringLiteral("/home/me/my test.mgs")));
}

TEST(CommandLine, OfABareWordAsksForNothing)
{
    const CommandLine line = CommandLine::parse(QStringLiteral("hello"));
    EXPECT_FALSE(line.asksForSomething());
    EXPECT_TRUE(line.strFileName.isEmpty());
    EXPECT_TRUE(line.files.isEmpty());
    EXPECT_FALSE(CommandLine::parse(QString()).asksForSomething());
}

TEST(CommandLine, FindsItsSuffixesAnywhere)
{
    const CommandLine line = CommandLine::parse(QStringLiteral("c:\\x.gad.bak"));
    EXPECT_TRUE(line.plotFile);
    EXPECT_EQ(line.strFileName, QStringLiteral("c:\\x.gad.bak"));
}

TEST(CommandLine, IgnoresCase)
{
    EXPECT_TRUE(CommandLine::parse(QStringLiteral("A.GZD")).plotFile);
    EXPECT_TRUE(CommandLine::parse(QStringLiteral("a.Gad")).plotFile);
    EXPECT_TRUE(CommandLine::parse(QStringLiteral("a.gxD")).plotFile);
    EXPECT_TRUE(CommandLine::parse(QStringLiteral("A.MGS")).scriptFile);
    EXPECT_TRUE(CommandLine::parse(QStringLiteral("-ReRun")).rerun);
}

TEST(CommandLine, KeepsSeveralFilesApart)
{
    const CommandLine line = CommandLine::parse(
        {QStringLiteral("/a/one.gad"), QStringLiteral("--other"), QStringLiteral("/b/two words.gzd")});
    EXPECT_EQ(line.files, QStringList({QStringLiteral("/a/one.gad"), QStringLiteral("/b/two words.gzd")}));
    EXPECT_EQ(line.strFileName, QStringLiteral("/a/one.gad --other /b/two words.gzd"));
}

} // namespace
