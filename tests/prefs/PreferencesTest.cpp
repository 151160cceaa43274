// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/Preferences.h"

#include "prefs/SettingsStore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using namespace options;

QString text(const char* bytes)
{
    return QString::fromUtf8(bytes);
}

class PreferencesTest : public ::testing::Test
{
protected:
    /// An absent key reads as the default, and the default is stored as this text under this section and key.
    template <typename Form>
    void declares(const Option<Form>& option, const char* section, const char* key, const char* defaultText)
    {
        EXPECT_EQ(QString(option.section), text(section));
        EXPECT_EQ(QString(option.key), text(key));
        EXPECT_EQ(preferences.text(option), text(defaultText)) << section << " " << key;
        EXPECT_FALSE(preferences.contains(option));
        EXPECT_TRUE(preferences.setDefault(option));
        const QString title = option.title == Title::Instance ? kInstance : kApp;
        EXPECT_EQ(store.GetSetting(title, text(section), text(key), QStringLiteral("absent")), text(defaultText));
        EXPECT_TRUE(preferences.contains(option));
    }

    const QString kApp = QStringLiteral("MarrowickGraph");
    const QString kInstance = QStringLiteral("MarrowickGraph1");
    QTemporaryDir dir;
    SettingsStore store{dir.filePath(QStringLiteral("config"))};
    Preferences preferences{store, kApp, kInstance};
};

TEST_F(PreferencesTest, DeclareThePensWithTheirColours)
{
    const char* colours[] = {"0", "64", "255", "33023", "65535", "65280", "16711680", "8388736", "8421504", "16711935"};
    for (int pen = 0; pen < kPenCount; ++pen)
        declares(kPens[static_cast<std::size_t>(pen)], "Pens", QByteArray::number(pen).constData(), colours[pen]);
}

TEST_F(PreferencesTest, DeclareTheViewDefaults)
{
    declares(kAmplitudeAxisScaleLin, "Amplitude", "AxisScaleLin", "False");
    declares(kAmplitudeAxisScaleAuto, "Amplitude", "AxisScaleAuto", "False");
    declares(kAmplitudePhaseGraph, "Amplitude", "PhaseGraph", "2");
    declares(kImpedanceAxisScaleLin, "ImpedanceAdmittance", "AxisScaleLin", "False");
    declares(kImpedanceDisplayLimits, "ImpedanceAdmittance", "DisplayLimits", "Manual");
    declares(kImpedancePhaseGraph, "ImpedanceAdmittance", "PhaseGraph", "2");
    declares(kReactanceFreqLog, "XRGB", "optXFreqLog", "True");
    declares(kReactanceImpedance, "XRGB", "optImpedance", "False");
    declares(kReactanceReactAuto, "XRGB", "optReactAuto", "True");
    declares(kReactanceResAuto, "XRGB", "optResAuto", "True");
    declares(kDefaultFont, "Preferences", "DefaultFont", "Tahoma");
    declares(kGraticuleShade, "Graticule", "Shade", "14737632");
}

TEST_F(PreferencesTest, DeclareThePrompts)
{
    declares(kNotifyDevice, "Prompts", "NotifyDevice", "0");
    declares(kPromptDevice, "Prompts", "PromptDevice", "0");
    declares(kPromptOverwrite, "Prompts", "PromptOverwrite", "1");
    declares(kLockPenAfterPlot, "Prompts", "LockPenAfterPlot", "0");
    declares(kSplashScreen, "Prompts", "SplashScreen", "1");
    declares(kOpenSettings, "Prompts", "OpenSettings", "1");
}

