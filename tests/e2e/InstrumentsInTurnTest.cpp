// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop program with several instruments, one after the other: each gets its own settings and never those of
// another. What counts is what the instrument says of itself; the program's picture of it must agree.
#include "controls/korvalink/KorvaLink.h"
#include "e2e/EndToEnd.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/TestRun.h"
#include "link/settings/ui/frmSettings.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "shell/commands/ui/CommandSet.h"
#include "shell/ui/StartUp.h"
#include "shell/ui/frmMain.h"
#include "support/FindControl.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTest>
#include <QTimer>

#include <memory>
#include <ostream>

using namespace e2e;

namespace {

/// One instrument's sweep, in Hz, points and milliseconds.
struct Sweep
{
    double start = 0, end = 0, idle = 0;
    int points = 0, period = 0, mode = 0, attenuation = 0;
    bool repeat = false, phase = false;

    bool operator==(const Sweep&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Sweep& sweep)
    {
        return out << sweep.start << " to " << sweep.end << " Hz, idle " << sweep.idle << ", " << sweep.points
                   << " points, " << sweep.period << " ms, mode " << sweep.mode << ", attenuator " << sweep.attenuation
                   << ", repeat " << sweep.repeat << ", phase " << sweep.phase;
    }
};

// No value is a default or stands in both.
const Sweep kFirst{35000, 45000, 0, 300, 7, 1, 1, true, false};
const Sweep kSecond{120000, 180000, 2500, 150, 3, 0, 2, false, true};
/// What an instrument gets that the program never met.
const Sweep kFresh{1000, 1000000, -1, 100, 0, 2, 0, false, true};

class InstrumentsInTurnTest : public EndToEndTest
{
protected:
    void SetUp() override
    {
        SettingsStore store(path(QStringLiteral("settings")));
        const QString title = QStringLiteral("MarrowickGraph");
        for (const char* folder : {"PlotFiles", "ExportFiles", "ScriptFiles", "UpdateFiles"})
            ASSERT_TRUE(store.SaveSetting(title, QStringLiteral("Paths"), QLatin1String(folder), m_folder.path()));
        ASSERT_TRUE(store.SaveSetting(title, QStringLiteral("Prompts"), QStringLiteral("SplashScreen"), 0));
        ASSERT_TRUE(store.SaveSetting(title, QStringLiteral("Prompts"), QStringLiteral("OpenSettings"), false));
        StartUpOptions options;
        options.linkLogFile = logFile();
        program = std::make_unique<StartUp>(path(QStringLiteral("settings")));
        program->run(options);
        ASSERT_NE(program->mainWindow(), nullptr);
    }

    QString logFile() const { return path(QStringLiteral("link.log")); }
    frmMain& window() { return *program->mainWindow(); }
    const LinkContext& context() { return window().deviceModule().context(); }

    static std::unique_ptr<Simulator> plugIn(const QString& serial)
    {
        return std::make_unique<Simulator>(
            serial, QStringList{QStringLiteral("--fast"), QStringLiteral("--idle-levels"), QStringLiteral("0")});
    }

    /// Every enquiry has got its answer, and the program has handled it; it asks more than once, and what it was told
    /// before it sent the settings says nothing of them.
    bool allAnswered()
    {
        if (context().device.BytesAvailable() != 0)
            return false;
        QFile log(logFile());
        if (!log.open(QFile::ReadOnly))
            return false;
        const QByteArray text = log.readAll();
        return text.count(" < X:") == text.count(" > enquire ");
    }
    bool ready(const QString& serial)
    {
        return waitFor([&] {
            return context().state.gbfDeviceReady && context().mirror.strDeviceSerial == serial && allAnswered();
        });
    }

    /// Plugs an instrument in and lets the program find it.
    std::unique_ptr<Simulator> connect(const QString& serial)
    {
        auto simulator = plugIn(serial);
        EXPECT_TRUE(window().OpenFirstDeviceFound()) << context().device.LastError().toStdString();
        EXPECT_TRUE(ready(serial));
        return simulator;
    }

