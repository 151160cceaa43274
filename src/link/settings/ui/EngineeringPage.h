// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/settings/CalibrationRuns.h"

#include <QWidget>

#include <array>

enum class MirrorPart;
class FrequencyEdit;
class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSlider;
class SettingsChannel;
class SettingsDialogHost;

/// The second page of the settings dialog: calibration, trouble-shooting, trims, the instrument's memory.
class EngineeringPage : public QWidget
{
    Q_OBJECT

public:
    /// Both outlive the page.
    EngineeringPage(SettingsChannel& channel, SettingsDialogHost& host, QWidget* parent = nullptr);

    /// Shows the mirror. Sends nothing.
    void refresh();
    CalibrationRuns& runs() { return m_runs; }
    QList<QWidget*> tabOrder() const;

Q_SIGNALS:
    /// A function is about to need the output that the monitor may hold.
    void outputWanted();

private:
    struct TestOption
    {
        QRadioButton* option;
        int hertz; ///< 0: no signal
    };

    void buildCalibrationFrames(QLayout& column);
    void buildTrimFrame(QLayout& column);
    void buildTestOptionFrame(QLayout& column);
    void buildInstrumentFrames(QLayout& column);
    void connectHandlers();
    void follow(MirrorPart part);
    void refreshModel();
    void showCalibration();
    void showTrimCodes();
    void cmdAmpCal_Click();
    void cmdPhaseCal_Click();
    void cmdDiagnose_Click();
    void cmdSetFreqComp_Click();
    void slideVREF_Scroll(int value);
    void slideVDUT_Scroll(int value);
    void testOption_Click(int hertz);
    void chkLoopBack_Click();

    SettingsChannel& m_channel;
    CalibrationRuns m_runs;
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
};
