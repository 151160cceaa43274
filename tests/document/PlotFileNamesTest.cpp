// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/PlotFileNames.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

TEST(PlotFileNames, NameIsCutAtItsFirstDotAnywhere)
{
    EXPECT_EQ(PlotFileNames::completed("/plots/run.1.gad", 2), "/plots/run.gzd");
    EXPECT_EQ(PlotFileNames::completed("/plots/run", 1), "/plots/run.gad");
    EXPECT_EQ(PlotFileNames::completed("/lab/data.v2/run.gzd", 2), "/lab/data.gzd");
    EXPECT_EQ(PlotFileNames::completed("/plots/run.gxd", 3), "/plots/run");
}

TEST(PlotFileNames, FiltersByType)
{
    EXPECT_EQ(PlotFileNames::saveFilter(1), "Amplitude files (*.gad)|*.gad");
    EXPECT_EQ(PlotFileNames::saveFilter(2), "Impedance files (*.gzd)|*.gzd");
    EXPECT_EQ(PlotFileNames::saveFilter(3), "");
    EXPECT_EQ(PlotFileNames::openFilter(),
              "All plot files(*.*)|*.*|Amplitude plot files(*.gad)|*.gad|Impedance plot files(*.gzd)|*.gzd");
}

TEST(PlotFileNames, ProposedNameIsTheLastComponentOrAPlainWord)
{
    EXPECT_EQ(PlotFileNames::proposed("My plot"), "My plot");
    EXPECT_EQ(PlotFileNames::proposed("/plots/run.gzd"), "run.gzd");
    EXPECT_EQ(PlotFileNames::proposed("c:\\plots\\run.gzd"), "run.gzd");
    for (const char* bad : {"a:b", "a*b", "a?b", "a\"b", "a<b", "a>b", "a|b", "/plots/", ""})
        EXPECT_EQ(PlotFileNames::proposed(bad), "fileName") << bad;
}

TEST(PlotFileNames, SameFileByAnyPathToIt)
{
    const QTemporaryDir folder;
    QDir(folder.path()).mkdir("sub");
    QFile file(folder.filePath("a.gad"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(PlotFileNames::sameFile(folder.filePath("a.gad"), folder.filePath("sub/../a.gad")));
    EXPECT_FALSE(PlotFileNames::sameFile(folder.filePath("a.gad"), folder.filePath("b.gad")));
    EXPECT_FALSE(PlotFileNames::sameFile("", ""));
    EXPECT_TRUE(PlotFileNames::sameFile("/nowhere/x", "/nowhere/x"));
}

} // namespace
