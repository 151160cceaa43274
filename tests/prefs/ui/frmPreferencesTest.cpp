// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreferencesWindow.h"

#include "prefs/ui/frmDirSelect.h"
#include "widgets/ui/ColourLabel.h"

#include <QApplication>
#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDir>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTimer>

namespace {

using namespace options;

TEST_F(PreferencesWindowTest, ShowsTheDefaultsOfAnEmptyStore)
{
    open();
    for (std::size_t pen = 0; pen < kPens.size(); ++pen)
        EXPECT_EQ(
            find<ColourLabel>(QByteArray("lblColour_").append(QByteArray::number(static_cast<int>(pen))).constData())
                ->colour(),
            kPens[pen].defaultValue);
    for (const char* on : {"optAmplitudeLog", "optAmpScaleManual", "optAmplitudePhaseWholeCycle",
                           "optImpedanceAdmittanceLog", "optManualZScale", "optImpedanceAdmittancePhaseWholeCycle",
                           "optXFreqLog", "optAdmittance", "optReactAuto", "optResAuto"})
        EXPECT_TRUE(radio(on)->isChecked()) << on;
    for (const char* on : {"ckhPromptOverwrite", "chkDisplaySplash", "chkOpenSettings"})
        EXPECT_TRUE(find<QCheckBox>(on)->isChecked()) << on;
    for (const char* off : {"chkNotifyDevice", "chkPromptDevice", "chkLockPenAfterPlot"})
        EXPECT_FALSE(find<QCheckBox>(off)->isChecked()) << off;
    const char* names[] = {"Plots", "Export", "Script", "Updates"};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(find<QLineEdit>(QByteArray("txtFilePaths_").append(QByteArray::number(i)).constData())->text(),
                  host.documents + QStringLiteral("/Marrowick/") + QLatin1String(names[i]));
    EXPECT_EQ(find<QSlider>("sldGraticuleShade")->value(), 0);
    EXPECT_EQ(find<QTabWidget>("SSTab1")->currentIndex(), 0);
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_TRUE(host.calls.isEmpty()) << "opening changes no document";
}

TEST_F(PreferencesWindowTest, StoresTheShownDefaultsOnTheFirstRunWhenLeftByEscape)
{
    open();
    escape();
    EXPECT_FALSE(window->isVisible());
    const char* colours[] = {"0", "64", "255", "33023", "65535", "65280", "16711680", "8388736", "8421504", "16711935"};
    for (int pen = 0; pen < 10; ++pen)
        EXPECT_EQ(stored("Pens", QByteArray::number(pen).constData()), QLatin1String(colours[pen]));
    EXPECT_EQ(stored("Prompts", "NotifyDevice"), QStringLiteral("0"));
    EXPECT_EQ(stored("Prompts", "PromptDevice"), QStringLiteral("0"));
    EXPECT_EQ(stored("Prompts", "PromptOverwrite"), QStringLiteral("1"));
    EXPECT_EQ(stored("Prompts", "LockPenAfterPlot"), QStringLiteral("0"));
    EXPECT_EQ(stored("Prompts", "SplashScreen"), QStringLiteral("1"));
    EXPECT_EQ(stored("Prompts", "OpenSettings"), QStringLiteral("1"));
    EXPECT_EQ(stored("Paths", "PlotFiles"), host.documents + QStringLiteral("/Marrowick/Plots"));
    EXPECT_EQ(stored("Paths", "ExportFiles"), host.documents + QStringLiteral("/Marrowick/Export"));
    EXPECT_EQ(stored("Paths", "ScriptFiles"), host.documents + QStringLiteral("/Marrowick/Script"));
    EXPECT_EQ(stored("Paths", "UpdateFiles"), host.documents + QStringLiteral("/Marrowick/Updates"));
    EXPECT_TRUE(QFileInfo(host.documents + QStringLiteral("/Marrowick/Script")).isDir());
    EXPECT_TRUE(messages.shown.empty());
}

TEST_F(PreferencesWindowTest, LeftByEscapeStoresOnlyItsTabOnceTheFoldersAreSet)
{
    setFolders();
    open();
    choose("optAmplitudeLinear");
    escape();
    EXPECT_EQ(stored("Amplitude", "AxisScaleLin"), QStringLiteral("absent"));
    EXPECT_EQ(stored("View", "PreferencesTab"), QStringLiteral("1"));
    EXPECT_TRUE(QFileInfo(dir.filePath(QStringLiteral("folder3"))).isDir());
    open();
    EXPECT_EQ(find<QTabWidget>("SSTab1")->currentIndex(), 1);
    EXPECT_TRUE(radio("optAmplitudeLog")->isChecked());
}

TEST_F(PreferencesWindowTest, ClosingTheWindowIsLeavingIt)
{
    setFolders();
    open();
    find<QTabWidget>("SSTab1")->setCurrentIndex(3);
    window->close();
    EXPECT_EQ(stored("View", "PreferencesTab"), QStringLiteral("3"));
}

TEST_F(PreferencesWindowTest, StoresEveryControlOnOk)
{
    const QString font = QFontDatabase::families().value(0);
    ASSERT_FALSE(font.isEmpty());
    open();
    for (const char* option :
         {"optAmplitudeLinear", "optAmpScaleAuto", "optAmplitudePhaseHalfCycle", "optImpedanceAdmittanceLinear",
          "optAutoZScale", "optImpedanceAdmittancePhaseOff", "optXFreqLinear", "optImpedance", "optReactManual",
          "optResManual", "chkNotifyDevice", "chkPromptDevice", "ckhPromptOverwrite", "chkLockPenAfterPlot",
          "chkDisplaySplash", "chkOpenSettings"})
        choose(option);
    find<QComboBox>("combFontSelection")->setCurrentIndex(0);
    auto* const shade = find<QSlider>("sldGraticuleShade");
    QTest::keyClick(shade, Qt::Key_End);
    auto* const box = find<QLineEdit>("txtFilePaths_1");
    box->selectAll();
    QTest::keyClicks(box, dir.filePath(QStringLiteral("my exports")));
    pressOk();

    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(stored("Amplitude", "AxisScaleLin"), QStringLiteral("True"));
    EXPECT_EQ(stored("Amplitude", "AxisScaleAuto"), QStringLiteral("True"));
    EXPECT_EQ(stored("Amplitude", "PhaseGraph"), QStringLiteral("1"));
    EXPECT_EQ(stored("ImpedanceAdmittance", "AxisScaleLin"), QStringLiteral("True"));
    EXPECT_EQ(stored("ImpedanceAdmittance", "DisplayLimits"), QStringLiteral("Auto"));
    EXPECT_EQ(stored("ImpedanceAdmittance", "PhaseGraph"), QStringLiteral("0"));
    EXPECT_EQ(stored("XRGB", "optXFreqLog"), QStringLiteral("False"));
    EXPECT_EQ(stored("XRGB", "optImpedance"), QStringLiteral("True"));
    EXPECT_EQ(stored("XRGB", "optReactAuto"), QStringLiteral("False"));
    EXPECT_EQ(stored("XRGB", "optResAuto"), QStringLiteral("False"));
    EXPECT_EQ(stored("Prompts", "NotifyDevice"), QStringLiteral("1"));
    EXPECT_EQ(stored("Prompts", "PromptDevice"), QStringLiteral("1"));
    EXPECT_EQ(stored("Prompts", "PromptOverwrite"), QStringLiteral("0"));
    EXPECT_EQ(stored("Prompts", "LockPenAfterPlot"), QStringLiteral("1"));
    EXPECT_EQ(stored("Prompts", "SplashScreen"), QStringLiteral("0"));
    EXPECT_EQ(stored("Prompts", "OpenSettings"), QStringLiteral("0"));
    EXPECT_EQ(stored("Paths", "ExportFiles"), dir.filePath(QStringLiteral("my exports")));
    EXPECT_TRUE(QFileInfo(dir.filePath(QStringLiteral("my exports"))).isDir());
    EXPECT_EQ(stored("Graticule", "Shade"), QStringLiteral("8158332"));
    EXPECT_EQ(stored("Preferences", "DefaultFont"), font);

    open();
    for (const char* on : {"optAmplitudeLinear", "optAmpScaleAuto", "optAmplitudePhaseHalfCycle",
                           "optImpedanceAdmittanceLinear", "optAutoZScale", "optImpedanceAdmittancePhaseOff",
                           "optXFreqLinear", "optImpedance", "optReactManual", "optResManual"})
        EXPECT_TRUE(radio(on)->isChecked()) << on;
    EXPECT_EQ(find<QComboBox>("combFontSelection")->currentText(), font);
    EXPECT_EQ(find<QSlider>("sldGraticuleShade")->value(), 10);
}

TEST_F(PreferencesWindowTest, ShowsAnUnknownShadeAsTheFirstStopAndSavesThat)
{
    store_("Graticule", "Shade", "123");
    open();
    EXPECT_EQ(find<QSlider>("sldGraticuleShade")->value(), 0);
    pressOk();
    EXPECT_EQ(stored("Graticule", "Shade"), QStringLiteral("14737632"));
}

TEST_F(PreferencesWindowTest, LeavesItsOptionsAsDesignedForUnknownTexts)
{
    store_("ImpedanceAdmittance", "DisplayLimits", "Sometimes");
    store_("Amplitude", "AxisScaleAuto", "true");
    store_("Amplitude", "PhaseGraph", "7");
    store_("Amplitude", "AxisScaleLin", "true");
    open();
    EXPECT_TRUE(radio("optManualZScale")->isChecked());
    EXPECT_FALSE(radio("optAutoZScale")->isChecked());
    EXPECT_TRUE(radio("optAmpScaleManual")->isChecked());
    EXPECT_TRUE(radio("optAmplitudePhaseWholeCycle")->isChecked());
    EXPECT_TRUE(radio("optAmplitudeLog")->isChecked()) << "only the exact text selects the first option";
}

TEST_F(PreferencesWindowTest, DefaultWritesTheStoreAndLeavesThreeSettingsUntouched)
{
    store_("XRGB", "optImpedance", "True");
    store_("Preferences", "DefaultFont", "Some Font");
    store_("Graticule", "Shade", "8158332");
    store_("Pens", "3", "77");
    store_("Amplitude", "AxisScaleLin", "True");
    store_("ImpedanceAdmittance", "DisplayLimits", "Auto");
    store_("Prompts", "PromptOverwrite", "0");
    store_("Paths", "PlotFiles", "/somewhere");
    open();
    EXPECT_TRUE(radio("optImpedance")->isChecked());
    click("cmdDefault");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(stored("Pens", "3"), QStringLiteral("33023"));
    EXPECT_EQ(stored("Amplitude", "AxisScaleLin"), QStringLiteral("False"));
    EXPECT_EQ(stored("Amplitude", "AxisScaleAuto"), QStringLiteral("False"));
    EXPECT_EQ(stored("Amplitude", "PhaseGraph"), QStringLiteral("2"));
    EXPECT_EQ(stored("ImpedanceAdmittance", "AxisScaleLin"), QStringLiteral("False"));
    EXPECT_EQ(stored("ImpedanceAdmittance", "DisplayLimits"), QStringLiteral("Manual"));
    EXPECT_EQ(stored("ImpedanceAdmittance", "PhaseGraph"), QStringLiteral("2"));
    EXPECT_EQ(stored("Prompts", "NotifyDevice"), QStringLiteral("0"));
    EXPECT_EQ(stored("Prompts", "PromptOverwrite"), QStringLiteral("1"));
    EXPECT_EQ(stored("Prompts", "OpenSettings"), QStringLiteral("1"));
    EXPECT_EQ(stored("Paths", "PlotFiles"), host.documents + QStringLiteral("/Marrowick/Plots"));
    EXPECT_EQ(stored("Paths", "UpdateFiles"), host.documents + QStringLiteral("/Marrowick/Updates"));
    EXPECT_EQ(stored("XRGB", "optImpedance"), QStringLiteral("True"));
    EXPECT_EQ(stored("Preferences", "DefaultFont"), QStringLiteral("Some Font"));
    EXPECT_EQ(stored("Graticule", "Shade"), QStringLiteral("8158332"));
    EXPECT_EQ(host.calls, QStringList(QStringLiteral("penInitialise")));
    EXPECT_EQ(find<ColourLabel>("lblColour_3")->colour(), 33023u) << "the controls show what was written";
    EXPECT_TRUE(radio("optAmplitudeLog")->isChecked());
    EXPECT_EQ(find<QLineEdit>("txtFilePaths_0")->text(), host.documents + QStringLiteral("/Marrowick/Plots"));
}

TEST_F(PreferencesWindowTest, StoresAPenColourAtOnce)
{
    setFolders();
    open();
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [] {
        auto* const dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr)
            return;
        EXPECT_EQ(dialog->currentColor(), QColor(255, 0, 0)) << "starts from the present colour";
        dialog->setCurrentColor(QColor(0x12, 0x34, 0x56));
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    poll.start(0);
    QTest::mouseDClick(find<QWidget>("lblColour_2"), Qt::LeftButton);
    poll.stop();
    EXPECT_EQ(find<ColourLabel>("lblColour_2")->colour(), 0x563412u);
    EXPECT_EQ(stored("Pens", "2"), QString::number(0x563412));
    EXPECT_EQ(state.glPenColour[2], 0x563412u);
    EXPECT_EQ(host.calls, QStringList(QStringLiteral("pen 2 %1 %2").arg(0x563412).arg(0xFFFFFF)));
    escape();
    EXPECT_EQ(stored("Pens", "2"), QString::number(0x563412)) << "and leaving by Escape keeps it";
}

TEST_F(PreferencesWindowTest, KeepsAPenColourWhenTheColourDialogIsCancelled)
{
    setFolders();
    open();
    QTimer poll;
    int dialogs = 0;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&dialogs] {
        if (auto* const dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget())) {
            ++dialogs;
            dialog->setCurrentColor(Qt::green);
            QTest::keyClick(dialog, Qt::Key_Escape);
        }
    });
    poll.start(0);
    auto* const label = find<ColourLabel>("lblColour_2");
    label->setFocus();
    QTest::keyClick(label, Qt::Key_Space);
    EXPECT_EQ(dialogs, 1) << "the keyboard opens it too";
    EXPECT_EQ(label->colour(), 255u);
    EXPECT_EQ(stored("Pens", "2"), QStringLiteral("absent"));
    EXPECT_TRUE(host.calls.isEmpty());
}

