// SPDX-License-Identifier: GPL-3.0-or-later
#include "view/ui/ViewCommands.h"

#include "document/ActiveDocument.h"
#include "program/CommandRegistry.h"
#include "program/UserMessages.h"
#include "view/ui/GraphViewXRGB.h"
#include "view/ui/frmOptions.h"
#include "widgets/ui/ShowModally.h"

ViewCommands::ViewCommands(const Context& context)
    : m_context(context)
{
    m_context.commands.add({.name = "mnuViewOptions",
                            .menu = Command::Menu::View,
                            .place = 100,
                            .text = tr("Graph View &Options..."),
                            .icon = "graph-view",
                            .shortcut = "F3",
                            .statusTip = tr("Set pens, axes, style and masks of this graph"),
                            .handler = [this] { mnuViewOptions_Click(); },
                            .rules = Command::NeedsDocument | Command::NotViewOnly,
                            .functionKey = true,
                            .toolBarKey = "GraphView",
                            .popupEntry = "ViewOptions"});
}

void ViewCommands::mnuViewOptions_Click()
{
    PenDocument* const document = m_context.active.get();
    if (document == nullptr)
        return;
    if (document->giDocumentVersion() > 1) {
        m_context.messages.message(tr("New data format. Please check for updates."), UserMessages::Information,
                                   tr("View changes not possible"));
        return;
    }
    if (document->pgiTestType() == PenDocument::Reactance)
        showModally(new GraphViewXRGB(*document, m_context.preferences, m_context.messages, &m_context.window));
    else
        showModally(new frmOptions(*document, m_context.preferences, m_context.messages, &m_context.window));
}
