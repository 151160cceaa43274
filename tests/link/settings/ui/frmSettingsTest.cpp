// SPDX-License-Identifier: GPL-3.0-or-later
// The oscillator tab and what is common to all tabs.
#include "SettingsFixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

namespace {

using frametext::numbers;
using frametext::text;

class FrmSettings : public SettingsFixture
{};

TEST_F(FrmSettings, ShowsTheMirrorAndSendsNothing)
{
    mirror.iNumPoints = 256;
    mirror.iSweepMode = 1;
    mirror.dblStartFrequency = 20000;
    mirror.dblEndFrequency = 60000.5;
    mirror.iAttenuationCode = 2;
    mirror.iTestPeriod = 15;
    mirror.dblIdleFrequency = 12345;
    mirror.bfPhaseOn = false;
    open();
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(form->windowTitle(), QStringLiteral("T46 Settings"));
    auto* const points = control<QSlider>("slideTestPoints");
    EXPECT_EQ(points->minimum(), 24);
    EXPECT_EQ(points->maximum(), 1024);
    EXPECT_EQ(points->singleStep(), 1);
    EXPECT_EQ(points->pageStep(), 100);
    EXPECT_EQ(points->value(), 256);
    EXPECT_EQ(control<QLabel>("lblNumPoints")->text(), QStringLiteral("256"));
    EXPECT_TRUE(checked("optBA"));
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("20000"));
    EXPECT_EQ(boxText("txtHighFreq"), QStringLiteral("60000.5"));
    EXPECT_FALSE(checked("chkAxisExtents"));
    EXPECT_TRUE(control<QGroupBox>("fAttenuation")->isEnabled());
    EXPECT_EQ(control<QSlider>("slideAttenuation")->minimum(), 1);
    EXPECT_EQ(control<QSlider>("slideAttenuation")->maximum(), 4);
    EXPECT_EQ(control<QSlider>("slideAttenuation")->value(), 3);
    EXPECT_EQ(control<QLabel>("lblAttenuation")->text(), QStringLiteral("-20 dB"));
    EXPECT_EQ(control<QSlider>("slidePeriod")->value(), 15);
    EXPECT_EQ(control<QLabel>("lblPeriod")->text(), QStringLiteral("15 mS"));
    EXPECT_TRUE(checked("optUserDefined"));
    EXPECT_TRUE(control<QWidget>("txtParkFrequency")->isEnabled());
    EXPECT_EQ(boxText("txtParkFrequency"), QStringLiteral("12345"));
    EXPECT_FALSE(checked("chkAcquirePhase"));
    EXPECT_EQ(boxText("txtSpotFrequency_0"), QStringLiteral("400000"));
    EXPECT_EQ(boxText("txtSpotFrequency_1"), QStringLiteral("2000000"));
    EXPECT_TRUE(checked("optMonFreq_0"));
    EXPECT_TRUE(shown("txtSpotFrequency_0"));
    EXPECT_FALSE(shown("txtSpotFrequency_1"));
    EXPECT_TRUE(checked("optMonitorAmplitude"));
    EXPECT_EQ(functionKeys, form.data());
}

