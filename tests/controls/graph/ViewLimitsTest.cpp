// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ViewLimits.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

const graph::ViewLimits kFull{{3, 6}, {0, 3}, graph::Range{-180, 180}};

void expectNear(const graph::Range& range, double lower, double upper)
{
    EXPECT_NEAR(range.lower, lower, 1e-9);
    EXPECT_NEAR(range.upper, upper, 1e-9);
}

/// One pen of an impedance graph, both scales logarithmic, with its phase.
class Fit : public ::testing::Test
{
protected:
    Fit()
    {
        model.setXAxisScaleControl(graph::ScaleLogarithmic);
        model.setManualScaleControlX(graph::ScaleManual);
        model.setManualMinX(10);
        model.setManualMaxX(1e6);
        model.setYAxisLabel(QStringLiteral("Modulus of Impedance - Ohms"));
        model.setYAxisScaleControl(graph::ScaleLogarithmic);
        model.setManualScaleControlY(graph::ScaleManual);
        model.setManualMinY(1);
        model.setManualMaxY(1e6);
        model.setWorkingAxis(1);
        model.setYAxisLabel(QStringLiteral("X"));
        model.setWorkingAxis(2);
        model.setYAxisLabel(QStringLiteral("X"));
        model.setWorkingAxis(3);
        model.setYAxisLabel(QStringLiteral("Phase - Degrees"));
        model.setManualScaleControlY(graph::ScaleManual);
        model.setManualMinY(-180);
        model.setManualMaxY(180);
        model.setWorkingAxis(0);
        draw({0, 30});
        setPoint(0, 1e3F, 10, -90);
        setPoint(1, 1e4F, 1000, 0);
        setPoint(2, 1e5F, 100, 60);
    }

    void draw(std::initializer_list<int> subsets)
    {
        int place = 0;
        for (const int subset : subsets)
            model.setRandomSubsetsToGraph(place++, subset);
        model.setRandomSubsetsToGraph(place, -1);
        model.PEactions(graph::Redraw);
    }

    void setPoint(int point, float x, float modulus, float phase)
    {
        model.setPoint(0, point, x, modulus);
        model.setPoint(30, point, x, phase);
    }

    GraphModel model;
};

} // namespace

TEST(ViewLimits, AMagnifiedViewKeepsThePointUnderThePointer)
{
    const graph::ViewLimits view = graph::magnified(kFull, {0.25, 0.5}, 2, graph::AxisAll, kFull);
    expectNear(view.x, 3.375, 4.875);
    EXPECT_NEAR(view.x.lower + 0.25 * (view.x.upper - view.x.lower), 3.75, 1e-9);
    expectNear(view.left, 0.75, 2.25);
    expectNear(*view.right, -90, 90);
}

TEST(ViewLimits, OnlyTheAxesAskedForAreMagnified)
{
    const graph::ViewLimits x = graph::magnified(kFull, {0.5, 0.5}, 2, graph::AxisX, kFull);
    expectNear(x.x, 3.75, 5.25);
    EXPECT_EQ(x.left, kFull.left);
    EXPECT_EQ(x.right, kFull.right);
    const graph::ViewLimits y = graph::magnified(kFull, {0.5, 0.5}, 2, graph::AxisLeft | graph::AxisRight, kFull);
    EXPECT_EQ(y.x, kFull.x);
    expectNear(y.left, 0.75, 2.25);
    expectNear(*y.right, -90, 90);
}

TEST(ViewLimits, AReducedViewEndsAtTheFullExtent)
{
    const graph::ViewLimits near{{4, 5}, {1, 2}, graph::Range{0, 45}};
    EXPECT_EQ(graph::magnified(near, {0.5, 0.5}, 0.01, graph::AxisAll, kFull), kFull);
}

TEST(ViewLimits, AReducedViewStaysWithinTheFrequenciesOfTheFullOne)
{
    const graph::ViewLimits atEnd{{3, 4}, {0, 3}, std::nullopt};
    const graph::ViewLimits view = graph::magnified(atEnd, {1, 0.5}, 0.5, graph::AxisX, kFull);
    expectNear(view.x, 3, 5);
}

