// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/SettingsRules.h"

#include <QDateTime>

#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace settingsrules;

TEST(SettingsRules, FrequencyKeysPassDigitsPointBackspaceAndSuffixes)
{
    const QByteArray passing("\b.0123456789CGKMTcgkt");
    for (int key = 0; key < 256; ++key) {
        const int expected = key == 'm' ? 'M' : key > 0 && passing.contains(static_cast<char>(key)) ? key : 0;
        EXPECT_EQ(FilterFrequencyKey(key), expected) << key;
    }
    EXPECT_EQ(FilterFrequencyKey(0x4b + 0x100), 0);
}

TEST(SettingsRules, FrequenciesAreWholeNumbersOfThirtyTwoBits)
{
    EXPECT_EQ(wholeHertz(QStringLiteral("1M")), 1000000);
    EXPECT_EQ(wholeHertz(QStringLiteral(" 4k7 ")), 4700);
    EXPECT_EQ(wholeHertz(QStringLiteral("12.5")), 12);
    EXPECT_EQ(wholeHertz(QStringLiteral("13.5")), 14);
    EXPECT_EQ(wholeHertz(QStringLiteral("900T")), 2147483646);
    EXPECT_EQ(wholeHertz(QStringLiteral("-900T")), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(wholeHertz(QStringLiteral("nonsense!")), 0);
    EXPECT_EQ(wholeHertz({}), 0);
}

TEST(SettingsRules, ClampHoldsBothLimits)
{
    EXPECT_EQ(clampToRange(0, 10, 100), 10);
    EXPECT_EQ(clampToRange(1000, 10, 100), 100);
    EXPECT_EQ(clampToRange(50, 10, 100), 50);
    EXPECT_EQ(clampToRange(50, 100, 10), 100);
}

TEST(SettingsRules, AmplitudeBars)
{
    const LevelBars bars = amplitudeBars(-12.345, 45.5, true);
    EXPECT_EQ(bars.level, 77);
    EXPECT_EQ(bars.levelText, QStringLiteral("-12.35 dB"));
    EXPECT_EQ(bars.phase, 225);
    EXPECT_EQ(bars.phaseText, QStringLiteral("45.50 Deg"));
    EXPECT_EQ(amplitudeBars(-200, -500, true).level, 0);
    EXPECT_EQ(amplitudeBars(-200, -500, true).phase, 0);
    EXPECT_EQ(amplitudeBars(200, 500, true).level, 100);
    EXPECT_EQ(amplitudeBars(200, 500, true).phase, 360);
    EXPECT_TRUE(amplitudeBars(0, -65536, false).phaseText.isEmpty());
    EXPECT_EQ(amplitudeBars(0, -65536, false).phase, 0);
}

TEST(SettingsRules, ImpedanceBars)
{
    const LevelBars bars = impedanceBars(1, -45, true);
    EXPECT_EQ(bars.level, 18); // (0 + 3) x 6.25 = 18.75
    EXPECT_EQ(bars.levelText, QStringLiteral("1.00 Ohms"));
    EXPECT_EQ(bars.phase, 90);
    EXPECT_EQ(bars.phaseText, QStringLiteral("-45.00 Deg"));
    EXPECT_EQ(impedanceBars(1e9, 90, true).level, 100);
    EXPECT_EQ(impedanceBars(1e9, 90, true).phase, 360);
    EXPECT_EQ(impedanceBars(0, -90.5, true).level, 0);
    EXPECT_EQ(impedanceBars(0, -90.5, true).phase, 0);
    EXPECT_EQ(impedanceBars(-5, 0, true).level, 0);
    EXPECT_EQ(impedanceBars(1234567, 0, true).levelText, QStringLiteral("1234567.00 Ohms"));
    EXPECT_TRUE(impedanceBars(1, 0, false).phaseText.isEmpty());
}

TEST(SettingsRules, AttenuationIsNegativeStepTimesCode)
{
    EXPECT_EQ(attenuationText(1, 10), QStringLiteral("0 dB"));
    EXPECT_EQ(attenuationText(3, 2.5), QStringLiteral("-5 dB"));
}

TEST(SettingsRules, CalibrationStampIsTimeThenDate)
{
    EXPECT_EQ(calibrateCommand(QDateTime(QDate(2021, 3, 2), QTime(14, 5, 9))),
              QStringLiteral("calibrate CAL-14050902032021\r"));
}

TEST(SettingsRules, SampleCountIsTheLargestNotAboveTheValue)
{
    EXPECT_EQ(kSampleCounts[static_cast<std::size_t>(sampleIndex(16))], 16);
    EXPECT_EQ(kSampleCounts[static_cast<std::size_t>(sampleIndex(31.9))], 16);
    EXPECT_EQ(sampleIndex(0), 0);
    EXPECT_EQ(sampleIndex(-3), 0);
    EXPECT_EQ(kSampleCounts[static_cast<std::size_t>(sampleIndex(1e9))], 1024);
}

} // namespace
