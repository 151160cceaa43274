// SPDX-License-Identifier: GPL-3.0-or-later
// Frames of the instrument's state: every field into the mirror, the panels and the events.
#include "DispatchFixture.h"

namespace {

using frametext::numbers;
using frametext::text;

class StatusFramesTest : public DispatchFixture
{};

TEST_F(StatusFramesTest, AttenuationA)
{
    send(numbers('A', '1', 5, 6, 2.5, 3, 7));
    EXPECT_TRUE(mirror.bfAttenuationAvailable);
    EXPECT_EQ(mirror.dblAttenuationStep, 2.5);
    EXPECT_EQ(mirror.iAttenuationCode, 3);
    EXPECT_EQ(mirror.iAttenuationSteps, 7);
    EXPECT_EQ(panel(10), QStringLiteral("-7.5 dB"));
    send(numbers('A', '0', 0, 0, 10, 0, 0));
    EXPECT_FALSE(mirror.bfAttenuationAvailable);
    EXPECT_EQ(panel(10), QStringLiteral("0 dB"));
    send(numbers('A', '1', 0, 0, 0.1, 3, 7));
    EXPECT_EQ(panel(10), QStringLiteral("-0.3 dB"));
    EXPECT_EQ(changed(), Parts(3, MirrorPart::Attenuation));
}

TEST_F(StatusFramesTest, CalibrationSlopeBTakesTheOffsetOfN3)
{
    send(numbers('B', '1', 32000, 4, 5, 1.75));
    EXPECT_TRUE(mirror.bfLoopBack);
    EXPECT_EQ(mirror.dblOscFrequencyB, 32000);
    EXPECT_EQ(mirror.dblCalOffset, 5);
    EXPECT_EQ(mirror.dblCalSlope, 1.75);
    send(numbers('B', '0', 0, 0, 0, -2.5));
    EXPECT_FALSE(mirror.bfLoopBack);
    EXPECT_EQ(mirror.dblCalSlope, -2.5);
    EXPECT_EQ(changed(), (Parts{MirrorPart::CalibrationSlope, MirrorPart::LoopBack, MirrorPart::CalibrationSlope,
                                MirrorPart::LoopBack}));
}

TEST_F(StatusFramesTest, TrimCShowsPhaseOnOnlyForOne)
{
    send(numbers('C', '1', 1000, 0.5, 0.25, 12, 34));
    EXPECT_EQ(panel(6), QStringLiteral("On"));
    EXPECT_EQ(mirror.dblOscFrequencyC, 1000);
    EXPECT_EQ(mirror.dblVrefLevel, 0.5);
    EXPECT_EQ(mirror.dblVdutLevel, 0.25);
    EXPECT_EQ(mirror.iVrefCode, 12);
    EXPECT_EQ(mirror.iVdutCode, 34);
    EXPECT_EQ(changed(), Parts{MirrorPart::Trim});
    send(numbers('C', '2'));
    EXPECT_EQ(panel(6), QStringLiteral("Off"));
    send(numbers('C', '0', 0, 0, 0, 3, 4));
    EXPECT_EQ(panel(6), QStringLiteral("Off"));
}

TEST_F(StatusFramesTest, IdleLevelGIsToldWithItsSignedPhase)
{
    send(numbers('G', '0', 0, -12.5, 45, -1) + numbers('G', '0', 0, -3, -65536, 1));
    EXPECT_EQ(levels, (std::vector<Level>{{-12.5, -45, true}, {-3, -65536, false}}));
}

TEST_F(StatusFramesTest, IdleImpedanceIAlwaysHasAPhase)
{
    send(numbers('I', '0', 0, 50, 45, -1) + numbers('I', '0', 0, 50, -65536, 1));
    EXPECT_EQ(levels, (std::vector<Level>{{50, -45, true}, {50, -65536, true}}));
}

TEST_F(StatusFramesTest, OptionsJ)
{
    send(numbers('J', '1', 1, 0, 2, 0, 9));
    EXPECT_TRUE(mirror.bfLoopBack);
    EXPECT_TRUE(mirror.bfOption1);
    EXPECT_FALSE(mirror.bfOption2);
    EXPECT_TRUE(mirror.bfOption3);
    EXPECT_FALSE(mirror.bfOption4);
    EXPECT_EQ(changed(), (Parts{MirrorPart::LoopBack, MirrorPart::Options}));
}

TEST_F(StatusFramesTest, SweepKLeavesTheFrequencyPanelsAlone)
{
    send(numbers('K', '0', 12000, 5000, 9000));
    EXPECT_EQ(mirror.iSweepDirection, 0);
    EXPECT_EQ(mirror.dblIdleFrequency, 12000);
    EXPECT_EQ(mirror.dblStartFrequency, 5000);
    EXPECT_EQ(mirror.dblEndFrequency, 9000);
    EXPECT_EQ(panel(9), QStringLiteral("A to B"));
    EXPECT_EQ(panel(8), QStringLiteral("12000 Hz"));
    EXPECT_EQ(window.panels.count(3), 0U);
    EXPECT_EQ(window.panels.count(4), 0U);
    send(numbers('K', '1', 0));
    EXPECT_EQ(panel(9), QStringLiteral("B to A"));
    EXPECT_EQ(panel(8), QStringLiteral("Off"));
    send(numbers('K', '2', -1));
    EXPECT_EQ(panel(9), QStringLiteral("Alternate"));
    EXPECT_EQ(panel(8), QStringLiteral("Start"));
    send(numbers('K', '3', -2));
    EXPECT_EQ(panel(9), QStringLiteral("Alternate"));
    EXPECT_EQ(panel(8), QStringLiteral("Start")) << "an idle frequency that none can have";
    EXPECT_EQ(mirror.dblIdleFrequency, -1);
}

TEST_F(StatusFramesTest, LimitsLMN)
{
    send(numbers('L', '1', 20, 4000000, -80, 5, 1));
    EXPECT_TRUE(mirror.bfAmplitudeTest);
    EXPECT_EQ(mirror.dblAmpMinFreq, 20);
    EXPECT_EQ(mirror.dblAmpMaxFreq, 4000000);
    EXPECT_EQ(mirror.dblAmpMinDb, -80);
    EXPECT_EQ(mirror.dblAmpMaxDb, 5);
    EXPECT_TRUE(mirror.bfIdleOutput);
    send(numbers('M', '1', 1, 2, -40000, 40000, 3));
    EXPECT_TRUE(mirror.bfReactanceTest);
    EXPECT_EQ(mirror.dblReactanceMin, -40000);
    EXPECT_EQ(mirror.dblReactanceMax, 40000);
    send(numbers('N', '1', 1, 2, 0.1, 1000000, 3));
    EXPECT_TRUE(mirror.bfImpedanceTest);
    EXPECT_EQ(mirror.dblImpMinOhms, 0.1);
    EXPECT_EQ(mirror.dblImpMaxOhms, 999999);
}

TEST_F(StatusFramesTest, FirmwareVersionO)
{
    send(numbers('O', '1', 1, 23, 456, 3));
    EXPECT_TRUE(mirror.bfDebugFirmware);
    EXPECT_EQ(mirror.dblFirmwareMajor, 1);
    EXPECT_EQ(mirror.dblFirmwareMinor, 23);
    EXPECT_EQ(mirror.dblFirmwareBuild, 456);
    EXPECT_EQ(mirror.dblFirmwareBoard, 3);
    EXPECT_DOUBLE_EQ(mirror.dblFirmwareVersion, 1.23);
}

TEST_F(StatusFramesTest, PointsPFillPanelFiveUnlessATestRuns)
{
    send(numbers('P', '1', 300, 2, 3, 4, 5));
    EXPECT_TRUE(mirror.bfRunning);
    EXPECT_EQ(mirror.iPointsInTest, 300);
    EXPECT_EQ(mirror.iTestParam1, 2);
    EXPECT_EQ(mirror.iTestParam2, 3);
    EXPECT_EQ(mirror.iTestParam3, 4);
    EXPECT_EQ(mirror.iTestParam4, 5);
    EXPECT_EQ(panel(5), QStringLiteral("300 pts"));
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    send(numbers('P', '1', 400));
    EXPECT_EQ(mirror.iPointsInTest, 400);
    EXPECT_EQ(panel(5), QStringLiteral("300 pts"));
}

TEST_F(StatusFramesTest, TestParametersQAndPeriodS)
{
    send(numbers('Q', '0', 5, 12, 6, 7));
    EXPECT_EQ(mirror.iTestParam5, 5);
    EXPECT_EQ(panel(7), QStringLiteral("12 mS"));
    EXPECT_EQ(mirror.iTestParam6, 6);
    EXPECT_EQ(mirror.iTestParam7, 7);
    send(numbers('S', '0', 1, 2.5, 8, 9));
    EXPECT_EQ(panel(7), QStringLiteral("2.5 mS"));
    EXPECT_EQ(mirror.iTestParam2, 8);
    EXPECT_EQ(mirror.iTestParam3, 9);
    EXPECT_EQ(mirror.iTestPeriod, 0);
}

TEST_F(StatusFramesTest, CalibrationR)
{
    send(numbers('R', '1', 4, 5, 1));
    EXPECT_TRUE(mirror.bfApplyCal);
    EXPECT_EQ(mirror.iCalParam1, 4);
    EXPECT_EQ(mirror.iCalParam2, 5);
    EXPECT_TRUE(mirror.bfCalibrated);
    send(numbers('R', '0', 4, 5, 0));
    EXPECT_FALSE(mirror.bfApplyCal);
    EXPECT_FALSE(mirror.bfCalibrated);
    EXPECT_EQ(changed(), Parts(2, MirrorPart::Calibration));
}

TEST_F(StatusFramesTest, SerialNumberVNamesTheSectionOfTheSettings)
{
    send(text('V', '0', "T46-0815"));
    EXPECT_EQ(mirror.strDeviceSerial, QStringLiteral("T46-0815"));
    EXPECT_EQ(changed(), Parts{MirrorPart::SerialNumber});
    module.DeviceSaveSettings();
    EXPECT_EQ(saved(QStringLiteral("T46-0815"), "iNumPoints"), QStringLiteral("(none)"))
        << "its answer is not complete";
    send(numbers('X', '2', 5000, 9000, 64, -1, 3));
    module.DeviceSaveSettings();
    EXPECT_EQ(saved(QStringLiteral("T46-0815"), "iNumPoints"), QStringLiteral("100"));
}

TEST_F(StatusFramesTest, CompleteStateXMakesTheSettingsLiveAndSendsTheSavedOnes)
{
    send(text('V', '0', "S1"));
    setting("S1", "iNumPoints", 256);
    setting("S1", "bfRepeat", true);
    written();
    send(numbers('X', '1', 5000, 9000, 64, -1, 3));
    EXPECT_TRUE(state.gbfDeviceReady);
    EXPECT_EQ(panel(9), QStringLiteral("B to A"));
    EXPECT_EQ(panel(3), QStringLiteral("5000 Hz"));
    EXPECT_EQ(panel(4), QStringLiteral("9000 Hz"));
    EXPECT_EQ(panel(5), QStringLiteral("64 pts"));
    EXPECT_EQ(panel(8), QStringLiteral("Start"));
    EXPECT_EQ(mirror.iSweepMode, 1);
    EXPECT_EQ(mirror.dblStartFrequency, 5000);
    EXPECT_EQ(mirror.dblEndFrequency, 9000);
    EXPECT_EQ(mirror.iPointsInTest, 64);
    EXPECT_EQ(mirror.iTestParam7, 3);
    EXPECT_EQ(mirror.iNumPoints, 256);
    EXPECT_TRUE(repeatStatus);
    EXPECT_EQ(written().join(u'|'), QStringLiteral("phase 1|idlefreq -1|points 256|atten 0|repeat 1|sweepmode 1|"
                                                   "period 0|startfreq 5000|endfreq 9000"));
    EXPECT_EQ(completed, 1);
}

TEST_F(StatusFramesTest, CompleteStateXClampsTheCountOfPoints)
{
    send(numbers('X', '2', 0, 0, 40000, 0, 0));
    EXPECT_EQ(mirror.iPointsInTest, 32767);
    EXPECT_EQ(panel(5), QStringLiteral("32767 pts"));
}

TEST_F(StatusFramesTest, CompleteStateXDuringATestShowsTheProgress)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    send(numbers('F', '0', 40000, 50, 30, 1, 4) + numbers('X', '2', 0, 0, 10, 0, 0));
    EXPECT_EQ(panel(5), QStringLiteral("5/10 pts"));
}

