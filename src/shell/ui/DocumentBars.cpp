// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/DocumentBars.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "program/CommandRegistry.h"
#include "program/ProgramState.h"
#include "shell/ui/PenBar.h"
#include "shell/ui/PopupTable.h"
#include "shell/ui/StatusBar.h"

DocumentBars::DocumentBars(CommandRegistry& commands, PenBar& penBar, StatusBar& statusBar, const KorvaLink& device,
                           const ProgramState& state)
    : m_commands(commands)
    , m_penBar(penBar)
    , m_statusBar(statusBar)
    , m_device(device)
    , m_state(state)
{}

void DocumentBars::setDocument(PenDocument* document)
{
    m_document = document;
    refresh();
}

void DocumentBars::refresh()
{
    if (m_document)
        refresh(*m_document);
    else
        rest();
}

void DocumentBars::refresh(PenDocument& document)
{
    hideEntriesWithoutCommand(document, m_commands);
    // Reports of a document in the background wait until it is activated.
    if (&document != m_document)
        return;
    showPens(document);
    showCommands(document);
    updateConditions();
}

void DocumentBars::showPens(PenDocument& document)
{
    m_penBar.setCurrentPen(document.gCurrentPen());
    m_statusBar.setPanel(2, std::to_string(document.gCurrentPen() + 1));
    for (int pen = 0; pen < PenBar::kPens; ++pen) {
        m_penBar.setColour(pen, document.peGraph().SubsetColors(pen));
        m_penBar.setPenState(pen, document.GetPenLock(pen) == 1, document.GetPenDisplay(pen) == 1);
    }
}

void DocumentBars::showCommands(PenDocument& document)
{
    m_commands.setChecked("mnuPenLock", document.GetPenLock(document.gCurrentPen()) == 1);
    m_commands.setChecked("mnuPenView", document.GetPenDisplay(document.gCurrentPen()) == 0);
    m_commands.setChecked("mnuViewMarkPoints", document.peGraph().MarkDataPoints());
    m_commands.setEnabled("mnuViewZoomExtents", document.canZoomExtents());
    m_commands.setEnabled("mnuEditUndo", document.canUndoZoom());
    m_commands.setEnabled("mnuEditRedo", document.canRedoZoom());
    m_commands.setEnabled("mnuEditPaste", document.canPaste());
}

void DocumentBars::rest()
{
    for (int pen = 0; pen < PenBar::kPens; ++pen) {
        m_penBar.setColour(pen, m_state.glPenColour[static_cast<std::size_t>(pen)]);
        m_penBar.setPenState(pen, false, false);
    }
    m_penBar.setCurrentPen(-1);
    m_statusBar.setPanel(2, "1");
    showCursor({}, {});
    for (const char* name : {"mnuPenLock", "mnuPenView", "mnuViewMarkPoints"})
        m_commands.setChecked(name, false);
    updateConditions();
}

void DocumentBars::setTestRuns(bool runs)
{
    m_testRuns = runs;
    m_penBar.setEnabled(!runs);
    updateConditions();
}

void DocumentBars::updateConditions()
{
    // Of a newer format the commands themselves say that there may be an update; of any other strange one nobody does.
    const bool viewOnly = m_document && m_document->isViewOnly() && m_document->giDocumentVersion() <= 1;
    m_commands.setConditions({.document = m_document != nullptr,
                              .instrument = m_device.Connected(),
                              .testRuns = m_testRuns,
                              .viewOnly = viewOnly});
}

void DocumentBars::showCursor(const QString& xText, const QString& yText)
{
    m_statusBar.setPanel(11, xText.toStdString());
    m_statusBar.setPanel(12, yText.toStdString());
}
