// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/Commands.h"

#include <gtest/gtest.h>

namespace {

TEST(Commands, AreTheTextsOfTheCommandTable)
{
    const struct
    {
        QString made;
        const char* text;
    } rows[] = {
        {command::startFreq(38000.5), "startfreq 38000.5\r"},
        {command::endFreq(1000000), "endfreq 1000000\r"},
        {command::idleFreq(-1), "idlefreq -1\r"},
        {command::spotFreq(1000), "spotfreq 1000\r"},
        {command::points(1024), "points 1024\r"},
        {command::atten(7), "atten 7\r"},
        {command::repeat(true), "repeat 1\r"},
        {command::sweepMode(2), "sweepmode 2\r"},
        {command::period(0), "period 0\r"},
        {command::phase(false), "phase 0\r"},
        {command::samples(128), "samples 128\r"},
        {command::linear(true), "linear 1\r"},
        {command::linear(false), "linear 0\r"},
        {command::ampTest(), "amptest\r"},
        {command::impTest(), "imptest\r"},
        {command::ampSpot(3200000), "ampspot 3200000\r"},
        {command::impSpot(40000), "impspot 40000\r"},
        {command::stop(), "y\r"},
        {command::refuse(), "x\r"},
        {command::yes(), " y\r"},
        {command::acknowledge(), " "},
        {command::run(), "run\r"},
        {command::enquire(QStringLiteral("1.28")), "enquire 1.28\r"},
        {command::loadScript(4711), "loadscript 4711\r"},
        {command::setVref(0), "setvref 0 0\r"},
        {command::setVdut(255), "setvdut 255 0\r"},
        {command::setFreqComp(-3), "setfreqcomp -3\r"},
        {command::setSerial(QStringLiteral("T46-7")), "setserial T46-7\r"},
        {command::calOn(true), "calon 1\r"},
        {command::loopback(false), "loopback 0\r"},
        {command::phaseCal(), "phasecal \r"},
        {command::calibrate(QStringLiteral("14050902032021")), "calibrate CAL-14050902032021\r"},
        {command::zeroCal(), "zerocal\r"},
        {command::diagnose(), "diagnose\r"},
        {command::factoryDefault(), "default\r"},
        {command::save(), "save\r"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.made, QLatin1String(row.text));
}

TEST(Commands, SelectPinTwoForAmplitudeAndPinOneForAnyOtherTypeWithThePenDirectlyBehind)
{
    EXPECT_EQ(command::setPin(1, 3), QStringLiteral("setpin 23\r"));
    EXPECT_EQ(command::setPin(1, 10), QStringLiteral("setpin 210\r"));
    EXPECT_EQ(command::setPin(2, 1), QStringLiteral("setpin 11\r"));
    EXPECT_EQ(command::setPin(3, 10), QStringLiteral("setpin 110\r"));
    EXPECT_EQ(command::setPin(0, 4), QStringLiteral("setpin 14\r"));
}

TEST(Commands, NumbersHaveNoExponent)
{
    EXPECT_EQ(command::startFreq(1e16), QStringLiteral("startfreq 10000000000000000\r"));
    EXPECT_EQ(command::idleFreq(2.5e-8), QStringLiteral("idlefreq 0.000000025\r"));
}

} // namespace
