// SPDX-License-Identifier: GPL-3.0-or-later
// Settings and preferences on their whole road: the real main window, its menu, its dialogs, an instrument in memory.
#include "link/settings/ui/frmSettings.h"
#include "shell/commands/ui/PreferencesCommands.h"
#include "shell/ui/MainWindowHarness.h"
#include "support/FindControl.h"
#include "support/WriteCounter.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTabWidget>

namespace {

class FrmMainSettingsTest : public MainWindowHarness
{
protected:
    /// An instrument is plugged in and tells its state.
    void connectModel(const char* model)
    {
        connectInstrument();
        receive(frametext::text('l', '6', model) + frame('L', 1, 10, 4000000, -90, 10) +
                frame('N', 1, 0, 0, 0.01, 1000000) + frametext::text('V', '0', "S1") +
                frame('X', 2, 20000, 60000, 100, -1));
        ASSERT_TRUE(state.gbfDeviceReady);
    }
    frmSettings* openSettings()
    {
        trigger("mnuTestSettings");
        auto* const settings = main->findChild<frmSettings*>();
        EXPECT_TRUE(settings && QTest::qWaitForWindowExposed(settings));
        return settings;
    }
    void press(QWidget* window, int page, const char* name)
    {
        findControl<QTabWidget>(window, "SSTab1")->setCurrentIndex(page);
        auto* const button = findControl<QAbstractButton>(window, name);
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
        settle();
    }
};

TEST_F(FrmMainSettingsTest, storedSamplesReachADt46WhoseDialogIsNeverOpened)
{
    load();
    store.SaveSetting(state.gstrAppTitle, QStringLiteral("S1"), QStringLiteral("Samples"), 64);
    connectModel("PELLFERN");
    EXPECT_EQ(main->findChild<frmSettings*>(), nullptr);
    const QByteArray commands = written();
    EXPECT_EQ(commands.count("samples "), 1) << commands.constData();
    EXPECT_TRUE(commands.endsWith("endfreq 60000\rsamples 64\r")) << commands.constData();
}

TEST_F(FrmMainSettingsTest, nothingForcesSamplesOnADt46OfWhichNoneAreKnown)
{
    load();
    connectModel("PELLFERN");
    auto* const settings = openSettings();
    press(settings, 0, "OKButton");
    EXPECT_FALSE(written().contains("samples"));
}

TEST_F(FrmMainSettingsTest, phaseCalibrationWithTheExtentsTickedKeepsTheUsersRange)
{
    load();
    connectModel("T46");
    newDocument(PenDocument::Amplitude);
    auto* const settings = openSettings();
    press(settings, 0, "chkAxisExtents");
    ASSERT_TRUE(mirror.bfGraphExtents);
    written();
    press(settings, 1, "cmdPhaseCal");
    const QByteArray commands = written();
    EXPECT_TRUE(commands.endsWith("y\rphasecal \r")) << commands.constData();
    EXPECT_FALSE(commands.contains("startfreq 0\r")) << commands.constData();
    EXPECT_FALSE(commands.contains("endfreq 255\r")) << commands.constData();
    EXPECT_FALSE(commands.contains("linear 1")) << commands.constData();
    PenDocument* const trims = main->activeDocument();
    ASSERT_NE(trims, nullptr);
    EXPECT_EQ(trims->peGraph().XAxisLabel(), QStringLiteral("Phase trim"));
    EXPECT_EQ(trims->peGraph().ManualMaxX(), 255);
    // A start that the graph of trim codes refuses sends them no more than the calibration does.
    trigger("mnuTestStart");
    const QByteArray refused = written();
    EXPECT_FALSE(refused.contains("startfreq 0\r")) << refused.constData();
    EXPECT_FALSE(refused.contains("endfreq 255\r")) << refused.constData();
    EXPECT_EQ(mirror.dblStartFrequency, 20000);
    EXPECT_EQ(mirror.dblEndFrequency, 60000);
}

TEST_F(FrmMainSettingsTest, amplitudeCalibrationIsDrawnOnItsOwnRangeAndADiagnosisIsNamed)
{
    load();
    connectModel("T46");
    auto* const settings = openSettings();
    press(settings, 1, "cmdAmpCal");
    ASSERT_NE(main->activeDocument(), nullptr);
    EXPECT_EQ(main->activeDocument()->peGraph().ManualMinX(), 10);
    EXPECT_EQ(main->activeDocument()->peGraph().ManualMaxX(), 4000000);
    press(settings, 1, "cmdDiagnose");
    EXPECT_TRUE(main->activeDocument()->peGraph().SubTitle().contains(QStringLiteral("T46")));
}

TEST_F(FrmMainSettingsTest, anyStoredNumberButZeroAsksBeforeAPenIsOverwritten)
{
    load();
    connectModel("T46");
    PenDocument* const document = newDocument(PenDocument::Impedance);
    document->AddImpedancePoint(30000, 47, 12, 1, 0);
    store.SaveSetting(state.gstrAppTitle, QStringLiteral("Prompts"), QStringLiteral("PromptOverwrite"), 2);
    messages.replies = {UserMessages::ReplyCancel};
    written();
    trigger("mnuTestStart");
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Do you want to overwrite this pen?"));
    EXPECT_FALSE(written().contains("imptest"));
}

TEST_F(FrmMainSettingsTest, tenPlotsThatAreOpenedAreOneWriteOfTheSettings)
{
    load();
    QStringList files;
    PenDocument* const document = newDocument(PenDocument::Impedance);
    document->AddImpedancePoint(1000, 47, 12, 1, 0);
    for (int i = 0; i < 10; ++i) {
        files.append(folder.filePath(QStringLiteral("plot%1.gzd").arg(i)));
        ASSERT_TRUE(document->fileSavePlot(files.last()));
    }
    main->gcolDocuments().LoadExistingDocument(files[0]);
    QTest::qWait(600);
    messages.replies.assign(20, UserMessages::ReplyYes);
    WriteCounter writes(folder.path());
    for (const QString& file : files)
        EXPECT_TRUE(main->gcolDocuments().LoadExistingDocument(file));
    EXPECT_LE(writes.take(), 1);
    const QString newest = files.last();
    EXPECT_TRUE(QTest::qWaitFor([&] { return preferences.value(options::kQuickOpenFile, 0) == newest; }));
    EXPECT_LE(writes.take(), 1);
}

TEST_F(FrmMainSettingsTest, settingsThatCouldNotBeSetAsideAreNotSaidToBe)
{
    load();
    const QString settings = store.fileOf(state.gstrAppTitle);
    QFile file(settings);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("damaged\n");
    file.close();
    for (int number = 1; number < 1000; ++number)
        ASSERT_TRUE(QDir().mkpath(settings + QStringLiteral(".damaged-%1").arg(number)));
    EXPECT_EQ(preferences.value(options::kSplashScreen), true);
    EXPECT_TRUE(main->preferencesCommands().tellDamagedSettings());
    ASSERT_EQ(messages.shown.size(), 1U);
    EXPECT_FALSE(messages.shown[0].text.contains(QStringLiteral("were set aside")));
    EXPECT_TRUE(messages.shown[0].text.contains(settings));
    EXPECT_FALSE(main->preferencesCommands().tellDamagedSettings());
}

} // namespace
