// SPDX-License-Identifier: GPL-3.0-or-later
#include "mask/MaskTest.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <random>

using mask::kLower;
using mask::kNone;
using mask::kUpper;

namespace {

class MaskTestTest : public ::testing::Test
{
protected:
    struct Point
    {
        double x, y;
    };
    void set(int pen, const std::vector<Point>& points)
    {
        for (std::size_t i = 0; i < points.size(); ++i)
            graph.setPoint(pen, static_cast<int>(i), static_cast<float>(points[i].x), static_cast<float>(points[i].y));
    }
    void scales(int x, int y)
    {
        graph.setXAxisScaleControl(x);
        graph.setWorkingAxis(0);
        graph.setYAxisScaleControl(y);
    }
    double limit(double x, int pen = kUpper) { return MaskTest(graph).maskLimitAt(x, pen); }
    bool inside(double x, double y) { return MaskTest(graph).maskPointInside(x, y); }
    bool penInside(int pen = 0) { return MaskTest(graph).maskPenInside(pen, hasData); }

    GraphModel graph;
    bool hasData = false;
};

constexpr int kLin = graph::ScaleLinear, kLog = graph::ScaleLogarithmic;

// Order ---------------------------------------------------------------------------------------------------------------

TEST_F(MaskTestTest, FrequenciesMustAscendFromAboveZero)
{
    const auto ordered = [this](const std::vector<Point>& points) {
        for (int i = 0; i < mask::kPoints; ++i)
            graph.setPoint(kUpper, i, 0, graph::kNullValue);
        set(kUpper, points);
        return MaskTest(graph).maskCheckOrder(kUpper);
    };
    EXPECT_TRUE(ordered({}));
    EXPECT_TRUE(ordered({{1, 5}, {2, 5}, {3, 5}}));
    EXPECT_FALSE(ordered({{1, 5}, {1, 6}})) << "equal frequencies";
    EXPECT_FALSE(ordered({{2, 5}, {1, 5}}));
    EXPECT_FALSE(ordered({{0, 5}, {1, 5}}));
    EXPECT_FALSE(ordered({{-1, 5}, {1, 5}}));
    EXPECT_TRUE(ordered({{5, kNone}, {1, 5}, {0, kNone}, {2, 5}})) << "unset points are passed over";
}

TEST_F(MaskTestTest, BothLinesMustBeInOrder)
{
    EXPECT_TRUE(MaskTest(graph).maskCheckBothOrders()) << "without a point";
    set(kUpper, {{2, 5}, {1, 5}});
    EXPECT_FALSE(MaskTest(graph).maskCheckBothOrders());
    set(kUpper, {{1, 5}, {2, 5}});
    EXPECT_TRUE(MaskTest(graph).maskCheckBothOrders());
    set(kLower, {{2, 5}, {2, 5}});
    EXPECT_FALSE(MaskTest(graph).maskCheckBothOrders());
}

TEST_F(MaskTestTest, AllTwentyFourPointsCountAndNoMore)
{
    std::vector<Point> points;
    for (int i = 1; i <= 24; ++i)
        points.push_back({100.0 * i, 5});
    set(kUpper, points);
    EXPECT_TRUE(MaskTest(graph).maskCheckOrder(kUpper));
    EXPECT_EQ(limit(2350), 5);
    EXPECT_EQ(limit(2400), 5);
    EXPECT_EQ(limit(2401), kNone);
    graph.setPoint(kUpper, 24, 1, 5);
    EXPECT_TRUE(MaskTest(graph).maskCheckOrder(kUpper)) << "what lies behind is no point of the mask";
    graph.setPoint(kUpper, 23, 1, 5);
    EXPECT_FALSE(MaskTest(graph).maskCheckOrder(kUpper));
}

// Limits --------------------------------------------------------------------------------------------------------------

TEST_F(MaskTestTest, LimitIsTheStraightLineOnTheAxesThatAreShown)
{
    set(kUpper, {{100, 10}, {10000, 1000}});
    const double quarter = 1.0 / 11;
    scales(kLin, kLin);
    EXPECT_DOUBLE_EQ(limit(1000), 10 + 990 * quarter);
    scales(kLog, kLin);
    EXPECT_DOUBLE_EQ(limit(1000), 505) << "half way between two decades";
    scales(kLin, kLog);
    EXPECT_NEAR(limit(1000), 10 * std::pow(100.0, quarter), 1e-9);
    scales(kLog, kLog);
    EXPECT_DOUBLE_EQ(limit(1000), 100);
}

TEST_F(MaskTestTest, TheScaleOfTheMainAxisCountsWhicheverIsSelected)
{
    set(kUpper, {{100, 10}, {10000, 1000}});
    scales(kLog, kLog);
    graph.setWorkingAxis(2);
    graph.setYAxisScaleControl(kLin);
    EXPECT_DOUBLE_EQ(limit(1000), 100);
    EXPECT_EQ(graph.WorkingAxis(), 2) << "and stays selected";
    scales(kLog, kLin);
    graph.setWorkingAxis(2);
    graph.setYAxisScaleControl(kLog);
    EXPECT_DOUBLE_EQ(limit(1000), 505);
}

TEST_F(MaskTestTest, TheSamePointPassesOnOneAxisAndFailsOnTheOther)
{
    set(kUpper, {{100, 10}, {10000, 1000}});
    scales(kLog, kLin);
    EXPECT_TRUE(inside(1000, 400));
    scales(kLog, kLog);
    EXPECT_FALSE(inside(1000, 400));
}

TEST_F(MaskTestTest, NothingIsLimitedOutsideTheFirstAndTheLastPoint)
{
    for (const int scale : {kLin, kLog}) {
        scales(scale, scale);
        set(kUpper, {{100, 10}, {200, 20}});
        set(kLower, {{100, 5}, {200, 5}});
        EXPECT_EQ(limit(99.9), kNone);
        EXPECT_EQ(limit(200.1), kNone);
        EXPECT_TRUE(inside(99, 1e6));
        EXPECT_TRUE(inside(201, -1e6));
    }
}

TEST_F(MaskTestTest, AtAMaskPointItsOwnValueIsTakenAlsoWhenItIsUnset)
{
    set(kUpper, {{100, 10}, {200, kNone}, {300, 30}});
    EXPECT_EQ(limit(100), 10);
    EXPECT_EQ(limit(200), kNone);
    EXPECT_EQ(limit(300), 30);
}

TEST_F(MaskTestTest, AnUnsetPointLeavesAGapOnBothOfItsSides)
{
    for (const double at : {0.0, 250.0}) {
        set(kUpper, {{100, 10}, {200, 20}, {at, kNone}, {300, 30}, {400, 40}});
        EXPECT_EQ(limit(150), 15) << at;
        EXPECT_EQ(limit(200), 20) << at;
        EXPECT_EQ(limit(220), kNone) << at;
        EXPECT_EQ(limit(280), kNone) << at;
        EXPECT_EQ(limit(300), 30) << at;
        EXPECT_EQ(limit(350), 35) << at;
    }
}

TEST_F(MaskTestTest, UnsetPointsInFrontOfTheFirstLimitNothing)
{
    set(kUpper, {{0, kNone}, {50, kNone}, {100, 10}, {200, 20}});
    EXPECT_EQ(limit(25), kNone);
    EXPECT_EQ(limit(75), kNone);
    EXPECT_EQ(limit(100), 10);
    EXPECT_EQ(limit(150), 15);
}

TEST_F(MaskTestTest, AValueThatCannotBeWorkedOutIsNoLimit)
{
    scales(kLog, kLin);
    set(kUpper, {{-100, 10}, {100, 20}});
    EXPECT_EQ(limit(50), kNone) << "logarithm of a negative frequency";
    set(kUpper, {{0, 10}, {100, 20}});
    EXPECT_EQ(limit(50), kNone) << "logarithm of 0";
    scales(kLin, kLin);
    EXPECT_EQ(limit(50), 15);
    scales(kLin, kLog);
    set(kUpper, {{10, -5}, {100, 20}});
    EXPECT_EQ(limit(50), kNone) << "root of a negative limit";
    set(kUpper, {{10, 0}, {100, 20}});
    EXPECT_EQ(limit(50), 0) << "0 is a limit there";
    scales(kLin, kLin);
    EXPECT_EQ(limit(std::numeric_limits<double>::quiet_NaN()), kNone);
}

TEST_F(MaskTestTest, AnIndexOfMinusOneIsNeverReadAsAPoint)
{
    set(kUpper, {{100, 10}});
    set(kUpper - 1, std::vector<Point>(1024, {50, 5})); // what lies before it in the store
    EXPECT_EQ(limit(75), kNone);
    EXPECT_EQ(limit(100), 10);
}

TEST_F(MaskTestTest, DataBehindTheTwentyFourthPointIsNoMask)
{
    std::vector<Point> points;
    for (int i = 1; i <= 40; ++i)
        points.push_back({100.0 * i, 5});
    set(kUpper, points);
    for (const int scale : {kLin, kLog}) {
        scales(scale, kLin);
        EXPECT_EQ(limit(2450), kNone);
    }
}

// Points and pens -----------------------------------------------------------------------------------------------------

TEST_F(MaskTestTest, APointOnALimitIsInside)
{
    set(kUpper, {{100, 10}, {200, 10}});
    set(kLower, {{100, 5}, {200, 5}});
    for (const double x : {100.0, 150.0, 200.0}) {
        EXPECT_TRUE(inside(x, 10)) << x;
        EXPECT_TRUE(inside(x, 5)) << x;
        EXPECT_TRUE(inside(x, 7)) << x;
        EXPECT_FALSE(inside(x, std::nextafter(10.0, 11.0))) << x;
        EXPECT_FALSE(inside(x, std::nextafter(5.0, 4.0))) << x;
    }
}

TEST_F(MaskTestTest, EitherLineMayBeAbsent)
{
    EXPECT_TRUE(inside(150, 1e9)) << "no mask at all";
    set(kUpper, {{100, 10}, {200, 10}});
    EXPECT_TRUE(inside(150, -1e9));
    EXPECT_FALSE(inside(150, 11));
    EXPECT_EQ(limit(150, kLower), kNone);
    set(kUpper, {{0, kNone}, {0, kNone}});
    set(kLower, {{100, 5}, {200, 5}});
    EXPECT_TRUE(inside(150, 1e9));
    EXPECT_FALSE(inside(150, 4));
}

TEST_F(MaskTestTest, ThePenEndsAtItsFirstUnsetPoint)
{
    set(kUpper, {{100, 10}, {200, 10}});
    set(0, {{110, 9}, {120, 9}, {130, kNone}, {140, 11}});
    EXPECT_TRUE(penInside());
    EXPECT_TRUE(hasData);
    set(0, {{110, 9}, {120, 11}});
    EXPECT_FALSE(penInside());
    EXPECT_TRUE(hasData);
    set(0, {{110, kNone}});
    EXPECT_TRUE(penInside());
    EXPECT_FALSE(hasData);
}

TEST_F(MaskTestTest, AFullPenIsWalkedToItsEnd)
{
    set(kUpper, {{1, 10}, {2000, 10}});
    set(0, std::vector<Point>(1024, {500, 9}));
    EXPECT_TRUE(penInside());
    graph.setPoint(0, 1023, 500, 11);
    EXPECT_FALSE(penInside());
    EXPECT_EQ(MaskTest(graph).worstPoint(0)->point, 1023);
}

TEST_F(MaskTestTest, WhatIsNoPenHoldsNoData)
{
    set(10, {{100, 10}});
    for (const int pen : {-1, 10, 40, 100000}) {
        EXPECT_TRUE(penInside(pen));
        EXPECT_FALSE(hasData);
        EXPECT_FALSE(MaskTest(graph).worstPoint(pen));
    }
}

// Worst point ---------------------------------------------------------------------------------------------------------

TEST_F(MaskTestTest, TheWorstPointIsTheOneNearestToALine)
{
    set(kUpper, {{100, 10}, {200, 10}});
    set(kLower, {{100, 4}, {200, 4}});
    set(0, {{50, 99}, {110, 8}, {120, 4.5}, {130, 9}});
    EXPECT_EQ(MaskTest(graph).worstPoint(0), (WorstMaskPoint{2, 120, 4.5, 4, 0.5, kLower}));
    graph.setPoint(0, 3, 130, 9.75);
    EXPECT_EQ(MaskTest(graph).worstPoint(0), (WorstMaskPoint{3, 130, 9.75, 10, 0.25, kUpper}));
}

TEST_F(MaskTestTest, TheWorstPointLooksBeyondTheFirstFailure)
{
    set(kUpper, {{100, 10}, {200, 10}});
    set(0, {{110, 11}, {120, 15}, {130, 12}, {140, kNone}, {150, 99}});
    EXPECT_FALSE(penInside());
    EXPECT_EQ(MaskTest(graph).worstPoint(0), (WorstMaskPoint{1, 120, 15, 10, -5, kUpper}));
}

TEST_F(MaskTestTest, WithoutALimitThereIsNoWorstPoint)
{
    set(kUpper, {{100, 10}, {200, 10}});
    set(0, {{50, 11}, {300, 15}});
    EXPECT_FALSE(MaskTest(graph).worstPoint(0));
    EXPECT_FALSE(MaskTest(graph).worstPoint(1)) << "no data";
}

// Against another evaluation ------------------------------------------------------------------------------------------

/// One line as a list of pieces: spans of frequency over which it is straight in the coordinates of the axes, and the
/// points themselves.
class Pieces
{
public:
    Pieces(const std::vector<std::pair<float, float>>& points, bool logX, bool logY)
        : m_logX(logX)
        , m_logY(logY)
    {
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (points[i].second == graph::kNullValue)
                continue;
            m_points[points[i].first] = points[i].second;
            if (i > 0 && points[i - 1].second != graph::kNullValue)
                m_spans.push_back({points[i - 1], points[i]});
        }
    }
    std::optional<double> at(float x) const
    {
        if (const auto point = m_points.find(x); point != m_points.end())
            return point->second;
        for (const auto& [from, to] : m_spans) {
            if (from.first < x && x < to.first) {
                const double part = (place(x) - place(from.first)) / (place(to.first) - place(from.first));
                return level(height(from.second) + part * (height(to.second) - height(from.second)));
            }
        }
        return std::nullopt;
    }

private:
    double place(float x) const { return m_logX ? std::log10(static_cast<double>(x)) : x; }
    double height(float y) const { return m_logY ? std::log10(static_cast<double>(y)) : y; }
    double level(double height) const { return m_logY ? std::pow(10.0, height) : height; }