TEST_F(FrmSettings, TabsAndTextsAreThoseOfTheProgram)
{
    open();
    auto* const tabs = control<QTabWidget>("SSTab1");
    ASSERT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->tabText(0), QStringLiteral("&Oscillator"));
    EXPECT_EQ(tabs->tabText(1), QStringLiteral("&Engineering"));
    EXPECT_EQ(tabs->tabText(2), QStringLiteral("&Test Schedule"));
    EXPECT_FALSE(tabs->isTabVisible(2));
    EXPECT_EQ(control<QPushButton>("cmdSetFreq")->text(), QStringLiteral("A&pply"));
    EXPECT_EQ(control<QPushButton>("cmdSetFreq")->toolTip(),
              QStringLiteral("Apply the frequency range for the next test"));
    EXPECT_EQ(control<QCheckBox>("chkAxisExtents")->text(), QStringLiteral("Use &X Axis extents"));
    EXPECT_EQ(control<QCheckBox>("chkAxisExtents")->toolTip(),
              QStringLiteral("Take the start and end frequency from the visible portion of the graph"));
    EXPECT_EQ(control<QSlider>("slidePeriod")->toolTip(),
              QStringLiteral("Delay in mS from frequency output to measurement"));
    EXPECT_EQ(control<QRadioButton>("optAB")->text(), QStringLiteral("&A to B"));
    EXPECT_EQ(control<QRadioButton>("optBA")->text(), QStringLiteral("&B to A"));
    EXPECT_EQ(control<QRadioButton>("optAlternate")->text(), QStringLiteral("A&lternate"));
    EXPECT_EQ(control<QCheckBox>("chkAcquirePhase")->text(), QStringLiteral("Ac&quire Phase"));
    EXPECT_EQ(control<QCheckBox>("chkMonitor")->toolTip(),
              QStringLiteral("Generate a test signal and monitor the return level"));
}

TEST_F(FrmSettings, TestScheduleTabFollowsThePrivilege)
{
    setting("privilege", "TestSchedule", 2);
    open();
    EXPECT_TRUE(control<QTabWidget>("SSTab1")->isTabVisible(2));
    control<QTabWidget>("SSTab1")->setCurrentIndex(2);
    EXPECT_TRUE(checked("chkTestSchedule"));
    click("chkTestSchedule");
    EXPECT_EQ(saved("privilege", "TestSchedule"), QStringLiteral("0"));
    EXPECT_EQ(device.TestMode(), 0);
    click("chkTestSchedule");
    EXPECT_EQ(saved("privilege", "TestSchedule"), QStringLiteral("1"));
    EXPECT_EQ(device.TestMode(), 1);
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrmSettings, SamplingModelSendsItsSamplesAndNothingElse)
{
    setting("S1", "Samples", 64);
    openSampling();
    EXPECT_EQ(commands(), QStringLiteral("samples 64"));
    EXPECT_EQ(form->windowTitle(), QStringLiteral("DT46 Settings"));
    EXPECT_FALSE(shown("chkAcquirePhase"));
    EXPECT_TRUE(shown("lstDT46Samples"));
    for (const char* name : {"fTroubleShoot", "frmCalibrate", "optVREFTrim", "opt1Mhz", "opt3M2Hz", "opt4MHz",
                             "fTrimVREF", "fAuto", "frmDebug"})
        EXPECT_FALSE(shown(name)) << name;
    for (const char* name : {"opt1kHz", "opt10kHz", "opt100kHz", "opt1MHZDT46", "optDefault"})
        EXPECT_TRUE(shown(name)) << name;
}

TEST_F(FrmSettings, SamplesStartWithTheInstrumentsOwnSetting)
{
    mirror.iTestParam2 = 32;
    openSampling();
    EXPECT_EQ(commands(), QStringLiteral("samples 32"));
}

TEST_F(FrmSettings, SamplesThatNobodyKnowsAreNeitherShownNorSentNorStored)
{
    openSampling();
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(control<QComboBox>("lstDT46Samples")->currentIndex(), -1);
    form->Unload();
    EXPECT_EQ(saved("S1", "Samples"), QStringLiteral("(none)"));
}

TEST_F(FrmSettings, SamplesChosenAreStoredAtOnceAndNotRevertedByALateAnswer)
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

