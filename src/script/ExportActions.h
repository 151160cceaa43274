// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

class DeviceModule;
class Frame;
class PenDocument;
struct ScriptContext;

/// What a running script brings out of documents: frames "m", "i", "o", "x" and "n".
class ExportActions
{
    Q_DECLARE_TR_FUNCTIONS(ScriptActions)

public:
    /// Registers the handlers; both outlive the module.
    ExportActions(ScriptContext& context, DeviceModule& module);

private:
    bool exportImage(const Frame& frame);
    bool exportText(const Frame& frame, int pen);
    bool print(const Frame& frame);

    void writeImage(PenDocument& document, const QString& given, int format);
    void writeText(const PenDocument& document, const QString& given, int pen);

    ScriptContext& m_context;
};