    bool m_logX, m_logY;
    std::map<float, float> m_points;
    std::vector<std::pair<std::pair<float, float>, std::pair<float, float>>> m_spans;
};

TEST_F(MaskTestTest, TenThousandRandomMasksAreJudgedAsByAnIndependentEvaluation)
{
    std::mt19937 random(20240601);
    const auto number = [&random](float low, float high) {
        return std::uniform_real_distribution<float>(low, high)(random);
    };
    const auto chance = [&random](double of) { return std::bernoulli_distribution(of)(random); };
    int passed = 0, failed = 0, limited = 0, unlimited = 0, onALimit = 0;
    for (int round = 0; round < 10000; ++round) {
        const bool logX = chance(0.5), logY = chance(0.5);
        scales(logX ? kLog : kLin, logY ? kLog : kLin);
        std::map<int, Pieces> lines;
        std::vector<float> frequencies;
        for (const int pen : {kUpper, kLower}) {
            std::vector<std::pair<float, float>> points;
            float x = number(1, 50);
            const int count = std::uniform_int_distribution<int>(0, mask::kPoints)(random);
            for (int i = 0; i < mask::kPoints; ++i) {
                const bool isSet = i < count && !chance(0.2);
                x += number(1, 100);
                const float y = pen == kUpper ? number(50, 150) : number(5, 60);
                // An unset point keeps a frequency of its own or none.
                points.emplace_back(isSet || chance(0.5) ? x : 0.0F, isSet ? y : graph::kNullValue);
                graph.setPoint(pen, i, points.back().first, points.back().second);
                if (isSet)
                    frequencies.push_back(x);
            }
            lines.emplace(pen, Pieces(points, logX, logY));
        }
        bool expected = true;
        const int points = std::uniform_int_distribution<int>(1, 6)(random);
        for (int i = 0; i < points; ++i) {
            float x = number(1, 2000);
            if (chance(0.3) && !frequencies.empty())
                x = frequencies[std::uniform_int_distribution<std::size_t>(0, frequencies.size() - 1)(random)];
            float y = number(40, 80);
            const auto upper = lines.at(kUpper).at(x), lower = lines.at(kLower).at(x);
            if (upper && chance(0.2) && static_cast<double>(static_cast<float>(*upper)) == *upper) {
                y = static_cast<float>(*upper); // on the limit
                ++onALimit;
            }
            graph.setPoint(0, i, x, y);
            expected = expected && (!upper || y <= *upper) && (!lower || y >= *lower);
            for (const auto& [pen, mine] : {std::pair(kUpper, upper), std::pair(kLower, lower)}) {
                mine ? ++limited : ++unlimited;
                const double theirs = limit(x, pen);
                ASSERT_EQ(theirs != kNone, mine.has_value()) << "round " << round << ", " << x;
                ASSERT_NEAR(theirs, mine.value_or(kNone), 1e-9 * std::abs(theirs)) << "round " << round << ", " << x;
            }
        }
        graph.setPoint(0, points, 0, graph::kNullValue);
        ASSERT_EQ(penInside(), expected) << "round " << round;
        expected ? ++passed : ++failed;
    }
    // None of the kinds is rare.
    EXPECT_GT(passed, 1000);
    EXPECT_GT(failed, 1000);
    EXPECT_GT(limited, 1000);
    EXPECT_GT(unlimited, 1000);
    EXPECT_GT(onALimit, 100);
}

} // namespace
