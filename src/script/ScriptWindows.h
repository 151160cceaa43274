// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class ScriptChecker;
class ScriptTransfer;

/// What the script host needs of the windows around it. Operations may run nested event loops unless said otherwise.
class ScriptWindows
{
public:
    virtual ~ScriptWindows() = default;

    /// The name of an existing file; empty when the user cancelled. An empty title is the dialog's own.
    virtual QString openFileName(const QString& title, const QString& filters, const QString& folder) = 0;
    /// Paints the main window anew.
    virtual void refresh() = 0;
    /// frmMessages, modally, with what the checker said last.
    virtual void showMessages(ScriptChecker& checker) = 0;
    /// frmSendScript, without modality, following the transfer. No nested event loop.
    virtual void showTransfer(ScriptTransfer& transfer) = 0;
    virtual void unloadTransfer() = 0;
    /// The settings dialog goes.
    virtual void unloadSettings() = 0;
};
