// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/PenCommands.h"

#include "document/PenDocument.h"
#include "prefs/Preferences.h"
#include "program/CommandRegistry.h"
#include "program/ProgramState.h"
#include "widgets/ui/QtColour.h"

#include <QColorDialog>

PenCommands::PenCommands(const CommandContext& context)
    : m_context(context)
{
    registerCommands();
}

void PenCommands::registerCommands()
{
    CommandRegistry& commands = m_context.commands;
    constexpr int kRules = Command::NeedsDocument | Command::NotDuringTest;
    commands.add({.name = "mnuPenLock",
                  .menu = Command::Menu::Edit,
                  .place = 300,
                  .text = tr("&Lock Pen"),
                  .icon = "pen-lock",
                  .statusTip = tr("Protect the current pen against new data"),
                  .handler = [this] { penLock_Click(); },
                  .rules = kRules,
                  .checkable = true,
                  .toolBarKey = "Lock"});
    commands.add({.name = "mnuPenUnlockAll",
                  .menu = Command::Menu::Edit,
                  .place = 310,
                  .text = tr("U&nlock All Pens"),
                  .icon = "pen-unlock-all",
                  .statusTip = tr("Allow new data in every pen"),
                  .handler = [this] { penUnlockAll_Click(); },
                  .rules = kRules,
                  .toolBarKey = "UnlockAll"});
    commands.add({.name = "mnuPenView",
                  .menu = Command::Menu::View,
                  .place = 300,
                  .text = tr("&Show Pen"),
                  .icon = "pen-view",
                  .statusTip = tr("Show or hide the current pen"),
                  .handler = [this] { penView_Click(); },
                  .rules = kRules,
                  .checkable = true,
                  .toolBarKey = "View"});
    commands.add({.name = "mnuPenViewAll",
                  .menu = Command::Menu::View,
                  .place = 310,
                  .text = tr("Show &All Pens"),
                  .icon = "pen-view-all",
                  .statusTip = tr("Show every pen"),
                  .handler = [this] { penViewAll_Click(); },
                  .rules = kRules,
                  .toolBarKey = "ViewAll"});
}

void PenCommands::penInitialise()
{
    ProgramState& state = m_context.program.state;
    for (std::size_t pen = 0; pen < state.glPenColour.size(); ++pen)
        state.glPenColour[pen] = m_context.program.preferences.value(options::kPens[pen]);
    Q_EMIT coloursChanged();
}

void PenCommands::penLock_Click()
{
    const QPointer<PenDocument> document = m_context.activeDocument();
    if (!document)
        return;
    document->TogglePenLock(document->gCurrentPen());
    // A refusal has left the button pressed.
    if (document)
        document->UpdateToolBars();
}

void PenCommands::penUnlockAll_Click()
{
    if (PenDocument* document = m_context.activeDocument())
        document->UnlockAllPens();
}

void PenCommands::penView_Click()
{
    if (PenDocument* document = m_context.activeDocument()) {
        document->TogglePenDisplay(document->gCurrentPen());
        document->UpdateToolBars();
    }
}

void PenCommands::penViewAll_Click()
{
    if (PenDocument* document = m_context.activeDocument())
        document->DisplayAllPens();
}

void PenCommands::choosePenColour(int pen)
{
    const auto index = static_cast<std::size_t>(pen);
    const QPointer<PenCommands> self(this);
    const QPointer<PenDocument> document = m_context.activeDocument();
    ProgramState& state = m_context.program.state;
    const std::uint32_t now = document ? document->peGraph().SubsetColors(pen) : state.glPenColour[index];
    const QColor chosen = QColorDialog::getColor(toQColor(now), &m_context.window, tr("Colour of pen %1").arg(pen + 1));
    if (!self || !chosen.isValid())
        return;
    const std::uint32_t colour = fromQColor(chosen);
    state.glPenColour[index] = colour;
    m_context.program.preferences.setValue(options::kPens[index], colour);
    if (document)
        document->SetPenColour(pen, colour);
    Q_EMIT coloursChanged();
}
