// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/AxisTicks.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

const QString kPrefixes = QStringLiteral("p n u m k M G T ");

QStringList labels(const graph::AxisTicks& ticks)
{
    return QStringList(ticks.labels.begin(), ticks.labels.end());
}

graph::TickStyle style(int wanted, const QString& prefixes = kPrefixes, bool degrees = false)
{
    return {.prefixes = prefixes, .degrees = degrees, .wanted = wanted};
}

} // namespace

TEST(AxisTicks, StepsAreOneTwoOrFiveTimesAPowerOfTen)
{
    EXPECT_DOUBLE_EQ(graph::niceStep(0.9), 1);
    EXPECT_DOUBLE_EQ(graph::niceStep(1), 1);
    EXPECT_DOUBLE_EQ(graph::niceStep(1.1), 2);
    EXPECT_DOUBLE_EQ(graph::niceStep(2.5), 5);
    EXPECT_DOUBLE_EQ(graph::niceStep(5.1), 10);
    EXPECT_DOUBLE_EQ(graph::niceStep(3e-7), 5e-7);
    EXPECT_DOUBLE_EQ(graph::niceStep(40, true), 45);
    EXPECT_DOUBLE_EQ(graph::niceStep(60, true), 90);
    EXPECT_DOUBLE_EQ(graph::niceStep(0), 1);
}

TEST(AxisTicks, LinearLabelsShareTheirPrefixAndDecimals)
{
    EXPECT_EQ(labels(graph::linearTicks({0, 1.2e6}, style(6))),
              (QStringList{QStringLiteral("0"), QStringLiteral("0.2M"), QStringLiteral("0.4M"), QStringLiteral("0.6M"),
                           QStringLiteral("0.8M"), QStringLiteral("1.0M"), QStringLiteral("1.2M")}));
    EXPECT_EQ(labels(graph::linearTicks({39600, 40400}, style(4))),
              (QStringList{QStringLiteral("39.6k"), QStringLiteral("39.8k"), QStringLiteral("40.0k"),
                           QStringLiteral("40.2k"), QStringLiteral("40.4k")}));
    EXPECT_EQ(labels(graph::linearTicks({-0.004, 0.004}, style(4))),
              (QStringList{QStringLiteral("\u22124m"), QStringLiteral("\u22122m"), QStringLiteral("0"),
                           QStringLiteral("2m"), QStringLiteral("4m")}));
    EXPECT_EQ(labels(graph::linearTicks({0, 4e-6}, style(4))).last(), QStringLiteral("4\u00B5"));
}

TEST(AxisTicks, WithoutPrefixesNumbersAreWrittenOut)
{
    EXPECT_EQ(labels(graph::linearTicks({-90, 10}, style(5, QString()))),
              (QStringList{QStringLiteral("\u221280"), QStringLiteral("\u221260"), QStringLiteral("\u221240"),
                           QStringLiteral("\u221220"), QStringLiteral("0")}));
    EXPECT_EQ(labels(graph::linearTicks({0, 50000}, style(5, QString()))).last(), QStringLiteral("50000"));
}

TEST(AxisTicks, DegreesAreDividedLikeACircle)
{
    EXPECT_EQ(labels(graph::linearTicks({-180, 180}, style(8, QString(), true))),
              (QStringList{QStringLiteral("\u2212180"), QStringLiteral("\u2212135"), QStringLiteral("\u221290"),
                           QStringLiteral("\u221245"), QStringLiteral("0"), QStringLiteral("45"), QStringLiteral("90"),
                           QStringLiteral("135"), QStringLiteral("180")}));
}

TEST(AxisTicks, ManyDecadesAreLabelledOnce)
{
    graph::TickStyle wide = style(10);
    wide.length = 1300;
    const graph::AxisTicks ticks = graph::logarithmicTicks({10, 5e7}, wide);
    EXPECT_EQ(labels(ticks),
              (QStringList{QStringLiteral("10"), QStringLiteral("100"), QStringLiteral("1k"), QStringLiteral("10k"),
                           QStringLiteral("100k"), QStringLiteral("1M"), QStringLiteral("10M")}));
    EXPECT_EQ(ticks.minor.size(), 6U * 8U + 4U);
    EXPECT_EQ(std::count(ticks.minor.begin(), ticks.minor.end(), 2e7), 1);
}

