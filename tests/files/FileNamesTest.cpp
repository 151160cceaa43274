// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileNames.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace files;

TEST(PathHelpers, SplitAtTheLastSeparatorOfEitherKind)
{
    EXPECT_EQ(PathOfFile(QStringLiteral("/home/a/b.gad")), QStringLiteral("/home/a/"));
    EXPECT_EQ(FileOfPath(QStringLiteral("/home/a/b.gad")), QStringLiteral("b.gad"));
    EXPECT_EQ(PathOfFile(QStringLiteral("c:\\plots\\b.gad")), QStringLiteral("c:\\plots\\"));
    EXPECT_EQ(FileOfPath(QStringLiteral("c:\\plots\\b.gad")), QStringLiteral("b.gad"));
    EXPECT_EQ(PathOfFile(QStringLiteral("c:\\plots/b.gad")), QStringLiteral("c:\\plots/"));
    EXPECT_EQ(FileOfPath(QStringLiteral("c:/plots\\b.gad")), QStringLiteral("b.gad"));
    EXPECT_EQ(PathOfFile(QStringLiteral("b.gad")), QString());
    EXPECT_EQ(FileOfPath(QStringLiteral("b.gad")), QStringLiteral("b.gad"));
    EXPECT_EQ(PathOfFile(QStringLiteral("/a/")), QStringLiteral("/a/"));
    EXPECT_EQ(FileOfPath(QStringLiteral("/a/")), QString());
    EXPECT_EQ(PathOfFile(QString()), QString());
    EXPECT_EQ(FileOfPath(QString()), QString());
}

TEST(IsValidFileName, RefusesEachOfTheNineCharacters)
{
    EXPECT_TRUE(IsValidFileName(QStringLiteral("Langevin 40 kHz (\u03a9).gzd")));
    EXPECT_TRUE(IsValidFileName(QString()));
    for (const char c : std::string("\\/:*?\"<>|"))
        EXPECT_FALSE(IsValidFileName(QStringLiteral("a%1b").arg(QLatin1Char(c)))) << c;
}

TEST(RemoveQuotes, RemovesEveryDoubleQuote)
{
    QString text = QStringLiteral("\"\"c:\\a \"b\".gad\"");
    EXPECT_EQ(RemoveQuotes(text), QStringLiteral("c:\\a b.gad"));
    EXPECT_EQ(text, QStringLiteral("c:\\a b.gad"));
}

} // namespace
