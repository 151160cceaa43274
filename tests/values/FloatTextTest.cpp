// SPDX-License-Identifier: GPL-3.0-or-later
#include "values/FloatText.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

std::string written(float value)
{
    char buffer[32];
    return {buffer, values::writeShortestPlain(value, buffer)};
}

std::string byLibrary(float value)
{
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed).ptr};
}

} // namespace

TEST(FloatText, IsWhatTheLibraryWritesOverTheWholeRange)
{
    constexpr std::uint32_t kStep = 1009; // a prime, so that every digit of the mantissa takes every value
    const auto last = std::bit_cast<std::uint32_t>(1e15F);
    std::uint32_t left = 0, wrong = 0;
    for (auto bits = std::bit_cast<std::uint32_t>(1e-7F); bits <= last; bits += kStep) {
        const auto value = std::bit_cast<float>(bits);
        const std::string text = written(value);
        if (text.empty())
            ++left;
        else if (text != byLibrary(value) && ++wrong < 5)
            ADD_FAILURE() << text << ", not " << byLibrary(value);
    }
    EXPECT_EQ(wrong, 0U);
    EXPECT_LT(left, 10U) << "powers of two only";
}

TEST(FloatText, HalfWaysWholeNumbersAndEndsOfTheRangeAreWrittenToo)
{
    EXPECT_EQ(written(0.1F), "0.1");
    EXPECT_EQ(written(0.3F), "0.3");
    EXPECT_EQ(written(1000.5F), "1000.5");
    EXPECT_EQ(written(40000), "40000");
    EXPECT_EQ(written(9999999), "9999999");
    EXPECT_EQ(written(16777215), "16777215");
    EXPECT_EQ(written(16777218), "16777218");
    EXPECT_EQ(written(123456789), "123456792") << "a whole number in full";
    EXPECT_EQ(written(1e15F), "999999986991104");
    EXPECT_EQ(written(1e-7F), "0.0000001");
}

TEST(FloatText, WhatItLeavesToTheLibraryIsNotWritten)
{
    using Limits = std::numeric_limits<float>;
    for (const float value : {0.0F, -0.0F, -1.5F, 1.0F, 0.25F, 1024.0F, 0.99e-7F, 1.1e15F, Limits::infinity(),
                              Limits::quiet_NaN(), Limits::denorm_min(), Limits::max()})
        EXPECT_EQ(written(value), "") << value;
}