TEST_F(PreferencesTest, DeclareFoldersThatAreEmptyForAllButTheirDialog)
{
    declares(kPlotFiles.option, "Paths", "PlotFiles", "");
    declares(kExportFiles.option, "Paths", "ExportFiles", "");
    declares(kScriptFiles.option, "Paths", "ScriptFiles", "");
    declares(kUpdateFiles.option, "Paths", "UpdateFiles", "");
    declares(kManual, "Paths", "Manual", "");
    const QString documents = QStringLiteral("/home/me/Documents");
    EXPECT_EQ(Preferences::defaultFolder(kFolders[0], documents), documents + QStringLiteral("/Marrowick/Plots"));
    EXPECT_EQ(Preferences::defaultFolder(kFolders[1], documents), documents + QStringLiteral("/Marrowick/Export"));
    EXPECT_EQ(Preferences::defaultFolder(kFolders[2], documents), documents + QStringLiteral("/Marrowick/Script"));
    EXPECT_EQ(Preferences::defaultFolder(kFolders[3], documents), documents + QStringLiteral("/Marrowick/Updates"));
}

TEST_F(PreferencesTest, DeclareTabsAndWindows)
{
    declares(kPreferencesTab, "View", "PreferencesTab", "0");
    declares(kGraphViewOptionsTab, "View", "GraphViewOptionsTab", "1");
    declares(kGraphViewOptionsXRGBTab, "View", "GraphViewOptionsXRGBTab", "0");
    declares(kExportDataTab, "View", "ExportDataTab", "1");
    declares(kWindowLeft, "Window", "Left", "0");
    declares(kWindowTop, "Window", "Top", "0");
    declares(kWindowWidth, "Window", "Width", "10000");
    declares(kWindowHeight, "Window", "Height", "8000");
    declares(kWindowState, "Window", "State", "2");
    declares(kSettingsTop, "frmSettings", "Top", "0");
    declares(kSettingsLeft, "frmSettings", "Left", "0");
    declares(kSettingsWindowState, "frmSettings", "WindowState", "0");
    declares(kSettingsMainTop, "frmSettingsMainPos", "Top", "0");
    declares(kSettingsMainLeft, "frmSettingsMainPos", "Left", "0");
}

TEST_F(PreferencesTest, DeclareTheSettingsOfTheOtherDialogs)
{
    declares(kTestType, "Test", "Type", "1");
    declares(kTestSchedule, "privilege", "TestSchedule", "0");
    declares(kExportUnixFileType, "ExportTxt", "UnixFileType", "0");
    declares(kExportIncludeHeader, "ExportTxt", "IncludeHeader", "1");
    declares(kExportTabDelimited, "ExportTxt", "TabDelimited", "True");
    declares(kExportImage.type, "ExportImage", "Type", "2");
    declares(kExportImage.resolution, "ExportImage", "Resolution", "5");
    declares(kExportImage.xAspect, "ExportImage", "XAspect", "100");
    declares(kExportImage.yAspect, "ExportImage", "YAspect", "100");
    declares(kLoopExportImage.type, "GBExportImage", "Type", "2");
    declares(kLoopExportImage.resolution, "GBExportImage", "Resolution", "5");
    declares(kLoopExportImage.xAspect, "GBExportImage", "XAspect", "100");
    declares(kLoopExportImage.yAspect, "GBExportImage", "YAspect", "100");
    declares(kPrintOrientation, "Print", "Orientation", "Portrate");
    declares(kAnalysisF1, "Analysis", "F1", "0");
    declares(kAnalysisF2, "Analysis", "F2", "0");
    declares(kAnalysisFr, "Analysis", "Fr", "0");
    declares(kAnalysisZr, "Analysis", "Zr", "1");
    declares(kAnalysisQ, "Analysis", "Q", "1");
    declares(kAnalysisClf, "Analysis", "Clf", "1");
    declares(kMaskUpperIndex, "Mask", "iUpperIndex", "0");
    declares(kMaskLowerIndex, "Mask", "iLowerIndex", "0");
    declares(kFirmwareUpgradeFile, "FirmwareUpgrade", "FileName", "");
    declares(kSoftwareUpgradeFile, "SoftwareUpgrade", "FileName", "");
    declares(kUpgradeAvailable, "Upgrade", "Available", "True");
    declares(kWebUrl, "Web", "URL", "");
    declares(kMakerUrl, "URL", "MarrowickInstruments", "https://www.marrowick.example/");
}

