// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Arguments.h"

#include "cli/ExitCode.h"

#include <gtest/gtest.h>

using namespace cli;

TEST(Arguments, FrequenciesAreReadAsPeopleWriteThem)
{
    EXPECT_EQ(frequencyOf(QStringLiteral("40000")), 40000);
    EXPECT_EQ(frequencyOf(QStringLiteral("4.2e4")), 42000);
    EXPECT_EQ(frequencyOf(QStringLiteral("42k")), 42000);
    EXPECT_EQ(frequencyOf(QStringLiteral("4k7")), 4700);
    EXPECT_EQ(frequencyOf(QStringLiteral("2.2M")), 2200000);
    EXPECT_EQ(frequencyOf(QStringLiteral(".5M")), 500000);
    EXPECT_EQ(frequencyOf(QStringLiteral("42 kHz")), 42000);
    EXPECT_EQ(frequencyOf(QStringLiteral("50Hz")), 50);
}

TEST(Arguments, ATextThatIsNoFrequencyIsRefusedInsteadOfGuessed)
{
    for (const char* text : {"", "k", ".k", "Hz", "4x2", "1kk", "1.5k2", "4k7k", "abc", "1..2", "0x10", "1,5", "nan"})
        EXPECT_FALSE(frequencyOf(QString::fromUtf8(text))) << text;
}

TEST(Arguments, OnlyTheFirstRefusalIsTold)
{
    QCommandLineParser parser;
    const QCommandLineOption points(QStringLiteral("points"), {}, QStringLiteral("count"));
    parser.addOption(points);
    parser.parse({QStringLiteral("x"), QStringLiteral("--points"), QStringLiteral("7")});
    Arguments arguments(parser);
    EXPECT_EQ(arguments.whole(points, 1, 7), 7);
    EXPECT_TRUE(arguments.outcome().ok());
    arguments.whole(points, 1, 6);
    arguments.choice(points, {QStringLiteral("one"), QStringLiteral("two")});
    EXPECT_EQ(arguments.outcome().sentence(), QStringLiteral("--points needs a whole number from 1 to 6, not \"7\"."));
}

TEST(ExitCodes, TheTableIsInOrderAndWithoutAGap)
{
    int number = 0;
    for (const ExitCodeText& row : exitCodeTexts()) {
        EXPECT_EQ(static_cast<int>(row.code), number++);
        EXPECT_TRUE(exitCodeHelp().contains(
            QStringLiteral("%1 %2").arg(static_cast<int>(row.code)).arg(QLatin1String(row.name))));
        EXPECT_TRUE(QLatin1String(row.sentence).endsWith(u'.'));
    }
    EXPECT_EQ(number, static_cast<int>(ExitCode::Stopped) + 1);
    for (const QString& line : exitCodeHelp().split(u'\n'))
        EXPECT_LE(line.size(), 100);
}
