// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "script/ScriptPorts.h"

#include <QCoreApplication>

class AnalysisWindows;
class GraphModel;
struct CommandContext;

/// What a running script has of the windows' features: pictures and prints of documents and of the admittance loop. A
/// print opens the dialog, which the user confirms.
class ScriptOutputs : public ScriptPictures, public ScriptPrinting, public ScriptLoopView
{
    Q_DECLARE_TR_FUNCTIONS(ScriptOutputs)

public:
    /// Both outlive the object. Export and print of the loop's own menu go the same way from now on.
    ScriptOutputs(const CommandContext& context, AnalysisWindows& analysis);

    Outcome ExportFile(PenDocument& document, const QString& fileName, std::int32_t format) override;
    Outcome print(PenDocument& document, bool landscape) override;

    bool isShowing() const override;
    void close() override;
    Outcome ExportFile(const QString& fileName, std::int32_t format) override;
    Outcome print(bool landscape) override;

private:
    void exportLoop(GraphModel& graph);
    void printLoop(GraphModel& graph);
    QString loopCaption() const;

    const CommandContext& m_context;
    AnalysisWindows& m_analysis;
};