    void unplug(std::unique_ptr<Simulator>& simulator)
    {
        simulator.reset();
        ASSERT_TRUE(waitFor([this] { return !context().device.Connected() && !dialog(); }));
    }

    /// Opens the listed instrument in the chooser, whatever is open at that moment.
    void choose(const QString& serial)
    {
        QTimer clicker;
        bool clicked = false;
        QObject::connect(&clicker, &QTimer::timeout, &window(), [&] {
            QWidget* const chooser = QApplication::activeModalWidget();
            if (clicked || !chooser || !findControl<QPushButton>(chooser, "cmdRefresh")->isEnabled())
                return;
            auto* const list = findControl<QListWidget>(chooser, "lstDevice");
            const auto found = list->findItems(serial, Qt::MatchExactly);
            if (found.isEmpty())
                return;
            list->setCurrentItem(found.first());
            clicked = true;
            QTest::mouseClick(findControl<QPushButton>(chooser, "cmdOK"), Qt::LeftButton);
        });
        clicker.start(5);
        window().mnuTestDevice_Click();
        ASSERT_TRUE(clicked);
        ASSERT_TRUE(ready(serial));
    }

    frmSettings* dialog() { return window().findChild<frmSettings*>(QStringLiteral("frmSettings")); }

    void type(const char* name, double value)
    {
        auto* const box = findControl<QLineEdit>(dialog(), name);
        box->setFocus();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Delete);
        QTest::keyClicks(box, QString::number(value, 'f', 0));
        QTest::keyClick(box, Qt::Key_Return);
    }
    /// By its keys: pages as far as they reach, then steps.
    void slide(const char* name, int value)
    {
        auto* const slider = findControl<QSlider>(dialog(), name);
        QTest::keyClick(slider, Qt::Key_Home);
        while (slider->value() + slider->pageStep() <= value)
            QTest::keyClick(slider, Qt::Key_PageUp);
        while (slider->value() < value)
            QTest::keyClick(slider, Qt::Key_Right);
        ASSERT_EQ(slider->value(), value) << name;
    }
    void press(const char* name)
    {
        auto* const button = findControl<QAbstractButton>(dialog(), name);
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    }

    /// Sets everything in the settings dialog, which stays open; repeat is a command of the menu.
    void edit(const Sweep& sweep)
    {
        window().showSettings();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(dialog()));
        type("txtLowFreq", sweep.start);
        type("txtHighFreq", sweep.end);
        press(sweep.idle == 0 ? "optOff" : sweep.idle == -1 ? "optTestStart" : "optUserDefined");
        if (sweep.idle > 0)
            type("txtParkFrequency", sweep.idle);
        press(sweep.mode == 0 ? "optAB" : sweep.mode == 1 ? "optBA" : "optAlternate");
        if (findControl<QCheckBox>(dialog(), "chkAcquirePhase")->isChecked() != sweep.phase)
            press("chkAcquirePhase");
        if (context().mirror.bfRepeat != sweep.repeat)
            window().commands().action("mnuTestRepeat").trigger();
        slide("slideTestPoints", sweep.points);
        slide("slidePeriod", sweep.period);
        slide("slideAttenuation", sweep.attenuation + 1);
    }
    void closeDialog()
    {
        QTest::mouseClick(findControl<QPushButton>(dialog(), "OKButton"), Qt::LeftButton);
        ASSERT_TRUE(waitFor([this] { return !dialog(); }));
    }

    Sweep mirrored()
    {
        const InstrumentMirror& mirror = context().mirror;
        return {mirror.dblStartFrequency, mirror.dblEndFrequency, mirror.dblIdleFrequency,
                mirror.iNumPoints,        mirror.iTestPeriod,     mirror.iSweepMode,
                mirror.iAttenuationCode,  mirror.bfRepeat,        mirror.bfPhaseOn};
    }

    /// The sweep as the instrument itself tells it now, read from its frames in the link log.
    Sweep told()
    {
        context().device.Write(QStringLiteral("enquire 1.28\r"));
        context().device.Flush();
        EXPECT_TRUE(waitFor([&] { return allAnswered(); }));
        Sweep sweep, complete;
        for (const LoggedFrame& frame : loggedFrames(logFile())) {
            switch (frame.code) {
            case 'A':
                sweep.attenuation = static_cast<int>(frame.n4);
                break;
            case 'C':
                sweep.phase = frame.flag == 1;
                break;
            case 'K':
                sweep.mode = frame.flag;
                sweep.idle = frame.n1;
                sweep.start = frame.n2;
                sweep.end = frame.n3;
                break;
            case 'P':
                sweep.points = static_cast<int>(frame.n1);
                sweep.repeat = frame.n2 != 0;
                break;
            case 'Q':
                sweep.period = static_cast<int>(frame.n2);
                break;
            case 'X':
                complete = sweep;
                break;
            default:
                break;
            }
        }
        return complete;
    }

    void expectSweep(const Sweep& sweep)
    {
        EXPECT_EQ(told(), sweep) << "as the instrument tells it";
        EXPECT_EQ(mirrored(), sweep) << "as the program has it";
    }

    std::unique_ptr<StartUp> program;
    const QString first = freshSerial(), second = freshSerial(), third = freshSerial();
};

} // namespace

