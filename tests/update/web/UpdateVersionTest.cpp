// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/UpdateVersion.h"

#include "program/Version.h"

#include <gtest/gtest.h>

using namespace updateversion;

TEST(UpdateVersion, ANameOfTheGrammarGivesMajorAndMinor)
{
    EXPECT_EQ(GetFileMajorVersion("MGV1R28B3.exe"), 1);
    EXPECT_EQ(GetFileMinorVersion("MGV1R28B3.exe"), 28);
    EXPECT_EQ(GetVersionFromFileName("MGV1R28B3.exe"), 1.28);
    EXPECT_EQ(GetVersionFromFileName("T46V12R7B31.mfw"), 12.7);
}

TEST(UpdateVersion, RThenDThenUDivideMajorFromMinor)
{
    EXPECT_EQ(GetVersionFromFileName("T46V2D5B1.mfw"), 2.5);
    EXPECT_EQ(GetVersionFromFileName("T46V2U5B1.mfw"), 2.5);
    EXPECT_EQ(GetFileMajorVersion("T46V2D5R1B1.mfw"), 0) << "\"2D5\" is no integer";
    EXPECT_EQ(GetFileMinorVersion("T46V2D5R1B1.mfw"), 1);
    EXPECT_EQ(GetFileMajorVersion("T46V2U5D1B1.mfw"), 0);
    EXPECT_EQ(GetFileMinorVersion("T46V2U5D1B1.mfw"), 1);
}

TEST(UpdateVersion, OnePointThreeRanksAboveOnePoint28)
{
    EXPECT_GT(GetVersionFromFileName("MGV1R3B1.exe"), GetVersionFromFileName("MGV1R28B1.exe"));
}

TEST(UpdateVersion, OnePointTenEqualsOnePointOne)
{
    EXPECT_EQ(GetVersionFromFileName("MGV1R10B1.exe"), GetVersionFromFileName("MGV1R1B1.exe"));
}

TEST(UpdateVersion, AMajorWithoutVBeginsAtTheFirstLetterAndGivesZero)
{
    EXPECT_EQ(GetFileMajorVersion("MG1R28B3.exe"), 0);
    EXPECT_EQ(GetFileMinorVersion("MG1R28B3.exe"), 28);
    EXPECT_EQ(GetFileMajorVersion("7R28B3.exe"), 7) << "where that is an integer it counts";
    EXPECT_EQ(GetFileMajorVersion("R28B3.exe"), 0) << "a separator at the first place counts as none";
}

TEST(UpdateVersion, ATagThatHoldsTheSeparatorMakesTheMinorZero)
{
    EXPECT_EQ(GetFileMajorVersion("DT46V1D28B3.mfw"), 1);
    EXPECT_EQ(GetFileMinorVersion("DT46V1D28B3.mfw"), 0);
    EXPECT_EQ(GetVersionFromFileName("DT46V1D28B3.mfw"), 1.0);
    EXPECT_EQ(GetVersionFromFileName("DT46V1R28B3.mfw"), 1.28) << "\"R\" is looked for first";
    EXPECT_EQ(GetVersionFromFileName("PELLFERNV1R28B3.mfw"), 1.0);
}

TEST(UpdateVersion, ANameWithoutTheGrammarIsVersionZero)
{
    for (const char* name :
         {"", "NO_URL", "MG", "MG.exe", "MGVxRyB.exe", "MGV99999R1", "V", "VR", "VRB", "mgv1r28b3.exe"})
        EXPECT_EQ(GetVersionFromFileName(name), 0) << name;
}

TEST(UpdateVersion, AMinorWithoutBIsZero)
{
    EXPECT_EQ(GetFileMinorVersion("MGV1R28.exe"), 0);
    EXPECT_EQ(GetVersionFromFileName("MGV1R28.exe"), 1.0);
}

TEST(UpdateVersion, NumbersBeyond16BitsAreZero)
{
    EXPECT_EQ(GetFileMajorVersion("MGV32767R1B1"), 32767);
    EXPECT_EQ(GetFileMajorVersion("MGV32768R1B1"), 0);
}

TEST(UpdateVersion, TheInstalledVersionIsADecimalToo)
{
    EXPECT_EQ(versionNumber(1, 28), 1.28);
    EXPECT_EQ(versionNumber(1, 10), 1.1);
    EXPECT_EQ(versionNumber(0, 0), 0);
    EXPECT_EQ(programVersion(), versionNumber(version::majorNumber(), version::minorNumber()));
}
