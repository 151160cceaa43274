// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/Pens.h"

#include <gtest/gtest.h>

namespace {

struct PensTest : ::testing::Test
{
    GraphModel graph;
    Pens pens{graph};
};

} // namespace

TEST_F(PensTest, LocksTravelWithTheGraph)
{
    pens.setLocked(0, true);
    pens.setLocked(9, true);
    pens.storeLocks();
    EXPECT_EQ(graph.MultiSubTitles(0), "X00000000X");
    Pens read(graph);
    read.readLocks();
    for (int pen = 0; pen < plot::kPens; ++pen)
        EXPECT_EQ(read.isLocked(pen), pen == 0 || pen == 9) << pen;
    graph.setMultiSubTitles(0, "0X");
    read.readLocks();
    EXPECT_FALSE(read.isLocked(0));
    EXPECT_TRUE(read.isLocked(1));
    EXPECT_FALSE(read.isLocked(9)) << "a short text leaves the others free";
}

TEST_F(PensTest, TheNextUnlockedPenWrapsAndEndsAtItself)
{
    EXPECT_EQ(pens.nextUnlocked(9), 0);
    pens.setAllLocked(true);
    EXPECT_EQ(pens.nextUnlocked(3), std::nullopt);
    pens.setLocked(3, false);
    EXPECT_EQ(pens.nextUnlocked(3), 3);
}

TEST_F(PensTest, ANumberOrATimeIsNoNameOfTheUser)
{
    pens.resetName(4);
    EXPECT_EQ(graph.SubsetLabels(14), "Pen 5");
    EXPECT_FALSE(pens.isNamedByUser(4));
    pens.setName(4, "23:59:59");
    EXPECT_FALSE(pens.isNamedByUser(4));
    for (const char* name : {"Pen 4", "24:00:00", "Transducer 7", ""}) {
        pens.setName(4, QString::fromUtf8(name));
        EXPECT_TRUE(pens.isNamedByUser(4)) << name;
    }
}

TEST_F(PensTest, ErasingKeepsTheFrequenciesAndALockedPen)
{
    for (const int subset : {2, 12, 22, 32})
        graph.setPoint(subset, 1023, 1000.0F, 5.0F);
    EXPECT_TRUE(pens.hasData(2));
    pens.setLocked(2, true);
    EXPECT_FALSE(pens.erase(2));
    EXPECT_TRUE(pens.hasData(2));
    pens.setLocked(2, false);
    EXPECT_TRUE(pens.erase(2));
    EXPECT_FALSE(pens.hasData(2));
    for (const int subset : {2, 12, 22, 32}) {
        EXPECT_EQ(graph.YData(subset, 1023), graph::kNullValue);
        EXPECT_EQ(graph.XData(subset, 1023), 1000.0F);
    }
}

TEST_F(PensTest, NumbersOutsideTheTenAreNobody)
{
    for (const int pen : {-1, 10}) {
        pens.setLocked(pen, true);
        pens.setHidden(pen, true);
        pens.setColour(pen, 1);
        pens.setName(pen, "x");
        EXPECT_FALSE(pens.isLocked(pen));
        EXPECT_FALSE(pens.isHidden(pen));
        EXPECT_FALSE(pens.erase(pen));
        EXPECT_EQ(pens.name(pen), QString());
    }
    EXPECT_FALSE(pens.areAllHidden());
}