TEST_F(PreferencesWindowTest, SaysHowToChangeAPenColour)
{
    open();
    EXPECT_EQ(find<QLabel>("lblColour_0")->toolTip(), QStringLiteral("Double click to change colour"));
    EXPECT_EQ(find<QLabel>("lblColour_9")->toolTip(), QStringLiteral("Double click to change colour"));
    EXPECT_EQ(find<QLabel>("lblInfo")->text(), QStringLiteral("Click on the colour box to change the default colour"));
    EXPECT_EQ(find<QPushButton>("cmdDefault")->text(), QStringLiteral("Default"));
    EXPECT_EQ(find<QPushButton>("cmdOK")->text(), QStringLiteral("OK"));
    EXPECT_EQ(find<QPushButton>("btnSetPath_3")->text(), QStringLiteral("Browse to folder"));
}

TEST_F(PreferencesWindowTest, ShowsTheShadeInTheActiveDocumentWhileTheSliderMoves)
{
    setFolders();
    open();
    window->selectPage(5);
    auto* const slider = find<QSlider>("sldGraticuleShade");
    slider->setFocus();
    QTest::keyClick(slider, Qt::Key_Right);
    QTest::keyClick(slider, Qt::Key_Right);
    EXPECT_EQ(host.calls,
              QStringList({QStringLiteral("tick %1").arg(0xD6D6D6), QStringLiteral("tick %1").arg(0xCCCCCC)}));
    escape();
    EXPECT_EQ(stored("Graticule", "Shade"), QStringLiteral("absent")) << "nothing is stored until it is saved";
}