TEST_F(PreferencesTest, KeepTheWindowPositionUnderTheInstanceTitle)
{
    EXPECT_TRUE(preferences.setValue(kWindowLeft, 150));
    EXPECT_EQ(store.GetSetting(kInstance, text("Window"), text("Left"), -1), QStringLiteral("150"));
    EXPECT_EQ(store.GetSetting(kApp, text("Window"), text("Left"), -1), QStringLiteral("-1"));
    EXPECT_TRUE(preferences.setValue(kSplashScreen, false));
    EXPECT_EQ(store.GetSetting(kApp, text("Prompts"), text("SplashScreen"), -1), QStringLiteral("0"));
    const Preferences single(store, kApp);
    EXPECT_EQ(single.value(kWindowLeft), 0);
}

TEST_F(PreferencesTest, BringEveryFormBack)
{
    preferences.setValue(kUpgradeAvailable, false);
    preferences.setValue(kNotifyDevice, true);
    preferences.setValue(kTestType, 3);
    preferences.setValue(kSettingsTop, 0.1f);
    preferences.setValue(kGraticuleShade, 0x7C7C7Cu);
    preferences.setValue(kDefaultFont, QStringLiteral("DejaVu Sans"));
    EXPECT_FALSE(preferences.value(kUpgradeAvailable));
    EXPECT_TRUE(preferences.value(kNotifyDevice));
    EXPECT_EQ(preferences.value(kTestType), 3);
    EXPECT_EQ(preferences.value(kSettingsTop), 0.1f);
    EXPECT_EQ(preferences.value(kGraticuleShade), 0x7C7C7Cu);
    EXPECT_EQ(preferences.value(kDefaultFont), QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(preferences.text(kUpgradeAvailable), QStringLiteral("False"));
    EXPECT_EQ(preferences.text(kGraticuleShade), QStringLiteral("8158332"));
}

TEST_F(PreferencesTest, ReadATextThatIsNoValueAsTheDefault)
{
    const auto stored = [this](const auto& option, const char* value) {
        EXPECT_TRUE(store.SaveSetting(kApp, option.section, option.key, text(value)));
        return preferences.value(option);
    };
    EXPECT_EQ(stored(kTestType, "three"), 1);
    EXPECT_EQ(stored(kTestType, "2.5"), 2);
    EXPECT_EQ(stored(kGraticuleShade, "-1"), 0xE0E0E0u);
    EXPECT_EQ(stored(kGraticuleShade, "16777216"), 0xE0E0E0u);
    EXPECT_EQ(stored(kGraticuleShade, "123"), 123u);
    EXPECT_EQ(stored(kReactanceFreqLog, "perhaps"), true);
    EXPECT_EQ(stored(kReactanceFreqLog, "false"), false);
    EXPECT_EQ(stored(kReactanceFreqLog, "-1"), true);
    EXPECT_EQ(stored(kSplashScreen, ""), true);
    EXPECT_EQ(stored(kSplashScreen, "2"), false) << "ticked is 1";
    EXPECT_EQ(stored(kSettingsTop, "1e300"), 0.0f);
    EXPECT_EQ(stored(kSettingsTop, "120.5"), 120.5f);
}

TEST_F(PreferencesTest, LetAReaderBringItsOwnDefault)
{
    EXPECT_EQ(preferences.valueOr(kPens[2], 0x123456u), 0x123456u);
    preferences.setValue(kPens[2], 7u);
    EXPECT_EQ(preferences.valueOr(kPens[2], 0x123456u), 7u);
    EXPECT_EQ(preferences.valueOr(kManual, QStringLiteral("/opt/UserManual.pdf")),
              QStringLiteral("/opt/UserManual.pdf"));
}

TEST_F(PreferencesTest, NumberTheQuickOpenFiles)
{
    EXPECT_EQ(preferences.value(kQuickOpenFile, 1), QString());
    EXPECT_TRUE(preferences.setValue(kQuickOpenFile, 1, QStringLiteral("/a/b.gad")));
    EXPECT_EQ(store.GetSetting(kApp, text("QuickOpen"), text("File1"), 0), QStringLiteral("/a/b.gad"));
    EXPECT_EQ(preferences.value(kQuickOpenFile, 1), QStringLiteral("/a/b.gad"));
    EXPECT_EQ(preferences.value(kQuickOpenFile, 2), QString());
}

TEST_F(PreferencesTest, KeepEachInstrumentsSettingsApart)
{
    const QString one = QStringLiteral("T46-0001");
    const QString two = QStringLiteral("T46/00 2");
    EXPECT_EQ(preferences.value(one, kStartFrequency, 1234.5), 1234.5) << "an absent key leaves the variable as it is";
    EXPECT_TRUE(preferences.setValue(one, kStartFrequency, 20.0));
    EXPECT_TRUE(preferences.setValue(two, kStartFrequency, 0.1));
    EXPECT_TRUE(preferences.setValue(one, kRepeat, true));
    EXPECT_EQ(preferences.value(one, kStartFrequency, 1.0), 20.0);
    EXPECT_EQ(preferences.value(two, kStartFrequency, 1.0), 0.1);
    EXPECT_TRUE(preferences.value(one, kRepeat, false));
    EXPECT_FALSE(preferences.value(two, kRepeat, false));
    EXPECT_EQ(store.GetSetting(kApp, one, text("dblStartFrequency"), 0), QStringLiteral("20"));
    EXPECT_EQ(store.GetSetting(kApp, one, text("bfRepeat"), 0), QStringLiteral("True"));
    EXPECT_EQ(preferences.value(one, kMonF1), QStringLiteral("400000"));
    EXPECT_EQ(preferences.value(one, kMonF2), QStringLiteral("2000000"));
    EXPECT_TRUE(preferences.value(one, kMonitorF1));
    EXPECT_TRUE(preferences.value(one, kMonitorAmplitude));
}

TEST_F(PreferencesTest, NameTheInstrumentsKeys)
{
    const auto named = [](const auto& option, const char* key) { EXPECT_EQ(QString(option.key), text(key)); };
    named(kStartFrequency, "dblStartFrequency");
    named(kEndFrequency, "dblEndFrequency");
    named(kSpotFrequency, "dblSpotFrequency");
    named(kIdleFrequency, "dblIdleFrequency");
    named(kNumPoints, "iNumPoints");
    named(kAttenuationCode, "iAttenuationCode");
    named(kSweepMode, "iSweepMode");
    named(kTestPeriod, "iTestPeriod");
    named(kRepeat, "bfRepeat");
    named(kPhaseOn, "bfPhaseOn");
    named(kGraphExtents, "bfGraphExtents");
    named(kTxtStartFrequency, "txtStartFrequency");
    named(kTxtEndFrequency, "txtEndFrequency");
    named(kMonF1, "MonF1");
    named(kMonF2, "MonF2");
    named(kMonitorF1, "optMonitorF1");
    named(kMonitorAmplitude, "optMonitorAmplitude");
    named(kSamples, "Samples");
}

TEST_F(PreferencesTest, TellWhenTheyCannotBeStored)
{
    SettingsStore nowhere(QStringLiteral("/proc/marrowick"));
    Preferences lost(nowhere, kApp);
    EXPECT_FALSE(lost.setValue(kTestType, 2));
    EXPECT_FALSE(lost.setDefault(kTestType));
    EXPECT_EQ(lost.value(kTestType), 1);
}

} // namespace
