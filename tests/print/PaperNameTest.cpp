// SPDX-License-Identifier: GPL-3.0-or-later
#include "print/PaperName.h"

#include <gtest/gtest.h>

TEST(PaperName, NumbersFromOneHaveTheirTextAndAllOthersAreUserDefined)
{
    const std::pair<int, const char*> names[] = {{1, "Letter, 8 1/2 x 11 in."},
                                                 {2, "Letter Small, 8 1/2 x 11 in."},
                                                 {5, "Legal, 8 1/2 x 14 in."},
                                                 {8, "A3, 297 x 420 mm"},
                                                 {9, "A4, 210 x 297 mm"},
                                                 {16, "10 x 14 in."},
                                                 {20, "Envelope #10, 4 1/8 x 9 1/2 in."},
                                                 {24, "C size sheet"},
                                                 {27, "Envelope DL, 110 x 220 mm"},
                                                 {35, "Envelope B6, 176 x 125 mm"},
                                                 {41, "German Legal Fanfold, 8 1/2 x 13 in."},
                                                 {42, "User-defined"},
                                                 {0, "User-defined"},
                                                 {-1, "User-defined"},
                                                 {256, "User-defined"}};
    for (const auto& [number, name] : names)
        EXPECT_EQ(PaperName(number), QLatin1String(name)) << number;
}
