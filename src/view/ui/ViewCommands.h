// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>

class ActiveDocument;
class CommandRegistry;
class Preferences;
class QWidget;
class UserMessages;

/// The command that opens the view options of the active document.
class ViewCommands
{
    Q_DECLARE_TR_FUNCTIONS(ViewCommands)

public:
    /// All of it outlives the commands.
    struct Context
    {
        CommandRegistry& commands;
        ActiveDocument& active;
        Preferences& preferences;
        UserMessages& messages;
        QWidget& window;
    };
    /// Registers it.
    explicit ViewCommands(const Context& context);

    void mnuViewOptions_Click();

private:
    Context m_context;
};
