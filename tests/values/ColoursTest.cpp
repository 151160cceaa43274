// SPDX-License-Identifier: GPL-3.0-or-later
#include "values/Colours.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace colours;

TEST(Colours, ComeApartFromTheLowByteUp)
{
    EXPECT_EQ(ColourRed(0x0080FF), 255);
    EXPECT_EQ(ColourGreen(0x0080FF), 128);
    EXPECT_EQ(ColourBlue(0x0080FF), 0);
    EXPECT_EQ(ColourBlue(0xFFFFFF), 255);
    for (const std::int32_t wrong : {-1, 0x1000000, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(ColourRed(wrong), -1);
        EXPECT_EQ(ColourGreen(wrong), -1);
        EXPECT_EQ(ColourBlue(wrong), -1);
    }
}

TEST(ContrastColour, OfAnInvalidColourIsWhite)
{
    EXPECT_EQ(ContrastColour(-1), 16777215);
    EXPECT_EQ(ContrastColour(0x1000000), 16777215);
}

TEST(ContrastColour, TurnsBlackAtAWeightOf401)
{
    EXPECT_EQ(ContrastColour(0x000000), 16777215);
    EXPECT_EQ(ContrastColour(0xFFFFFF), 0);
    EXPECT_EQ(ContrastColour(0x005000), 16777215) << "weight 400";
    EXPECT_EQ(ContrastColour(0x015000), 0) << "weight 401";
    EXPECT_EQ(ContrastColour(0x0000C8), 16777215) << "weight 400";
    EXPECT_EQ(ContrastColour(0x0000FF), 0) << "weight 510";
    EXPECT_EQ(ContrastColour(0xFF0000), 16777215) << "weight 255";
    EXPECT_EQ(labelTextColour(0x005000), 0xFFFFFFu);
    EXPECT_EQ(labelTextColour(0x015000), 0u);
}

TEST(Colours, OfStoredColoursComeApartAndTogetherWithoutTheHighestByte)
{
    EXPECT_EQ(componentsOf(0x0A80FF), (Components{255, 128, 10}));
    EXPECT_EQ(componentsOf(0xFF0A80FF), (Components{255, 128, 10}));
    EXPECT_EQ(fromComponents({255, 128, 10}), 0x0A80FFu);
    EXPECT_EQ(fromComponents({511, 256, -1}), 0xFF00FFu);
    EXPECT_EQ(labelTextColour(0xFF015000), 0u);
}

TEST(Colours, AreWrittenRedFirst)
{
    EXPECT_EQ(colourText(0x0A80FF), QStringLiteral("#ff800a"));
    EXPECT_EQ(colourText(0xFF000000), QStringLiteral("#000000"));
}

} // namespace
