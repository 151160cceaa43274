// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/DataFolders.h"

#include "prefs/GraticuleShade.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QStringList list(std::initializer_list<const char*> texts)
{
    QStringList result;
    for (const char* text : texts)
        result.append(QString::fromUtf8(text));
    return result;
}

TEST(DataFolders, AreLookedUpFromTheTopDown)
{
    EXPECT_EQ(DataFolders::candidates(QStringLiteral("/home/me/Plots")),
              list({"/home/", "/home/me/", "/home/me/Plots"}));
    EXPECT_EQ(DataFolders::candidates(QStringLiteral("a/b")), list({"a/", "a/b"}));
    EXPECT_EQ(DataFolders::candidates(QStringLiteral("/")), list({"/"}));
    EXPECT_EQ(DataFolders::candidates(QString()), list({""}));
}

TEST(DataFolders, WithASeparatorAtTheEndEndWithTheWholePath)
{
    EXPECT_EQ(DataFolders::candidates(QStringLiteral("/home/me/")), list({"/home/", "/home/me/", "/home/me/"}));
}

TEST(DataFolders, AreMadeLevelByLevel)
{
    QTemporaryDir dir;
    QStringList failed;
    const QString path = dir.filePath(QStringLiteral("Documents/Marrowick/Plots"));
    EXPECT_TRUE(
        DataFolders::MakeDefaultDirectories({path, path + QLatin1Char('/'), dir.filePath(QStringLiteral("x y"))},
                                            [&](const QString& one) { failed.append(one); }));
    EXPECT_TRUE(QFileInfo(path).isDir());
    EXPECT_TRUE(QFileInfo(dir.filePath(QStringLiteral("x y"))).isDir());
    EXPECT_TRUE(failed.isEmpty());
}

TEST(DataFolders, FailPerLevelAndGoOn)
{
    QTemporaryDir dir;
    QFile file(dir.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QString good = dir.filePath(QStringLiteral("good"));
    QStringList failed;
    EXPECT_FALSE(DataFolders::MakeDefaultDirectories({file.fileName() + QStringLiteral("/a/b"), good},
                                                     [&](const QString& one) { failed.append(one); }));
    EXPECT_EQ(failed, QStringList({file.fileName() + QStringLiteral("/"), file.fileName() + QStringLiteral("/a/"),
                                   file.fileName() + QStringLiteral("/a/b")}));
    EXPECT_TRUE(QFileInfo(good).isDir()) << "the paths behind a bad one are still made";
    failed.clear();
    EXPECT_FALSE(DataFolders::MakeDefaultDirectories({QString()}, [&](const QString& one) { failed.append(one); }));
    EXPECT_EQ(failed, QStringList(QString()));
}

TEST(DataFolders, AreSetWhenAllFourHaveText)
{
    QTemporaryDir dir;
    SettingsStore store(dir.filePath(QStringLiteral("config")));
    Preferences preferences(store, QStringLiteral("MarrowickGraph"));
    int failures = 0;
    const auto failed = [&failures](const QString&) { ++failures; };
    for (std::size_t i = 0; i < options::kFolders.size(); ++i) {
        EXPECT_FALSE(DataFolders::boolArePathsSet(preferences, failed)) << i << " folders are set";
        preferences.setValue(options::kFolders[i].option, dir.filePath(QStringLiteral("data/%1").arg(i)));
    }
    EXPECT_TRUE(DataFolders::boolArePathsSet(preferences, failed));
    EXPECT_TRUE(QFileInfo(dir.filePath(QStringLiteral("data/3"))).isDir()) << "and are made";
    EXPECT_EQ(failures, 0);
    preferences.setValue(options::kFolders[2].option, QStringLiteral("/proc/marrowick"));
    EXPECT_TRUE(DataFolders::boolArePathsSet(preferences, failed)) << "whether they could be made does not count";
    EXPECT_EQ(failures, 1);
    preferences.setValue(options::kFolders[2].option, QString());
    EXPECT_FALSE(DataFolders::boolArePathsSet(preferences, failed));
}

TEST(GraticuleShade, OfAnUnknownTextIsTheFirstStop)
{
    EXPECT_EQ(GraticuleShade::stopOf(QStringLiteral("123")), 0);
    EXPECT_EQ(GraticuleShade::stopOf(QString()), 0);
    EXPECT_EQ(GraticuleShade::stopOf(QStringLiteral("14737632")), 0);
    EXPECT_EQ(GraticuleShade::stopOf(QStringLiteral("8158332")), 10);
    EXPECT_EQ(GraticuleShade::stopOf(QStringLiteral(" 8158332")), 0) << "the text must be equal";
}

TEST(GraticuleShade, HasElevenEvenStops)
{
    const std::uint32_t colours[] = {0xE0E0E0, 0xD6D6D6, 0xCCCCCC, 0xC2C2C2, 0xB8B8B8, 0xAEAEAE,
                                     0xA4A4A4, 0x9A9A9A, 0x909090, 0x868686, 0x7C7C7C};
    for (int stop = 0; stop < 11; ++stop) {
        EXPECT_EQ(GraticuleShade::colourOf(stop), colours[stop]);
        EXPECT_EQ(GraticuleShade::stopOf(QString::number(colours[stop])), stop);
    }
    EXPECT_FALSE(GraticuleShade::colourOf(-1));
    EXPECT_FALSE(GraticuleShade::colourOf(11));
}

} // namespace