TEST_F(FrmSettings, SamplesAreNotSentWhileAScriptRuns)
{
    mirror.iTestParam2 = 32;
    state.gbfScriptRunning = true;
    openSampling();
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrmSettings, SweepModelShowsItsOwnFrames)
{
    open();
    EXPECT_TRUE(shown("chkAcquirePhase"));
    EXPECT_FALSE(shown("lstDT46Samples"));
    for (const char* name : {"fTroubleShoot", "frmCalibrate", "optVREFTrim", "opt1Mhz", "opt3M2Hz", "opt4MHz",
                             "fTrimVREF", "fAuto", "frmDebug", "optDefault"})
        EXPECT_TRUE(shown(name)) << name;
    for (const char* name : {"opt1kHz", "opt10kHz", "opt100kHz", "opt1MHZDT46"})
        EXPECT_FALSE(shown(name)) << name;
}

TEST_F(FrmSettings, TypedMegaAndEnterSendTheFrequency)
{
    open();
    type("txtLowFreq", "1m");
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1M"));
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000000|endfreq 1000000"));
    EXPECT_TRUE(control<QWidget>("txtHighFreq")->hasFocus());
    type("txtHighFreq", "2M5");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000000|endfreq 2500000"));
    EXPECT_TRUE(control<QWidget>("cmdSetFreq")->hasFocus());
    EXPECT_TRUE(form->isVisible());
}

TEST_F(FrmSettings, FrequencyBoxesDiscardOtherKeys)
{
    open();
    type("txtLowFreq", "1x2-e3 k", false);
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("123k"));
    QTest::keyClick(control<QLineEdit>("txtLowFreq"), Qt::Key_Backspace);
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("123"));
    type("txtParkFrequency", "", false);
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrmSettings, ApplySendsSavesAndKeepsTheMonitorBoxes)
{
    open();
    type("txtLowFreq", "10k", false);
    type("txtHighFreq", "20k", false);
    click("optMonFreq_1");
    type("txtSpotFrequency_1", "3M", false);
    click("cmdSetFreq");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 10000|endfreq 20000"));
    EXPECT_EQ(saved("S1", "txtStartFrequency"), QStringLiteral("10000"));
    EXPECT_EQ(saved("S1", "txtEndFrequency"), QStringLiteral("20000"));
    EXPECT_EQ(saved("S1", "MonF1"), QStringLiteral("400000"));
    EXPECT_EQ(saved("S1", "MonF2"), QStringLiteral("3M"));
    EXPECT_EQ(saved("S1", "optMonitorF1"), QStringLiteral("False"));
    EXPECT_EQ(saved("S1", "dblEndFrequency"), QStringLiteral("20000"));
}

TEST_F(FrmSettings, ApplySendsTheUserDefinedIdleFrequencyToo)
{
    mirror.dblIdleFrequency = 5000;
    open();
    type("txtParkFrequency", "7k", false);
    click("cmdSetFreq");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000|endfreq 1000000|idlefreq 7000"));
    EXPECT_EQ(mirror.dblIdleFrequency, 7000);
}

TEST_F(FrmSettings, ACommaIsADecimalPoint)
{
    open();
    type("txtLowFreq", "38,5k");
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("38.5k"));
    EXPECT_EQ(commands(), QStringLiteral("startfreq 38500|endfreq 1000000"));
    paste("txtHighFreq", " 41,25 kHz\n");
    EXPECT_EQ(boxText("txtHighFreq"), QStringLiteral("41.25k"));
    QTest::keyClick(control<QLineEdit>("txtHighFreq"), Qt::Key_Return);
    EXPECT_EQ(commands(), QStringLiteral("startfreq 38500|endfreq 41250"));
}

