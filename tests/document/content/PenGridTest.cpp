// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/PenGrid.h"

#include <gtest/gtest.h>

namespace {

TEST(PenGrid, HeaderTakesLabelAndTypeFromTheFirstLine)
{
    const auto header = PenGrid::readHeader(u"Frequency - Hz\tPen 3\t2\r\n1\t2\t3\t4\t5\r\n");
    ASSERT_TRUE(header);
    EXPECT_EQ(header->xLabel, "Frequency - Hz");
    EXPECT_EQ(header->penLabel, "Pen 3");
    EXPECT_EQ(header->testType, 2);
}

TEST(PenGrid, NoHeaderWithoutLineEndOrFieldsOrNumber)
{
    EXPECT_FALSE(PenGrid::readHeader(u""));
    EXPECT_FALSE(PenGrid::readHeader(u"Frequency - Hz\tPen 3\t2"));
    EXPECT_FALSE(PenGrid::readHeader(u"Frequency - Hz\tPen 3\t2\n"));
    EXPECT_FALSE(PenGrid::readHeader(u"Frequency - Hz\t2\r\n"));
    EXPECT_FALSE(PenGrid::readHeader(u"Frequency - Hz\r\n"));
    EXPECT_FALSE(PenGrid::readHeader(u"Frequency - Hz\tPen 3\ttwo\r\n"));
    EXPECT_FALSE(PenGrid::readHeader(u"Frequency - Hz\tPen 3\t99999\r\n"));
}

TEST(PenGrid, EmptyLabelsAreFields)
{
    const auto header = PenGrid::readHeader(u"  \t\t3 \r\n");
    ASSERT_TRUE(header);
    EXPECT_EQ(header->xLabel, "");
    EXPECT_EQ(header->penLabel, "");
    EXPECT_EQ(header->testType, 3);
}

TEST(PenGrid, LabelsThatWouldCutTheLineAreMadeHarmless)
{
    const PenGrid::Header header{"a\tb", "c\r\nd", 1};
    const auto read = PenGrid::readHeader(QString(PenGrid::headerText(header) + "\r\n"));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->xLabel, "a b");
    EXPECT_EQ(read->penLabel, "c  d");
    EXPECT_EQ(read->testType, 1);
}

TEST(PenGrid, LinesComeOffTheFront)
{
    QStringView text(u"one\r\n\r\nlast");
    EXPECT_EQ(PenGrid::takeLine(text), QStringView(u"one"));
    EXPECT_EQ(PenGrid::takeLine(text), QStringView(u""));
    EXPECT_EQ(PenGrid::takeLine(text), QStringView(u"last"));
    EXPECT_TRUE(text.isEmpty());
}

TEST(PenGrid, SplitLeavesTheRemainderInTheFifthField)
{
    QStringView x, y1, y2, y3, y4;
    ASSERT_TRUE(PenGrid::SplitData(u"1\t2\t\t4\t5\t6", x, y1, y2, y3, y4));
    EXPECT_EQ(x, QStringView(u"1"));
    EXPECT_EQ(y1, QStringView(u"2"));
    EXPECT_EQ(y2, QStringView(u""));
    EXPECT_EQ(y3, QStringView(u"4"));
    EXPECT_EQ(y4, QStringView(u"5\t6"));
    EXPECT_FALSE(PenGrid::SplitData(u"1\t2\t3\t4", x, y1, y2, y3, y4));
    EXPECT_FALSE(PenGrid::SplitData(u"", x, y1, y2, y3, y4));
}

} // namespace
