// SPDX-License-Identifier: GPL-3.0-or-later
// The Edit, View, Test and Help commands of the main window, the pen bar and the instrument's port.
#include "controls/korvalink/KorvaLink.h"
#include "document/ClipboardPort.h"
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/ui/DocumentArea.h"
#include "instrument/Commands.h"
#include "link/DeviceModule.h"
#include "link/TestRun.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "shell/ui/Commands.h"
#include "shell/ui/PenBar.h"
#include "shell/ui/StatusBar.h"
#include "shell/ui/frmMain.h"
#include "widgets/ui/QtColour.h"

#include <QColorDialog>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace {

/// Entries of a document's popup and the commands behind them; an entry without one is not offered.
struct PopupEntry
{
    int item;
    const char* command;
};
constexpr PopupEntry kPopup[] = {
    {PopupTestSettings, "mnuTestSettings"},
    {PopupViewOptions, nullptr},
    {PopupAddText, "mnuViewAddText"},
    {PopupAnalysis, nullptr},
    {PopupLoop, nullptr},
    {PopupMarkPoints, "mnuViewMarkPoints"},
    {PopupCut, "mnuEditCut"},
    {PopupCopy, "mnuEditCopy"},
    {PopupPaste, "mnuEditPaste"},
    {PopupZoomExtents, "mnuViewZoomExtents"},
    {PopupUndoZoom, "mnuEditUndo"},
    {PopupRedoZoom, "mnuEditRedo"},
    {PopupExport, nullptr},
    {PopupProperties, "mnuFileProperties"},
};

} // namespace

void frmMain::buttonClick(const QString& key)
{
    if (QAction* action = m_commands->button(key))
        action->trigger();
}

// Edit and view -------------------------------------------------------------------------------------------------------

void frmMain::mnuEditUndo_Click()
{
    if (PenDocument* document = activeDocument())
        document->UndooZoom();
}

void frmMain::mnuEditRedo_Click()
{
    if (PenDocument* document = activeDocument())
        document->RedooZoom();
}

void frmMain::mnuEditCut_Click()
{
    const QPointer<PenDocument> document = activeDocument();
    if (!document || !formatAllows(*document, tr("Copy data not possible")))
        return;
    const int pen = document->gCurrentPen();
    document->CopyLineData(pen);
    if (!document || document->GetPenLock(pen) == 1)
        return;
    document->graphEraseLine(pen);
    document->graphResetPenName(pen);
    document->peGraph().PEactions(graph::Reinitialise);
}

void frmMain::mnuEditCopy_Click()
{
    PenDocument* document = activeDocument();
    if (document && formatAllows(*document, tr("Copy data not possible")))
        document->CopyLineData(document->gCurrentPen());
}

void frmMain::mnuEditPaste_Click()
{
    PenDocument* document = activeDocument();
    if (document && formatAllows(*document, tr("Data paste not possible")))
        document->PasteLineData(document->gCurrentPen(), m_documentContext.clipboard->text());
}

void frmMain::mnuViewMarkPoints_Click()
{
    if (PenDocument* document = activeDocument()) {
        document->ToggleMarkDataPoints();
        updateToolBars(*document);
    }
}

void frmMain::mnuViewZoomExtents_Click()
{
    if (PenDocument* document = activeDocument())
        document->ZoomExtents();
}

void frmMain::popupCommand(PenDocument* document, int item)
{
    // The popup belongs to the document under the mouse, the commands to the active one: they are the same once it
    // shows.
    m_area->showDocument(*document);
    const PopupEntry* entry = std::find_if(std::begin(kPopup), std::end(kPopup),
                                           [item](const PopupEntry& candidate) { return candidate.item == item; });
    if (entry != std::end(kPopup) && entry->command)
        m_commands->action(entry->command).trigger();
}

// Pens ----------------------------------------------------------------------------------------------------------------

void frmMain::penInitialise()
{
    for (int pen = 0; pen < PenBar::kPens; ++pen) {
        const std::uint32_t colour = m_context.preferences.value(options::kPens[static_cast<std::size_t>(pen)]);
        m_context.state.glPenColour[static_cast<std::size_t>(pen)] = colour;
        m_penBar->setColour(pen, colour);
    }
    if (PenDocument* document = activeDocument())
        document->UpdateToolBars();
}

void frmMain::penLock_Click()
{
    const QPointer<PenDocument> document = activeDocument();
    if (!document)
        return;
    document->TogglePenLock(document->gCurrentPen());
    if (document)
        updateToolBars(*document);
}

void frmMain::penUnlockAll_Click()
{
    if (PenDocument* document = activeDocument()) {
        document->UnlockAllPens();
        document->UpdateToolBars();
    }
}

void frmMain::penView_Click()
{
    if (PenDocument* document = activeDocument()) {
        document->TogglePenDisplay(document->gCurrentPen());
        updateToolBars(*document);
    }
}

void frmMain::penViewAll_Click()
{
    if (PenDocument* document = activeDocument()) {
        document->DisplayAllPens();
        document->UpdateToolBars();
    }
}