TEST_F(FrmSettings, PastedTextThatCouldMeanAnotherFrequencyLeavesTheBoxAsItIs)
{
    open();
    for (const char* text : {"1e6", "-5000", "about 40k", "inf"}) {
        paste("txtLowFreq", text);
        EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1000")) << text;
    }
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrmSettings, ATextThatIsNoFrequencyIsRefusedInPlaceWithTheOldOneInSight)
{
    mirror.dblIdleFrequency = 5000;
    open();
    for (const char* text : {"", "k", ".", "1.2.3", "0", "1k5k"}) {
        type("txtLowFreq", text);
        EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1000")) << text;
        EXPECT_TRUE(control<QWidget>("txtLowFreq")->hasFocus()) << text;
        type("txtParkFrequency", *text == '0' ? "k" : text);
        EXPECT_EQ(boxText("txtParkFrequency"), QStringLiteral("5000")) << text;
        type("txtSpotFrequency_0", *text == '0' ? "k" : text);
        EXPECT_EQ(boxText("txtSpotFrequency_0"), QStringLiteral("400000")) << text;
        EXPECT_EQ(commands(), QString()) << text;
    }
    EXPECT_EQ(mirror.dblStartFrequency, 1000);
    EXPECT_EQ(mirror.dblIdleFrequency, 5000);
    // The other box keeps what was typed there, and goes out when both are good.
    type("txtHighFreq", "2M", false);
    type("txtLowFreq", "k", false);
    click("cmdSetFreq");
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(boxText("txtHighFreq"), QStringLiteral("2M"));
    click("cmdSetFreq");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000|endfreq 2000000|idlefreq 5000"));
}

TEST_F(FrmSettings, FrequenciesTypedAndConfirmedByOkAreAppliedAsByApply)
{
    const auto document = makeDocument(PenDocument::Amplitude);
    window.active = document.get();
    mirror.dblIdleFrequency = 5000;
    open();
    type("txtLowFreq", "20k", false);
    type("txtHighFreq", "60k", false);
    type("txtParkFrequency", "30k", false);
    click("OKButton");
    EXPECT_EQ(commands(), QStringLiteral("startfreq 20000|endfreq 60000|idlefreq 30000"));
    EXPECT_EQ(mirror.dblStartFrequency, 20000);
    EXPECT_EQ(mirror.dblEndFrequency, 60000);
    EXPECT_EQ(saved("S1", "txtStartFrequency"), QStringLiteral("20000"));
    EXPECT_EQ(saved("S1", "dblEndFrequency"), QStringLiteral("60000"));
    EXPECT_EQ(saved("S1", "dblIdleFrequency"), QStringLiteral("30000"));
    EXPECT_FALSE(form && form->isVisible());
}

TEST_F(FrmSettings, OkRefusesATextThatIsNoFrequencyAndStaysOpen)
{
    const auto document = makeDocument(PenDocument::Amplitude);
    window.active = document.get();
    open();
    type("txtLowFreq", "k", false);
    click("OKButton");
    EXPECT_TRUE(form && form->isVisible());
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1000"));
    EXPECT_EQ(commands(), QString());
    type("txtLowFreq", "k", false);
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_FALSE(form && form->isVisible());
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(saved("S1", "dblStartFrequency"), QStringLiteral("1000"));
}

TEST_F(FrmSettings, WhatIsBeingTypedOutlivesAReportOfTheRange)
{
    open();
    type("txtLowFreq", "12", false);
    frame(numbers('s', '0', 0, 111, 222));
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("12"));
    EXPECT_EQ(boxText("txtHighFreq"), QStringLiteral("222"));
}

TEST_F(FrmSettings, TheRangeOfATestIsNeverTakenFromATextThatIsNone)
{
    open();
    type("txtLowFreq", "k", false);
    EXPECT_EQ(form->lowFrequencyText(), QStringLiteral("1000"));
    type("txtLowFreq", "5k", false);
    EXPECT_EQ(form->lowFrequencyText(), QStringLiteral("5k"));
}

