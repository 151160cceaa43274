// SPDX-License-Identifier: GPL-3.0-or-later
#include "values/Conversions.h"

#include <QLocale>

#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace {

using values::decimalText;
using values::tolerantNumber;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool sameBits(double a, double b)
{
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

TEST(TolerantNumber, SkipsLeadingBlanksAndStopsAtTheFirstForeignCharacter)
{
    EXPECT_EQ(tolerantNumber("   1000.5000000"), 1000.5);
    EXPECT_EQ(tolerantNumber("\t -3.25 Hz"), -3.25);
    EXPECT_EQ(tolerantNumber("+7,5"), 7);
    EXPECT_EQ(tolerantNumber("12 34"), 12);
    EXPECT_EQ(tolerantNumber("1.5.2"), 1.5);
    EXPECT_EQ(tolerantNumber("0x10"), 0);
    EXPECT_EQ(tolerantNumber("5."), 5);
    EXPECT_EQ(tolerantNumber(".5"), 0.5);
    EXPECT_EQ(tolerantNumber("-.5e1"), -5);
}

TEST(TolerantNumber, GivesZeroWithoutANumber)
{
    for (const char* text : {"", " ", "abc", ".", "-", "+", "-.", "e5", ".e5", "inf", "-infinity", "nan", "\n1", "--1"})
        EXPECT_EQ(tolerantNumber(text), 0) << text;
}

TEST(TolerantNumber, TakesAnExponentOnlyWhenItIsWhole)
{
    EXPECT_EQ(tolerantNumber("1e3"), 1000);
    EXPECT_EQ(tolerantNumber("1E+3x"), 1000);
    EXPECT_EQ(tolerantNumber("2.5e-1"), 0.25);
    EXPECT_EQ(tolerantNumber("2e"), 2);
    EXPECT_EQ(tolerantNumber("2e+"), 2);
    EXPECT_EQ(tolerantNumber("2e- 1"), 2);
    EXPECT_EQ(tolerantNumber("2d3"), 2);
}

TEST(TolerantNumber, OverflowsToInfinityAndUnderflowsToZero)
{
    EXPECT_EQ(tolerantNumber("1e309"), kInfinity);
    EXPECT_EQ(tolerantNumber("-1e99999999999999999999"), -kInfinity);
    EXPECT_EQ(tolerantNumber("1e-400"), 0);
    EXPECT_EQ(tolerantNumber("1e-99999999999999999999"), 0);
    EXPECT_EQ(tolerantNumber("0e99999999999999999999"), 0);
    EXPECT_EQ(tolerantNumber("0.0000e400"), 0);
    EXPECT_EQ(tolerantNumber("0." + std::string(400, '0') + "1e401"), 1);
    EXPECT_EQ(tolerantNumber("1" + std::string(400, '0') + "e-400"), 1);
    std::string one(400, '0');
    one += '1';
    EXPECT_EQ(tolerantNumber(one), 1);
    EXPECT_EQ(tolerantNumber("1" + std::string(400, '0')), kInfinity);
    EXPECT_EQ(tolerantNumber("4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(tolerantNumber("1.7976931348623157e308"), std::numeric_limits<double>::max());
}

TEST(TolerantNumber, KeepsTheSignOfZero)
{
    EXPECT_TRUE(std::signbit(tolerantNumber("-0")));
    EXPECT_TRUE(std::signbit(tolerantNumber("-0e400")));
    EXPECT_FALSE(std::signbit(tolerantNumber("0")));
}

TEST(TolerantNumber, ReadsOnlyInsideTheView)
{
    const std::string text = "12345e5";
    EXPECT_EQ(tolerantNumber(std::string_view(text).substr(0, 3)), 123);
    EXPECT_EQ(tolerantNumber(std::string_view(text).substr(0, 6)), 12345);
    EXPECT_EQ(tolerantNumber(std::string_view()), 0);
}

TEST(TolerantNumber, ReadsUtf16AsItReadsBytes)
{
    EXPECT_EQ(tolerantNumber(u"  47.5\u03a9"), 47.5);
    EXPECT_EQ(tolerantNumber(u"\u00a012"), 0);
    EXPECT_EQ(tolerantNumber(u"\u0661"), 0) << "digits of other scripts are no digits here";
    EXPECT_EQ(tolerantNumber(QStringView()), 0);
    EXPECT_EQ(tolerantNumber(QString(1000, u' ') + QStringLiteral("8")), 8);
}

// Every text the generator makes is a whole number for strtod too, so the two must agree to the last bit.
void agreesWithStrtod(const std::string& text)
{
    const double expected = std::strtod(text.c_str(), nullptr);
    ASSERT_TRUE(sameBits(tolerantNumber(text), expected)) << text;
    const std::optional<double> strict = values::strictNumber(text);
    if (std::isinf(expected)) {
        ASSERT_FALSE(strict) << text;
    } else {
        ASSERT_TRUE(strict) << text;
        ASSERT_TRUE(sameBits(*strict, expected)) << text;
    }
}

TEST(TolerantNumber, RoundsAsStrtodOnRandomDecimals)
{
    std::mt19937 random(20240611);
    const auto upTo = [&random](int top) { return std::uniform_int_distribution<int>(0, top)(random); };
    const auto digits = [&](int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += static_cast<char>('0' + upTo(9));
        return text;
    };
    for (int i = 0; i < 300000; ++i) {
        std::string text(static_cast<std::size_t>(upTo(3)), ' ');
        text += upTo(2) == 0 ? "-" : "";
        text += digits(1 + upTo(i % 5 == 0 ? 30 : 12));
        if (upTo(3) != 0)
            text += "." + digits(upTo(i % 7 == 0 ? 30 : 9));
        if (upTo(3) == 0)
            text += (upTo(1) ? "e" : "E") + std::to_string(upTo(i % 3 == 0 ? 700 : 50) - (i % 3 == 0 ? 350 : 25));
        ASSERT_NO_FATAL_FAILURE(agreesWithStrtod(text));
    }
}

TEST(TolerantNumber, RoundsAsStrtodHalfWayBetweenTwoDoubles)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i) {
        // A 54-bit odd integer lies exactly between two doubles.
        const std::uint64_t odd = (random() >> 10) | (std::uint64_t{1} << 53) | 1u;
        ASSERT_NO_FATAL_FAILURE(agreesWithStrtod(std::to_string(odd)));
        ASSERT_NO_FATAL_FAILURE(agreesWithStrtod(std::to_string(odd) + ".000000000000000000000000000001"));
        ASSERT_NO_FATAL_FAILURE(agreesWithStrtod(std::to_string(odd) + "e22"));
        ASSERT_NO_FATAL_FAILURE(agreesWithStrtod(std::to_string(odd) + "e-22"));
    }
}

TEST(TolerantNumber, RoundsAsStrtodOnFieldsOfTheInstrument)
{
    std::mt19937_64 random(99);
    for (int i = 0; i < 200000; ++i) {
        char text[64];
        const double value = std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 60) - 75);
        std::snprintf(text, sizeof text, "%13.*f", static_cast<int>(random() % 8), value);
        text[13] = '\0';
        ASSERT_NO_FATAL_FAILURE(agreesWithStrtod(text));
    }
}

