// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphModel.h"

#include <QSignalSpy>

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

TEST(GraphModelData, AFreshGraphHoldsNoData)
{
    const GraphModel model;
    EXPECT_EQ(model.Subsets(), 40);
    EXPECT_EQ(model.Points(), 1024);
    for (const int subset : {0, 17, 39}) {
        for (const int point : {0, 511, 1023}) {
            EXPECT_EQ(model.XData(subset, point), 0.0F);
            EXPECT_EQ(model.YData(subset, point), -65536.0F);
        }
    }
}

TEST(GraphModelData, SizesAreHeldToTheirLimits)
{
    const GraphModel none(0, -5);
    EXPECT_EQ(none.Subsets(), 1);
    EXPECT_EQ(none.Points(), 1);
    const GraphModel many(1000, 1);
    EXPECT_EQ(many.Subsets(), GraphModel::kMaxSubsets);
}

TEST(GraphModelData, WritesLandInTheirPointAlone)
{
    GraphModel model(3, 4);
    EXPECT_TRUE(model.setXData(1, 2, 10.5F));
    EXPECT_TRUE(model.setYData(1, 2, -3.25F));
    EXPECT_TRUE(model.setPoint(2, 3, 7, 8));
    for (int subset = 0; subset < 3; ++subset) {
        for (int point = 0; point < 4; ++point) {
            const bool first = subset == 1 && point == 2;
            const bool second = subset == 2 && point == 3;
            EXPECT_EQ(model.XData(subset, point), first ? 10.5F : second ? 7.0F : 0.0F);
            EXPECT_EQ(model.YData(subset, point), first ? -3.25F : second ? 8.0F : graph::kNullValue);
        }
    }
}

TEST(GraphModelData, WritesOutsideAreRefusedAndTouchNothing)
{
    GraphModel model(2, 3);
    const std::array<std::pair<int, int>, 7> outside{{{-1, 0},
                                                      {2, 0},
                                                      {0, -1},
                                                      {0, 3},
                                                      {1, 3},
                                                      {std::numeric_limits<int>::max(), 0},
                                                      {0, std::numeric_limits<int>::min()}}};
    for (const auto& [subset, point] : outside) {
        EXPECT_FALSE(model.setXData(subset, point, 1));
        EXPECT_FALSE(model.setYData(subset, point, 1));
        EXPECT_FALSE(model.setPoint(subset, point, 1, 1));
        EXPECT_EQ(model.XData(subset, point), 0.0F);
        EXPECT_EQ(model.YData(subset, point), 0.0F);
    }
    for (int subset = 0; subset < 2; ++subset) {
        for (int point = 0; point < 3; ++point) {
            EXPECT_EQ(model.XData(subset, point), 0.0F);
            EXPECT_EQ(model.YData(subset, point), graph::kNullValue);
        }
    }
    EXPECT_EQ(model.takeDirtySubsets(), 0U);
}

TEST(GraphModelData, DoublesAreRoundedToSingle)
{
    GraphModel model;
    model.setYData(0, 0, static_cast<float>(0.1));
    EXPECT_EQ(model.YData(0, 0), 0.1F);
    EXPECT_NE(static_cast<double>(model.YData(0, 0)), 0.1);
}

TEST(GraphModelData, NonFiniteValuesAreKept)
{
    GraphModel model;
    model.setYData(0, 0, std::numeric_limits<float>::infinity());
    model.setYData(0, 1, std::numeric_limits<float>::quiet_NaN());
    EXPECT_TRUE(std::isinf(model.YData(0, 0)));
    EXPECT_TRUE(std::isnan(model.YData(0, 1)));
}

TEST(GraphModelData, ArraysShowTheStoreInPlace)
{
    GraphModel model(4, 8);
    const std::span<const float> x = model.xArray(2);
    const std::span<const float> y = model.yArray(2);
    ASSERT_EQ(x.size(), 8U);
    model.setPoint(2, 5, 1.5F, 2.5F);
    EXPECT_EQ(x[5], 1.5F);
    EXPECT_EQ(y[5], 2.5F);
    EXPECT_TRUE(model.xArray(-1).empty());
    EXPECT_TRUE(model.yArray(4).empty());
}

TEST(GraphModelData, BulkWritesAddressTheFlatStore)
{
    GraphModel model(3, 4);
    const std::array<float, 5> values{1, 2, 3, 4, 5};
    ASSERT_TRUE(model.PEvsetEx(GraphModel::PEP_faYDATA, 1 * 4 + 2, 5, values.data()));
    EXPECT_EQ(model.YData(1, 1), graph::kNullValue);
    EXPECT_EQ(model.YData(1, 2), 1.0F);
    EXPECT_EQ(model.YData(1, 3), 2.0F);
    EXPECT_EQ(model.YData(2, 0), 3.0F);
    EXPECT_EQ(model.YData(2, 2), 5.0F);
    EXPECT_EQ(model.YData(2, 3), graph::kNullValue);
    EXPECT_EQ(model.takeDirtySubsets(), 0b110U);
    std::array<float, 5> back{};
    ASSERT_TRUE(model.PEvgetEx(GraphModel::PEP_faYDATA, 6, 5, back.data()));
    EXPECT_EQ(back, values);
    ASSERT_TRUE(model.PEvsetEx(GraphModel::PEP_faXDATA, 0, 1, values.data()));
    EXPECT_EQ(model.XData(0, 0), 1.0F);
}

