// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/MainWindowPort.h"
#include "link/settings/SettingsChannel.h"

#include <QDialog>

#include <functional>

class DeviceModule;
class EngineeringPage;
class OscillatorPage;
class QDateTime;
class QPushButton;
class QTabWidget;
class SettingsDialogHost;
class TestSchedulePage;

/// The settings of the instrument: oscillator and sweep, calibration and engineering, test schedule, each a page.
/// Modeless, and live: a change goes to the instrument at once. "OK" applies the frequencies that were typed and
/// closes. It follows the instrument by its events, and is the settings dialog of DeviceModule while it lives.
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

    /// Shows the mirror. Sends nothing.
    void RefreshDialog();
    /// Stores what the dialog keeps and deletes it soon. What was typed and not applied is left.
    void Unload();
    /// The clock of the calibration stamp; the system's unless set.
    void setClock(const std::function<QDateTime()>& now);

    // SettingsDialogPort
    bool monitorChecked() const override;
    void uncheckMonitor() override;
    QString lowFrequencyText() const override;
    QString highFrequencyText() const override;

    /// Refuses to close over a text that is no frequency.
    void accept() override;
    /// As accept(), but closes in any case.
    void reject() override;
    void done(int result) override;

private:
    void buildPages(SettingsDialogHost& host);
    void setTabOrders();
    void showNewInstrument();
    void storeSettings();
    void applyPosition();
    void storePosition();
    void unload();

    SettingsChannel m_channel;
    bool m_stored = false; ///< the mirror may be another instrument's already
    bool m_unloaded = false;

    QTabWidget* SSTab1 = nullptr;
    QPushButton* OKButton = nullptr;
    OscillatorPage* m_oscillator = nullptr;
    EngineeringPage* m_engineering = nullptr;
    TestSchedulePage* m_testSchedule = nullptr;
};
