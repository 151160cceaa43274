// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/rules/SettingsRules.h"

#include <QDateTime>

#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace settingsrules;

TEST(SettingsRules, FrequencyKeysPassDigitsPointBackspaceAndSuffixes)
{
    const QByteArray passing("\b.0123456789CGKMTcgkt");
    for (int key = 0; key < 256; ++key) {
        const int expected = key == 'm'                                            ? 'M'
                             : key == ','                                          ? '.'
                             : key > 0 && passing.contains(static_cast<char>(key)) ? key
                                                                                   : 0;
        EXPECT_EQ(FilterFrequencyKey(key), expected) << key;
    }
    EXPECT_EQ(FilterFrequencyKey(0x4b + 0x100), 0);
}

TEST(SettingsRules, FrequenciesAreWholeNumbersOfThirtyTwoBits)
{
    const std::pair<const char*, int> frequencies[] = {
        {"1M", 1000000},      {" 4k7 ", 4700},  {"12.5", 12},    {"13.5", 14},     {"900T", 2147483646},
        {"38,5k", 38500},     {"38.5k", 38500}, {"38k5", 38500}, {"2m", 2000000},  {"0", 0},
        {"38 500 Hz", 38500}, {".5k", 500},     {"5.k", 5000},   {"1M5", 1500000}, {"40 kHz", 40000},
    };
    for (const auto& [text, hertz] : frequencies)
        EXPECT_EQ(wholeHertz(QString::fromLatin1(text)), hertz) << text;
}

TEST(SettingsRules, ATextThatIsNoFrequencyMeansNone)
{
    for (const char* text : {"", " ", "nonsense!", "-5", "1e6", "k", ".", "k5", "1.2.3", "1,000,000", "1k5k", "1k.5",
                             "1.5k5", "Hz", "inf", "0x20", "5 + 5"}) {
        EXPECT_EQ(wholeHertz(QString::fromLatin1(text)), std::nullopt) << text;
    }
}

TEST(SettingsRules, APastedTextIsTakenAsAWholeOrNotAtAll)
{
    EXPECT_EQ(filteredFrequency(u" 38,5 kHz\n"), QStringLiteral("38.5k"));
    EXPECT_EQ(filteredFrequency(u"1m"), QStringLiteral("1M"));
    EXPECT_EQ(filteredFrequency(u"1e6"), std::nullopt);
    EXPECT_EQ(filteredFrequency(u"-5"), std::nullopt);
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

TEST(SettingsRules, AMeasuredNothingHasNoSign)
{
    EXPECT_EQ(amplitudeBars(-0.004, -0.001, true).levelText, QStringLiteral("0.00 dB"));
    EXPECT_EQ(amplitudeBars(-0.004, -0.001, true).phaseText, QStringLiteral("0.00 Deg"));
    EXPECT_EQ(amplitudeBars(-0.006, 0, true).levelText, QStringLiteral("-0.01 dB"));
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
    EXPECT_EQ(attenuationText(0, 10), QStringLiteral("0 dB"));
    EXPECT_EQ(attenuationText(2, 2.5), QStringLiteral("-5 dB"));
    EXPECT_EQ(attenuationText(3, 0.1), QStringLiteral("-0.3 dB"));
}

TEST(SettingsRules, CalibrationStampIsTimeThenDate)
{
    EXPECT_EQ(calibrateCommand(QDateTime(QDate(2021, 3, 2), QTime(14, 5, 9))),
              QStringLiteral("calibrate CAL-14050902032021\r"));
}

TEST(SettingsRules, SampleCountIsTheLargestNotAboveTheValue)
{
    EXPECT_EQ(offeredSamples(16), 16);
    EXPECT_EQ(offeredSamples(31), 16);
    EXPECT_EQ(offeredSamples(0), 1);
    EXPECT_EQ(offeredSamples(-3), 1);
    EXPECT_EQ(offeredSamples(1000000), 1024);
}

} // namespace
