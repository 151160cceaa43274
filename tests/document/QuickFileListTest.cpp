// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/QuickFileList.h"

#include "document/DocumentBench.h"
#include "support/WriteCounter.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

struct QuickFileListTest : ::testing::Test
{
    DocumentBench bench;
    QuickFileList list{bench.preferences};

    QString stored(int i) { return bench.preferences.value(options::kQuickOpenFile, i); }
};

TEST_F(QuickFileListTest, NewestStandsOnTopAndIsWrittenBack)
{
    list.UpdateQuickFileList("/a.gad");
    list.UpdateQuickFileList("/b.gad");
    EXPECT_EQ(list.entries(), (QStringList{"/b.gad", "/a.gad"}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return stored(0) == "/b.gad"; })) << "soon, and by itself";
    EXPECT_EQ(stored(1), "/a.gad");
    EXPECT_EQ(bench.store.GetSetting("MarrowickGraph", "QuickOpen", "File0", ""), "/b.gad");
}

TEST_F(QuickFileListTest, WhatIsNotWrittenYetIsWrittenAtTheEnd)
{
    {
        QuickFileList ending(bench.preferences);
        ending.UpdateQuickFileList("/a.gad");
    }
    EXPECT_EQ(stored(0), "/a.gad");
}

TEST_F(QuickFileListTest, KnownFileMovesToTheTopWhateverItsCase)
{
    list.UpdateQuickFileList("/a.gad");
    list.UpdateQuickFileList("/b.gad");
    list.UpdateQuickFileList("/A.GAD");
    EXPECT_EQ(list.entries(), (QStringList{"/A.GAD", "/b.gad"}));
}

TEST_F(QuickFileListTest, TheLastEntryIsDroppedPastTheCapacity)
{
    for (int i = 0; i <= QuickFileList::kCapacity; ++i)
        list.UpdateQuickFileList(QString("/%1.gad").arg(i));
    EXPECT_EQ(list.entries().size(), QuickFileList::kCapacity);
    EXPECT_FALSE(list.entries().contains("/0.gad"));
    list.store();
    EXPECT_EQ(stored(QuickFileList::kCapacity - 1), "/1.gad");
}

TEST_F(QuickFileListTest, TenFilesOpenedWithAFullListAreOneWrite)
{
    for (int i = 0; i < QuickFileList::kCapacity; ++i)
        list.UpdateQuickFileList(QString("/%1.gad").arg(i));
    list.store();
    WriteCounter writes(bench.store.folder());
    for (int i = 0; i < 10; ++i)
        list.UpdateQuickFileList(QString("/new%1.gad").arg(i));
    EXPECT_EQ(writes.take(), 0);
    list.store();
    EXPECT_EQ(writes.take(), 1);
    EXPECT_EQ(stored(0), "/new9.gad");
    list.UpdateQuickFileList("/new9.gad");
    list.store();
    EXPECT_EQ(writes.take(), 0) << "nothing has changed";
}

TEST_F(QuickFileListTest, EmptyNameReadsTheSavedEntries)
{
    list.UpdateQuickFileList("/a.gad");
    list.store();
    QuickFileList restarted(bench.preferences);
    EXPECT_TRUE(restarted.entries().isEmpty());
    restarted.UpdateQuickFileList("");
    EXPECT_EQ(restarted.entries(), QStringList{"/a.gad"});
}

TEST_F(QuickFileListTest, EntriesOfAnotherCopyStay)
{
    SettingsStore otherStore(bench.store.folder());
    Preferences otherPreferences(otherStore, bench.preferences.applicationTitle());
    QuickFileList other(otherPreferences);
    list.UpdateQuickFileList("/a.gad");
    other.UpdateQuickFileList("/b.gad");
    list.store();
    other.store();
    list.UpdateQuickFileList("/c.gad");
    EXPECT_EQ(list.entries(), (QStringList{"/c.gad", "/b.gad", "/a.gad"}));
}

} // namespace
