// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"

#include <QCoreApplication>

class FileOpener;

/// The File commands: documents made, opened, saved and closed.
class FileCommands
{
    Q_DECLARE_TR_FUNCTIONS(FileCommands)

public:
    /// Registers them. Both outlive the object.
    FileCommands(const CommandContext& context, const FileOpener& opener);

    void mnuFileNew_Click();
    void mnuFileOpen_Click();
    void mnuFileClose_Click();
    void fileSave(bool bfAs);
    void mnuFileSaveAll_Click();
    void mnuFileProperties_Click();

    /// File Close for that document: false when it stays open.
    bool closeDocument(PenDocument& document);

private:
    void registerCommands();
    /// The type of the next document goes to ProgramState; asked for unless the instrument has only one.
    void chooseTestType();

    const CommandContext& m_context;
    const FileOpener& m_opener;
};