TEST_F(StatusFramesTest, DeviceInformationLFillsItsSlots)
{
    for (int slot = 0; slot < 6; ++slot)
        send(text('l', static_cast<char>('0' + slot), QByteArray("Info ") + QByteArray::number(slot)));
    for (std::size_t slot = 0; slot < 6; ++slot)
        EXPECT_EQ(mirror.strDeviceInfo[slot], QStringLiteral("Info %1").arg(slot));
    send(text('l', '6', "T46"));
    EXPECT_EQ(mirror.strDeviceModel, QStringLiteral("T46"));
    EXPECT_EQ(device.DeviceType(), 1);
    send(text('l', '6', "PELLFERN"));
    EXPECT_EQ(device.DeviceType(), 2);
    EXPECT_TRUE(device.SamplingDevice());
    send(text('l', '7', "nowhere") + text('l', 'A', "nowhere"));
    EXPECT_EQ(mirror.strDeviceModel, QStringLiteral("PELLFERN"));
}

TEST_F(StatusFramesTest, SweepRangeSConfirmsTheRange)
{
    send(numbers('s', '0', 1, 2500.5, 7000));
    EXPECT_EQ(mirror.dblStartFrequency, 2500.5);
    EXPECT_EQ(mirror.dblEndFrequency, 7000);
    EXPECT_EQ(panel(3), QStringLiteral("2500.5 Hz"));
    EXPECT_EQ(panel(4), QStringLiteral("7000 Hz"));
    EXPECT_EQ(changed(), Parts{MirrorPart::SweepRangeConfirmed});
}

TEST_F(StatusFramesTest, StoredSamplesAreSentWithTheStateWhetherOrNotADialogIsOpen)
{
    const auto sentFor = [this](const char* model, bool scriptRuns = false) {
        reconnect();
        state.gbfScriptRunning = scriptRuns;
        send(text('V', '0', "S1") + text('l', '6', model) + numbers('X', '2', 5000, 9000, 64, -1, 3));
        return written().filter(QStringLiteral("samples")).join(u'|');
    };
    EXPECT_EQ(sentFor("PELLFERN"), QString()) << "none is known, none is forced";
    setting("S1", "Samples", 64);
    EXPECT_EQ(sentFor("PELLFERN"), QStringLiteral("samples 64"));
    for (const int wild : {0, -3, 5000}) {
        setting("S1", "Samples", wild);
        EXPECT_EQ(sentFor("PELLFERN"), QString()) << wild;
    }
    setting("S1", "Samples", 100);
    EXPECT_EQ(sentFor("PELLFERN"), QStringLiteral("samples 64"));
    EXPECT_EQ(sentFor("PELLFERN", true), QString());
    EXPECT_EQ(sentFor("T46"), QString());
}

} // namespace
