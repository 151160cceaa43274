// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/EditCommands.h"

#include "controls/graph/ViewLimits.h"
#include "document/PenDocument.h"
#include "document/SystemClipboard.h"
#include "document/ui/DocumentArea.h"
#include "document/ui/frmAddText.h"
#include "program/CommandRegistry.h"
#include "program/UserMessages.h"
#include "widgets/ui/ShowModally.h"

EditCommands::EditCommands(const CommandContext& context)
    : m_context(context)
{
    registerEdit();
    registerView();
}

void EditCommands::registerEdit()
{
    CommandRegistry& commands = m_context.commands;
    commands.add({.name = "mnuEditUndo",
                  .menu = Command::Menu::Edit,
                  .place = 100,
                  .text = tr("&Undo Zoom"),
                  .icon = "zoom-undo",
                  .shortcut = "Ctrl+Z",
                  .statusTip = tr("Return to the zoom before"),
                  .handler = [this] { mnuEditUndo_Click(); },
                  .rules = Command::NeedsDocument,
                  .toolBarKey = "Undo",
                  .popupEntry = "UndoZoom"});
    commands.add({.name = "mnuEditRedo",
                  .menu = Command::Menu::Edit,
                  .place = 110,
                  .text = tr("&Redo Zoom"),
                  .icon = "zoom-redo",
                  .shortcut = "Ctrl+Y; Ctrl+Shift+Z",
                  .statusTip = tr("Go on to the zoom that was undone"),
                  .handler = [this] { mnuEditRedo_Click(); },
                  .rules = Command::NeedsDocument,
                  .toolBarKey = "Redo",
                  .popupEntry = "RedoZoom"});
    commands.add({.name = "mnuEditCut",
                  .menu = Command::Menu::Edit,
                  .place = 200,
                  .text = tr("Cu&t"),
                  .icon = "edit-cut",
                  .shortcut = "Ctrl+X",
                  .statusTip = tr("Move the current pen's data to the clipboard"),
                  .handler = [this] { mnuEditCut_Click(); },
                  .rules = Command::NeedsDocument | Command::NotViewOnly,
                  .toolBarKey = "Cut",
                  .popupEntry = "Cut"});
    commands.add({.name = "mnuEditCopy",
                  .menu = Command::Menu::Edit,
                  .place = 210,
                  .text = tr("&Copy"),
                  .icon = "edit-copy",
                  .shortcut = "Ctrl+C",
                  .statusTip = tr("Copy the current pen's data to the clipboard"),
                  .handler = [this] { mnuEditCopy_Click(); },
                  .rules = Command::NeedsDocument | Command::NotViewOnly,
                  .toolBarKey = "Copy",
                  .popupEntry = "Copy"});
    commands.add({.name = "mnuEditPaste",
                  .menu = Command::Menu::Edit,
                  .place = 220,
                  .text = tr("&Paste"),
                  .icon = "edit-paste",
                  .shortcut = "Ctrl+V",
                  .statusTip = tr("Put the clipboard's data into the current pen"),
                  .handler = [this] { mnuEditPaste_Click(); },
                  .rules = Command::NeedsDocument | Command::NotViewOnly,
                  .toolBarKey = "Paste",
                  .popupEntry = "Paste"});
}

void EditCommands::registerView()
{
    CommandRegistry& commands = m_context.commands;
    commands.add({.name = "mnuViewAddText",
                  .menu = Command::Menu::View,
                  .place = 110,
                  .text = tr("Add &Text..."),
                  .icon = "add-text",
                  .shortcut = "F4",
                  .statusTip = tr("Edit the title and the names of the pens"),
                  .handler = [this] { mnuViewAddText_Click(); },
                  .rules = Command::NeedsDocument | Command::NotViewOnly,
                  .functionKey = true,
                  .toolBarKey = "Add Text",
                  .popupEntry = "AddText"});
    commands.add({.name = "mnuViewMarkPoints",
                  .menu = Command::Menu::View,
                  .place = 120,
                  .text = tr("&Mark Data Points"),
                  .icon = "mark-points",
                  .shortcut = "Ctrl+M",
                  .statusTip = tr("Mark every measured point"),
                  .handler = [this] { mnuViewMarkPoints_Click(); },
                  .rules = Command::NeedsDocument,
                  .checkable = true,
                  .toolBarKey = "Mark Points",
                  .popupEntry = "MarkPoints"});
    commands.add({.name = "mnuViewPointerReadout",
                  .menu = Command::Menu::View,
                  .place = 130,
                  .text = tr("&Read-out at Pointer"),
                  .statusTip = tr("Show beside the pointer what the curves say there"),
                  .handler = [this] { mnuViewPointerReadout_Click(); },
                  .checkable = true});
    commands.setChecked(QStringLiteral("mnuViewPointerReadout"), m_context.area.hasPointerReadout());
    commands.add({.name = "mnuViewZoomExtents",
                  .menu = Command::Menu::View,
                  .place = 200,
                  .text = tr("&Zoom Extents"),
                  .icon = "zoom-extents",
                  .shortcut = "Ctrl+E",
                  .statusTip = tr("Show the whole graph"),
                  .handler = [this] { mnuViewZoomExtents_Click(); },
                  .rules = Command::NeedsDocument,
                  .toolBarKey = "Zoom Extents",
                  .popupEntry = "ZoomExtents"});
    commands.add({.name = "mnuViewFit",
                  .menu = Command::Menu::View,
                  .place = 202,
                  .text = tr("&Fit to Data"),
                  .icon = "zoom-fit",
                  .shortcut = "Ctrl+0",
                  .statusTip = tr("Zoom all axes to the data of the shown pens"),
                  .handler = [this] { fit(graph::AxisAll); },
                  .rules = Command::NeedsDocument,
                  .toolBarKey = "Fit"});
    commands.add({.name = "mnuViewFitFrequency",
                  .menu = Command::Menu::View,
                  .place = 204,
                  .text = tr("Fit Fre&quency Axis"),
                  .shortcut = "Ctrl+Shift+X",
                  .statusTip = tr("Zoom the frequency axis to the data of the shown pens"),
                  .handler = [this] { fit(graph::AxisX); },
                  .rules = Command::NeedsDocument});
    commands.add({.name = "mnuViewFitValues",
                  .menu = Command::Menu::View,
                  .place = 206,
                  .text = tr("Fit &Y Axes"),
                  .shortcut = "Ctrl+Shift+Y",
                  .statusTip = tr("Zoom the Y axes to the data between the limits of the frequency axis"),
                  .handler = [this] { fit(graph::AxisLeft | graph::AxisRight); },
                  .rules = Command::NeedsDocument});
}

