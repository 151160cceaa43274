// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"

#include <QCoreApplication>

#include <vector>

class CommandSet;
class QAction;

/// The Window commands and the list of the open documents in their menu.
class WindowCommands
{
    Q_DECLARE_TR_FUNCTIONS(WindowCommands)

public:
    /// Registers them. The context outlives the object.
    explicit WindowCommands(const CommandContext& context);

    /// From now on the menu names the documents whenever it opens. An entry lives as long as the window: it may be
    /// named anew while its handler runs.
    void listDocuments(CommandSet& commands);

private:
    struct Entry
    {
        QAction* action;
        QPointer<PenDocument> document;
    };
    void registerCommands();
    void goTo(PenDocument* document);
    void showEntries(CommandSet& commands);
    void addEntry(CommandSet& commands);

    const CommandContext& m_context;
    std::vector<Entry> m_entries;
};