TEST_F(PreferencesWindowTest, StoresAllButTheFoldersWhenOneCannotBeMade)
{
    setFolders();
    const QString before = stored("Paths", "PlotFiles");
    open();
    find<QLineEdit>("txtFilePaths_0")->setText(QStringLiteral("/proc/marrowick/plots"));
    find<QLineEdit>("txtFilePaths_1")->setText(dir.filePath(QStringLiteral("elsewhere")));
    choose("optAmplitudeLinear");
    pressOk();
    ASSERT_EQ(messages.shown.size(), 2u) << "one message per level";
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Directory Create Error"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Could not make directory: /proc/marrowick/"));
    EXPECT_EQ(messages.shown[0].style, UserMessages::Stop);
    EXPECT_EQ(messages.shown[1].text, QStringLiteral("Could not make directory: /proc/marrowick/plots"));
    EXPECT_TRUE(QFileInfo(dir.filePath(QStringLiteral("elsewhere"))).isDir()) << "the walk goes on";
    EXPECT_EQ(stored("Paths", "PlotFiles"), before);
    EXPECT_EQ(stored("Paths", "ExportFiles"), dir.filePath(QStringLiteral("folder1")));
    EXPECT_EQ(stored("Amplitude", "AxisScaleLin"), QStringLiteral("True"));
    EXPECT_EQ(stored("Graticule", "Shade"), QStringLiteral("14737632"));
}

