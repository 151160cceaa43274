// SPDX-License-Identifier: GPL-3.0-or-later
// The engineering tab: calibration, diagnosis, trims, memory, serial number.
#include "SettingsFixture.h"

#include <QCheckBox>
#include <QDateTime>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

namespace {

using frametext::numbers;
using frametext::text;

class FrmSettingsEngineering : public SettingsFixture
{
protected:
    void openEngineering(bool sampling = false)
    {
        if (sampling)
            openSampling();
        else
            open();
        control<QTabWidget>("SSTab1")->setCurrentIndex(1);
        form->setClock([] { return QDateTime(QDate(2021, 3, 2), QTime(14, 5, 9)); });
        commands();
    }
};

TEST_F(FrmSettingsEngineering, ShowsWhatTheFramesSay)
{
    mirror.bfCalibrated = true;
    mirror.bfApplyCal = true;
    mirror.bfLoopBack = true;
    mirror.dblCalSlope = 1.25;
    mirror.iVrefCode = 17;
    mirror.iVdutCode = 255;
    mirror.dblFreqComp = 1000123;
    openEngineering();
    EXPECT_EQ(control<QLabel>("lblCalibration")->text(), QStringLiteral("Calibrated"));
    EXPECT_TRUE(checked("chkApplyCal"));
    EXPECT_TRUE(checked("chkLoopBack"));
    EXPECT_EQ(boxText("txtSerialNumber"), QStringLiteral("S1"));
    EXPECT_EQ(control<QLabel>("lblCalSlope")->text(), QStringLiteral("1.25"));
    EXPECT_EQ(control<QSlider>("slideVREF")->value(), 18);
    EXPECT_EQ(control<QLabel>("lblVREF")->text(), QStringLiteral("17"));
    EXPECT_EQ(control<QSlider>("slideVDUT")->value(), 256);
    EXPECT_EQ(control<QLabel>("lblVDUT")->text(), QStringLiteral("255"));
    EXPECT_EQ(boxText("txtFreqComp"), QStringLiteral("1000123"));

    setting("privilege", "TestSchedule", 1);
    frame(numbers('R', '0') + numbers('B', '0', 0, 0, 0, -3) + numbers('C', '0', 0, 0, 0, 4, 5) + numbers('J', '0') +
          text('V', '0', "S2") + numbers('t', '0', 999));
    EXPECT_EQ(control<QLabel>("lblCalibration")->text(), QStringLiteral("Uncalibrated"));
    EXPECT_FALSE(checked("chkApplyCal"));
    EXPECT_FALSE(checked("chkLoopBack"));
    EXPECT_EQ(boxText("txtSerialNumber"), QStringLiteral("S2"));
    EXPECT_EQ(control<QLabel>("lblCalSlope")->text(), QStringLiteral("-3"));
    EXPECT_EQ(control<QSlider>("slideVREF")->value(), 5);
    EXPECT_EQ(control<QSlider>("slideVDUT")->value(), 6);
    EXPECT_EQ(boxText("txtFreqComp"), QStringLiteral("999"));
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrmSettingsEngineering, CaptionsAreThoseOfTheProgram)
{
    openEngineering();
    EXPECT_EQ(control<QGroupBox>("fFreqComp")->title(), QStringLiteral("Measured frequency at 1MHz"));
    EXPECT_EQ(control<QGroupBox>("fTrimVREF")->title(), QStringLiteral("Phase Trim"));
    EXPECT_EQ(control<QPushButton>("cmdDefault")->text(), QStringLiteral("Default Settings"));
    EXPECT_EQ(control<QPushButton>("cmdDefault")->toolTip(),
              QStringLiteral("Set the parameters in EEROM to default values"));
}

TEST_F(FrmSettingsEngineering, AmplitudeCalibrationOpensItsDocumentAndSendsTheStamp)
{
    mirror.dblAmpMinFreq = 20;
    mirror.dblAmpMaxFreq = 4000000;
    openEngineering();
    state.giNewDocType = 3;
    click("cmdAmpCal");
    EXPECT_EQ(commands(), QStringLiteral("y|calibrate CAL-14050902032021"));
    ASSERT_EQ(documents.size(), 1U);
    ASSERT_EQ(shownDocuments.size(), 1U);
    PenDocument& document = *documents[0];
    EXPECT_EQ(document.pgiTestType(), PenDocument::Amplitude);
    EXPECT_EQ(document.graphGetPhaseView(), 0);
    document.peGraph().setWorkingAxis(0);
    EXPECT_EQ(document.peGraph().ManualMaxY(), 2);
    EXPECT_EQ(document.peGraph().ManualMinY(), -2);
    EXPECT_FALSE(document.peGraph().ShowLegend());
    EXPECT_EQ(mirror.dblStartFrequency, 20);
    EXPECT_EQ(mirror.dblEndFrequency, 4000000);
    EXPECT_EQ(document.peGraph().ManualMinX(), 20);
    EXPECT_EQ(document.peGraph().ManualMaxX(), 4000000);
    EXPECT_EQ(control<QLabel>("lblCalibration")->text(), QStringLiteral("Uncalibrated"));
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(FrmSettingsEngineering, CalibrationOfACalibratedInstrumentAsksAndCancelSendsNothing)
{
    mirror.bfCalibrated = true;
    openEngineering();
    messages.replies = {UserMessages::ReplyCancel};
    click("cmdAmpCal");
    EXPECT_EQ(commands(), QString());
    EXPECT_TRUE(documents.empty());
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Information"));
    EXPECT_EQ(messages.shown[0].text,
              QStringLiteral("The device is already calibrated. Performing calibration will take some time. Are you "
                             "sure you wish to continue?"));
    click("cmdAmpCal");
    EXPECT_TRUE(commands().startsWith(QStringLiteral("y|calibrate CAL-")));
}

TEST_F(FrmSettingsEngineering, CalibrationEndsTheMonitor)
{
    open();
    click("chkMonitor");
    control<QTabWidget>("SSTab1")->setCurrentIndex(1);
    commands();
    click("cmdAmpCal");
    EXPECT_FALSE(checked("chkMonitor"));
    EXPECT_TRUE(commands().startsWith(QStringLiteral("y|y|calibrate")));
}

TEST_F(FrmSettingsEngineering, DialogClosedInItsOwnQuestionEndsTheCalibration)
{
    mirror.bfCalibrated = true;
    openEngineering();
    messages.whileShowing = [this] { delete form; };
    click("cmdAmpCal");
    EXPECT_FALSE(commands().contains(QStringLiteral("calibrate")));
    EXPECT_TRUE(documents.empty());
}

TEST_F(FrmSettingsEngineering, PhaseCalibrationPlotsAgainstTheTrimCode)
{
    openEngineering();
    click("opt4MHz");
    commands();
    click("cmdPhaseCal");
    EXPECT_EQ(commands(), QStringLiteral("y|phasecal "));
    EXPECT_TRUE(checked("optDefault"));
    ASSERT_EQ(documents.size(), 1U);
    PenDocument& document = *documents[0];
    EXPECT_EQ(document.peGraph().ManualMinX(), 0);
    EXPECT_EQ(document.peGraph().ManualMaxX(), 255);
    EXPECT_EQ(document.peGraph().XAxisLabel(), QStringLiteral("Phase trim"));
    EXPECT_TRUE(document.graphGetFrequncyView());
    EXPECT_EQ(document.graphGetPhaseView(), 1);
    EXPECT_FALSE(document.peGraph().ShowLegend());
    EXPECT_EQ(shownDocuments.size(), 1U);
    state.gbfPlotting = true;
    click("cmdPhaseCal");
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(documents.size(), 1U);
}

TEST_F(FrmSettingsEngineering, PhaseCalibrationWithTheExtentsTickedLeavesTheUsersRangeAlone)
{
    mirror.bfGraphExtents = true;
    openEngineering();
    sendZooms = true;
    click("cmdPhaseCal");
    EXPECT_EQ(commands(), QStringLiteral("y|phasecal "));
    // Nor does the graph of trim codes send its extents later.
    documents[0]->SendGraphExtents();
    documents[0]->UpdateTestExtents(10, 20);
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(mirror.dblStartFrequency, 1000);
    EXPECT_EQ(mirror.dblEndFrequency, 1000000);
}

TEST_F(FrmSettingsEngineering, FramesOfTheInstrumentAreShownOnlyOnceItsStateIsComplete)
{
    setting("privilege", "TestSchedule", 1);
    mirror.iVrefCode = 1;
    openEngineering();
    state.gbfDeviceReady = false;
    const QByteArray frames = numbers('R', '1', 0, 0, 1) + numbers('B', '0', 0, 0, 0, -3) +
                              numbers('C', '0', 0, 0, 0, 4, 5) + numbers('J', '1') + text('V', '0', "S2") +
                              numbers('t', '0', 999);
    frame(frames);
    EXPECT_EQ(control<QLabel>("lblCalibration")->text(), QStringLiteral("Uncalibrated"));
    EXPECT_FALSE(checked("chkApplyCal"));
    EXPECT_FALSE(checked("chkLoopBack"));
    EXPECT_EQ(boxText("txtSerialNumber"), QStringLiteral("S1"));
    EXPECT_EQ(control<QLabel>("lblCalSlope")->text(), QStringLiteral("0"));
    EXPECT_EQ(control<QSlider>("slideVREF")->value(), 2);
    EXPECT_EQ(boxText("txtFreqComp"), QStringLiteral("0"));
    state.gbfDeviceReady = true;
    frame(frames);
    EXPECT_EQ(control<QLabel>("lblCalibration")->text(), QStringLiteral("Calibrated"));
    EXPECT_TRUE(checked("chkLoopBack"));
    EXPECT_EQ(control<QSlider>("slideVREF")->value(), 5);
}

TEST_F(FrmSettingsEngineering, LoopBackIsShownOnlyWithTheTestSchedule)
{
    openEngineering();
    frame(numbers('J', '1'));
    EXPECT_FALSE(checked("chkLoopBack"));
    setting("privilege", "TestSchedule", 1);
    frame(numbers('J', '1'));
    EXPECT_TRUE(checked("chkLoopBack"));
}

TEST_F(FrmSettingsEngineering, OneModelBehindTheOtherShowsItsOwnFrames)
{
    openEngineering(true);
    EXPECT_FALSE(shown("frmCalibrate"));
    frame(text('l', '6', "T46") + numbers('X', '2', 1000, 2000, 100, -1, 0));
    for (const char* name : {"fTroubleShoot", "frmCalibrate", "fTrimVREF", "fAuto", "frmDebug", "optVREFTrim"})
        EXPECT_TRUE(shown(name)) << name;
    EXPECT_FALSE(shown("lstDT46Samples"));
    EXPECT_EQ(form->windowTitle(), QStringLiteral("T46 Settings"));
}

TEST_F(FrmSettingsEngineering, SlopeCalibrationNeedsNoDocument)
{
    openEngineering();
    click("cmdZeroCal");
    EXPECT_EQ(commands(), QStringLiteral("zerocal"));
    EXPECT_TRUE(documents.empty());
}

TEST_F(FrmSettingsEngineering, DiagnosePreparesADocumentEachTime)
{
    openEngineering();
    click("cmdDiagnose");
    EXPECT_EQ(commands(), QStringLiteral("y|period 0|diagnose"));
    click("cmdDiagnose");
    EXPECT_EQ(commands(), QStringLiteral("y|period 0|diagnose"));
    ASSERT_EQ(documents.size(), 2U);
    PenDocument& document = *documents[1];
    EXPECT_EQ(document.peGraph().XAxisLabel(), QStringLiteral("Frequency - Hz (Diagnose)"));
    EXPECT_EQ(document.peGraph().ManualMinX(), mirror.dblAmpMinFreq);
    EXPECT_EQ(document.peGraph().ManualMaxX(), mirror.dblAmpMaxFreq);
    EXPECT_TRUE(document.peGraph().SubTitle().startsWith(QStringLiteral("MarrowickGraph V1.28.0 T46 V")))
        << document.peGraph().SubTitle().toStdString();
    EXPECT_EQ(mirror.iCurrentPoint, 1006);
    for (int pen = 0; pen < PenDocument::kPens; ++pen)
        EXPECT_EQ(document.GetPenDisplay(pen), pen < 2 ? 0 : 1) << pen;
    state.gbfPlotting = true;
    click("cmdDiagnose");
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(documents.size(), 2U);
}

TEST_F(FrmSettingsEngineering, OnlyDiagnosePreparesADocumentWithoutALink)
{
    openEngineering();
    device.Close();
    click("cmdAmpCal");
    click("cmdPhaseCal");
    EXPECT_TRUE(documents.empty());
    click("cmdDiagnose");
    EXPECT_EQ(documents.size(), 1U);
    EXPECT_EQ(terminal.take(), QByteArray());
}

TEST_F(FrmSettingsEngineering, NoRoomForADocumentEndsTheFunction)
{
    openEngineering();
    roomForDocuments = 0;
    click("cmdPhaseCal");
    click("cmdDiagnose");
    EXPECT_EQ(commands(), QString());
}

TEST_F(FrmSettingsEngineering, FrequencyCompensation)
{
    openEngineering();
    type("txtFreqComp", "1M2", false);
    click("cmdSetFreqComp");
    EXPECT_EQ(commands(), QStringLiteral("setfreqcomp 1200000"));
    type("txtFreqComp", "k");
    EXPECT_EQ(commands(), QString());
    EXPECT_EQ(boxText("txtFreqComp"), QStringLiteral("1M2"));
}

TEST_F(FrmSettingsEngineering, TrimSlidersSendTheirCode)
{
    mirror.iVrefCode = 1;
    openEngineering();
    press("slideVREF", Qt::Key_Left);
    EXPECT_EQ(commands(), QStringLiteral("setvref 0 0"));
    EXPECT_EQ(control<QLabel>("lblVREF")->text(), QStringLiteral("0"));
    EXPECT_EQ(mirror.iVrefCode, 0);
    press("slideVREF", Qt::Key_Left);
    EXPECT_EQ(commands(), QString());
    press("slideVDUT", Qt::Key_Right);
    EXPECT_EQ(commands(), QStringLiteral("setvdut 1 0"));
    EXPECT_EQ(control<QLabel>("lblVDUT")->text(), QStringLiteral("1"));
    EXPECT_EQ(mirror.iVdutCode, 1);
}

TEST_F(FrmSettingsEngineering, OscillatorOptionsOfTheSweepModel)
{
    openEngineering();
    const std::pair<const char*, const char*> options[] = {{"optVREFTrim", "y|ampspot 2000"},
                                                           {"opt1Mhz", "y|ampspot 1000000"},
                                                           {"opt3M2Hz", "y|ampspot 3200000"},
                                                           {"opt4MHz", "y|ampspot 4000000"},
                                                           {"optDefault", "y"}};
    for (const auto& [name, expected] : options) {
        click(name);
        EXPECT_EQ(commands(), QLatin1String(expected)) << name;
    }
}

TEST_F(FrmSettingsEngineering, OscillatorOptionsOfTheSamplingModel)
{
    openEngineering(true);
    const std::pair<const char*, const char*> options[] = {{"opt1kHz", "y|ampspot 1000"},
                                                           {"opt10kHz", "y|ampspot 10000"},
                                                           {"opt100kHz", "y|ampspot 100000"},
                                                           {"opt1MHZDT46", "y|ampspot 1000000"},
                                                           {"optDefault", "y"}};
    for (const auto& [name, expected] : options) {
        click(name);
        EXPECT_EQ(commands(), QLatin1String(expected)) << name;
    }
}

TEST_F(FrmSettingsEngineering, InstrumentMemory)
{
    openEngineering();
    click("cmdDefault");
    EXPECT_EQ(commands(), QStringLiteral("default|save"));
    click("cmdSave");
    EXPECT_EQ(commands(), QStringLiteral("save"));
}

TEST_F(FrmSettingsEngineering, Switches)
{
    openEngineering();
    click("chkApplyCal");
    EXPECT_EQ(commands(), QStringLiteral("calon 1"));
    click("chkApplyCal");
    EXPECT_EQ(commands(), QStringLiteral("calon 0"));
    click("chkLoopBack");
    EXPECT_TRUE(checked("chkLoopBack"));
    EXPECT_EQ(commands(), QStringLiteral("loopback 0"));
    click("chkLoopBack");
    commands();
    setting("privilege", "TestSchedule", 1);
    click("chkLoopBack");
    EXPECT_EQ(commands(), QStringLiteral("loopback 1"));
    click("chkLoopBack");
    EXPECT_EQ(commands(), QStringLiteral("loopback 0"));
}

TEST_F(FrmSettingsEngineering, SerialNumberIsSentAsTyped)
{
    openEngineering();
    auto* const box = control<QLineEdit>("txtSerialNumber");
    box->clear();
    QTest::keyClicks(box, QStringLiteral("SN 00x7 "));
    click("cmdSetSerial");
    EXPECT_EQ(commands(), QStringLiteral("setserial SN 00x7 "));
}

} // namespace
