// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/WindowCommands.h"

#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/ui/DocumentArea.h"
#include "program/CommandRegistry.h"
#include "shell/commands/ui/CommandSet.h"

#include <QMenu>

namespace {

constexpr int kPlace = 900;

} // namespace

WindowCommands::WindowCommands(const CommandContext& context)
    : m_context(context)
{
    registerCommands();
}

void WindowCommands::registerCommands()
{
    CommandRegistry& commands = m_context.commands;
    DocumentArea& area = m_context.area;
    commands.add({.name = "mnuNextDocument",
                  .menu = Command::Menu::Window,
                  .place = 100,
                  .text = tr("&Next Document"),
                  .icon = "document-next",
                  .shortcut = "Ctrl+PgDown",
                  .statusTip = tr("Go to the next document"),
                  .handler = [this] { goTo(m_context.documents.nextDocument()); },
                  .rules = Command::NeedsDocument,
                  .toolBarKey = "Next document"});
    commands.add({.name = "mnuPreviousDocument",
                  .menu = Command::Menu::Window,
                  .place = 110,
                  .text = tr("&Previous Document"),
                  .icon = "document-previous",
                  .shortcut = "Ctrl+PgUp",
                  .statusTip = tr("Go to the previous document"),
                  .handler = [this] { goTo(m_context.documents.previousDocument()); },
                  .rules = Command::NeedsDocument,
                  .toolBarKey = "Previous document"});
    commands.add({.name = "mnuWindowTileVertical",
                  .menu = Command::Menu::Window,
                  .place = 200,
                  .text = tr("Tile &Vertical"),
                  .icon = "window-tile-vertical",
                  .shortcut = "F9",
                  .statusTip = tr("Arrange the documents side by side"),
                  .handler = [&area] { area.tileVertically(); },
                  .rules = Command::NeedsDocument,
                  .functionKey = true});
    commands.add({.name = "mnuWindowTileHorizontal",
                  .menu = Command::Menu::Window,
                  .place = 210,
                  .text = tr("Tile &Horizontal"),
                  .icon = "window-tile-horizontal",
                  .shortcut = "F7",
                  .statusTip = tr("Arrange the documents one above the other"),
                  .handler = [&area] { area.tileHorizontally(); },
                  .rules = Command::NeedsDocument,
                  .functionKey = true});
    commands.add({.name = "mnuWindowCascade",
                  .menu = Command::Menu::Window,
                  .place = 220,
                  .text = tr("&Cascade"),
                  .icon = "window-cascade",
                  .shortcut = "F11",
                  .statusTip = tr("Arrange the documents overlapping"),
                  .handler = [&area] { area.cascadeSubWindows(); },
                  .rules = Command::NeedsDocument,
                  .functionKey = true});
    commands.add({.name = "mnuWindowCloseAll",
                  .menu = Command::Menu::Window,
                  .place = 300,
                  .text = tr("Close &All"),
                  .shortcut = "Ctrl+Shift+W",
                  .statusTip = tr("Close every document"),
                  .handler = [this] { m_context.documents.CloseAll(); },
                  .rules = Command::NeedsDocument});
}

void WindowCommands::goTo(PenDocument* document)
{
    if (document)
        m_context.area.showDocument(*document);
}

void WindowCommands::listDocuments(CommandSet& commands)
{
    QObject::connect(&commands.menu(Command::Menu::Window), &QMenu::aboutToShow, &commands,
                     [this, &commands] { showEntries(commands); });
}

void WindowCommands::addEntry(CommandSet& commands)
{
    const std::size_t index = m_entries.size();
    auto* action = new QAction(&m_context.window);
    action->setObjectName(QStringLiteral("mnuWindowDocument_%1").arg(index + 1));
    action->setCheckable(true);
    QObject::connect(action, &QAction::triggered, &commands, [this, index] { goTo(m_entries[index].document); });
    commands.insert(Command::Menu::Window, kPlace + static_cast<int>(index), *action);
    m_entries.push_back({action, nullptr});
}

void WindowCommands::showEntries(CommandSet& commands)
{
    const DocumentList& documents = m_context.documents;
    const auto count = static_cast<std::size_t>(documents.count());
    while (m_entries.size() < count)
        addEntry(commands);
    const PenDocument* active = m_context.activeDocument();
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        Entry& entry = m_entries[i];
        entry.document = documents.at(static_cast<int>(i) + 1);
        entry.action->setVisible(entry.document);
        if (!entry.document)
            continue;
        QString caption = entry.document->caption();
        caption.replace(QLatin1Char('&'), QLatin1String("&&"));
        entry.action->setText(i < 9 ? QStringLiteral("&%1 %2").arg(i + 1).arg(caption) : caption);
        entry.action->setChecked(entry.document == active);
    }
}