TEST_F(FrmSettings, FitsASmallScreenAndScrollsToWhereTheKeyboardIs)
{
    for (const bool sampling : {false, true}) {
        if (sampling)
            openSampling();
        else
            open();
        form->resize(640, 360);
        QCoreApplication::processEvents();
        EXPECT_EQ(form->size(), QSize(640, 360));
        EXPECT_TRUE(form->rect().contains(control<QWidget>("OKButton")->geometry()));
        auto* const tabs = control<QTabWidget>("SSTab1");
        for (int page = 0; page < 2; ++page) {
            tabs->setCurrentIndex(page);
            tabs->setFocus();
            for (int i = 0; i < 40; ++i) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                const QWidget* const reached = QApplication::focusWidget();
                EXPECT_FALSE(reached->visibleRegion().isEmpty()) << reached->objectName().toStdString();
                EXPECT_EQ(reached->visibleRegion().boundingRect().height(), reached->height())
                    << reached->objectName().toStdString();
            }
        }
    }
}

TEST_F(FrmSettings, AxisExtentsFollowTheActiveGraph)
{
    open();
    const auto document = makeDocument(PenDocument::Impedance);
    window.active = document.get();
    document->gbfSendZoom = true;
    document->peGraph().setManualMinX(2000);
    document->peGraph().setManualMaxX(3000);
    document->UpdateTestExtents(2000, 3000);
    commands();
    click("chkAxisExtents");
    EXPECT_TRUE(mirror.bfGraphExtents);
    EXPECT_EQ(commands(), QStringLiteral("startfreq 2000|endfreq 3000|linear 0"));
    for (const char* name : {"lblLowerFreq", "lblEndFrequency", "txtLowFreq", "txtHighFreq", "cmdSetFreq"})
        EXPECT_FALSE(control<QWidget>(name)->isEnabled()) << name;
    // Frames about the sweep leave the boxes alone now.
    frame(numbers('s', '0', 0, 111, 222));
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1000"));

    setting("S1", "txtStartFrequency", 4000);
    setting("S1", "txtEndFrequency", 5000);
    click("chkAxisExtents");
    EXPECT_FALSE(mirror.bfGraphExtents);
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("4000"));
    EXPECT_EQ(boxText("txtHighFreq"), QStringLiteral("5000"));
    EXPECT_TRUE(control<QWidget>("txtLowFreq")->isEnabled());
    EXPECT_EQ(commands(), QStringLiteral("startfreq 4000|endfreq 5000"));
    frame(numbers('s', '0', 0, 111, 222));
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("111"));
    EXPECT_EQ(boxText("txtHighFreq"), QStringLiteral("222"));
}

TEST_F(FrmSettings, AxisExtentsNeedADocument)
{
    open();
    click("chkAxisExtents");
    EXPECT_FALSE(checked("chkAxisExtents"));
    EXPECT_FALSE(mirror.bfGraphExtents);
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrmSettings, SlidersSendWhenLetGo)
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

TEST_F(FrmSettings, AttenuationIsOfferedOnlyByAnInstrumentThatHasIt)
{
    mirror.bfAttenuationAvailable = false;
    open();
    EXPECT_FALSE(control<QGroupBox>("fAttenuation")->isEnabled());
    mirror.bfAttenuationAvailable = true;
    mirror.iAttenuationSteps = 0;
    form->RefreshDialog();
    EXPECT_FALSE(control<QGroupBox>("fAttenuation")->isEnabled());
}

TEST_F(FrmSettings, SweepOptionsSendTheirMode)
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

TEST_F(FrmSettings, AcquirePhaseSends)
{
    open();
    click("chkAcquirePhase");
    EXPECT_EQ(commands(), QStringLiteral("phase 0"));
    EXPECT_FALSE(mirror.bfPhaseOn);
    click("chkAcquirePhase");
    EXPECT_EQ(commands(), QStringLiteral("phase 1"));
    EXPECT_TRUE(mirror.bfPhaseOn);
}

TEST_F(FrmSettings, SamplesListSendsItsChoiceAndSwallowsTyping)
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

TEST_F(FrmSettings, IdleOutputOptions)
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

TEST_F(FrmSettings, IdleFrequencyIsClampedToTheInstrumentsRange)
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

TEST_F(FrmSettings, MonitorAppliesAndPutsOutTheSpotSignal)
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