TEST(StrictNumber, WantsTheWholeText)
{
    EXPECT_EQ(values::strictNumber(" 12.5\t"), 12.5);
    EXPECT_EQ(values::strictNumber("-1e-3"), -0.001);
    for (const char* text :
         {"", " ", "12x", "1 2", "1e", "0x10", "1,000", "inf", "nan", "1.2.3", "A", "1\n", "- 1", "1e400"})
        EXPECT_FALSE(values::strictNumber(text)) << text;
    EXPECT_EQ(values::strictNumber(u" 7 "), 7);
    EXPECT_FALSE(values::strictNumber(u"7\u2126"));
}

TEST(StrictInteger, RoundsHalfToEven)
{
    EXPECT_EQ(values::strictInt16("0.5"), 0);
    EXPECT_EQ(values::strictInt16("1.5"), 2);
    EXPECT_EQ(values::strictInt16("2.5"), 2);
    EXPECT_EQ(values::strictInt16("-2.5"), -2);
    EXPECT_EQ(values::strictInt32("3.5"), 4);
    EXPECT_EQ(values::strictInt32(u"1e3"), 1000);
    EXPECT_EQ(values::strictInt16(u" 12 "), 12);
}

TEST(StrictInteger, RefusesWhatDoesNotFit)
{
    EXPECT_EQ(values::strictInt16("32767.4"), 32767);
    EXPECT_FALSE(values::strictInt16("32767.5"));
    EXPECT_EQ(values::strictInt16("-32768.5"), -32768);
    EXPECT_FALSE(values::strictInt16("-32769"));
    EXPECT_EQ(values::strictInt32("2147483647"), 2147483647);
    EXPECT_FALSE(values::strictInt32("2147483648"));
    EXPECT_FALSE(values::strictInt32("1e300"));
    EXPECT_FALSE(values::strictInt16("twelve"));
}

