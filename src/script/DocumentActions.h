// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

class DeviceModule;
class Frame;
class PenDocument;
struct ScriptContext;

/// What a running script does with graph documents: frames "U", "Z", "b", "g" and "j".
class DocumentActions
{
    Q_DECLARE_TR_FUNCTIONS(ScriptActions)

public:
    /// Registers the handlers; both outlive the module.
    DocumentActions(ScriptContext& context, DeviceModule& module);

private:
    bool newGraph(const Frame& frame);
    bool titleOrLabel(const Frame& frame);
    bool savePlot(const Frame& frame);
    bool loadPlot(const Frame& frame);
    bool closeDocument(const Frame& frame);

    bool setNewDocType(const Frame& frame);
    void setTitle(PenDocument& document, const QString& text);
    void tellUnusable(const QString& text) const;
    void clearFileName() const;

    ScriptContext& m_context;
};
