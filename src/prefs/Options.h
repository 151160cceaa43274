// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>
#include <QString>

#include <array>
#include <cstdint>

/// Every setting that the program keeps between runs, declared once: section, key, form of the text and default. Load,
/// save, default and every reader go through these declarations and class Preferences.
namespace options {

// Forms. A form says which type a reader gets and what text the store holds.
struct Flag
{
    using Value = bool;
}; ///< "True" or "False"
struct CheckBox
{
    using Value = bool;
}; ///< 1 or 0; ticked by 1 alone
struct Switch
{
    using Value = bool;
}; ///< 1 or 0; on by any number but 0
struct Integer
{
    using Value = std::int32_t;
}; ///< decimal text
struct Single
{
    using Value = float;
}; ///< decimal text
struct Double
{
    using Value = double;
}; ///< decimal text
struct Colour
{
    using Value = std::uint32_t;
}; ///< decimal text of 0x00BBGGRR
struct Text
{
    using Value = QString;
};

/// What a declaration holds as default: a text is a literal, so that declarations are constants.
template <typename Form>
struct DefaultOf
{
    using Type = typename Form::Value;
};
template <>
struct DefaultOf<Text>
{
    using Type = QLatin1String;
};

enum class Title
{
    Program, ///< the title without instance number: shared by all copies
    Instance ///< the title with its number: each copy has its own
};

template <typename Form>
struct Option
{
    QLatin1String section;
    QLatin1String key;
    typename DefaultOf<Form>::Type defaultValue{};
    Title title = Title::Program;
};

/// Settings of one section whose keys end with a number.
template <typename Form>
struct NumberedOption
{
    QLatin1String section;
    QLatin1String keyStem;
    typename DefaultOf<Form>::Type defaultValue{};
};

/// Settings that follow the instrument: the section is its serial number, "Device" until one is known. Where the
/// program has a variable for the setting, the reader passes the variable's value as default.
template <typename Form>
struct InstrumentOption
{
    QLatin1String key;
    typename DefaultOf<Form>::Type defaultValue{};
};

/// One of the program's folders. Unset for all readers but the preferences dialog, which offers the folder below the
/// user's documents folder.
struct FolderOption
{
    Option<Text> option;
    QLatin1String belowDocuments; ///< with a leading separator
};

consteval QLatin1String operator""_t(const char* text, std::size_t size)
{
    return QLatin1String(text, static_cast<qsizetype>(size));
}

inline constexpr int kPenCount = 10;

inline constexpr std::array<Option<Colour>, kPenCount> kPens{{
    {"Pens"_t, "0"_t, 0x000000},
    {"Pens"_t, "1"_t, 0x000040},
    {"Pens"_t, "2"_t, 0x0000FF},
    {"Pens"_t, "3"_t, 0x0080FF},
    {"Pens"_t, "4"_t, 0x00FFFF},
    {"Pens"_t, "5"_t, 0x00FF00},
    {"Pens"_t, "6"_t, 0xFF0000},
    {"Pens"_t, "7"_t, 0x800080},
    {"Pens"_t, "8"_t, 0x808080},
    {"Pens"_t, "9"_t, 0xFF00FF},
}};

/// Values of the "PhaseGraph" settings.
enum PhaseGraph
{
    PhaseOff = 0,
    PhaseHalfCycle = 1,
    PhaseWholeCycle = 2
};
inline constexpr Option<Flag> kAmplitudeAxisScaleLin{"Amplitude"_t, "AxisScaleLin"_t, false};
inline constexpr Option<Flag> kAmplitudeAxisScaleAuto{"Amplitude"_t, "AxisScaleAuto"_t, false};
inline constexpr Option<Integer> kAmplitudePhaseGraph{"Amplitude"_t, "PhaseGraph"_t, PhaseWholeCycle};
inline constexpr Option<Flag> kImpedanceAxisScaleLin{"ImpedanceAdmittance"_t, "AxisScaleLin"_t, false};
/// Values of kImpedanceDisplayLimits.
inline constexpr QLatin1String kAutoLimits = "Auto"_t;
inline constexpr QLatin1String kManualLimits = "Manual"_t;
inline constexpr Option<Text> kImpedanceDisplayLimits{"ImpedanceAdmittance"_t, "DisplayLimits"_t, kManualLimits};
inline constexpr Option<Integer> kImpedancePhaseGraph{"ImpedanceAdmittance"_t, "PhaseGraph"_t, PhaseWholeCycle};
inline constexpr Option<Flag> kReactanceFreqLog{"XRGB"_t, "optXFreqLog"_t, true};
inline constexpr Option<Flag> kReactanceImpedance{"XRGB"_t, "optImpedance"_t, false};
inline constexpr Option<Flag> kReactanceReactAuto{"XRGB"_t, "optReactAuto"_t, true};
inline constexpr Option<Flag> kReactanceResAuto{"XRGB"_t, "optResAuto"_t, true};

inline constexpr Option<CheckBox> kNotifyDevice{"Prompts"_t, "NotifyDevice"_t, false};
inline constexpr Option<CheckBox> kPromptDevice{"Prompts"_t, "PromptDevice"_t, false};
inline constexpr Option<Switch> kPromptOverwrite{"Prompts"_t, "PromptOverwrite"_t, true};
inline constexpr Option<CheckBox> kLockPenAfterPlot{"Prompts"_t, "LockPenAfterPlot"_t, false};
inline constexpr Option<CheckBox> kSplashScreen{"Prompts"_t, "SplashScreen"_t, true};
inline constexpr Option<Switch> kOpenSettings{"Prompts"_t, "OpenSettings"_t, true};

/// The measures that a result line shows: those of the script last checked.
inline constexpr Option<Switch> kShowF1{"Script"_t, "ShowF1"_t, true};
inline constexpr Option<Switch> kShowF2{"Script"_t, "ShowF2"_t, true};
inline constexpr Option<Switch> kShowFr{"Script"_t, "ShowFr"_t, true};
inline constexpr Option<Switch> kShowZr{"Script"_t, "ShowZr"_t, true};
inline constexpr Option<Switch> kShowQ{"Script"_t, "ShowQ"_t, true};

inline constexpr FolderOption kPlotFiles{{"Paths"_t, "PlotFiles"_t, ""_t}, "/Marrowick/Plots"_t};
inline constexpr FolderOption kExportFiles{{"Paths"_t, "ExportFiles"_t, ""_t}, "/Marrowick/Export"_t};
inline constexpr FolderOption kScriptFiles{{"Paths"_t, "ScriptFiles"_t, ""_t}, "/Marrowick/Script"_t};
inline constexpr FolderOption kUpdateFiles{{"Paths"_t, "UpdateFiles"_t, ""_t}, "/Marrowick/Updates"_t};
/// In the order of the boxes of the preferences dialog.
inline constexpr std::array<FolderOption, 4> kFolders{kPlotFiles, kExportFiles, kScriptFiles, kUpdateFiles};

/// Set by the installer or an administrator only. Each reader passes its own default: the program's folder and one of
/// the two file names.
inline constexpr Option<Text> kManual{"Paths"_t, "Manual"_t, ""_t};
inline constexpr QLatin1String kUserManualFile = "UserManual.pdf"_t;
inline constexpr QLatin1String kInterimManualFile = "T46Annex1.pdf"_t;

inline constexpr Option<Text> kDefaultFont{"Preferences"_t, "DefaultFont"_t, "Tahoma"_t};
inline constexpr Option<Colour> kGraticuleShade{"Graticule"_t, "Shade"_t, 0xE0E0E0};
/// The stops of the shade slider, from light to dark.
inline constexpr std::array<std::uint32_t, 11> kShadeStops{0xE0E0E0, 0xD6D6D6, 0xCCCCCC, 0xC2C2C2, 0xB8B8B8, 0xAEAEAE,
                                                           0xA4A4A4, 0x9A9A9A, 0x909090, 0x868686, 0x7C7C7C};

/// The box beside the pointer that reads the curves.
inline constexpr Option<Flag> kPointerReadout{"View"_t, "PointerReadout"_t, true};
inline constexpr Option<Integer> kPreferencesTab{"View"_t, "PreferencesTab"_t, 0};
inline constexpr Option<Integer> kGraphViewOptionsTab{"View"_t, "GraphViewOptionsTab"_t, 1};
inline constexpr Option<Integer> kGraphViewOptionsXRGBTab{"View"_t, "GraphViewOptionsXRGBTab"_t, 0};
inline constexpr Option<Integer> kExportDataTab{"View"_t, "ExportDataTab"_t, 1};

/// The main window, in twips.
inline constexpr Option<Integer> kWindowLeft{"Window"_t, "Left"_t, 0, Title::Instance};
inline constexpr Option<Integer> kWindowTop{"Window"_t, "Top"_t, 0, Title::Instance};
inline constexpr Option<Integer> kWindowWidth{"Window"_t, "Width"_t, 10000, Title::Instance};
inline constexpr Option<Integer> kWindowHeight{"Window"_t, "Height"_t, 8000, Title::Instance};
enum WindowState
{
    WindowNormal = 0,
    WindowMinimised = 1,
    WindowMaximised = 2
};
inline constexpr Option<Integer> kWindowState{"Window"_t, "State"_t, WindowMaximised, Title::Instance};

/// The settings dialog, in twips, and where the main window was at that moment.
inline constexpr Option<Single> kSettingsTop{"frmSettings"_t, "Top"_t, 0};
inline constexpr Option<Single> kSettingsLeft{"frmSettings"_t, "Left"_t, 0};
inline constexpr Option<Integer> kSettingsWindowState{"frmSettings"_t, "WindowState"_t, WindowNormal};
inline constexpr Option<Single> kSettingsMainTop{"frmSettingsMainPos"_t, "Top"_t, 0};
inline constexpr Option<Single> kSettingsMainLeft{"frmSettingsMainPos"_t, "Left"_t, 0};

inline constexpr NumberedOption<Text> kQuickOpenFile{"QuickOpen"_t, "File"_t, ""_t};
inline constexpr Option<Integer> kTestType{"Test"_t, "Type"_t, 1};
inline constexpr Option<CheckBox> kTestSchedule{"privilege"_t, "TestSchedule"_t, false};

inline constexpr Option<CheckBox> kExportUnixFileType{"ExportTxt"_t, "UnixFileType"_t, false};
inline constexpr Option<CheckBox> kExportIncludeHeader{"ExportTxt"_t, "IncludeHeader"_t, true};
inline constexpr Option<Flag> kExportTabDelimited{"ExportTxt"_t, "TabDelimited"_t, true};

struct ImageOptions
{
    Option<Integer> type;
    Option<Integer> resolution;
    Option<Integer> xAspect;
    Option<Integer> yAspect;
};
inline constexpr ImageOptions kExportImage{{"ExportImage"_t, "Type"_t, 2},
                                           {"ExportImage"_t, "Resolution"_t, 5},
                                           {"ExportImage"_t, "XAspect"_t, 100},
                                           {"ExportImage"_t, "YAspect"_t, 100}};
inline constexpr ImageOptions kLoopExportImage{{"GBExportImage"_t, "Type"_t, 2},
                                               {"GBExportImage"_t, "Resolution"_t, 5},
                                               {"GBExportImage"_t, "XAspect"_t, 100},
                                               {"GBExportImage"_t, "YAspect"_t, 100}};

/// Values of kPrintOrientation, spelled as stored.
inline constexpr QLatin1String kPortrait = "Portrate"_t;
inline constexpr QLatin1String kLandscape = "Landscape"_t;
inline constexpr Option<Text> kPrintOrientation{"Print"_t, "Orientation"_t, kPortrait};

inline constexpr Option<CheckBox> kAnalysisF1{"Analysis"_t, "F1"_t, false};
inline constexpr Option<CheckBox> kAnalysisF2{"Analysis"_t, "F2"_t, false};
inline constexpr Option<CheckBox> kAnalysisFr{"Analysis"_t, "Fr"_t, false};
inline constexpr Option<CheckBox> kAnalysisZr{"Analysis"_t, "Zr"_t, true};
inline constexpr Option<CheckBox> kAnalysisQ{"Analysis"_t, "Q"_t, true};
inline constexpr Option<CheckBox> kAnalysisClf{"Analysis"_t, "Clf"_t, true};

inline constexpr Option<Integer> kMaskUpperIndex{"Mask"_t, "iUpperIndex"_t, 0};
inline constexpr Option<Integer> kMaskLowerIndex{"Mask"_t, "iLowerIndex"_t, 0};

inline constexpr Option<Text> kFirmwareUpgradeFile{"FirmwareUpgrade"_t, "FileName"_t, ""_t};
inline constexpr Option<Text> kSoftwareUpgradeFile{"SoftwareUpgrade"_t, "FileName"_t, ""_t};
inline constexpr Option<Flag> kUpgradeAvailable{"Upgrade"_t, "Available"_t, true};
/// Web addresses: a deployment supplies its own, in the system's configuration folder. Without one no updates are
/// found, and the maker's page leads nowhere.
inline constexpr Option<Text> kWebUrl{"Web"_t, "URL"_t, ""_t};
inline constexpr Option<Text> kMakerUrl{"URL"_t, "MarrowickInstruments"_t, "https://www.marrowick.example/"_t};

inline constexpr InstrumentOption<Double> kStartFrequency{"dblStartFrequency"_t};
inline constexpr InstrumentOption<Double> kEndFrequency{"dblEndFrequency"_t};
inline constexpr InstrumentOption<Double> kSpotFrequency{"dblSpotFrequency"_t};
inline constexpr InstrumentOption<Double> kIdleFrequency{"dblIdleFrequency"_t};
inline constexpr InstrumentOption<Integer> kNumPoints{"iNumPoints"_t};
inline constexpr InstrumentOption<Integer> kAttenuationCode{"iAttenuationCode"_t};
inline constexpr InstrumentOption<Integer> kSweepMode{"iSweepMode"_t};
inline constexpr InstrumentOption<Integer> kTestPeriod{"iTestPeriod"_t};
inline constexpr InstrumentOption<Flag> kRepeat{"bfRepeat"_t};
inline constexpr InstrumentOption<Flag> kPhaseOn{"bfPhaseOn"_t};
inline constexpr InstrumentOption<Flag> kGraphExtents{"bfGraphExtents"_t};
inline constexpr InstrumentOption<Double> kTxtStartFrequency{"txtStartFrequency"_t};
inline constexpr InstrumentOption<Double> kTxtEndFrequency{"txtEndFrequency"_t};
inline constexpr InstrumentOption<Text> kMonF1{"MonF1"_t, "400000"_t};
inline constexpr InstrumentOption<Text> kMonF2{"MonF2"_t, "2000000"_t};
inline constexpr InstrumentOption<Flag> kMonitorF1{"optMonitorF1"_t, true};
inline constexpr InstrumentOption<Flag> kMonitorAmplitude{"optMonitorAmplitude"_t, true};
inline constexpr InstrumentOption<Integer> kSamples{"Samples"_t};

} // namespace options
