// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/rules/FirmwareVersion.h"

#include "instrument/InstrumentMirror.h"

#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(FirmwareVersion, MinorIsDividedByTenAsLongAsItIsAboveOne)
{
    EXPECT_DOUBLE_EQ(firmwareVersionNumber(1, 23), 1.23);
    EXPECT_DOUBLE_EQ(firmwareVersionNumber(1, 10), 2.0);
    EXPECT_DOUBLE_EQ(firmwareVersionNumber(1, 1), 2.0);
    EXPECT_DOUBLE_EQ(firmwareVersionNumber(1, 0), 1.0);
    EXPECT_DOUBLE_EQ(firmwareVersionNumber(1, 9), 1.9);
    EXPECT_DOUBLE_EQ(firmwareVersionNumber(2, 105), 2.105);
}

TEST(FirmwareVersion, AMinorWithoutEndEnds)
{
    EXPECT_EQ(firmwareVersionNumber(1, std::numeric_limits<double>::infinity()), 1);
}

TEST(FirmwareVersion, TextTellsDebugFirmware)
{
    InstrumentMirror mirror;
    mirror.dblFirmwareMajor = 1;
    mirror.dblFirmwareMinor = 23;
    mirror.dblFirmwareBuild = 456;
    EXPECT_EQ(firmwareVersionText(mirror), QStringLiteral("V1.23 Build 456"));
    mirror.bfDebugFirmware = true;
    EXPECT_EQ(firmwareVersionText(mirror), QStringLiteral("DEBUG V1.23 Build 456"));
}

TEST(FirmwareVersion, ModelTellsTheKindOfDevice)
{
    EXPECT_EQ(deviceTypeOfModel(QStringLiteral("PELLFERN")), 2);
    EXPECT_EQ(deviceTypeOfModel(QStringLiteral("T46")), 1);
    EXPECT_EQ(deviceTypeOfModel(QStringLiteral("R52")), 0);
    EXPECT_EQ(deviceTypeOfModel(QString()), 0);
}

} // namespace
