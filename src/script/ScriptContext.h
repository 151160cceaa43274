// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"
#include "script/ScriptExportOptions.h"
#include "script/ScriptPorts.h"

#include <QDateTime>

#include <functional>

class DocumentList;
class DocumentWindows;

/// What an action has brought about.
enum class ScriptResult
{
    Plot,    ///< a file was written
    Text,    ///< the same
    Picture, ///< the same
    Stopped  ///< the user has stopped the script
};

/// What the actions of a running script work with, and what the script has set for them. One object, shared by all.
struct ScriptContext
{
    LinkContext link;
    DocumentList& documents;
    DocumentWindows& windows;
    ScriptPorts ports = {};
    ScriptExportOptions exports = {};
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };

    /// Told of each result, with the name of the file where one was written.
    std::function<void(ScriptResult, const QString& fileName)> report = [](ScriptResult, const QString&) {};

    /// The program's message with an OK button and that icon.
    void tell(const QString& text, int icon, const QString& title) const;
    bool loopShows() const { return ports.loop != nullptr && ports.loop->isShowing(); }
    /// The text, or where it is empty what the user answers to the prompt. Empty: there is no name, the user has been
    /// told that nothing is saved.
    QString nameOr(const QString& text, const QString& prompt) const;
    /// With date, time and serial number, unless the script wants none.
    QString stamped(const QString& name) const;
};
