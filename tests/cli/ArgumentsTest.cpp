// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Arguments.h"

#include "cli/ExitCode.h"

#include <gtest/gtest.h>

using namespace cli;

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
    EXPECT_EQ(number, static_cast<int>(ExitCode::Bad) + 1);
    for (const QString& line : exitCodeHelp().split(u'\n'))
        EXPECT_LE(line.size(), 100);
}
