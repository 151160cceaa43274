// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/DocumentActions.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/ActiveDocument.h"
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/PlotFileNames.h"
#include "link/DeviceModule.h"
#include "prefs/Preferences.h"
#include "program/CommandLine.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "script/ScriptContext.h"
#include "script/ScriptNames.h"
#include "script/ScriptReply.h"

#include <QPointer>

namespace {

constexpr int kWaitAfterSave = 250; // ms

} // namespace

DocumentActions::DocumentActions(ScriptContext& context, DeviceModule& module)
    : m_context(context)
{
    module.registerHandler('U', [this](const Frame& frame) { return newGraph(frame); });
    module.registerHandler('Z', [this](const Frame& frame) { return titleOrLabel(frame); });
    module.registerHandler('b', [this](const Frame& frame) { return savePlot(frame); });
    module.registerHandler('g', [this](const Frame& frame) { return loadPlot(frame); });
    module.registerHandler('j', [this](const Frame& frame) { return closeDocument(frame); });
}

void DocumentActions::clearFileName() const
{
    if (m_context.ports.fileNames != nullptr)
        m_context.ports.fileNames->clearFileName();
}

// New graph -----------------------------------------------------------------------------------------------------------

bool DocumentActions::setNewDocType(const Frame& frame)
{
    std::int32_t kind = 0;
    if (!frame.ParseF(kind))
        return false;
    std::int16_t& type = m_context.link.state.giNewDocType;
    if (kind >= 0 && kind <= 2) {
        type = static_cast<std::int16_t>(kind + 1);
    } else if (kind == 3) {
        m_context.tell(tr("Graph type currently unsupported"), UserMessages::NoIcon, tr("Impedance Vs Time"));
        type = PenDocument::NoTest;
    }
    return true;
}

bool DocumentActions::newGraph(const Frame& frame)
{
    const ScriptReply reply(m_context.link.device);
    if (!setNewDocType(frame))
        return false;
    const QPointer<PenDocument> document(m_context.documents.LoadNewDoc());
    if (document) {
        document->graphSetDefaultView();
        document->peGraph().setMainTitle(frame.text());
        document->peGraph().PEactions(graph::Reinitialise);
        m_context.windows.showDocument(*document);
    }
    clearFileName();
    reply.goOn();
    return true;
}

// Texts ---------------------------------------------------------------------------------------------------------------

void DocumentActions::setTitle(PenDocument& document, const QString& text)
{
    const QPointer<PenDocument> alive(&document);
    QString title = text;
    if (title.isEmpty() && m_context.ports.input != nullptr)
        title = m_context.ports.input->inputBox(tr("Enter Title:"), tr("Graph Title Text")).value_or(QString());
    if (!alive)
        return;
    document.peGraph().setMainTitle(title);
    document.SetModified();
}

bool DocumentActions::titleOrLabel(const Frame& frame)
{
    const QPointer<PenDocument> document(m_context.link.active.get());
    if (!document)
        return true;
    if (frame.selector() == 'A') {
        setTitle(*document, frame.text());
    } else if (frame.selector() == 'B') {
        document->setPenName(document->gCurrentPen(), frame.text());
    } else {
        std::int32_t pen = 0;
        if (!frame.ParseF(pen))
            return false;
        document->setPenName(pen, frame.text());
    }
    if (document)
        document->peGraph().PEactions(graph::Reinitialise);
    return true;
}

// Files ---------------------------------------------------------------------------------------------------------------

bool DocumentActions::savePlot(const Frame& frame)
{
    const ScriptReply reply(m_context.link.device);
    const QPointer<PenDocument> document(m_context.link.active.get());
    const QString given = document ? m_context.nameOr(frame.text(), tr("Enter PLOT file name")) : QString();
    if (!document || given.isEmpty()) {
        reply.goOn();
        return true;
    }
    const QString folder = m_context.link.preferences.value(options::kPlotFiles.option);
    QString name = m_context.stamped(scriptnames::inFolder(folder, given));
    name += PlotFileNames::extension(document->pgiTestType());
    if (document->fileSavePlot(name) && document) {
        m_context.report(ScriptResult::Plot, name);
        Q_EMIT document->fileUsed(name);
        if (document)
            document->setCaption(name);
    }
    m_context.link.device.Wait(kWaitAfterSave);
    reply.goOn();
    return true;
}

void DocumentActions::tellUnusable(const QString& text) const
{
    m_context.tell(text, UserMessages::Exclamation, tr("Script aborted"));
}

bool DocumentActions::loadPlot(const Frame& frame)
{
    const ScriptReply reply(m_context.link.device);
    const QString given = frame.text();
    if (given.isEmpty()) {
        reply.stop();
        m_context.link.messages.dismiss();
        tellUnusable(tr("No file name!"));
    }
    const QString folder = m_context.link.preferences.value(options::kPlotFiles.option);
    const QString name = scriptnames::inFolder(folder, given);
    if (!FileKind::isPlotFile(name) || !m_context.documents.LoadExistingDocument(name)) {
        reply.stop();
        tellUnusable(tr("Missing or invalid file!"));
    }
    clearFileName();
    reply.goOn();
    return true;
}

bool DocumentActions::closeDocument(const Frame&)
{
    const ScriptReply reply(m_context.link.device);
    const QPointer<PenDocument> document(m_context.link.active.get());
    if (document) {
        if (m_context.loopShows())
            m_context.ports.loop->close();
        // No question comes; what was not saved goes to the journal as behind a "No".
        if (document)
            document->closeUnasked();
        if (document && !m_context.windows.unloadDocument(*document) && document)
            document->closeUnasked(false);
    }
    reply.goOn();
    return true;
}
