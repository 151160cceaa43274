// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/PenReader.h"

#include <gtest/gtest.h>

namespace {

TEST(PenReader, StopsAtTheFirstPointWhoseXIsZero)
{
    GraphModel graph;
    for (int point : {0, 1, 2, 4, 5})
        graph.setPoint(3, point, 100.0F, 1.0F);
    EXPECT_EQ(PenReader::pointCount(graph, 3), 3);
}

TEST(PenReader, StopsAtTheNullValue)
{
    GraphModel graph;
    for (int point = 0; point < 10; ++point)
        graph.setPoint(3, point, 100.0F, 0.0F);
    graph.setYData(3, 7, -65536.0F);
    EXPECT_EQ(PenReader::pointCount(graph, 3), 7);
}

TEST(PenReader, AFullSubsetHasAllItsPoints)
{
    GraphModel graph;
    for (int point = 0; point < graph.Points(); ++point)
        graph.setPoint(39, point, -1.0F, 2.0F);
    EXPECT_EQ(PenReader::pointCount(graph, 39), 1024);
}

TEST(PenReader, AnEmptyOrAbsentSubsetHasNone)
{
    const GraphModel graph;
    EXPECT_EQ(PenReader::pointCount(graph, 0), 0);
    EXPECT_EQ(PenReader::pointCount(graph, 40), 0);
    EXPECT_EQ(PenReader::pointCount(graph, -1), 0);
}

} // namespace
