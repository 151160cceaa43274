// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class FrequencyEdit;
class MonitorGroup;
class QCheckBox;
class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class SettingsChannel;
class SweepGroup;

/// The first page of the settings dialog: the frequencies of the output, the sweep and the monitor.
class OscillatorPage : public QWidget
{
    Q_OBJECT

public:
    /// The channel outlives the page.
    explicit OscillatorPage(SettingsChannel& channel, QWidget* parent = nullptr);

    /// Shows the mirror. Sends nothing; a running monitor goes on.
    void refresh();
    /// Sends and saves range, monitor boxes and idle frequency. False, with nothing sent, when a frequency of the range
    /// was refused.
    bool apply();
    /// The same where a frequency was typed and not applied yet. False when one was refused.
    bool applyEdited();
    /// The range that the boxes show goes out as it is.
    void sendRange();
    /// What is kept for the instrument beside the sweep settings.
    void store();

    MonitorGroup& monitor() { return *m_monitor; }
    const MonitorGroup& monitor() const { return *m_monitor; }
    QString lowFrequencyText() const;
    QString highFrequencyText() const;
    QList<QWidget*> tabOrder() const;

private:
    QGroupBox* buildFrequencyFrame();
    QGroupBox* buildIdleFrame();
    void connectHandlers();
    void refreshIdleOutput();
    void showSweepRange();
    void setFrequencyControlsEnabled(bool enabled);
    void frequency_KeyPress(FrequencyEdit* box);
    void chkAxisExtents_Click();
    void followExtents();
    void setIdleFrequency(int hertz);
    bool SendIdleFrequency();

    SettingsChannel& m_channel;
    SweepGroup* m_sweep;
    MonitorGroup* m_monitor;
    QLabel *lblLowerFreq = nullptr, *lblEndFrequency = nullptr;
    FrequencyEdit *txtLowFreq = nullptr, *txtHighFreq = nullptr, *txtParkFrequency = nullptr;
    QPushButton* cmdSetFreq = nullptr;
    QCheckBox* chkAxisExtents = nullptr;
    QRadioButton *optOff = nullptr, *optTestStart = nullptr, *optUserDefined = nullptr;
};
