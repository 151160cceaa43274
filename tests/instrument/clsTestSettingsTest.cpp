// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/clsTestSettings.h"

#include <QStringList>

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace {

bool read(clsTestSettings& settings, const QString& text)
{
    bool result = false;
    settings.InitaliseFromString(text, result);
    return result;
}

TEST(TestSettings, TextHasTheEightFieldsInOrderWithoutBlanksOrTrailingComma)
{
    clsTestSettings settings;
    settings.dblUpperFrequency = 1000000;
    settings.dblLowerFrequency = 1000.5;
    settings.boolUseXAxisExtents = true;
    settings.boolInvertSweep = false;
    settings.lPoints = 1024;
    settings.dblIdleOutputFrequency = -1;
    settings.dblSweepSpeed = 0.25;
    settings.dblOutputLevel = -12;
    EXPECT_EQ(settings.SaveToString(), QStringLiteral("1000000,1000.5,True,False,1024,-1,0.25,-12"));
}

TEST(TestSettings, TextOfARecordWithoutPointsStillHasEightFields)
{
    const QStringList fields = clsTestSettings().SaveToString().split(u',');
    EXPECT_EQ(fields.size(), 8);
    EXPECT_EQ(fields.at(4), QStringLiteral("0"));
}

TEST(TestSettings, EveryRecordSurvivesTextAndBack)
{
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> mantissa(-1, 1);
    std::uniform_int_distribution<int> exponent(-30, 60);
    const auto number = [&] { return std::ldexp(mantissa(random), exponent(random)); };
    for (int i = 0; i < 2000; ++i) {
        clsTestSettings settings;
        settings.dblUpperFrequency = number();
        settings.dblLowerFrequency = number();
        settings.boolUseXAxisExtents = (i & 1) != 0;
        settings.boolInvertSweep = (i & 2) != 0;
        settings.lPoints = static_cast<std::int32_t>(random());
        settings.dblIdleOutputFrequency = number();
        settings.dblSweepSpeed = number();
        settings.dblOutputLevel = number();
        clsTestSettings back;
        ASSERT_TRUE(read(back, settings.SaveToString()));
        ASSERT_EQ(back, settings) << settings.SaveToString().toStdString();
    }
}

TEST(TestSettings, NumbersAreReadTolerantly)
{
    clsTestSettings settings;
    ASSERT_TRUE(read(settings, QStringLiteral("  12.5 Hz,abc,False,True,7,,1e3x,-4")));
    EXPECT_EQ(settings.dblUpperFrequency, 12.5);
    EXPECT_EQ(settings.dblLowerFrequency, 0);
    EXPECT_EQ(settings.dblIdleOutputFrequency, 0);
    EXPECT_EQ(settings.dblSweepSpeed, 1000);
    EXPECT_EQ(settings.dblOutputLevel, -4);
    EXPECT_TRUE(settings.boolInvertSweep);
}

TEST(TestSettings, FlagsAreReadAsWordsOrNumbers)
{
    clsTestSettings settings;
    ASSERT_TRUE(read(settings, QStringLiteral("1,2,-1,0,5,6,7,8")));
    EXPECT_TRUE(settings.boolUseXAxisExtents);
    EXPECT_FALSE(settings.boolInvertSweep);
    ASSERT_TRUE(read(settings, QStringLiteral("1,2,false,TRUE,5,6,7,8")));
    EXPECT_FALSE(settings.boolUseXAxisExtents);
    EXPECT_TRUE(settings.boolInvertSweep);
}

TEST(TestSettings, PointsAndFlagsThatAreNoNumbersFailAndKeepTheRecord)
{
    clsTestSettings settings;
    settings.lPoints = 77;
    const clsTestSettings before = settings;
    for (const char* text : {"1,2,maybe,False,5,6,7,8", "1,2,True,,5,6,7,8", "1,2,True,False,5 points,6,7,8",
                             "1,2,True,False,99999999999,6,7,8", "1,2,True,False,,6,7,8"}) {
        EXPECT_FALSE(read(settings, QLatin1String(text))) << text;
        EXPECT_EQ(settings, before) << text;
    }
}

TEST(TestSettings, PointsAreRoundedHalfToEven)
{
    clsTestSettings settings;
    ASSERT_TRUE(read(settings, QStringLiteral("1,2,True,False,2.5,6,7,8")));
    EXPECT_EQ(settings.lPoints, 2);
    ASSERT_TRUE(read(settings, QStringLiteral("1,2,True,False,3.5,6,7,8")));
    EXPECT_EQ(settings.lPoints, 4);
}

TEST(TestSettings, MissingNumbersBehindThePointsReadAsZero)
{
    clsTestSettings settings;
    settings.dblOutputLevel = 3;
    ASSERT_TRUE(read(settings, QStringLiteral("1,2,True,False,5")));
    EXPECT_EQ(settings.lPoints, 5);
    EXPECT_EQ(settings.dblIdleOutputFrequency, 0);
    EXPECT_EQ(settings.dblOutputLevel, 0);
}

TEST(TestSettings, ShortAndEmptyTextsFail)
{
    clsTestSettings settings;
    EXPECT_FALSE(read(settings, QString()));
    EXPECT_FALSE(read(settings, QStringLiteral("1000,2000")));
    EXPECT_FALSE(read(settings, QStringLiteral("1000,2000,True,False")));
}

TEST(TestSettings, WhatFollowsTheEighthFieldIsIgnored)
{
    clsTestSettings settings;
    ASSERT_TRUE(read(settings, QStringLiteral("1,2,True,False,5,6,7,8,and more,9")));
    EXPECT_EQ(settings.dblOutputLevel, 8);
}

} // namespace
