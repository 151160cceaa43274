// SPDX-License-Identifier: GPL-3.0-or-later
#include "values/EngineeringText.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace values;

QString parsed(const char* text)
{
    QString value = QString::fromUtf8(text);
    return ParseEngineeringValue(value);
}

std::string engineering(double value, int significant = 4)
{
    return engineeringText(value, QStringLiteral("Hz"), significant).toStdString();
}

TEST(ParseEngineeringValue, OfAnEmptyTextIsZero)
{
    EXPECT_EQ(parsed(""), QStringLiteral("0"));
    EXPECT_EQ(parsed("   "), QStringLiteral("0"));
    EXPECT_EQ(parsed("-"), QStringLiteral("0"));
    EXPECT_EQ(parsed("."), QStringLiteral("0"));
    EXPECT_EQ(parsed("k"), QStringLiteral("0"));
    EXPECT_EQ(parsed("xyz"), QStringLiteral("0"));
}

TEST(ParseEngineeringValue, DropsTheSecondPointAndGoesOn)
{
    EXPECT_EQ(parsed("1.5.2"), QStringLiteral("1.52"));
}

TEST(ParseEngineeringValue, IsClampedAboveOnly)
{
    EXPECT_EQ(parsed("3000000000"), QStringLiteral("2147483646"));
    EXPECT_EQ(parsed("2147483646"), QStringLiteral("2147483646"));
    EXPECT_EQ(parsed("2147483645.5"), QStringLiteral("2147483645.5"));
    EXPECT_EQ(parsed("5G"), QStringLiteral("2147483646"));
    EXPECT_EQ(parsed("-5G"), QStringLiteral("-5000000000"));
    EXPECT_EQ(parsed((std::string(500, '9')).c_str()), QStringLiteral("2147483646"));
    EXPECT_EQ(parsed(("-" + std::string(500, '9')).c_str()), QStringLiteral("-1.7976931348623157e+308"));
}

TEST(ParseEngineeringValue, TakesAMinusAnywhereAsTheSign)
{
    EXPECT_EQ(parsed("-5k"), QStringLiteral("-5000"));
    EXPECT_EQ(parsed("1-2"), QStringLiteral("-12"));
    EXPECT_EQ(parsed("7-"), QStringLiteral("-7"));
    EXPECT_EQ(parsed("--7"), QStringLiteral("-7"));
    EXPECT_EQ(parsed("-0"), QStringLiteral("0"));
}

TEST(ParseEngineeringValue, PutsThePointWhereTheSuffixStands)
{
    EXPECT_EQ(parsed("4k7"), QStringLiteral("4700"));
    EXPECT_EQ(parsed("2M2"), QStringLiteral("2200000"));
    EXPECT_EQ(parsed("k5"), QStringLiteral("500"));
    EXPECT_EQ(parsed("1.5k"), QStringLiteral("1500"));
    EXPECT_EQ(parsed("1.5k3"), QStringLiteral("1530"));
    EXPECT_EQ(parsed("1k.5"), QStringLiteral("1500"));
}

TEST(ParseEngineeringValue, KnowsEverySuffix)
{
    const struct
    {
        const char* text;
        const char* value;
    } rows[] = {{"3c", "300"},
                {"3C", "300"},
                {"3k", "3000"},
                {"3K", "3000"},
                {"3M", "3000000"},
                {"1g", "1000000000"},
                {"1G", "1000000000"},
                {"0.001t", "1000000000"},
                {"0.001T", "1000000000"},
                {"3m", "0.003"},
                {"3u", "0.000003"},
                {"300n", "0.0000003"},
                {"3n", "3e-09"},
                {"3p", "3e-12"},
                {"3a", "3e-15"}};
    for (const auto& row : rows)
        EXPECT_EQ(parsed(row.text), QString::fromLatin1(row.value)) << row.text;
}

TEST(ParseEngineeringValue, AccumulatesFactors)
{
    EXPECT_EQ(parsed("1kk"), QStringLiteral("1000000"));
    EXPECT_EQ(parsed("1km"), QStringLiteral("1"));
    EXPECT_EQ(parsed("5kmkm"), QStringLiteral("5"));
}

TEST(ParseEngineeringValue, RoundsOnlyOnce)
{
    EXPECT_EQ(parsed("4.7m"), QStringLiteral("0.0047"));
    EXPECT_EQ(parsed("4u7"), QStringLiteral("0.0000047"));
    EXPECT_EQ(parsed("1.1k"), QStringLiteral("1100"));
    EXPECT_EQ(parsed("2.3M"), QStringLiteral("2300000"));
}

TEST(ParseEngineeringValue, SkipsWhatItDoesNotKnowAndTrimsItsArgument)
{
    QString text = QStringLiteral("  10 kHz, \u03a9 ");
    EXPECT_EQ(ParseEngineeringValue(text), QStringLiteral("10000"));
    EXPECT_EQ(text, QStringLiteral("10 kHz, \u03a9"));
    EXPECT_EQ(parsed("1,000"), QStringLiteral("1000"));
    EXPECT_EQ(parsed("1e3"), QStringLiteral("13"));
    EXPECT_EQ(parsed("+5"), QStringLiteral("5"));
}