TEST(GraphModelData, BulkWritesThatDoNotFitAreRefusedWhole)
{
    GraphModel model(3, 4);
    const std::array<float, 13> values{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    constexpr int kMax = std::numeric_limits<int>::max();
    EXPECT_FALSE(model.PEvsetEx(GraphModel::PEP_faYDATA, 0, 13, values.data()));
    EXPECT_FALSE(model.PEvsetEx(GraphModel::PEP_faYDATA, 11, 2, values.data()));
    EXPECT_FALSE(model.PEvsetEx(GraphModel::PEP_faYDATA, -1, 2, values.data()));
    EXPECT_FALSE(model.PEvsetEx(GraphModel::PEP_faYDATA, 0, -1, values.data()));
    EXPECT_FALSE(model.PEvsetEx(GraphModel::PEP_faYDATA, kMax, kMax, values.data()));
    EXPECT_FALSE(model.PEvsetEx(3, 0, 1, values.data()));
    EXPECT_FALSE(model.PEvsetEx(GraphModel::PEP_faYDATA, 0, 1, nullptr));
    EXPECT_TRUE(model.PEvsetEx(GraphModel::PEP_faYDATA, 12, 0, nullptr));
    float target = 0;
    EXPECT_FALSE(model.PEvgetEx(GraphModel::PEP_faYDATA, 12, 1, &target));
    EXPECT_EQ(model.takeDirtySubsets(), 0U);
    EXPECT_EQ(model.YData(2, 3), graph::kNullValue);
}

TEST(GraphModelData, PointsRaiseNoSignalButMarkTheirSubset)
{
    GraphModel model;
    QSignalSpy rebuilt(&model, &GraphModel::reinitialised);
    QSignalSpy redrawn(&model, &GraphModel::redrawWanted);
    const std::uint64_t before = model.dataRevision(39);
    model.setPoint(39, 0, 1, 1);
    model.setXData(0, 0, 1);
    EXPECT_EQ(rebuilt.count() + redrawn.count(), 0);
    EXPECT_GT(model.dataRevision(39), before);
    EXPECT_EQ(model.dataRevision(38), 0U);
    EXPECT_EQ(model.dataRevision(40), 0U);
    EXPECT_EQ(model.takeDirtySubsets(), (std::uint64_t{1} << 39) | 1U);
    EXPECT_EQ(model.takeDirtySubsets(), 0U);
}

TEST(GraphModelData, SubsetPropertiesBelongToTheirSubset)
{
    GraphModel model;
    EXPECT_TRUE(model.setSubsetLabels(3, QStringLiteral("Pen 4")));
    EXPECT_TRUE(model.setSubsetColors(3, 0xFF123456));
    EXPECT_TRUE(model.setSubsetLineTypes(3, graph::LinePointsJoined));
    EXPECT_TRUE(model.setSubsetsToShow(3, false));
    EXPECT_EQ(model.SubsetLabels(3), QStringLiteral("Pen 4"));
    EXPECT_EQ(model.SubsetColors(3), 0x123456U);
    EXPECT_EQ(model.SubsetLineTypes(3), 5);
    EXPECT_FALSE(model.SubsetsToShow(3));
    EXPECT_TRUE(model.SubsetLabels(2).isEmpty());
    EXPECT_EQ(model.SubsetColors(4), 0U);
    EXPECT_TRUE(model.SubsetsToShow(4));
    for (const int outside : {-1, 40}) {
        EXPECT_FALSE(model.setSubsetLabels(outside, QStringLiteral("no")));
        EXPECT_FALSE(model.setSubsetColors(outside, 1));
        EXPECT_FALSE(model.setSubsetLineTypes(outside, 1));
        EXPECT_FALSE(model.setSubsetsToShow(outside, true));
        EXPECT_TRUE(model.SubsetLabels(outside).isEmpty());
        EXPECT_EQ(model.SubsetColors(outside), 0U);
        EXPECT_EQ(model.SubsetLineTypes(outside), 0);
        EXPECT_FALSE(model.SubsetsToShow(outside));
    }
}

TEST(GraphModelData, TheListOfSubsetsToGraphGrowsWithEntriesThatNameNone)
{
    GraphModel model;
    EXPECT_EQ(model.RandomSubsetsToGraph(0), 0);
    EXPECT_TRUE(model.setRandomSubsetsToGraph(2, 30));
    EXPECT_EQ(model.RandomSubsetsToGraph(0), -1);
    EXPECT_EQ(model.RandomSubsetsToGraph(2), 30);
    EXPECT_EQ(model.RandomSubsetsToGraph(3), 0);
    EXPECT_FALSE(model.setRandomSubsetsToGraph(-1, 0));
    EXPECT_FALSE(model.setRandomSubsetsToGraph(40, 0));
    EXPECT_FALSE(model.setRandomSubsetsToGraph(0, 40));
    EXPECT_EQ(model.RandomSubsetsToGraph(-1), 0);
    EXPECT_EQ(model.RandomSubsetsToGraph(40), 0);
}
