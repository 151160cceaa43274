// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"
#include "link/MainWindowPort.h"
#include "link/SettingsRules.h"

#include <QDialog>

#include <array>
#include <functional>

class DeviceModule;
class FrequencyEdit;
class PenDocument;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QSlider;
class QTabWidget;
class SettingsDialogHost;

/// The settings of the instrument: oscillator and sweep, calibration and engineering, test schedule. Modeless, and
/// live: a change goes to the instrument at once, "OK" only closes. It is the settings dialog of DeviceModule while it
/// lives.
///
/// Made on the heap: closing it (Unload) stores what it keeps and deletes it. Handlers may run event loops in which it
/// is closed.
class frmSettings : public QDialog, public SettingsDialogPort
{
    Q_OBJECT

public:
    /// Both outlive the dialog.
    frmSettings(DeviceModule& device, SettingsDialogHost& host, QWidget* parent = nullptr);
    ~frmSettings() override;

    /// Stores what the dialog keeps and deletes it soon.
    void Unload();
    /// The clock of the calibration stamp; the system's unless set.
    std::function<QDateTime()> now;

    // SettingsDialogPort ----------------------------------------------------------------------------------------------
    /// Shows the mirror. Sends nothing but the count of samples of a DT46 that runs no script.
    void RefreshDialog() override;
    void storeSettings() override;
    void SetInputLevel(double dblAmpIn_dB, double dblPhase, bool bfShowPhase) override;
    bool monitorChecked() const override;
    void uncheckMonitor() override;
    QString lowFrequencyText() const override;
    QString highFrequencyText() const override;
    void showSweepRange(double start, double end) override;
    void showCalSlope(double value) override;
    void showTrimCodes(int iVrefCode, int iVdutCode) override;
    void showLoopBack(bool on) override;
    void showApplyCal(bool on) override;
    void showCalibrated(bool calibrated) override;
    void showSerialNumber(const QString& text) override;
    void showFreqComp(double value) override;

    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct TestOption
    {
        QRadioButton* option;
        int hertz; ///< 0: no signal
    };

    void buildPages();
    QWidget* buildOscillatorPage();
    QWidget* buildFrequencyFrame();
    QWidget* buildSweepFrame();
    QWidget* buildIdleFrame();
    QWidget* buildTestFrame();
    QWidget* buildAttenuationFrame();
    QWidget* buildMonitorFrame();
    QWidget* buildEngineeringPage();
    QWidget* buildCalibrationFrames();
    QWidget* buildTestOptionFrame();
    QWidget* buildTrimFrame();
    QWidget* buildInstrumentFrames();
    QWidget* buildTestSchedulePage();
    void connectSlider(QSlider* slider, void (frmSettings::*follow)(int), void (frmSettings::*commit)());
    void connectHandlers();
    void setTabOrders();

    void SendToDevice(const QString& text);
    void SaveToDevice();
    void SendIdleFrequency();
    void SendSpotFrequency();
    void ClearLevelDisplay();
    void ShowTestPoints(int points);
    void ShowAttenuation(int sliderValue);
    void ShowVrefCode(int sliderValue);
    void ShowVdutCode(int sliderValue);
    void ShowTestPeriod(int milliseconds);
    void showBars(const settingsrules::LevelBars& bars);
    void showModel();
    void showSamples();
    void showEngineering();
    void showMonitorChoice();
    void setFrequencyControlsEnabled(bool enabled);
    void setMonitorChoiceEnabled(bool enabled);
    void saveMonitor();
    int monitorBox() const;
    bool testScheduleShown() const;
    void applyPosition();
    void storePosition();
    void unload();
    PenDocument* newDocument();