TEST(FrequencyOf, FrequenciesAreReadAsPeopleWriteThem)
{
    EXPECT_EQ(frequencyOf(QStringLiteral("40000")), 40000);
    EXPECT_EQ(frequencyOf(QStringLiteral("4.2e4")), 42000);
    EXPECT_EQ(frequencyOf(QStringLiteral("42k")), 42000);
    EXPECT_EQ(frequencyOf(QStringLiteral("4k7")), 4700);
    EXPECT_EQ(frequencyOf(QStringLiteral("2.2M")), 2200000);
    EXPECT_EQ(frequencyOf(QStringLiteral(".5M")), 500000);
    EXPECT_EQ(frequencyOf(QStringLiteral("42 kHz")), 42000);
    EXPECT_EQ(frequencyOf(QStringLiteral("50Hz")), 50);
}

TEST(FrequencyOf, ATextThatIsNoFrequencyIsRefusedInsteadOfGuessed)
{
    for (const char* text : {"", "k", ".k", "Hz", "4x2", "1kk", "1.5k2", "4k7k", "abc", "1..2", "0x10", "1,5", "nan"})
        EXPECT_FALSE(frequencyOf(QString::fromUtf8(text))) << text;
}

TEST(EngineeringText, NumbersAreShownWithEngineeringPrefixes)
{
    EXPECT_EQ(engineering(0), "0 Hz");
    EXPECT_EQ(engineering(1), "1 Hz");
    EXPECT_EQ(engineering(999.94), "999.9 Hz");
    EXPECT_EQ(engineering(999.96), "1 kHz");
    EXPECT_EQ(engineering(39982, 6), "39.982 kHz");
    EXPECT_EQ(engineering(-4700), "-4.7 kHz");
    EXPECT_EQ(engineering(2.2e6), "2.2 MHz");
    EXPECT_EQ(engineering(1e9), "1 GHz");
    EXPECT_EQ(engineering(0.0123456), "12.35 mHz");
    EXPECT_EQ(engineering(4e-12), "4 pHz");
    EXPECT_EQ(engineering(4e-15), "0.004 pHz");
    EXPECT_EQ(engineering(5e15), "5000 THz");
}

TEST(EngineeringText, HasNoSignBeforeZeroAndTellsWhatIsNoNumber)
{
    EXPECT_EQ(engineering(-0.0), "0 Hz");
    EXPECT_EQ(engineering(std::numeric_limits<double>::infinity()), "inf Hz");
    EXPECT_EQ(engineering(std::nan("")), "nan Hz");
}

TEST(StatusTexts, AreTheDecimalTextAndTheUnit)
{
    EXPECT_EQ(QString(frequencyText(1000)), QStringLiteral("1000 Hz"));
    EXPECT_EQ(QString(frequencyText(0.1)), QStringLiteral("0.1 Hz"));
    EXPECT_EQ(QString(pointsText(1024)), QStringLiteral("1024 pts"));
    EXPECT_EQ(QString(progressText(7, 1024)), QStringLiteral("7/1024 pts"));
    EXPECT_EQ(QString(millisecondsText(2.5)), QStringLiteral("2.5 mS"));
    EXPECT_EQ(QString(decibelText(-12.25)), QStringLiteral("-12.25 dB"));
    EXPECT_EQ(std::string_view(frequencyText(40000)), "40000 Hz");
    EXPECT_EQ(BoolToDigit(true), 1);
    EXPECT_EQ(BoolToDigit(false), 0);
}

TEST(StatusTexts, HoldTheLongestNumbers)
{
    EXPECT_EQ(std::string_view(frequencyText(-std::numeric_limits<double>::denorm_min())), "-5e-324 Hz");
    EXPECT_EQ(std::string_view(frequencyText(-1.7976931348623157e+308)), "-1.7976931348623157e+308 Hz");
    const int least = std::numeric_limits<int>::min();
    EXPECT_EQ(std::string_view(progressText(least, least)), "-2147483648/-2147483648 pts");
}

TEST(StatusTexts, AttenuationsHaveSixDigitsAndNoSignBeforeZero)
{
    EXPECT_EQ(std::string_view(attenuationText(3, 0.1)), "-0.3 dB") << "not -0.30000000000000004";
    EXPECT_EQ(std::string_view(attenuationText(0, 0.1)), "0 dB");
    EXPECT_EQ(std::string_view(attenuationText(0, -0.1)), "0 dB");
    EXPECT_EQ(std::string_view(attenuationText(5, 2.5)), "-12.5 dB");
    EXPECT_EQ(std::string_view(attenuationText(1, 0.123456789)), "-0.123457 dB");
    EXPECT_EQ(std::string_view(attenuationText(32767, 10)), "-327670 dB");
    EXPECT_EQ(std::string_view(decibelText(-0.0)), "0 dB");
    EXPECT_EQ(std::string_view(decibelText(1.0 / 3)), "0.333333 dB");
}

} // namespace