TEST_F(PreferencesWindowTest, GoesOnWithoutADocumentsFolder)
{
    setFolders();
    host.documents.clear();
    open();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("File Path Error"));
    EXPECT_EQ(messages.shown[0].text, QStringLiteral("Error getting the 'My Documents' path"));
    EXPECT_EQ(messages.shown[0].style, UserMessages::Stop);
    EXPECT_EQ(find<QLineEdit>("txtFilePaths_0")->text(), dir.filePath(QStringLiteral("folder0")));
}

TEST_F(PreferencesWindowTest, TellsOnceThatNothingCanBeStored)
{
    SettingsStore nowhere(QStringLiteral("/proc/marrowick"));
    Preferences lost(nowhere, kApp);
    window = std::make_unique<frmPreferences>(lost, host, state, messages);
    window->show();
    pressOk();
    ASSERT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(messages.shown[0].title, QStringLiteral("Preferences"));
    EXPECT_TRUE(messages.shown[0].text.startsWith(QStringLiteral("The preferences could not be stored.")));
    EXPECT_FALSE(window->isVisible());
}

TEST_F(PreferencesWindowTest, TakesAFolderFromTheFolderDialog)
{
    setFolders();
    ASSERT_TRUE(QDir(dir.path()).mkpath(QStringLiteral("chosen")));
    open();
    const char* captions[] = {"Select location for PLOT files", "Select location for EXPORT files",
                              "Select location for SCRIPT files", "Select location for UPDATE files"};
    for (int i = 0; i < 4; ++i) {
        for (const bool ok : {false, true}) {
            auto* const box = find<QLineEdit>(QByteArray("txtFilePaths_").append(QByteArray::number(i)).constData());
            box->setText(dir.path());
            QTimer poll;
            QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
                auto* const dialog = qobject_cast<frmDirSelect*>(QApplication::activeModalWidget());
                if (dialog == nullptr)
                    return;
                EXPECT_EQ(dialog->windowTitle(), QLatin1String(captions[i]));
                EXPECT_EQ(dialog->StartPath, dir.path());
                EXPECT_EQ(dialog->parentWidget(), window.get());
                dialog->SetPath(dir.filePath(QStringLiteral("chosen")));
                if (ok)
                    QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("btnOK")), Qt::LeftButton);
                else
                    QTest::keyClick(dialog, Qt::Key_Escape);
            });
            poll.start(0);
            QTest::mouseClick(find<QPushButton>(QByteArray("btnSetPath_").append(QByteArray::number(i)).constData()),
                              Qt::LeftButton);
            EXPECT_EQ(box->text(), ok ? dir.filePath(QStringLiteral("chosen")) : dir.path());
        }
    }
}

} // namespace
