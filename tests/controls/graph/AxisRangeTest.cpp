// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/AxisRange.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

graph::ShownRanges rangesOf(const GraphModel& model)
{
    const graph::Properties& properties = model.properties();
    const std::vector<int> drawn = graph::drawnSubsets(properties, model.Subsets());
    std::vector<graph::Extent> extents(static_cast<std::size_t>(model.Subsets()));
    for (const int subset : drawn)
        extents[static_cast<std::size_t>(subset)] =
            graph::extentOf(model, subset, graph::PointFilter(properties, subset));
    return graph::shownRanges(properties, drawn, extents);
}

} // namespace

TEST(AxisRange, SubsetsBelongToTheAxisOfTheirTen)
{
    EXPECT_EQ(graph::yAxisOf(0), 0);
    EXPECT_EQ(graph::yAxisOf(9), 0);
    EXPECT_EQ(graph::yAxisOf(10), 1);
    EXPECT_EQ(graph::yAxisOf(39), 3);
    EXPECT_EQ(graph::yAxisOf(63), 3);
    EXPECT_FALSE(graph::isRightAxis(1));
    EXPECT_TRUE(graph::isRightAxis(2));
}

TEST(AxisRange, AllSubsetsAreDrawnUntilAListNamesSome)
{
    GraphModel model(10, 4);
    EXPECT_EQ(graph::drawnSubsets(model.properties(), 10).size(), 10U);
    model.setSubsetsToShow(3, false);
    EXPECT_EQ(graph::drawnSubsets(model.properties(), 10).size(), 9U);
    model.setRandomSubsetsToGraph(0, -1);
    EXPECT_TRUE(graph::drawnSubsets(model.properties(), 10).empty());
    model.setRandomSubsetsToGraph(1, 7);
    model.setRandomSubsetsToGraph(2, 3);
    model.setRandomSubsetsToGraph(3, 7);
    EXPECT_EQ(graph::drawnSubsets(model.properties(), 10), std::vector<int>{7});
}

TEST(AxisRange, SubsetsOfAnAxisSwitchedOffAreNotDrawn)
{
    GraphModel model;
    model.setYAxisLabel(QStringLiteral("Amplitude Gain - dB"));
    model.setRandomSubsetsToGraph(0, 0);
    model.setRandomSubsetsToGraph(1, 10);
    model.setRandomSubsetsToGraph(2, 20);
    EXPECT_EQ(graph::drawnSubsets(model.properties(), 40), std::vector<int>{0});
    model.setWorkingAxis(2);
    model.setYAxisLabel(QStringLiteral("Phase - Degrees"));
    const std::vector<int> drawn = graph::drawnSubsets(model.properties(), 40);
    EXPECT_EQ(drawn, (std::vector<int>{0, 20}));
    EXPECT_TRUE(graph::isAxisVisible(model.properties(), drawn, 2));
    EXPECT_FALSE(graph::isAxisVisible(model.properties(), {0}, 2));
    EXPECT_FALSE(graph::isAxisVisible(model.properties(), drawn, 3));
}

TEST(AxisRange, ManualLimitsHold)
{
    GraphModel model;
    model.setManualScaleControlX(graph::ScaleManual);
    model.setManualMinX(10);
    model.setManualMaxX(5e7);
    model.setXAxisScaleControl(graph::ScaleLogarithmic);
    EXPECT_EQ(rangesOf(model).x, (graph::Range{10, 5e7}));
}

TEST(AxisRange, ManualLimitsThatCannotBeGiveWayToTheData)
{
    GraphModel model;
    model.setPoint(0, 0, 100, 5);
    model.setPoint(0, 1, 9000, 50);
    model.setXAxisScaleControl(graph::ScaleLogarithmic);
    model.setManualScaleControlX(graph::ScaleManual);
    model.setManualMinX(0);
    model.setManualMaxX(1000);
    EXPECT_EQ(rangesOf(model).x, (graph::Range{100, 10000}));
    model.setManualMinX(2000);
    EXPECT_EQ(rangesOf(model).x, (graph::Range{100, 10000}));
}

