// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/ui/OptionBinding.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QRadioButton;
class QSlider;
class SettingsChannel;

/// How a sweep is made: direction, points, period, phase or samples, attenuation. Every change goes into the mirror and
/// to the instrument at once; the samples of a DT46 are stored at once too.
class SweepGroup : public QWidget
{
    Q_OBJECT

public:
    /// The channel outlives the group.
    explicit SweepGroup(SettingsChannel& channel, QWidget* parent = nullptr);

    /// Shows the mirror. Sends nothing.
    void refresh();
    /// Under the serial number that the mirror has: the samples, where they are known.
    void store();
    QList<QWidget*> tabOrder() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QGroupBox* buildDirectionFrame();
    QGroupBox* buildTestFrame();
    QGroupBox* buildAttenuationFrame();
    void connectHandlers();
    void refreshAttenuation();
    void sweepOption_Click(int iSweepMode);
    void chkAcquirePhase_Click();
    void lstDT46Samples_Click();
    void slideTestPoints_Scroll(int points);
    void slidePeriod_Scroll(int milliseconds);
    void slideAttenuation_Scroll(int value);
    void ShowTestPeriod(int milliseconds);
    void ShowAttenuation(int value);
    bool samplingModel() const;

    SettingsChannel& m_channel;
    OptionBindings m_options;
    QRadioButton *optAB = nullptr, *optBA = nullptr, *optAlternate = nullptr;
    QSlider *slideTestPoints = nullptr, *slidePeriod = nullptr, *slideAttenuation = nullptr;
    QLabel *lblNumPoints = nullptr, *lblPeriod = nullptr, *lblAttenuation = nullptr, *lblSamples = nullptr;
    QCheckBox* chkAcquirePhase = nullptr;
    QComboBox* lstDT46Samples = nullptr;
    QGroupBox* fAttenuation = nullptr;
};
