// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

/// What the instrument's side needs of the main window. frmMain implements it, the command-line program brings its own,
/// tests record. Nothing here may be called from outside the user-interface thread.
class MainWindowPort
{
public:
    virtual ~MainWindowPort() = default;

    /// Panel 1 to 12 of the status bar shows the text (UTF-8). Cheap: the window repaints at most once per display
    /// frame.
    virtual void setPanel(int index, std::string_view text) = 0;
    /// Lets pending events run; returns when they have. Documents may close meanwhile.
    virtual void processEvents() = 0;
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