TEST_F(FrmSettings, MonitorMeasuresAtTheFrequencyThatStandsInTheBox)
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

TEST_F(FrmSettings, MonitorBoxesThatWereStoredAsNonsenseShowTheirDefault)
{
    setting("S1", "MonF1", "soon");
    open();
    EXPECT_EQ(boxText("txtSpotFrequency_0"), QStringLiteral("400000"));
}

TEST_F(FrmSettings, MonitorOfAnInstrumentWithOneTestHasNoChoice)
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

TEST_F(FrmSettings, MonitorUnticksItselfDuringATest)
{
    open();
    state.gbfPlotting = true;
    click("chkMonitor");
    EXPECT_FALSE(checked("chkMonitor"));
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrmSettings, UntickingTheMonitorSparesASweepThatHasBegunMeanwhile)
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

TEST_F(FrmSettings, SpotFrequencyIsClampedWrittenBackAndSent)
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

TEST_F(FrmSettings, MonitorFrequencyOptionsSwapTheBoxes)
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

TEST_F(FrmSettings, LevelFramesMoveTheBarsOnlyWhileTheMonitorRuns)
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

TEST_F(FrmSettings, RefreshLeavesARunningMonitorOn)
{
    open();
    click("chkMonitor");
    commands();
    form->RefreshDialog();
    EXPECT_TRUE(checked("chkMonitor"));
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrmSettings, StartOfATestEndsTheMonitor)
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

TEST_F(FrmSettings, CompleteStateRefreshesTheDialog)
{
    open();
    setting("S1", "iNumPoints", 512);
    frame(numbers('X', '0', 3000, 4000, 64, -1, 0));
    EXPECT_EQ(control<QSlider>("slideTestPoints")->value(), 512);
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("3000"));
    EXPECT_TRUE(checked("optAB"));
}

TEST_F(FrmSettings, ClosingSendsTheRangeWithoutADocumentAndStopsTheMonitor)
{
    open();
    type("txtLowFreq", "5k", false);
    click("chkMonitor");
    commands();
    form->Unload();
    EXPECT_EQ(commands(), QStringLiteral("startfreq 5000|endfreq 1000000|x"));
    EXPECT_EQ(saved("S1", "MonF1"), QStringLiteral("400000"));
    EXPECT_EQ(saved("S1", "optMonitorF1"), QStringLiteral("True"));
    EXPECT_EQ(saved("S1", "Samples"), QStringLiteral("(none)"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(form.isNull());
    EXPECT_EQ(module.settingsDialog().lowFrequencyText(), QString());
}

TEST_F(FrmSettings, ClosingWithADocumentSendsNoRange)
{
    const auto document = makeDocument(PenDocument::Amplitude);
    window.active = document.get();
    mirror.iTestParam2 = 16;
    openSampling();
    commands();
    click("OKButton");
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(saved("S1", "Samples"), QStringLiteral("16"));
}

TEST_F(FrmSettings, EscapeClosesAsOkDoes)
{
    open();
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_EQ(commands(), QStringLiteral("startfreq 1000|endfreq 1000000"));
    EXPECT_FALSE(form && form->isVisible());
}

TEST_F(FrmSettings, NothingIsSentOverAClosedLink)
{
    open();
    device.Close();
    click("optAB");
    click("optOff");
    type("txtLowFreq", "1k");
    click("chkMonitor");
    EXPECT_EQ(terminal.take(), QByteArray());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FrmSettings, PlaceIsKeptBesideTheMainWindow)
{
    QWidget main;
    main.move(100, 50);
    main.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&main));
    form = new frmSettings(module, *this, &main);
    form->show();
    form->move(130, 90);
    form->Unload();
    EXPECT_EQ(saved("frmSettings", "Left"), QStringLiteral("1950"));
    EXPECT_EQ(saved("frmSettings", "Top"), QStringLiteral("1350"));
    EXPECT_EQ(saved("frmSettings", "WindowState"), QStringLiteral("0"));
    EXPECT_EQ(saved("frmSettingsMainPos", "Left"), QStringLiteral("1500"));
    EXPECT_EQ(saved("frmSettingsMainPos", "Top"), QStringLiteral("750"));
    main.move(140, 60);
    form = new frmSettings(module, *this, &main);
    EXPECT_EQ(form->pos(), QPoint(170, 100));
    // A place that no screen shows is not taken.
    setting("frmSettings", "Left", 1e9);
    delete form;
    form = new frmSettings(module, *this, &main);
    EXPECT_LT(form->x(), 10000);
    delete form;
}