void EditCommands::mnuEditUndo_Click()
{
    if (PenDocument* document = m_context.activeDocument())
        document->UndooZoom();
}

void EditCommands::mnuEditRedo_Click()
{
    if (PenDocument* document = m_context.activeDocument())
        document->RedooZoom();
}

void EditCommands::mnuEditCut_Click()
{
    const QPointer<PenDocument> document = m_context.activeDocument();
    if (!document)
        return;
    const int pen = document->gCurrentPen();
    if (document->GetPenLock(pen) == 1) {
        m_context.tell(tr("Pen locked!"), UserMessages::Information, tr("Data not deleted"));
        return;
    }
    if (!m_context.formatAllows(*document, tr("Copy data not possible")) || !document)
        return;
    const int reply = m_context.program.messages.message(tr("Delete pen %1").arg(pen + 1),
                                                         UserMessages::YesNo | UserMessages::Question, tr("Data Cut"));
    // The question was about this pen, which may have been locked or measured into meanwhile.
    if (!document || reply != UserMessages::ReplyYes || document->gCurrentPen() != pen ||
        document->GetPenLock(pen) == 1)
        return;
    document->CopyLineData(pen);
    if (!document)
        return;
    document->graphEraseLine(pen);
    document->graphResetPenName(pen);
    document->peGraph().PEactions(graph::Reinitialise);
}

void EditCommands::mnuEditCopy_Click()
{
    const QPointer<PenDocument> document = m_context.activeDocument();
    if (document && m_context.formatAllows(*document, tr("Copy data not possible")) && document)
        document->CopyLineData(document->gCurrentPen());
}

void EditCommands::mnuEditPaste_Click()
{
    const QPointer<PenDocument> document = m_context.activeDocument();
    if (!document || !m_context.formatAllows(*document, tr("Data paste not possible")) || !document)
        return;
    // The clipboard may have changed since its entry was last looked at, and a paste erases before it writes.
    if (!document->SniffClipboardData()) {
        m_context.tell(tr("The clipboard holds no pen that fits this graph."), UserMessages::Information,
                       tr("Data paste not possible"));
        return;
    }
    document->PasteLineData(document->gCurrentPen(), m_context.clipboard.text());
}

void EditCommands::mnuViewAddText_Click()
{
    const QPointer<PenDocument> document = m_context.activeDocument();
    if (document && m_context.formatAllows(*document, tr("Add text not possible")) && document)
        showModally(new frmAddText(*document, &m_context.window));
}

void EditCommands::mnuViewMarkPoints_Click()
{
    if (PenDocument* document = m_context.activeDocument()) {
        document->ToggleMarkDataPoints();
        document->UpdateToolBars();
    }
}

void EditCommands::mnuViewZoomExtents_Click()
{
    if (PenDocument* document = m_context.activeDocument())
        document->ZoomExtents();
}

void EditCommands::fit(int axes)
{
    PenDocument* const document = m_context.activeDocument();
    if (document != nullptr && !document->FitView(axes))
        m_context.tell(tr("There is no data to fit to. Measure or open a plot, and show its pens."),
                       UserMessages::Information, tr("Fit to Data"));
}

void EditCommands::mnuViewPointerReadout_Click()
{
    m_context.area.setPointerReadout(!m_context.area.hasPointerReadout());
    m_context.commands.setChecked(QStringLiteral("mnuViewPointerReadout"), m_context.area.hasPointerReadout());
}
