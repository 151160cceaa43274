// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ui/QtColour.h"

#include <gtest/gtest.h>

TEST(QtColour, HasRedInTheLowByteAndIsOpaqueWhateverTheHighest)
{
    EXPECT_EQ(toQColor(0x0A80FF), QColor(255, 128, 10));
    EXPECT_EQ(toQColor(0xAA0A80FF), QColor(255, 128, 10));
    EXPECT_EQ(fromQColor(QColor(255, 128, 10, 7)), 0x0A80FFu);
}