TEST(AxisTicks, MinorTicksTooCloseToEachOtherAreThinnedOut)
{
    graph::TickStyle narrow = style(8);
    narrow.length = 8 * 87;
    const graph::AxisTicks ticks = graph::logarithmicTicks({0.01, 1e6}, narrow);
    EXPECT_EQ(ticks.minor.size(), 8U * 3U);
    narrow.length = 8 * 180;
    EXPECT_EQ(graph::logarithmicTicks({0.01, 1e6}, narrow).minor.size(), 8U * 8U);
}

TEST(AxisTicks, FewDecadesAreLabelledAtOneTwoAndFive)
{
    EXPECT_EQ(labels(graph::logarithmicTicks({1e4, 1e6}, style(8))),
              (QStringList{QStringLiteral("10k"), QStringLiteral("20k"), QStringLiteral("50k"), QStringLiteral("100k"),
                           QStringLiteral("200k"), QStringLiteral("500k"), QStringLiteral("1M")}));
}

TEST(AxisTicks, WithinADecadeStepsAreLinear)
{
    const graph::AxisTicks ticks = graph::logarithmicTicks({39000, 41000}, style(4));
    EXPECT_EQ(labels(ticks), (QStringList{QStringLiteral("39.0k"), QStringLiteral("39.5k"), QStringLiteral("40.0k"),
                                          QStringLiteral("40.5k"), QStringLiteral("41.0k")}));
}

TEST(AxisTicks, TicksLieWithinTheRangeInOrder)
{
    for (const double lower : {1e-9, 0.013, 1.0, 37.0, 8.2e5}) {
        for (const double factor : {1.0001, 1.3, 4.0, 90.0, 2e4, 1e12}) {
            const graph::Range range{lower, lower * factor};
            for (const graph::AxisTicks& ticks :
                 {graph::logarithmicTicks(range, style(7)), graph::linearTicks(range, style(7))}) {
                ASSERT_EQ(ticks.major.size(), ticks.labels.size());
                EXPECT_FALSE(ticks.major.empty()) << lower << " x " << factor;
                EXPECT_LE(ticks.major.size(), 24U);
                for (const std::vector<double>& list : {ticks.major, ticks.minor}) {
                    EXPECT_TRUE(std::is_sorted(list.begin(), list.end()));
                    for (const double tick : list) {
                        EXPECT_GE(tick, range.lower - (range.upper - range.lower) * 1e-6);
                        EXPECT_LE(tick, range.upper + (range.upper - range.lower) * 1e-6);
                    }
                }
            }
        }
    }
}

TEST(AxisTicks, RangesThatAreNoneHaveNoTicks)
{
    EXPECT_TRUE(graph::linearTicks({1, 1}, style(5)).major.empty());
    EXPECT_TRUE(graph::linearTicks({2, 1}, style(5)).major.empty());
    EXPECT_TRUE(graph::linearTicks({0, std::numeric_limits<double>::infinity()}, style(5)).major.empty());
    EXPECT_TRUE(graph::logarithmicTicks({0, 10}, style(5)).major.empty());
    EXPECT_TRUE(graph::logarithmicTicks({-1, 10}, style(5)).major.empty());
}

TEST(AxisTicks, TheUnitStandsBehindTheLastDash)
{
    EXPECT_EQ(graph::unitOf(QStringLiteral("Frequency - Hz")), QStringLiteral("Hz"));
    EXPECT_EQ(graph::unitOf(QStringLiteral("A - B - Ohms ")), QStringLiteral("Ohms"));
    EXPECT_TRUE(graph::unitOf(QStringLiteral("X")).isEmpty());
    EXPECT_TRUE(graph::takesPrefix(QStringLiteral("Siemens")));
    EXPECT_FALSE(graph::takesPrefix(QStringLiteral("dB")));
    EXPECT_FALSE(graph::takesPrefix(QStringLiteral("Degrees")));
}