void frmMain::penColourWanted(int pen)
{
    const auto index = static_cast<std::size_t>(pen);
    const QPointer<frmMain> self(this);
    const QPointer<PenDocument> document = activeDocument();
    const QColor chosen =
        QColorDialog::getColor(toQColor(m_penBar->lblPen(pen).colour()), this, tr("Colour of pen %1").arg(pen + 1));
    if (!self || !chosen.isValid())
        return;
    const std::uint32_t colour = fromQColor(chosen);
    m_context.state.glPenColour[index] = colour;
    m_context.preferences.setValue(options::kPens[index], colour);
    m_penBar->setColour(pen, colour);
    if (document)
        document->SetPenColour(pen, colour);
}

void frmMain::documentCreated(PenDocument* document)
{
    connect(document, &PenDocument::fileUsed, this, &frmMain::UpdateQuickFileList);
    // The popup has just been built: entries without a command are not offered.
    connect(document, &PenDocument::viewChanged, document, [document] {
        for (const PopupEntry& entry : kPopup) {
            if (!entry.command)
                document->peGraph().setCustomMenuState(entry.item, 0, graph::MenuHidden);
        }
    });
}

void frmMain::updateToolBars(PenDocument& document)
{
    // Reports of a document in the background wait until it is activated.
    if (&document != activeDocument())
        return;
    const GraphModel& graph = document.peGraph();
    m_penBar->setCurrentPen(document.gCurrentPen());
    m_statusBar->setPanel(2, std::to_string(document.gCurrentPen() + 1));
    for (int pen = 0; pen < PenBar::kPens; ++pen) {
        m_penBar->setColour(pen, graph.SubsetColors(pen));
        m_penBar->setPenState(pen, document.GetPenLock(pen) == 1, document.GetPenDisplay(pen) == 1);
    }
    m_commands->setDocumentOpen(true);
    m_commands->action("mnuPenLock").setChecked(document.GetPenLock(document.gCurrentPen()) == 1);
    m_commands->action("mnuPenView").setChecked(document.GetPenDisplay(document.gCurrentPen()) == 0);
    m_commands->action("mnuViewMarkPoints").setChecked(graph.MarkDataPoints());
    m_commands->action("mnuViewZoomExtents").setEnabled(document.canZoomExtents());
    m_commands->action("mnuEditUndo").setEnabled(document.canUndoZoom());
    m_commands->action("mnuEditRedo").setEnabled(document.canRedoZoom());
    m_commands->action("mnuEditPaste").setEnabled(document.canPaste());
}

void frmMain::defaultToolBars()
{
    for (int pen = 0; pen < PenBar::kPens; ++pen) {
        m_penBar->setColour(pen, m_context.state.glPenColour[static_cast<std::size_t>(pen)]);
        m_penBar->setPenState(pen, false, false);
    }
    m_penBar->setCurrentPen(-1);
    m_statusBar->setPanel(2, "1");
    m_statusBar->setPanel(11, {});
    m_statusBar->setPanel(12, {});
    for (const char* name : {"mnuPenLock", "mnuPenView", "mnuViewMarkPoints"})
        m_commands->action(name).setChecked(false);
    m_commands->setDocumentOpen(false);
}

// Test ----------------------------------------------------------------------------------------------------------------

void frmMain::mnuTestStart_Click()
{
    m_testRun->mnuTestStart_Click();
}

void frmMain::mnuTestStopTest_Click()
{
    m_testRun->mnuTestStopTest_Click();
}

void frmMain::mnuTestRepeat_Click()
{
    // The action has changed its check mark by now; the command wants to know how it was.
    m_testRun->mnuTestRepeat_Click(!m_commands->action("mnuTestRepeat").isChecked());
}

bool frmMain::QuestionTestCancel()
{
    return m_testRun->QuestionTestCancel();
}

void frmMain::mnuReRunLastTestScript_Click()
{
    const QPointer<frmMain> self(this);
    if (m_context.state.gbfPlotting && QuestionTestCancel())
        return;
    if (self && !m_context.device.Connected()) {
        processEvents();
        mnuTestDevice_Click();
        if (!self || !m_context.device.Connected())
            return;
        waitRounds(25, 10);
    }
    if (!self)
        return;
    unloadSettings();
    mnuWindowCloseAll_Click();
    if (!self)
        return;
    m_context.state.gbfScriptRunning = true;
    m_context.device.Write(command::stop() + command::run());
}

void frmMain::waitRounds(int rounds, int milliseconds)
{
    const QPointer<frmMain> self(this);
    for (int i = 0; self && i < rounds; ++i) {
        m_context.device.Wait(milliseconds);
        processEvents();
    }
}

// Help ----------------------------------------------------------------------------------------------------------------

void frmMain::openManual(QLatin1String fileName)
{
    const QString beside = QDir(QCoreApplication::applicationDirPath()).filePath(fileName);
    const QString file = m_context.preferences.valueOr(options::kManual, beside);
    if (!QFileInfo::exists(file) || !QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
        showMessage(tr("File not found %1").arg(file), UserMessages::OkOnly | UserMessages::Information,
                    tr("Open Error"));
}

void frmMain::mnuManual_Click()
{
    openManual(options::kUserManualFile);
}

void frmMain::mnuInterimManual_Click()
{
    openManual(options::kInterimManualFile);
}

void frmMain::mnuOnLineHelp_Click()
{
    QDesktopServices::openUrl(QUrl(m_context.preferences.value(options::kMakerUrl)));
}