TEST(ViewLimits, NoAxisIsMagnifiedBeyondSinglePrecision)
{
    graph::ViewLimits view{{1e6, 1e6 + 4}, {0, 3}, std::nullopt};
    for (int i = 0; i < 100; ++i)
        view = graph::magnified(view, {0.5, 0.5}, 1.25, graph::AxisX, {{1e3, 1e7}, {0, 3}, std::nullopt});
    EXPECT_GT(view.x.upper - view.x.lower, 1);
}

TEST(ViewLimits, AMovedViewKeepsItsSpansAndStopsAtTheLastFrequency)
{
    const graph::ViewLimits near{{4, 5}, {1, 2}, graph::Range{0, 45}};
    const graph::ViewLimits view = graph::moved(near, {0.5, -0.5}, kFull);
    expectNear(view.x, 4.5, 5.5);
    expectNear(view.left, 0.5, 1.5);
    expectNear(*view.right, -22.5, 22.5);
    expectNear(graph::moved(near, {7, 0}, kFull).x, 5, 6);
    expectNear(graph::moved(near, {-7, 0}, kFull).x, 3, 4);
}

TEST(ViewLimits, ALimitOfAnAxisThatIsNotShownIsNotStored)
{
    const graph::ZoomLimits zoom = graph::ViewLimits{{4, 5}, {1, 2}, std::nullopt}.asZoom();
    EXPECT_EQ(zoom.ZoomMinRY, 0);
    EXPECT_EQ(zoom.ZoomMaxRY, 0);
    EXPECT_EQ(zoom.ZoomMinTX, 4);
    EXPECT_EQ(zoom.ZoomMaxTX, 5);
}

TEST_F(Fit, AllAxesShowAllOfTheDataAndLittleElse)
{
    const auto zoom = graph::fittedLimits(model, graph::AxisAll);
    ASSERT_TRUE(zoom);
    expectNear({zoom->ZoomMinX, zoom->ZoomMaxX}, 3, 5);
    expectNear({zoom->ZoomMinY, zoom->ZoomMaxY}, 0.92, 3.08);
    expectNear({zoom->ZoomMinRY, zoom->ZoomMaxRY}, -96, 66);
}

TEST_F(Fit, OneAxisLeavesTheOthersAsTheyAre)
{
    const auto zoom = graph::fittedLimits(model, graph::AxisX);
    ASSERT_TRUE(zoom);
    expectNear({zoom->ZoomMinX, zoom->ZoomMaxX}, 3, 5);
    expectNear({zoom->ZoomMinY, zoom->ZoomMaxY}, 0, 6);
    expectNear({zoom->ZoomMinRY, zoom->ZoomMaxRY}, -180, 180);
}

TEST_F(Fit, YAxesFollowThePointsBetweenTheLimitsOfX)
{
    model.userZoom(graph::ViewLimits{{2, 4.1}, {0, 6}, graph::Range{-180, 180}}.asZoom());
    const auto zoom = graph::fittedLimits(model, graph::AxisLeft | graph::AxisRight);
    ASSERT_TRUE(zoom);
    expectNear({zoom->ZoomMinX, zoom->ZoomMaxX}, 2, 4.1);
    expectNear({zoom->ZoomMinRY, zoom->ZoomMaxRY}, -93.6, 3.6);
}

TEST_F(Fit, HiddenPensAndUnmeasuredPhasesDoNotCount)
{
    model.setPoint(1, 0, 50, 1e5F);
    setPoint(3, 2e4F, 100, 65536);
    const auto zoom = graph::fittedLimits(model, graph::AxisAll);
    ASSERT_TRUE(zoom);
    expectNear({zoom->ZoomMinX, zoom->ZoomMaxX}, 3, 5);
    expectNear({zoom->ZoomMinRY, zoom->ZoomMaxRY}, -96, 66);
}

TEST_F(Fit, OneValueHasRoomAboutIt)
{
    model.userZoom(graph::ViewLimits{{3.9, 4.1}, {0, 6}, graph::Range{-180, 180}}.asZoom());
    const auto zoom = graph::fittedLimits(model, graph::AxisLeft | graph::AxisRight);
    ASSERT_TRUE(zoom);
    expectNear({zoom->ZoomMinY, zoom->ZoomMaxY}, 2.5, 3.5);
    expectNear({zoom->ZoomMinRY, zoom->ZoomMaxRY}, -1, 1);
}

TEST_F(Fit, AnEmptyGraphHasNothingToFit)
{
    draw({5});
    EXPECT_FALSE(graph::fittedLimits(model, graph::AxisAll));
}