    // Handlers --------------------------------------------------------------------------------------------------------
    void cmdSetFreq_Click();
    void frequency_KeyPress(FrequencyEdit* box);
    void chkAxisExtents_Click();
    void slideTestPoints_Scroll();
    void slidePeriod_Scroll();
    void slideAttenuation_Scroll();
    void sweepOption_Click(int iSweepMode);
    void optOff_Click();
    void optTestStart_Click();
    void optUserDefined_Click();
    void chkAcquirePhase_Click();
    void lstDT46Samples_Click();
    void chkMonitor_Click();
    void optMonitorAmplitude_Click();
    void optMonFreq_Click(int index);
    void cmdAmpCal_Click();
    void cmdPhaseCal_Click();
    void cmdZeroCal_Click();
    void cmdDiagnose_Click();
    void cmdSetFreqComp_Click();
    void slideVREF_Scroll();
    void slideVDUT_Scroll();
    void testOption_Click(int hertz);
    void cmdDefault_Click();
    void chkApplyCal_Click();
    void chkLoopBack_Click();
    void cmdSetSerial_Click();
    void chkTestSchedule_Click();

    DeviceModule& m_device;
    LinkContext m_context;
    SettingsDialogHost& m_host;
    bool m_bfDialogLive = false;
    bool m_bfSamplingModel = false;
    bool m_stored = false; ///< the mirror may be another instrument's already
    bool m_unloaded = false;

    QTabWidget* SSTab1 = nullptr;
    QWidget* m_testSchedulePage = nullptr;
    QPushButton* OKButton = nullptr;

    QLabel *lblLowerFreq = nullptr, *lblEndFrequency = nullptr;
    FrequencyEdit *txtLowFreq = nullptr, *txtHighFreq = nullptr;
    QPushButton* cmdSetFreq = nullptr;
    QCheckBox* chkAxisExtents = nullptr;
    QSlider *slideTestPoints = nullptr, *slidePeriod = nullptr, *slideAttenuation = nullptr;
    QLabel *lblNumPoints = nullptr, *lblPeriod = nullptr, *lblAttenuation = nullptr, *lblSamples = nullptr;
    QGroupBox* fAttenuation = nullptr;
    QRadioButton *optAB = nullptr, *optBA = nullptr, *optAlternate = nullptr;
    QRadioButton *optOff = nullptr, *optTestStart = nullptr, *optUserDefined = nullptr;
    FrequencyEdit* txtParkFrequency = nullptr;
    QCheckBox* chkAcquirePhase = nullptr;
    QComboBox* lstDT46Samples = nullptr;
    QCheckBox* chkMonitor = nullptr;
    QRadioButton *optMonitorAmplitude = nullptr, *optMonitorImpedance = nullptr;
    std::array<QRadioButton*, 2> optMonFreq{};
    std::array<FrequencyEdit*, 2> txtSpotFrequency{};
    QProgressBar *pbTestLevel = nullptr, *pbTestPhase = nullptr;
    QLabel *lblRxLevel = nullptr, *lblRxPhase = nullptr;

    QGroupBox *frmCalibrate = nullptr, *fAuto = nullptr, *fTrimVREF = nullptr, *frmDebug = nullptr;
    QGroupBox* fTroubleShoot = nullptr;
    QLabel *lblCalibration = nullptr, *lblCalSlope = nullptr, *lblVREF = nullptr, *lblVDUT = nullptr;
    QPushButton *cmdAmpCal = nullptr, *cmdPhaseCal = nullptr, *cmdZeroCal = nullptr, *cmdDiagnose = nullptr;
    QCheckBox *chkApplyCal = nullptr, *chkLoopBack = nullptr;
    QSlider *slideVREF = nullptr, *slideVDUT = nullptr;
    QRadioButton* optDefault = nullptr;
    std::array<TestOption, 4> m_sweepModelOptions{};    ///< T46
    std::array<TestOption, 4> m_samplingModelOptions{}; ///< DT46
    FrequencyEdit* txtFreqComp = nullptr;
    QPushButton *cmdSetFreqComp = nullptr, *cmdDefault = nullptr, *cmdSave = nullptr, *cmdSetSerial = nullptr;
    QLineEdit* txtSerialNumber = nullptr;
    QCheckBox* chkTestSchedule = nullptr;
};
