// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/PointerReadings.h"

#include "controls/graph/AxisRange.h"

#include <gtest/gtest.h>

namespace {

/// Two pens of an impedance graph with their phases; the second was measured at other frequencies.
class PointerReadings : public ::testing::Test
{
protected:
    PointerReadings()
    {
        model.setXAxisLabel(QStringLiteral("Frequency - Hz"));
        model.setXAxisScaleControl(graph::ScaleLogarithmic);
        model.setYAxisLabel(QStringLiteral("Modulus of Impedance - Ohms"));
        model.setYAxisScaleControl(graph::ScaleLogarithmic);
        model.setWorkingAxis(3);
        model.setYAxisLabel(QStringLiteral("Phase - Degrees"));
        model.setWorkingAxis(0);
        for (const int subset : {0, 1, 30, 31})
            model.setRandomSubsetsToGraph(place++, subset);
        model.setRandomSubsetsToGraph(place, -1);
        model.setSubsetLabels(0, QStringLiteral("First"));
        model.setSubsetLabels(1, QStringLiteral("Second"));
        setPoint(0, 0, 1e3F, 57440, -32.1F);
        setPoint(0, 1, 1e4F, 1000, 0);
        setPoint(1, 0, 2e3F, 5, 10);
        setPoint(1, 1, 3e3F, 6, 20);
        model.PEactions(graph::Redraw);
    }

    void setPoint(int pen, int point, float x, float modulus, float phase)
    {
        model.setPoint(pen, point, x, modulus);
        model.setPoint(pen + 30, point, x, phase);
    }

    std::optional<graph::PointerReadings> at(double x, double span = 4)
    {
        return graph::readingsAt(model, graph::drawnSubsets(model.shownProperties(), model.Subsets()), x, span);
    }

    GraphModel model;
    int place = 0;
};

} // namespace

TEST_F(PointerReadings, BothCurvesOfAPenAreReadWithPrefixAndUnit)
{
    const auto readings = at(1.001e3);
    ASSERT_TRUE(readings);
    EXPECT_EQ(readings->xText, QStringLiteral("1 kHz"));
    ASSERT_EQ(readings->pens.size(), 1U);
    EXPECT_EQ(readings->pens[0].name, QStringLiteral("First"));
    ASSERT_EQ(readings->pens[0].curves.size(), 2U);
    EXPECT_EQ(readings->pens[0].curves[0].text, QStringLiteral("57.44 kOhms"));
    EXPECT_EQ(readings->pens[0].curves[1].text, QStringLiteral("-32.1 Degrees"));
    EXPECT_EQ(readings->toText(), QStringLiteral("1 kHz\nFirst\t57.44 kOhms\t-32.1 Degrees"));
}

TEST_F(PointerReadings, APenMeasuredElsewhereSaysWhere)
{
    const auto readings = at(2.1e3);
    ASSERT_TRUE(readings);
    EXPECT_EQ(readings->xText, QStringLiteral("2 kHz"));
    ASSERT_EQ(readings->pens.size(), 2U);
    EXPECT_EQ(readings->pens[0].xText, QStringLiteral("1 kHz"));
    EXPECT_EQ(readings->pens[0].curves[0].point, 0);
    EXPECT_EQ(readings->pens[1].xText, QString());
    EXPECT_EQ(readings->pens[1].curves[0].text, QStringLiteral("5 Ohms"));
}

TEST_F(PointerReadings, NearestIsMeasuredOnTheAxisAsItIsScaled)
{
    // Halfway on the paper between 1 kHz and 10 kHz is 3.162 kHz, not 5.5.
    const auto readings = at(4e3);
    ASSERT_TRUE(readings);
    EXPECT_EQ(readings->pens[0].curves[0].point, 1);
    model.setXAxisScaleControl(graph::ScaleLinear);
    model.PEactions(graph::Redraw);
    EXPECT_EQ(at(4e3, 1e4)->pens[0].curves[0].point, 0);
}

TEST_F(PointerReadings, ACurveThatEndsFarFromThePointerIsLeftOut)
{
    const auto readings = at(8e3);
    ASSERT_TRUE(readings);
    ASSERT_EQ(readings->pens.size(), 1U);
    EXPECT_EQ(readings->pens[0].name, QStringLiteral("First"));
    EXPECT_TRUE(at(1.05e4));
    EXPECT_FALSE(at(2e4));
    EXPECT_FALSE(at(0));
}

TEST_F(PointerReadings, WhatIsNotDrawnIsNotRead)
{
    model.setPoint(30, 0, 1e3F, 65536); // no phase was measured
    model.setSubsetsToShow(1, false);
    model.setSubsetsToShow(31, false);
    model.PEactions(graph::Redraw);
    const auto readings = at(2.1e3);
    ASSERT_TRUE(readings);
    ASSERT_EQ(readings->pens.size(), 1U);
    EXPECT_EQ(readings->pens[0].curves[0].text, QStringLiteral("57.44 kOhms"));
}