TEST(StrictBool, ReadsWordsAndNumbers)
{
    EXPECT_EQ(values::strictBool(u"True"), true);
    EXPECT_EQ(values::strictBool(u"FALSE"), false);
    EXPECT_EQ(values::strictBool(u" true "), true);
    EXPECT_EQ(values::strictBool(u"-1"), true);
    EXPECT_EQ(values::strictBool(u"0"), false);
    EXPECT_EQ(values::strictBool(u"0.1"), true);
    EXPECT_FALSE(values::strictBool(u""));
    EXPECT_FALSE(values::strictBool(u"yes"));
}

TEST(Rounding, IsHalfToEvenAndClamped)
{
    EXPECT_EQ(values::roundToInt16(2.5), 2);
    EXPECT_EQ(values::roundToInt16(3.5), 4);
    EXPECT_EQ(values::roundToInt16(1e9), 32767);
    EXPECT_EQ(values::roundToInt16(-kInfinity), -32768);
    EXPECT_EQ(values::roundToInt16(std::nan("")), 0);
    EXPECT_EQ(values::roundToInt32(-0.5), 0);
    EXPECT_EQ(values::roundToInt32(1e300), 2147483647);
    EXPECT_EQ(values::roundToInt32(2147483646.5), 2147483646);
}

TEST(DecimalText, IsTheShortestThatReadsBack)
{
    EXPECT_EQ(decimalText(0.1), QStringLiteral("0.1"));
    EXPECT_EQ(decimalText(0.1f), QStringLiteral("0.1"));
    EXPECT_EQ(decimalText(1000.0), QStringLiteral("1000"));
    EXPECT_EQ(decimalText(-1.5), QStringLiteral("-1.5"));
    EXPECT_EQ(decimalText(42), QStringLiteral("42"));
    EXPECT_EQ(decimalText(-0.0), QStringLiteral("0"));
    EXPECT_EQ(decimalText(-0.0f), QStringLiteral("0"));
    EXPECT_EQ(decimalText(1.0 / 3.0), QStringLiteral("0.3333333333333333"));
}

TEST(DecimalText, HasNoExponentInTheOrdinaryRange)
{
    EXPECT_EQ(decimalText(1e15), QStringLiteral("1000000000000000"));
    EXPECT_EQ(decimalText(50000000.0), QStringLiteral("50000000"));
    EXPECT_EQ(decimalText(1e-7), QStringLiteral("0.0000001"));
    EXPECT_EQ(decimalText(1e-7f), QStringLiteral("0.0000001"));
    EXPECT_EQ(decimalText(1e16), QStringLiteral("1e+16"));
    EXPECT_EQ(decimalText(9e-8), QStringLiteral("9e-08"));
    EXPECT_EQ(decimalText(-1.2345678901234566e-7), QStringLiteral("-0.00000012345678901234566"));
}

