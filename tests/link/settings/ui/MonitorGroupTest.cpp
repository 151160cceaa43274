// SPDX-License-Identifier: GPL-3.0-or-later
// The spot measurement and its boxes.
#include "SettingsFixture.h"

#include <QLabel>
#include <QProgressBar>

namespace {

using frametext::numbers;
using frametext::text;

class MonitorGroupTest : public SettingsFixture
{};

TEST_F(MonitorGroupTest, MonitorAppliesAndPutsOutTheSpotSignal)
{
    open();
    click("chkMonitor");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000|endfreq 1000000|spotfreq 400000|y|ampspot 400000"));
    EXPECT_FALSE(control<QWidget>("optMonitorAmplitude")->isEnabled());
    EXPECT_FALSE(control<QWidget>("optMonitorImpedance")->isEnabled());
    click("chkMonitor");
    EXPECT_EQ(commands(), QStringLiteral("y"));
    EXPECT_TRUE(control<QWidget>("optMonitorAmplitude")->isEnabled());
    EXPECT_TRUE(control<QWidget>("optMonitorImpedance")->isEnabled());
    click("optMonitorImpedance");
    EXPECT_EQ(saved("S1", "optMonitorAmplitude"), QStringLiteral("False"));
    click("chkMonitor");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000|endfreq 1000000|spotfreq 400000|y|impspot 400000"));
}

TEST_F(MonitorGroupTest, MonitorMeasuresAtTheFrequencyThatStandsInTheBox)
{
    open();
    click("optMonFreq_1");
    type("txtSpotFrequency_1", "3M", false);
    click("chkMonitor");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000|endfreq 1000000|spotfreq 3000000|y|ampspot 3000000"));
    EXPECT_EQ(mirror.dblSpotFrequency, 3000000);
    click("chkMonitor");
    commands();
    type("txtSpotFrequency_1", "k", false);
    click("chkMonitor");
    EXPECT_FALSE(checked("chkMonitor")) << "there is no frequency to measure at";
    EXPECT_FALSE(commands().contains(QStringLiteral("ampspot")));
    EXPECT_TRUE(control<QWidget>("optMonitorAmplitude")->isEnabled());
}

TEST_F(MonitorGroupTest, MonitorBoxesThatWereStoredAsNonsenseShowTheirDefault)
{
    setting("S1", "MonF1", "soon");
    open();
    EXPECT_EQ(boxText("txtSpotFrequency_0"), QStringLiteral("400000"));
}

TEST_F(MonitorGroupTest, MonitorOfAnInstrumentWithOneTestHasNoChoice)
{
    mirror.bfAmplitudeTest = false;
    open();
    EXPECT_FALSE(shown("optMonitorAmplitude"));
    EXPECT_FALSE(shown("optMonitorImpedance"));
    click("chkMonitor");
    EXPECT_TRUE(commands().endsWith(QStringLiteral("y|impspot 400000")));
    click("chkMonitor");
    EXPECT_FALSE(control<QWidget>("optMonitorImpedance")->isEnabled());
}

TEST_F(MonitorGroupTest, MonitorUnticksItselfDuringATest)
{
    open();
    state.gbfPlotting = true;
    click("chkMonitor");
    EXPECT_FALSE(checked("chkMonitor"));
    EXPECT_EQ(commands(), QString());
}

TEST_F(MonitorGroupTest, UntickingTheMonitorSparesASweepThatHasBegunMeanwhile)
{
    open();
    click("chkMonitor");
    ASSERT_TRUE(checked("chkMonitor"));
    commands();
    state.gbfPlotting = true;
    click("chkMonitor");
    EXPECT_FALSE(checked("chkMonitor"));
    EXPECT_FALSE(commands().split(u'|').contains(QStringLiteral("y")));
}

TEST_F(MonitorGroupTest, SpotFrequencyIsClampedWrittenBackAndSent)
{
    open();
    type("txtSpotFrequency_0", "1");
    EXPECT_EQ(commands(), QStringLiteral("spotfreq 10"));
    EXPECT_EQ(boxText("txtSpotFrequency_0"), QStringLiteral("10"));
    EXPECT_EQ(mirror.dblSpotFrequency, 10);
    type("txtSpotFrequency_0", "500k");
    EXPECT_EQ(commands(), QStringLiteral("spotfreq 500000"));
    click("chkMonitor");
    EXPECT_TRUE(commands().endsWith(QStringLiteral("ampspot 500000")));
}

TEST_F(MonitorGroupTest, MonitorFrequencyOptionsSwapTheBoxes)
{
    open();
    click("optMonFreq_1");
    EXPECT_FALSE(shown("txtSpotFrequency_0"));
    EXPECT_TRUE(shown("txtSpotFrequency_1"));
    EXPECT_EQ(commands(), QString());
    click("chkMonitor");
    commands();
    click("optMonFreq_0");
    EXPECT_TRUE(shown("txtSpotFrequency_0"));
    EXPECT_EQ(commands(), QStringLiteral("spotfreq 400000"));
}

TEST_F(MonitorGroupTest, LevelFramesMoveTheBarsOnlyWhileTheMonitorRuns)
{
    open();
    auto* const level = control<QProgressBar>("pbTestLevel");
    auto* const phase = control<QProgressBar>("pbTestPhase");
    frame(numbers('G', '0', 0, -10, 45, 1));
    EXPECT_EQ(level->value(), 0);
    EXPECT_EQ(control<QLabel>("lblRxLevel")->text(), QString());
    click("chkMonitor");
    frame(numbers('G', '0', 0, -10, 45, 1));
    EXPECT_EQ(level->value(), 80);
    EXPECT_EQ(phase->value(), 225);
    EXPECT_EQ(control<QLabel>("lblRxLevel")->text(), QStringLiteral("-10.00 dB"));
    EXPECT_EQ(control<QLabel>("lblRxPhase")->text(), QStringLiteral("45.00 Deg"));
    frame(numbers('G', '0', 0, -10, -65536, 1));
    EXPECT_EQ(control<QLabel>("lblRxPhase")->text(), QString());
    click("chkMonitor");
    EXPECT_EQ(level->value(), 0);
    EXPECT_EQ(control<QLabel>("lblRxLevel")->text(), QString());
    click("optMonitorImpedance");
    click("chkMonitor");
    frame(numbers('I', '0', 0, 1, 45, -1));
    EXPECT_EQ(level->value(), 18);
    EXPECT_EQ(phase->value(), 90);
    EXPECT_EQ(control<QLabel>("lblRxLevel")->text(), QStringLiteral("1.00 Ohms"));
    EXPECT_EQ(control<QLabel>("lblRxPhase")->text(), QStringLiteral("-45.00 Deg"));
}

TEST_F(MonitorGroupTest, RefreshLeavesARunningMonitorOn)
{
    open();
    click("chkMonitor");
    commands();
    form->RefreshDialog();
    EXPECT_TRUE(checked("chkMonitor"));
    EXPECT_EQ(commands(), QString());
}

TEST_F(MonitorGroupTest, StartOfATestEndsTheMonitor)
{
    open();
    const auto document = makeDocument(PenDocument::Amplitude);
    document->gbfSendZoom = false;
    window.active = document.get();
    run.setAnswerWait(0);
    click("chkMonitor");
    commands();
    run.mnuTestStart_Click();
    EXPECT_FALSE(checked("chkMonitor"));
    EXPECT_TRUE(commands().startsWith(QStringLiteral("y|idlefreq -1|points 100")));
}

TEST_F(MonitorGroupTest, AMonitorEndsWithItsInstrument)
{
    open();
    click("chkMonitor");
    Terminal other;
    ASSERT_TRUE(device.OpenTransport(std::make_unique<SerialTransport>(other.path()), QStringLiteral("other")));
    EXPECT_FALSE(checked("chkMonitor"));
    device.Write(QStringLiteral("mark\r"));
    QByteArray heard;
    ASSERT_TRUE(QTest::qWaitFor([&] {
        heard += other.take();
        return heard.endsWith("mark\r");
    }));
    EXPECT_TRUE(heard.startsWith("phase ")) << heard.constData();
}

} // namespace
