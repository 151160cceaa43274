// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class PenDocument;
class QWidget;

/// What the settings dialog needs of the windows around it, beside MainWindowPort.
class SettingsDialogHost
{
public:
    virtual ~SettingsDialogHost() = default;

    /// A new document of ProgramState::giNewDocType, made active, its graph not shown yet; null when there was no room,
    /// which the user has been told. May process events.
    virtual PenDocument* LoadNewDoc() = 0;
    /// The document's graph becomes visible and takes the focus.
    virtual void showDocument(PenDocument& document) = 0;
    /// Gives a window the function keys of the main window's commands.
    virtual void addFunctionKeys(QWidget& window) = 0;
};
