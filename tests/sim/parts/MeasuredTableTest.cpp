// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/parts/MeasuredTable.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using sim::MeasuredTable;

namespace {

MeasuredTable table(const QByteArray& text)
{
    ValueOr<MeasuredTable> read = MeasuredTable::fromCsv(text, "measured.csv");
    EXPECT_TRUE(read.ok()) << read.sentence().toStdString();
    return read.value();
}

double phaseAt(const MeasuredTable& part, double frequency)
{
    return std::arg(part.impedance(frequency)) * 180 / std::numbers::pi;
}

} // namespace

TEST(MeasuredTable, ReadsCommasSemicolonsAndTabsWithAndWithoutHeadings)
{
    for (const char* text :
         {"1000,50,-10\n2000,100,20\n", "Frequency,Modulus,Phase\n1000,50,-10\n2000,100,20\n",
          "f;|Z|;phi\n1000;50,0;-10,0\n2000;100;20\n", "1000\t50\t-10\r\n2000\t100\t20\r\n",
          "\xef\xbb\xbf# bench 3\n\n\"1000\" , \"50\" , \"-10\" , more\n2000,1e2,20", "2000,100,20\n1000,50,-10\n"}) {
        const MeasuredTable part = table(text);
        ASSERT_EQ(part.points().size(), 2u) << text;
        EXPECT_EQ(part.points()[0].frequency, 1000);
        EXPECT_EQ(part.points()[0].modulus, 50);
        EXPECT_EQ(part.points()[0].phase, -10);
        EXPECT_EQ(part.points()[1].modulus, 100);
    }
}

TEST(MeasuredTable, TheColumnsBeginWhereTheHeadingSaysFrequency)
{
    const MeasuredTable swept = table("sweep,frequency_Hz,impedance_Ohm,phase_deg\n1,1000,50,-10\n1,2000,100,20\n");
    ASSERT_EQ(swept.points().size(), 2u);
    EXPECT_EQ(swept.points()[1].frequency, 2000);
    EXPECT_EQ(swept.points()[1].modulus, 100);
    EXPECT_EQ(swept.points()[1].phase, 20);
    EXPECT_EQ(table("Nr;Freq. (kHz);|Z|;phi\n1;1,5;50;0\n").points()[0].frequency, 1500);
    EXPECT_EQ(table("Frequency/MHz,Z,phi\n2.5,50,0\n").points()[0].frequency, 2.5e6);
}

TEST(MeasuredTable, MeetsItsPointsAndGoesStraightBetweenThem)
{
    const MeasuredTable part = table("1000,10,-40\n100000,1000,40\n");
    EXPECT_NEAR(std::abs(part.impedance(1000)), 10, 1e-9);
    EXPECT_NEAR(std::abs(part.impedance(10000)), 100, 1e-9);
    EXPECT_NEAR(phaseAt(part, 10000), 0, 1e-9);
    EXPECT_NEAR(std::abs(part.impedance(100000)), 1000, 1e-9);
}

TEST(MeasuredTable, BeyondItsEndsTheLastPointHolds)
{
    const MeasuredTable part = table("1000,10,-40\n2000,20,40\n");
    EXPECT_NEAR(std::abs(part.impedance(10)), 10, 1e-9);
    EXPECT_NEAR(phaseAt(part, 1e7), 40, 1e-9);
}

TEST(MeasuredTable, ThePhaseTakesTheShorterWayRound)
{
    const MeasuredTable part = table("1000,10,170\n4000,10,-170\n");
    EXPECT_NEAR(std::fabs(phaseAt(part, 2000)), 180, 1e-9);
}

TEST(MeasuredTable, OnePointIsATable)
{
    EXPECT_NEAR(std::abs(table("1000,50,0").impedance(5)), 50, 1e-9);
}

TEST(MeasuredTable, WrongLinesAreNamed)
{
    const auto complaint = [](const QByteArray& text) { return MeasuredTable::fromCsv(text, "x").sentence(); };
    EXPECT_EQ(complaint(""), QString("The table holds no points."));
    EXPECT_EQ(complaint("a,b,c\n"), QString("The table holds no points."));
    EXPECT_EQ(complaint("1,2,3\n4,5\n"),
              QString("Line 2 of the table lacks one of three numbers: frequency, modulus and phase."));
    EXPECT_EQ(complaint("1,2,3\nnote,a,b\n"),
              QString("Line 2 of the table lacks one of three numbers: frequency, modulus and phase."));
    EXPECT_EQ(complaint("f,z,p\nagain,a,b\n1,2,3"),
              QString("Line 2 of the table lacks one of three numbers: frequency, modulus and phase."));
    EXPECT_EQ(complaint("0,2,3\n"), QString("Line 1 of the table: frequency and modulus must be above 0."));
    EXPECT_EQ(complaint("1,-2,3\n"), QString("Line 1 of the table: frequency and modulus must be above 0."));
    EXPECT_FALSE(complaint("1,1e999,3\n").isEmpty());
}
