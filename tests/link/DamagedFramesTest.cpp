// SPDX-License-Identifier: GPL-3.0-or-later
// Frames whose fields are damaged or beyond what an instrument has.
#include "DispatchFixture.h"

#include "values/Conversions.h"

namespace {

using frametext::numbers;
using frametext::text;

class DamagedFramesTest : public DispatchFixture
{};

TEST_F(DamagedFramesTest, FlagsReadFromNumbersAreTrueUnlessExactlyZero)
{
    send(numbers('E', '0', 1e-12, 1, 2, -0.5, -1));
    EXPECT_TRUE(mirror.bfRunning);
    EXPECT_TRUE(state.gbfSweepActive);
    EXPECT_TRUE(mirror.bfIdleOutput);
    send(frametext::raw('E', '0', "-0", "1", "2", "", "0"));
    EXPECT_FALSE(mirror.bfRunning);
    EXPECT_FALSE(state.gbfSweepActive);
}

TEST_F(DamagedFramesTest, FieldThatFailsLeavesTheMirrorAsItWas)
{
    for (const char code : QByteArray("ACEJLPX")) {
        const InstrumentMirror before = mirror;
        for (const QByteArray& frame :
             {frametext::raw(code, 'x', "7", "7", "7", "7", "7"), frametext::raw(code, '1', "7", "7", "7", "7", "x")}) {
            send(frame);
            EXPECT_EQ(mirror.dblStartFrequency, before.dblStartFrequency) << code;
            EXPECT_EQ(mirror.bfAttenuationAvailable, before.bfAttenuationAvailable) << code;
            EXPECT_EQ(mirror.iPointsInTest, before.iPointsInTest) << code;
            EXPECT_EQ(mirror.dblAmpMinFreq, before.dblAmpMinFreq) << code;
            EXPECT_EQ(mirror.iVdutCode, before.iVdutCode) << code;
        }
    }
    EXPECT_TRUE(window.panels.empty());
    EXPECT_FALSE(state.gbfDeviceReady);
}

TEST_F(DamagedFramesTest, HugeNumbersAreClampedToTheTypeOfTheVariable)
{
    send(frametext::raw('A', '1', "0", "0", "1", "1e30", "99999") +
         frametext::raw('P', '1', "-1e30", "0", "0", "0", "0"));
    EXPECT_EQ(mirror.iAttenuationCode, 32767);
    EXPECT_EQ(mirror.iAttenuationSteps, 32767);
    EXPECT_EQ(mirror.iPointsInTest, -32768);
}

TEST_F(DamagedFramesTest, DamagedNumbersOfTheStateAreNeverSent)
{
    send(numbers('L', '1', 20, 4000000, -80, 5));
    written();
    for (const char* damaged : {"1e999", "-1e999", "0", "9e9", "5", "x"}) {
        reconnect();
        const InstrumentMirror before = mirror;
        send(frametext::raw('X', '9', damaged, damaged, "64",
                            qAbs(values::tolerantNumber(damaged)) > 0 ? damaged : "-7", "0"));
        EXPECT_EQ(written().join(u'|'), QStringLiteral("phase 1|idlefreq -1|points 100|atten 0|repeat 0|sweepmode 2|"
                                                       "period 0|startfreq 1000|endfreq 1000000"))
            << damaged;
        send(frametext::raw('s', '0', "0", damaged, damaged, "0", "0") +
             frametext::raw('K', '9', "inf", damaged, damaged, "0", "0") +
             frametext::raw('L', '1', damaged, damaged, damaged, damaged, "0"));
        EXPECT_EQ(mirror.dblStartFrequency, before.dblStartFrequency) << damaged;
        EXPECT_EQ(mirror.dblEndFrequency, before.dblEndFrequency) << damaged;
        EXPECT_EQ(mirror.dblAmpMinFreq, 20) << damaged;
        EXPECT_EQ(mirror.dblAmpMaxFreq, 4000000) << damaged;
        EXPECT_EQ(mirror.dblAmpMinDb, -80) << damaged;
        mirror.dblIdleFrequency = -1;
    }
    EXPECT_EQ(panel(3), QStringLiteral("1000 Hz"));
}

TEST_F(DamagedFramesTest, DamagedRangesOfATestAreNotBelieved)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    send(numbers('L', '1', 20, 4000000, -80, 5));
    for (const char code : {'D', 'E'}) {
        for (const char* damaged : {"1e999", "-1e999", "0", "9e9", "5", "x"}) {
            send(frametext::raw(code, '1', "1", damaged, "60000", "0", "0"));
            EXPECT_EQ(mirror.dblStartFrequency, 1000) << code << damaged;
            EXPECT_EQ(mirror.dblEndFrequency, 60000) << code << damaged;
            send(frametext::raw(code, '1', "1", "1000", damaged, "0", "0"));
            EXPECT_EQ(mirror.dblEndFrequency, 60000) << code << damaged;
            EXPECT_EQ(panel(3), QStringLiteral("1000 Hz")) << code << damaged;
            EXPECT_EQ(panel(4), QStringLiteral("60000 Hz")) << code << damaged;
        }
    }
}

TEST_F(DamagedFramesTest, StoredSettingsThatNoInstrumentHasAreNeverSent)
{
    const std::pair<const char*, const char*> wild[] = {
        {"iNumPoints", "0"},         {"iNumPoints", "-5"},       {"iNumPoints", "1025"},
        {"iTestPeriod", "-1"},       {"iTestPeriod", "40000"},   {"iAttenuationCode", "4"},
        {"iAttenuationCode", "-1"},  {"iSweepMode", "3"},        {"dblStartFrequency", "0"},
        {"dblEndFrequency", "1e30"}, {"dblIdleFrequency", "-2"}, {"dblStartFrequency", "-1000"},
    };
    for (const auto& [key, value] : wild) {
        reconnect();
        setting("S1", key, QLatin1String(value));
        send(text('V', '0', "S1") + numbers('A', '1', 0, 0, 10, 0, 3) + numbers('X', '2', 5000, 9000, 64, -1, 3));
        EXPECT_EQ(written().join(u'|'), QStringLiteral("phase 1|idlefreq -1|points 100|atten 0|repeat 0|sweepmode 2|"
                                                       "period 0|startfreq 5000|endfreq 9000"))
            << key << ' ' << value;
    }
}

} // namespace
