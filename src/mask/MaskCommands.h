// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

class ActiveDocument;
class CommandRegistry;
class FilePicker;
class PenDocument;
class Preferences;
class UserMessages;

/// The menu "Masks": the test of the current pen, and masks to and from files.
class MaskCommands
{
    Q_DECLARE_TR_FUNCTIONS(MaskCommands)

public:
    /// All of it outlives the commands.
    struct Context
    {
        CommandRegistry& commands;
        ActiveDocument& active;
        Preferences& preferences;
        UserMessages& messages;
        FilePicker& files;
    };
    /// Registers them.
    explicit MaskCommands(const Context& context);

    void mnuCheckMask_Click();
    void mnuMaskSave_Click();
    void mnuMaskRead_Click();

private:
    /// Null, with the user told, where the document can have no mask.
    PenDocument* maskDocument(const QString& title) const;

    Context m_context;
};