TEST_F(FrmSettings, EveryControlIsReachedByTheKeyboardAndHasAName)
{
    for (const bool sampling : {false, true}) {
        if (sampling)
            openSampling();
        else
            open();
        auto* const tabs = control<QTabWidget>("SSTab1");
        for (int page = 0; page < 2; ++page) {
            tabs->setCurrentIndex(page);
            QSet<QWidget*> reached;
            tabs->setFocus();
            for (int i = 0; i < 100; ++i) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
                reached.insert(QApplication::focusWidget());
            }
            const auto all = tabs->widget(page)->findChildren<QWidget*>();
            for (QWidget* widget : all) {
                if (!widget->isVisible() || !widget->isEnabled() || widget->focusPolicy() == Qt::NoFocus)
                    continue;
                // Of a group of options the chosen one is reached; the arrow keys lead to the others.
                auto* const option = qobject_cast<QRadioButton*>(widget);
                if (option == nullptr || option->isChecked()) {
                    EXPECT_TRUE(reached.contains(widget)) << widget->objectName().toStdString();
                }
                auto* const button = qobject_cast<QAbstractButton*>(widget);
                EXPECT_TRUE(!widget->accessibleName().isEmpty() || (button && !button->text().isEmpty()))
                    << widget->objectName().toStdString();
            }
            EXPECT_TRUE(reached.contains(control<QWidget>("OKButton")));
        }
    }
}

TEST_F(FrmSettings, NothingThatItShowsOfOneInstrumentGoesToTheNext)
{
    open();
    type("txtLowFreq", "35000");
    type("txtSpotFrequency_0", "77000", false);
    // Another is opened in its place, and the dialog closed before that has told anything of itself.
    Terminal other;
    ASSERT_TRUE(device.OpenTransport(std::make_unique<SerialTransport>(other.path()), QStringLiteral("other")));
    EXPECT_EQ(boxText("txtLowFreq"), QStringLiteral("1000"));
    click("OKButton");
    device.Write(QStringLiteral("mark\r"));
    QByteArray heard;
    ASSERT_TRUE(QTest::qWaitFor([&] {
        heard += other.take();
        return heard.endsWith("mark\r");
    }));
    EXPECT_EQ(heard.count("startfreq 1000\r"), 2) << heard.constData();
    EXPECT_FALSE(heard.contains("35000")) << heard.constData();
    EXPECT_EQ(saved("S1", "dblStartFrequency"), QStringLiteral("35000"));
    EXPECT_EQ(saved("S1", "MonF1"), QStringLiteral("77000"));
    EXPECT_EQ(saved("Device", "MonF1"), QStringLiteral("400000"));
}

TEST_F(FrmSettings, AMonitorEndsWithItsInstrument)
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

TEST_F(FrmSettings, ClosedBeforeTheStateIsCompleteItStoresNothingUnderTheSerialNumber)
{
    state.gbfDeviceReady = false;
    mirror.strDeviceSerial = QStringLiteral("Device");
    open();
    frame(text('V', '0', "S7"));
    form->Unload();
    EXPECT_EQ(saved("S7", "dblStartFrequency"), QStringLiteral("(none)"));
    EXPECT_EQ(saved("S7", "MonF1"), QStringLiteral("(none)"));
}

} // namespace
