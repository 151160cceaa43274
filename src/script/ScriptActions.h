// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "script/DocumentActions.h"
#include "script/ExportActions.h"
#include "script/ScriptContext.h"

#include <QCoreApplication>

class DeviceModule;
class Frame;
class ScriptReply;

/// Everything that a running script asks of the program, but for masks and analysis, which register themselves: the
/// handlers of frames "U", "Z", "b", "g", "j", "m", "i", "o", "x", "n", "f" and "p".
///
/// A reply is the last thing an action does, and goes to the connection that asked or nowhere. Actions may run nested
/// event loops, in which documents may close.
class ScriptActions
{
    Q_DECLARE_TR_FUNCTIONS(ScriptActions)

public:
    /// Registers the handlers. All of it outlives this, and this outlives the frames.
    ScriptActions(DeviceModule& module, DocumentList& documents, DocumentWindows& windows);
    ScriptActions(const ScriptActions&) = delete;
    ScriptActions& operator=(const ScriptActions&) = delete;

    /// What the features beside this one provide; set at any time.
    ScriptPorts& ports() { return m_context.ports; }
    const ScriptExportOptions& exportOptions() const { return m_context.exports; }
    /// Called with each result and the name of its file; runs no event loop.
    void setReport(std::function<void(ScriptResult, const QString& fileName)> report)
    {
        m_context.report = std::move(report);
    }
    /// The time in the names of files.
    void setClock(std::function<QDateTime()> now) { m_context.now = std::move(now); }

private:
    void stopByUser(const ScriptReply& reply) const;
    bool userPrompt(const Frame& frame);
    bool abortQuestion(const Frame& frame);

    ScriptContext m_context;
    DocumentActions m_documents;
    ExportActions m_exports;
};
