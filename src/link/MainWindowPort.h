// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/DocumentHost.h"

#include <QString>

#include <string_view>

/// What the instrument's side needs of the main window. frmMain implements it, the command-line program brings its own,
/// tests record. Nothing here may be called from outside the user-interface thread.
class MainWindowPort : public DocumentHost
{
public:
    /// Panel 1 to 12 of the status bar shows the text (UTF-8). Cheap: the window repaints at most once per display
    /// frame.
    virtual void setPanel(int index, std::string_view text) = 0;
    /// The pen bar is disabled while plotting.
    virtual void setPenBarEnabled(bool enabled) = 0;
    /// mnuTestRepeat and its toolbar button follow.
    virtual void SetRepeatStatus(bool bfRepeat) = 0;
    /// Makes the pen (user's number 1 to 10) current in the active document.
    virtual void penSetActive(int iPenNumber) = 0;
    /// File New: may ask for the test type.
    virtual void fileNew() = 0;
    /// The device chooser, modally.
    virtual void mnuTestDevice_Click() = 0;
    virtual void mnuWindowCloseAll_Click() = 0;
    /// Ends the program at once.
    virtual void endProgram() = 0;
    /// Shows the settings dialog over the main window.
    virtual void showSettings() = 0;
    /// Closes the device chooser, if open.
    virtual void unloadDeviceChooser() = 0;
    /// Closes the settings dialog and the device properties window, if open.
    virtual void unloadDeviceWindows() = 0;
    /// The admittance loop window: refresh and show, refresh if it shows, close.
    virtual void showLoopView() = 0;
    virtual void refreshLoopView() = 0;
    virtual void closeLoopView() = 0;
    /// True while the firmware wizard reads the instrument's version: only frame "O" is dispatched.
    virtual bool firmwareWizardReadsVersion() const = 0;
    /// The wizard's field for the instrument's version.
    virtual void showWizardVersion(const QString& text) = 0;
};

/// What the settings dialog is asked. It follows the instrument by InstrumentEvents. Null object when no dialog exists.
class SettingsDialogPort
{
public:
    virtual ~SettingsDialogPort() = default;

    virtual bool monitorChecked() const { return false; }
    /// Ends the monitor and its read-out of the level.
    virtual void uncheckMonitor() {}
    /// The frequencies of txtLowFreq and txtHighFreq as texts with suffixes; empty when no dialog exists.
    virtual QString lowFrequencyText() const { return {}; }
    virtual QString highFrequencyText() const { return {}; }
};
