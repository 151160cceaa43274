// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/PenTransfer.h"

#include "document/content/Pens.h"
#include "document/content/PointWriter.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

struct PenTransferTest : ::testing::Test
{
    PenTransferTest() { graph.setXAxisLabel("Frequency - Hz"); }

    GraphModel graph;
    Pens pens{graph};
    PointWriter points{graph};
};

} // namespace

TEST_F(PenTransferTest, EverySingleComesBackAsItWas)
{
    const float awkward[] = {0.1F, 1.0F / 3.0F, 1e-30F, 3.4e38F, -0.0F, 16777217.0F};
    int point = 0;
    for (const float value : awkward) {
        points.write(0, point, 1000.0 + point, value, -value, value / 7, value * 0.5F);
        ++point;
    }
    const QString grid = pentransfer::copied(graph, 0, plot::Impedance);
    EXPECT_EQ(pentransfer::paste(graph, pens, 3, grid, plot::Impedance).points, point);
    for (int i = 0; i < point; ++i) {
        for (const int offset : {0, 10, 20, 30})
            EXPECT_EQ(graph.YData(3 + offset, i), graph.YData(offset, i)) << i << ' ' << offset;
    }
}

TEST_F(PenTransferTest, ValuesThatAreNotFiniteComeBackToo)
{
    const double infinite = std::numeric_limits<double>::infinity();
    points.write(0, 0, 1000, 0, infinite, -infinite, std::numeric_limits<double>::quiet_NaN());
    const QString grid = pentransfer::copied(graph, 0, plot::Impedance);
    pentransfer::paste(graph, pens, 1, grid, plot::Impedance);
    EXPECT_EQ(graph.YData(11, 0), std::numeric_limits<float>::infinity());
    EXPECT_EQ(graph.YData(31, 0), -std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(graph.YData(21, 0)));
}

TEST_F(PenTransferTest, AGridOfATypeThatDoesNotFitNamesThePenAndWritesNothing)
{
    const QString grid = QStringLiteral("Frequency - Hz\tGain curve\t1\r\n1000\t-3\t3\t0\t0\r\n");
    const auto pasted = pentransfer::paste(graph, pens, 2, grid, plot::Impedance);
    EXPECT_TRUE(pasted.named);
    EXPECT_EQ(pasted.points, 0);
    EXPECT_EQ(pens.name(2), "Gain curve");
    EXPECT_FALSE(pens.hasData(2));
    EXPECT_FALSE(pentransfer::canPaste(grid, plot::Impedance));
    EXPECT_TRUE(pentransfer::canPaste(grid, plot::Amplitude));
}

TEST_F(PenTransferTest, ConversionEndsWhereThePhaseIsMissing)
{
    const QString grid =
        QStringLiteral("Frequency - Hz\tP\t2\r\n1000\t50\t0.02\t30\t-30\r\n2000\t50\t0.02\t65536\t0\r\n");
    const auto pasted = pentransfer::paste(graph, pens, 0, grid, plot::Reactance);
    EXPECT_TRUE(pasted.phaseLost);
    EXPECT_EQ(pasted.points, 1);
    EXPECT_NEAR(graph.YData(0, 0), 25.0F, 1e-4F);
    EXPECT_EQ(graph.XData(0, 1), 0.0F);
}