TEST_F(InstrumentsInTurnTest, EachGetsItsOwnSweepBack)
{
    auto simulator = connect(first);
    edit(kFirst);
    closeDialog();
    expectSweep(kFirst);
    unplug(simulator);

    simulator = connect(second);
    expectSweep(kFresh);
    edit(kSecond);
    closeDialog();
    expectSweep(kSecond);
    unplug(simulator);

    // These instruments keep nothing themselves: what they have now, the program gave them.
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        simulator = connect(first);
        expectSweep(kFirst);
        unplug(simulator);
        simulator = connect(second);
        expectSweep(kSecond);
        unplug(simulator);
    }
    simulator = connect(third);
    expectSweep(kFresh);
}

TEST_F(InstrumentsInTurnTest, WhatWasSetInTheOpenDialogSurvivesAnUnpluggedInstrument)
{
    auto simulator = connect(first);
    edit(kFirst);
    type("txtSpotFrequency_0", 77000);
    const auto monitorBox = [this] { return findControl<QLineEdit>(dialog(), "txtSpotFrequency_0")->text(); };
    unplug(simulator);

    simulator = connect(second);
    expectSweep(kFresh);
    window().showSettings();
    EXPECT_EQ(monitorBox(), QStringLiteral("400000"));
    edit(kSecond);
    unplug(simulator);

    simulator = connect(first);
    expectSweep(kFirst);
    window().showSettings();
    EXPECT_EQ(monitorBox(), QStringLiteral("77000"));
    unplug(simulator);
    simulator = connect(second);
    expectSweep(kSecond);
    unplug(simulator);

    // Nor does any of it wait for the next instrument in the section of those without a serial number.
    simulator = connect(third);
    expectSweep(kFresh);
    window().showSettings();
    EXPECT_EQ(monitorBox(), QStringLiteral("400000"));
    EXPECT_NE(SettingsStore(path(QStringLiteral("settings")))
                  .GetSetting(QStringLiteral("MarrowickGraph"), QStringLiteral("Device"), QStringLiteral("MonF1"),
                              QStringLiteral("(none)")),
              QStringLiteral("77000"));
}

TEST_F(InstrumentsInTurnTest, ChoosingAnotherWhileOneIsOpenMixesNothing)
{
    const auto one = plugIn(first), other = plugIn(second);
    choose(first);
    edit(kFirst);
    choose(second);
    expectSweep(kFresh);
    edit(kSecond);
    choose(first);
    expectSweep(kFirst);
    choose(second);
    expectSweep(kSecond);
}
