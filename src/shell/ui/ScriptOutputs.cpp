// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/ScriptOutputs.h"

#include "analysis/ui/AnalysisWindows.h"
#include "analysis/ui/frmGvsB.h"
#include "document/PenDocument.h"
#include "export/ExportNames.h"
#include "export/ui/PictureExport.h"
#include "export/ui/frmExportImage.h"
#include "prefs/Preferences.h"
#include "print/ui/frmPrintDialog.h"
#include "shell/commands/ui/CommandContext.h"
#include "shell/commands/ui/FileDialogs.h"
#include "widgets/ui/ShowModally.h"

#include <optional>

namespace {

Outcome exportGraph(const CommandContext& context, const GraphModel& graph, const QString& fileName,
                    std::int32_t format, const options::ImageOptions& where)
{
    return PictureExport::ExportFile(graph, fileName, format, false,
                                     ImageExport::stored(context.program.preferences, where), context.program.messages);
}

/// Shows the dialog for the graph; the orientation is the one last used when none is given.
void printGraph(const CommandContext& context, const GraphModel& graph, const QString& name,
                std::optional<bool> landscape)
{
    auto* const form =
        new frmPrintDialog(context.program.preferences, context.program.messages, context.fileDialogs, &context.window);
    form->SetGraph(graph, name);
    if (landscape)
        form->setLandscape(*landscape);
    showModally(form);
}

} // namespace

ScriptOutputs::ScriptOutputs(const CommandContext& context, AnalysisWindows& analysis)
    : m_context(context)
    , m_analysis(analysis)
{
    analysis.setImageHandlers([this](GraphModel& graph) { exportLoop(graph); },
                              [this](GraphModel& graph) { printLoop(graph); });
}

Outcome ScriptOutputs::ExportFile(PenDocument& document, const QString& fileName, std::int32_t format)
{
    return exportGraph(m_context, document.peGraph(), fileName, format, options::kExportImage);
}

Outcome ScriptOutputs::print(PenDocument& document, bool landscape)
{
    printGraph(m_context, document.peGraph(), ExportNames::suggested(document), landscape);
    return Outcome::success();
}

bool ScriptOutputs::isShowing() const
{
    return m_analysis.loop() != nullptr;
}

void ScriptOutputs::close()
{
    m_analysis.closeLoop();
}

Outcome ScriptOutputs::ExportFile(const QString& fileName, std::int32_t format)
{
    return exportGraph(m_context, m_analysis.loop()->loop().graph(), fileName, format, options::kLoopExportImage);
}

Outcome ScriptOutputs::print(bool landscape)
{
    printGraph(m_context, m_analysis.loop()->loop().graph(), loopCaption(), landscape);
    return Outcome::success();
}

void ScriptOutputs::exportLoop(GraphModel& graph)
{
    const ExportContext context{m_context.program.preferences, m_context.program.messages, m_context.fileDialogs};
    showModally(new frmExportImage(graph, loopCaption(), context, m_analysis.loop()));
}

void ScriptOutputs::printLoop(GraphModel& graph)
{
    printGraph(m_context, graph, loopCaption(), {});
}

QString ScriptOutputs::loopCaption() const
{
    const frmGvsB* const loop = m_analysis.loop();
    return loop ? loop->windowTitle() : QString();
}
