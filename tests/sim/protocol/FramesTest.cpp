// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/Frames.h"

#include "tests/sim/ReadFrame.h"

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace {

std::string written(double value)
{
    char columns[13];
    sim::writeNumber(value, columns);
    return std::string(columns, sizeof columns);
}

double readBack(double value)
{
    return values::tolerantNumber(written(value));
}

} // namespace

TEST(Frames, AFrameHas67BytesWithItsFieldsInTheirColumns)
{
    const sim::Frame frame = sim::numberFrame('F', 1, {1.5, -2.25, 300, 4e6, 1023});
    const std::string text(frame.data(), frame.size());
    EXPECT_EQ(text, "F:1           1.5         -2.25           300       4000000  1023\r\n");
}

TEST(Frames, ATextFrameHoldsItsTextFromColumnFive)
{
    const sim::Frame frame = sim::textFrame('V', 0, "T46-0001");
    const std::string text(frame.data(), frame.size());
    EXPECT_EQ(text, "V:0 T46-0001" + std::string(53, ' ') + "\r\n");
}

TEST(Frames, ATextTooLongIsCutAndAControlCharacterIsReplaced)
{
    const ReadFrame read = readFrame(sim::textFrame('T', 1, std::string(80, 'x')));
    EXPECT_EQ(read.text, std::string(61, 'x'));
    EXPECT_EQ(readFrame(sim::textFrame('T', 1, "a\rb\xffg")).text, "a?b?g");
}

TEST(Frames, FieldTenIsWrittenA)
{
    EXPECT_EQ(sim::numberFrame('a', 10, {})[2], 'A');
    EXPECT_EQ(sim::numberFrame('a', 9, {})[2], '9');
    EXPECT_EQ(sim::numberFrame('a', 11, {})[2], '0');
    EXPECT_EQ(sim::numberFrame('a', -1, {})[2], '0');
}

TEST(Frames, TheIntegerIsKeptWithinItsFiveColumns)
{
    EXPECT_EQ(readFrame(sim::numberFrame('F', 0, {0, 0, 0, 0, 1234567})).i, 99999);
    const sim::Frame frame = sim::numberFrame('F', 0, {0, 0, 0, 0, -1234567});
    EXPECT_EQ(std::string(frame.data() + 60, 5), "-9999");
}

TEST(Frames, NumbersArePlainDecimalsWhereTheyFit)
{
    EXPECT_EQ(written(0), "            0");
    EXPECT_EQ(written(-0.0), "            0");
    EXPECT_EQ(written(50000000), "     50000000");
    EXPECT_EQ(written(0.001), "        0.001");
    EXPECT_EQ(written(-65536), "       -65536");
    EXPECT_EQ(written(1.0 / 3), "0.33333333333");
    EXPECT_EQ(written(-1.0 / 3), "-0.3333333333");
    EXPECT_EQ(written(123456.7890123), "123456.789012");
}

TEST(Frames, RoundingUpToAnotherDigitStillFits)
{
    EXPECT_EQ(written(9.9999999999999), "10.0000000000");
    EXPECT_EQ(written(-99999999999.96), "-100000000000");
    EXPECT_EQ(readBack(999999999999.9), 1e12);
}

TEST(Frames, SmallAndLargeNumbersUseAnExponent)
{
    EXPECT_EQ(written(1e-5), "         1e-5");
    EXPECT_EQ(written(1.23456789012e-7), "1.23456789e-7");
    EXPECT_EQ(written(-1e20), "        -1e20");
    EXPECT_EQ(readBack(1e300), 1e300);
}

TEST(Frames, WhatIsNoFiniteNumberIsStillWrittenAsOne)
{
    EXPECT_EQ(written(std::numeric_limits<double>::quiet_NaN()), "            0");
    EXPECT_GT(readBack(std::numeric_limits<double>::infinity()), 1e299);
    EXPECT_LT(readBack(-std::numeric_limits<double>::infinity()), -1e299);
}

TEST(Frames, SinglePrecisionSurvivesFromOneThousandthToTenMilliards)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> decade(-2.99, 9.99);
    for (int i = 0; i < 200000; ++i) {
        const double sign = random() % 2 == 0 ? 1.0 : -1.0;
        const auto value = static_cast<float>(sign * std::pow(10.0, decade(random)));
        ASSERT_EQ(std::bit_cast<std::uint32_t>(static_cast<float>(readBack(value))),
                  std::bit_cast<std::uint32_t>(value))
            << written(value);
    }
}
