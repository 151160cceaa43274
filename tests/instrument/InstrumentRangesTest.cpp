// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/InstrumentRanges.h"

#include "instrument/InstrumentMirror.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace instrumentranges;

constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

TEST(InstrumentRanges, FrequenciesAreThoseThatTheInstrumentHasTold)
{
    InstrumentMirror mirror;
    EXPECT_TRUE(isFrequency(mirror, 10));
    EXPECT_TRUE(isFrequency(mirror, 50e6));
    mirror.dblAmpMinFreq = 20;
    mirror.dblAmpMaxFreq = 4e6;
    EXPECT_TRUE(isFrequency(mirror, 20));
    EXPECT_TRUE(isFrequency(mirror, 4e6));
    for (const double wrong : {19.9, 4000001.0, 0.0, -1.0, kInfinite, -kInfinite, kNone})
        EXPECT_FALSE(isFrequency(mirror, wrong)) << wrong;
}

TEST(InstrumentRanges, TheIdleOutputMayBeOffOrTheStartFrequency)
{
    const InstrumentMirror mirror;
    for (const double right : {0.0, -1.0, 1000.0})
        EXPECT_TRUE(isIdleFrequency(mirror, right)) << right;
    for (const double wrong : {-2.0, 5.0, kInfinite, kNone})
        EXPECT_FALSE(isIdleFrequency(mirror, wrong)) << wrong;
}

TEST(InstrumentRanges, LimitsLeaveRoomBetweenThem)
{
    EXPECT_TRUE(areFrequencyLimits(10, 20));
    EXPECT_TRUE(areLimits(-90, 10));
    EXPECT_FALSE(areFrequencyLimits(0, 20));
    EXPECT_FALSE(areFrequencyLimits(20, 20));
    EXPECT_FALSE(areLimits(10, -90));
    EXPECT_FALSE(areLimits(-kInfinite, 10));
    EXPECT_FALSE(areLimits(0, kInfinite));
    EXPECT_FALSE(areLimits(kNone, 10));
}

TEST(InstrumentRanges, CountsAndCodesEndWhereTheInstrumentDoes)
{
    EXPECT_TRUE(isPointCount(1) && isPointCount(1024));
    EXPECT_FALSE(isPointCount(0) || isPointCount(1025) || isPointCount(kNone));
    EXPECT_TRUE(isPeriod(0) && isPeriod(32767));
    EXPECT_FALSE(isPeriod(-1) || isPeriod(32768));
    EXPECT_TRUE(isSweepMode(0) && isSweepMode(2));
    EXPECT_FALSE(isSweepMode(-1) || isSweepMode(3));
    EXPECT_TRUE(isSampleCount(1) && isSampleCount(1024));
    EXPECT_FALSE(isSampleCount(0) || isSampleCount(1025));
    InstrumentMirror mirror;
    EXPECT_TRUE(isAttenuationCode(mirror, 9)) << "its steps are not known yet";
    EXPECT_FALSE(isAttenuationCode(mirror, -1));
    mirror.iAttenuationSteps = 3;
    EXPECT_TRUE(isAttenuationCode(mirror, 3));
    EXPECT_FALSE(isAttenuationCode(mirror, 4));
}

} // namespace