TEST(AxisRange, AutomaticRangesRoundTheDataOutwards)
{
    GraphModel model;
    model.setPoint(0, 0, 30, -3.3F);
    model.setPoint(0, 1, 82, 7.9F);
    graph::ShownRanges ranges = rangesOf(model);
    EXPECT_EQ(ranges.x, (graph::Range{30, 90}));
    EXPECT_EQ(ranges.y[0], (graph::Range{-4, 8}));
    model.setYData(0, 0, 33);
    model.setYData(0, 1, 450);
    model.setYAxisScaleControl(graph::ScaleLogarithmic);
    ranges = rangesOf(model);
    EXPECT_DOUBLE_EQ(ranges.y[0].lower, 20);
    EXPECT_DOUBLE_EQ(ranges.y[0].upper, 500);
    model.setYData(0, 1, 3e5F);
    EXPECT_DOUBLE_EQ(rangesOf(model).y[0].lower, 10);
    EXPECT_DOUBLE_EQ(rangesOf(model).y[0].upper, 1e6);
}

TEST(AxisRange, ASingleValueStillHasARange)
{
    GraphModel model;
    model.setPoint(0, 0, 1000, 5);
    for (const int scale : {graph::ScaleLinear, graph::ScaleLogarithmic}) {
        model.setXAxisScaleControl(scale);
        const graph::ShownRanges ranges = rangesOf(model);
        EXPECT_LT(ranges.x.lower, 1000);
        EXPECT_GT(ranges.x.upper, 1000);
    }
}

TEST(AxisRange, WithoutDataTheManualLimitsServe)
{
    GraphModel model;
    model.setManualMinX(5);
    model.setManualMaxX(6);
    EXPECT_EQ(rangesOf(model).x, (graph::Range{5, 6}));
    model.setManualMaxX(5);
    EXPECT_EQ(rangesOf(model).x, (graph::Range{0, 1}));
}

TEST(AxisRange, ZoomLimitsAreExponentsOnLogarithmicAxes)
{
    GraphModel model;
    model.setXAxisScaleControl(graph::ScaleLogarithmic);
    model.setZoomLimits({.ZoomMinX = 3, .ZoomMaxX = 4, .ZoomMinY = 2, .ZoomMaxY = 7, .ZoomMinRY = -90, .ZoomMaxRY = 0});
    model.setZoomed(true);
    const graph::ShownRanges ranges = rangesOf(model);
    EXPECT_DOUBLE_EQ(ranges.x.lower, 1000);
    EXPECT_DOUBLE_EQ(ranges.x.upper, 10000);
    EXPECT_EQ(ranges.y[0], (graph::Range{2, 7}));
    EXPECT_EQ(ranges.y[1], (graph::Range{2, 7}));
    EXPECT_EQ(ranges.y[2], (graph::Range{-90, 0}));
    model.setZoomLimits({.ZoomMinX = 4, .ZoomMaxX = 3});
    EXPECT_NE(rangesOf(model).x, (graph::Range{1e4, 1e3}));
    EXPECT_LT(rangesOf(model).x.lower, rangesOf(model).x.upper);
}

TEST(AxisRange, ExtremeDataKeepsAUsableRange)
{
    GraphModel model;
    model.setPoint(0, 0, std::numeric_limits<float>::denorm_min(), std::numeric_limits<float>::lowest());
    model.setPoint(0, 1, std::numeric_limits<float>::max(), std::numeric_limits<float>::max());
    for (const int scale : {graph::ScaleLinear, graph::ScaleLogarithmic}) {
        model.setXAxisScaleControl(scale);
        model.setYAxisScaleControl(scale);
        const graph::ShownRanges ranges = rangesOf(model);
        EXPECT_LT(ranges.x.lower, ranges.x.upper);
        EXPECT_LT(ranges.y[0].lower, ranges.y[0].upper);
    }
}