TEST(DecimalText, WritesNonFiniteValuesAsWords)
{
    EXPECT_EQ(decimalText(kInfinity), QStringLiteral("inf"));
    EXPECT_EQ(decimalText(-kInfinity), QStringLiteral("-inf"));
    EXPECT_EQ(decimalText(std::nan("")), QStringLiteral("nan"));
    EXPECT_EQ(decimalText(-std::nan("")), QStringLiteral("nan"));
    EXPECT_EQ(values::plainDecimalText(kInfinity), QStringLiteral("inf"));
}

TEST(DecimalText, BringsEveryKindOfSingleBack)
{
    std::mt19937 random(5);
    const auto comesBack = [](float value) {
        char buffer[values::kDecimalTextSize];
        const std::string_view text(buffer, values::writeDecimal(value, buffer));
        return std::bit_cast<std::uint32_t>(static_cast<float>(tolerantNumber(text))) ==
               std::bit_cast<std::uint32_t>(value == 0 ? 0.0f : value);
    };
    for (int i = 0; i < 500000; ++i) {
        const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (std::isfinite(value)) {
            ASSERT_TRUE(comesBack(value)) << value;
        }
    }
    for (const float value : {std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest(),
                              std::numeric_limits<float>::denorm_min(), std::numeric_limits<float>::min(), -0.0f,
                              16777217.0f, 65536.0f, -65536.0f})
        EXPECT_TRUE(comesBack(value)) << value;
}

TEST(DecimalText, BringsEveryKindOfDoubleBackAndFitsItsBuffer)
{
    std::mt19937_64 random(6);
    for (int i = 0; i < 500000; ++i) {
        const double value = std::bit_cast<double>(static_cast<std::uint64_t>(random()));
        if (!std::isfinite(value))
            continue;
        char buffer[values::kDecimalTextSize];
        const std::size_t length = values::writeDecimal(value, buffer);
        ASSERT_LE(length, values::kDecimalTextSize);
        ASSERT_TRUE(sameBits(tolerantNumber(std::string_view(buffer, length)), value)) << value;
    }
    for (int i = 0; i < 100000; ++i) {
        const double value = std::ldexp(static_cast<double>(random()), -static_cast<int>(random() % 80));
        const QString text = decimalText(value);
        ASSERT_EQ(tolerantNumber(text), value) << value;
        if (value >= 1e-7 && value <= 1e15) {
            ASSERT_FALSE(text.contains(u'e')) << text.toStdString();
        }
    }
}

TEST(PlainDecimalText, NeverHasAnExponent)
{
    EXPECT_EQ(values::plainDecimalText(1e20), QStringLiteral("100000000000000000000"));
    EXPECT_EQ(values::plainDecimalText(1e-12), QStringLiteral("0.000000000001"));
    EXPECT_EQ(values::plainDecimalText(-0.0), QStringLiteral("0"));
    for (const double value : {std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min(),
                               -std::numeric_limits<double>::min(), 1.2345e-300}) {
        const QString text = values::plainDecimalText(value);
        EXPECT_FALSE(text.contains(u'e'));
        EXPECT_EQ(tolerantNumber(text), value);
    }
}

TEST(Conversions, DoNotFollowTheLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const QLocale localeBefore;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    EXPECT_EQ(decimalText(1234567.5), QStringLiteral("1234567.5"));
    EXPECT_EQ(decimalText(1234567), QStringLiteral("1234567"));
    EXPECT_EQ(tolerantNumber("1.5"), 1.5);
    EXPECT_EQ(tolerantNumber("1,5"), 1);
    std::setlocale(LC_ALL, before.c_str());
    QLocale::setDefault(localeBefore);
}

TEST(BooleanText, IsTheTextOfSettings)
{
    EXPECT_EQ(values::booleanText(true), QStringLiteral("True"));
    EXPECT_EQ(values::booleanText(false), QStringLiteral("False"));
}

} // namespace
