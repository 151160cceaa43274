// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/rules/Frame.h"

#include "support/FrameText.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace {

Frame frameOf(const QByteArray& bytes)
{
    EXPECT_EQ(bytes.size(), qsizetype{Frame::kLength});
    return Frame(bytes.constData());
}

Frame withI(const QByteArray& i)
{
    return frameOf(frametext::raw('F', '0', "0", "0", "0", "0", i));
}

Frame withN1(const QByteArray& n1)
{
    return frameOf(frametext::raw('F', '0', n1, "0", "0", "0", "0"));
}

TEST(Frame, ReadsEveryFieldFromItsColumns)
{
    const Frame frame = frameOf(frametext::numbers('F', '7', 1234.5, -2, 3e-5, 4000000, 1023));
    EXPECT_EQ(frame.code(), 'F');
    EXPECT_EQ(frame.selector(), '7');
    std::int32_t f = 0, i = 0;
    ASSERT_TRUE(frame.ParseF(f));
    ASSERT_TRUE(frame.ParseI(i));
    EXPECT_EQ(f, 7);
    EXPECT_EQ(i, 1023);
    EXPECT_EQ(frame.number(1), 1234.5);
    EXPECT_EQ(frame.number(2), -2);
    EXPECT_EQ(frame.number(3), 3e-5);
    EXPECT_EQ(frame.number(4), 4000000);
}

TEST(Frame, FullWidthNumbersDoNotRunIntoTheirNeighbours)
{
    QByteArray bytes =
        frametext::raw('H', '1', "1111111111111", "2222222222222", "3333333333333", "4444444444444", "55555");
    for (const int column : {4, 18, 32, 46, 60})
        bytes[column - 1] = '9';
    const Frame frame = frameOf(bytes);
    EXPECT_EQ(frame.number(1), 1111111111111.0);
    EXPECT_EQ(frame.number(2), 2222222222222.0);
    EXPECT_EQ(frame.number(3), 3333333333333.0);
    EXPECT_EQ(frame.number(4), 4444444444444.0);
    std::int32_t i = 0;
    ASSERT_TRUE(frame.ParseI(i));
    EXPECT_EQ(i, 55555);
}

TEST(Frame, FieldAReadsAsTen)
{
    std::int32_t f = 0;
    ASSERT_TRUE(frameOf(frametext::numbers('a', 'A')).ParseF(f));
    EXPECT_EQ(f, 10);
}

TEST(Frame, OnlyTheSingleTextAIsTen)
{
    std::int32_t value = 77;
    for (const char* text : {"    A", "A    ", "A", "AAAAA", "    a"})
        EXPECT_FALSE(withI(text).ParseI(value)) << text;
    EXPECT_FALSE(frameOf(frametext::numbers('a', 'a')).ParseF(value));
    EXPECT_FALSE(frameOf(frametext::numbers('a', 'B')).ParseF(value));
    EXPECT_EQ(value, 77);
}

TEST(Frame, IntegerFieldsMayBePaddedWithBlanks)
{
    std::int32_t value = 0;
    for (const char* text : {"   42", "42   ", " 42  ", "42"}) {
        value = 0;
        ASSERT_TRUE(withI(text).ParseI(value)) << text;
        EXPECT_EQ(value, 42) << text;
    }
    ASSERT_TRUE(withI("   -7").ParseI(value));
    EXPECT_EQ(value, -7);
    ASSERT_TRUE(withI("  2.5").ParseI(value));
    EXPECT_EQ(value, 2);
    ASSERT_TRUE(withI("  1e3").ParseI(value));
    EXPECT_EQ(value, 1000);
}

TEST(Frame, IntegerFieldsThatAreNoNumbersFail)
{
    std::int32_t value = 5;
    for (const char* text : {"     ", "", "12x", "x12", "1 2", "--1", "9e999", "-"})
        EXPECT_FALSE(withI(text).ParseI(value)) << text;
    for (const char f : {' ', 'x', '-', '\0', '.', ':'})
        EXPECT_FALSE(frameOf(frametext::numbers('F', f)).ParseF(value)) << int{f};
    EXPECT_EQ(value, 5);
}

TEST(Frame, NumbersAreReadTolerantly)
{
    EXPECT_EQ(withN1("").number(1), 0);
    EXPECT_EQ(withN1("abc").number(1), 0);
    EXPECT_EQ(withN1("12abc").number(1), 12);
    EXPECT_EQ(withN1("-65536").number(1), -65536);
    EXPECT_EQ(withN1("1.25E+06").number(1), 1.25e6);
    EXPECT_EQ(withN1("  .5  9").number(1), 0.5);
    EXPECT_EQ(withN1("1e35555555555").number(1), std::numeric_limits<double>::infinity());
    EXPECT_EQ(withN1("1e-3555555555").number(1), 0);
}

TEST(Frame, PlainDecimalsOfEveryShapeReadAsTheNearestDouble)
{
    std::mt19937_64 random(46);
    const auto digits = [&random](int count) {
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += static_cast<char>('0' + random() % 10);
        return text;
    };
    for (int i = 0; i < 200000; ++i) {
        const int whole = static_cast<int>(random() % 13);
        const int fraction = static_cast<int>(random() % static_cast<std::uint64_t>(13 - whole));
        QByteArray text = digits(whole);
        if (random() % 4 != 0)
            text += '.' + digits(fraction);
        if (random() % 3 == 0)
            text.prepend('-');
        text.truncate(13);
        text = random() % 2 == 0 ? text.rightJustified(13, ' ') : text.leftJustified(13, ' ');
        const double expected = std::strtod(text.constData(), nullptr);
        ASSERT_EQ(withN1(text).number(1), expected) << '"' << text.toStdString() << '"';
    }
    EXPECT_EQ(withN1("0.00000000001").number(1), 1e-11);
    EXPECT_EQ(withN1("9999999999999").number(1), 9999999999999.0);
    EXPECT_EQ(withN1("-").number(1), 0);
    EXPECT_EQ(withN1(".").number(1), 0);
    EXPECT_EQ(withN1("5.").number(1), 5);
    EXPECT_EQ(withN1("+5").number(1), 5);
}

TEST(Frame, TextLosesItsBlanksAtBothEnds)
{
    EXPECT_EQ(frameOf(frametext::text('r', '0', "  Two  words ")).text(), QStringLiteral("Two  words"));
    EXPECT_EQ(frameOf(frametext::text('r', '0', "")).text(), QString());
    const QByteArray full(61, 'x');
    EXPECT_EQ(frameOf(frametext::text('r', '0', full)).text(), QString::fromLatin1(full));
}

} // namespace
