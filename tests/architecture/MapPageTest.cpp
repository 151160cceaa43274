// SPDX-License-Identifier: GPL-3.0-or-later
#include "architecture/MapPage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace architecture;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

std::vector<std::string> texts(const QStringList& list)
{
    std::vector<std::string> result;
    for (const QString& text : list)
        result.push_back(text.toStdString());
    return result;
}

QString read(const char* path)
{
    QFile file(QString::fromUtf8(path));
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << path;
    return QString::fromUtf8(file.readAll());
}

/// A tree with two folders, a page that tells of them and the map that goes with it.
class MapPageSample : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_root.isValid());
        file("src/low/Low.h", "class Low { void rise(); };\n");
        file("src/high/ui/frmHigh.h", "class frmHigh {};\n");
        file("src/high/High.cpp", "int other;\n");
        file("tests/CMakeLists.txt", "mg_tests(low tests/low USES low)\n");
        file("tests/low/LowTest.cpp", "TEST(Low, Rises)\n");
    }

    void file(const QString& path, const QByteArray& text)
    {
        const QString full = m_root.filePath(path);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(full).path()));
        QFile target(full);
        ASSERT_TRUE(target.open(QFile::WriteOnly));
        ASSERT_EQ(target.write(text), text.size());
    }

    std::vector<std::string> found(const QString& page) const
    {
        const std::vector<Target> map = {{QStringLiteral("low"), Kind::Logic, QStringLiteral("src/low"), {}},
                                         {QStringLiteral("high"),
                                          Kind::Logic,
                                          QStringLiteral("src/high"),
                                          {QStringLiteral("low"), QStringLiteral("Qt6::Core")}}};
        return texts(pageViolations(page, map, m_root.path()));
    }

    QTemporaryDir m_root;
    const QString m_table =
        QStringLiteral("| `src/low` | what is low |\n| `src/high` | the rest; in `ui` its windows |\n");
};

} // namespace

TEST(MapPage, WhatItNamesIsThere)
{
    QStringList problems;
    const std::vector<Target> map = readMap(read(MG_BINARY_DIR "/architecture.txt"), problems);
    ASSERT_GT(map.size(), 10U);
    EXPECT_THAT(texts(pageViolations(read(MG_SOURCE_DIR "/docs/architecture.md"), map, QStringLiteral(MG_SOURCE_DIR))),
                IsEmpty());
}

TEST(MapPage, EveryTestIsBuilt)
{
    EXPECT_THAT(texts(unbuiltTests(read(MG_SOURCE_DIR "/tests/CMakeLists.txt"), QStringLiteral(MG_SOURCE_DIR))),
                IsEmpty());
}

TEST_F(MapPageSample, APageThatHoldsHasNoViolation)
{
    EXPECT_THAT(found(m_table + QStringLiteral("`Low` has `Low::rise`, `frmHigh.h` is in `src/high`; see "
                                               "`low/Low.h`, `*.cpp` and `SEEDS=2 build/dev/bin/test_low`.\n")),
                IsEmpty());
}

TEST_F(MapPageSample, NamesAndFilesThatAreNowhereAreReported)
{
    EXPECT_THAT(found(m_table + QStringLiteral("`Lower`, `Low::fall`, `high/Higher.h`, `src/top`, `Top.cpp` and "
                                               "`SEEDS=2 build/dev/bin/test_high`.\n")),
                ElementsAre("the name Lower is nowhere", "Low has no fall", "there is no high/Higher.h",
                            "there is no src/top", "there is no Top.cpp", "there is no program test_high"));
}

TEST_F(MapPageSample, FoldersOfTheTableAreThoseOfTheTree)
{
    EXPECT_THAT(found(QStringLiteral("| `src/low`, `middle` | both; in `rules` the rules |\n| `src/high` | |\n")),
                ElementsAre("the folder src/middle is not there", "src/low has no folder rules"));
}

TEST_F(MapPageSample, AFolderThatTheTableLeavesOutIsReported)
{
    EXPECT_THAT(found(QStringLiteral("| `src/low` | |\n")), ElementsAre("the table leaves out src/high"));
}

TEST_F(MapPageSample, AFolderStandsBelowThoseThatItUses)
{
    EXPECT_THAT(found(QStringLiteral("| `src/high` | |\n| `src/low` | |\n")),
                ElementsAre("src/high uses src/low, which stands below it in the table"));
}

TEST_F(MapPageSample, TestsThatNoProgramIsMadeOfAreReported)
{
    file("tests/high/TallTest.cpp", "// why\nTEST_F(Tall, Stands)\n");
    file("tests/high/bench/Bench.cpp", "int noTest;\n");
    EXPECT_THAT(texts(unbuiltTests(read(m_root.filePath("tests/CMakeLists.txt").toUtf8().constData()), m_root.path())),
                ElementsAre("tests/high"));
}
