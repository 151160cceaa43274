// SPDX-License-Identifier: GPL-3.0-or-later
// The sweep: points, period, attenuation, samples, options and the idle output.
#include "SettingsFixture.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>

namespace {

using frametext::numbers;
using frametext::text;

class SweepGroupTest : public SettingsFixture
{};

TEST_F(SweepGroupTest, SamplesStartWithTheInstrumentsOwnSetting)
{
    mirror.iTestParam2 = 32;
    openSampling();
    EXPECT_EQ(commands(), QStringLiteral("samples 32"));
}

TEST_F(SweepGroupTest, SamplesThatNobodyKnowsAreNeitherShownNorSentNorStored)
{
    openSampling();
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(control<QComboBox>("lstDT46Samples")->currentIndex(), -1);
    form->Unload();
    EXPECT_EQ(saved("S1", "Samples"), QStringLiteral("(none)"));
}

TEST_F(SweepGroupTest, SamplesChosenAreStoredAtOnceAndNotRevertedByALateAnswer)
{
    setting("S1", "Samples", 64);
    openSampling();
    commands();
    QTest::keyClick(control<QComboBox>("lstDT46Samples"), Qt::Key_Down);
    EXPECT_EQ(commands(), QStringLiteral("samples 128"));
    EXPECT_EQ(saved("S1", "Samples"), QStringLiteral("128"));
    frame(numbers('X', '2', 1000, 2000, 100, -1, 0));
    EXPECT_TRUE(commands().endsWith(QStringLiteral("|samples 128")));
    EXPECT_EQ(control<QComboBox>("lstDT46Samples")->currentText(), QStringLiteral("128"));
}

TEST_F(SweepGroupTest, SamplesAreNotSentWhileAScriptRuns)
{
    mirror.iTestParam2 = 32;
    state.gbfScriptRunning = true;
    openSampling();
    EXPECT_EQ(commands(), QString());
}

TEST_F(SweepGroupTest, SlidersSendWhenLetGo)
{
    open();
    press("slideTestPoints", Qt::Key_Right);
    EXPECT_EQ(commands(), QStringLiteral("points 101"));
    EXPECT_EQ(mirror.iNumPoints, 101);
    EXPECT_EQ(control<QLabel>("lblNumPoints")->text(), QStringLiteral("101"));
    press("slidePeriod", Qt::Key_Right);
    EXPECT_EQ(commands(), QStringLiteral("period 1"));
    EXPECT_EQ(mirror.iTestPeriod, 1);
    EXPECT_EQ(control<QLabel>("lblPeriod")->text(), QStringLiteral("1 mS"));
    press("slideAttenuation", Qt::Key_End);
    EXPECT_EQ(commands(), QStringLiteral("atten 3"));
    EXPECT_EQ(control<QLabel>("lblAttenuation")->text(), QStringLiteral("-30 dB"));
    // During a drag only the label moves.
    auto* const points = control<QSlider>("slideTestPoints");
    points->setSliderDown(true);
    points->setSliderPosition(300);
    points->setSliderPosition(400);
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(control<QLabel>("lblNumPoints")->text(), QStringLiteral("400"));
    points->setSliderDown(false);
    EXPECT_EQ(commands(), QStringLiteral("points 400"));
}

TEST_F(SweepGroupTest, AttenuationIsOfferedOnlyByAnInstrumentThatHasIt)
{
    mirror.bfAttenuationAvailable = false;
    open();
    EXPECT_FALSE(control<QGroupBox>("fAttenuation")->isEnabled());
    mirror.bfAttenuationAvailable = true;
    mirror.iAttenuationSteps = 0;
    form->RefreshDialog();
    EXPECT_FALSE(control<QGroupBox>("fAttenuation")->isEnabled());
}

TEST_F(SweepGroupTest, SweepOptionsSendTheirMode)
{
    open();
    click("optAB");
    EXPECT_EQ(commands(), QStringLiteral("sweepmode 0"));
    EXPECT_EQ(mirror.iSweepMode, 0);
    click("optBA");
    EXPECT_EQ(commands(), QStringLiteral("sweepmode 1"));
    EXPECT_EQ(mirror.iSweepMode, 1);
    click("optAlternate");
    EXPECT_EQ(commands(), QStringLiteral("sweepmode 2"));
    EXPECT_EQ(mirror.iSweepMode, 2);
}

TEST_F(SweepGroupTest, AcquirePhaseSends)
{
    open();
    click("chkAcquirePhase");
    EXPECT_EQ(commands(), QStringLiteral("phase 0"));
    EXPECT_FALSE(mirror.bfPhaseOn);
    click("chkAcquirePhase");
    EXPECT_EQ(commands(), QStringLiteral("phase 1"));
    EXPECT_TRUE(mirror.bfPhaseOn);
}

TEST_F(SweepGroupTest, SamplesListSendsItsChoiceAndSwallowsTyping)
{
    mirror.iTestParam2 = 4;
    openSampling();
    commands();
    auto* const list = control<QComboBox>("lstDT46Samples");
    const int before = list->currentIndex();
    QTest::keyClicks(list, QStringLiteral("8"));
    EXPECT_EQ(list->currentIndex(), before);
    EXPECT_EQ(commands(), QString());
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(commands(), QStringLiteral("samples ") + list->currentText());
    EXPECT_NE(list->currentIndex(), before);
}

TEST_F(SweepGroupTest, IdleOutputOptions)
{
    open();
    EXPECT_TRUE(checked("optTestStart"));
    click("optOff");
    EXPECT_EQ(commands(), QStringLiteral("idlefreq 0"));
    EXPECT_EQ(mirror.dblIdleFrequency, 0);
    EXPECT_FALSE(control<QWidget>("txtParkFrequency")->isEnabled());
    click("optTestStart");
    EXPECT_EQ(commands(), QStringLiteral("idlefreq -1"));
    EXPECT_EQ(mirror.dblIdleFrequency, -1);
    click("optUserDefined");
    EXPECT_EQ(commands(), QStringLiteral("idlefreq 1000"));
    EXPECT_TRUE(control<QWidget>("txtParkFrequency")->isEnabled());
    EXPECT_EQ(boxText("txtParkFrequency"), QStringLiteral("1000"));
}

TEST_F(SweepGroupTest, IdleFrequencyIsClampedToTheInstrumentsRange)
{
    mirror.dblIdleFrequency = 5000;
    open();
    type("txtParkFrequency", "0");
    EXPECT_EQ(commands(), QStringLiteral("idlefreq 10"));
    EXPECT_EQ(boxText("txtParkFrequency"), QStringLiteral("10"));
    EXPECT_EQ(mirror.dblIdleFrequency, 10);
    type("txtParkFrequency", "1G");
    EXPECT_EQ(commands(), QStringLiteral("idlefreq 50000000"));
    type("txtParkFrequency", "40k");
    EXPECT_EQ(commands(), QStringLiteral("idlefreq 40000"));
}

} // namespace
