// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/SerialNumber.h"

#include <gtest/gtest.h>

using sim::isSerialNumber;

TEST(SerialNumber, HasUpTo32LettersDigitsAndMarksButBeginsWithNoDot)
{
    EXPECT_TRUE(isSerialNumber("T46-0001"));
    EXPECT_TRUE(isSerialNumber("a.b_c"));
    EXPECT_FALSE(isSerialNumber(""));
    EXPECT_FALSE(isSerialNumber("."));
    EXPECT_FALSE(isSerialNumber("a/b"));
    EXPECT_FALSE(isSerialNumber("a b"));
    EXPECT_FALSE(isSerialNumber(QByteArray(33, 'a')));
}
