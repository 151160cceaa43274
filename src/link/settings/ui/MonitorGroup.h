// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/ui/OptionBinding.h"

#include <QGroupBox>

#include <array>
#include <functional>

class FrequencyEdit;
class QCheckBox;
class QLabel;
class QProgressBar;
class QRadioButton;
class SettingsChannel;
namespace settingsrules {
struct LevelBars;
}

/// The monitor: a spot signal at the frequency that stands in the shown box, and the level that comes back.
class MonitorGroup : public QGroupBox
{
    Q_OBJECT

public:
    /// Apply runs before the signal starts; false, when it refused, keeps the monitor off. The channel outlives the
    /// group.
    MonitorGroup(SettingsChannel& channel, std::function<bool()> apply, QWidget* parent = nullptr);

    /// Shows the mirror and what is stored for the instrument. A running monitor goes on.
    void refresh();
    /// Boxes and choice, under the serial number that the mirror has.
    void store();
    bool isRunning() const;
    void end();
    void SetInputLevel(double level, double dblPhase, bool bfShowPhase);
    QList<QWidget*> tabOrder() const;

private:
    void build();
    void chkMonitor_Click();
    void start();
    void optMonFreq_Click();
    void optMonitorAmplitude_Click();
    bool SendSpotFrequency();
    void ClearLevelDisplay();
    void showBars(const settingsrules::LevelBars& bars);
    void showBox();
    void setChoiceEnabled(bool enabled);
    bool hasChoice() const;

    SettingsChannel& m_channel;
    std::function<bool()> m_apply;
    OptionBindings m_options;
    OptionBindings m_kind; ///< stored when chosen
    QCheckBox* chkMonitor = nullptr;
    QRadioButton *optMonitorAmplitude = nullptr, *optMonitorImpedance = nullptr;
    std::array<QRadioButton*, 2> optMonFreq{};
    std::array<FrequencyEdit*, 2> txtSpotFrequency{};
    QProgressBar *pbTestLevel = nullptr, *pbTestPhase = nullptr;
    QLabel *lblRxLevel = nullptr, *lblRxPhase = nullptr;
};
