// SPDX-License-Identifier: GPL-3.0-or-later
// What is common to all tabs of the dialog: what it shows at first, its closing, its place and its keyboard.
#include "SettingsFixture.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
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
