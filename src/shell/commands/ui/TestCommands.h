// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"

#include <QCoreApplication>

/// The Test commands that drive the instrument. Start, stop and re-run look for an instrument themselves.
class TestCommands
{
    Q_DECLARE_TR_FUNCTIONS(TestCommands)

public:
    /// Registers them. The context outlives the object.
    explicit TestCommands(const CommandContext& context);

    void mnuTestRepeat_Click();
    void mnuReRunLastTestScript_Click();
    /// The re-run of the command line: documents stay open, and "run" is said whether an instrument was found or not.
    void reRunAtStart();

private:
    void registerCommands();
    /// The chooser, if there is no link, and that time for the instrument's answers. False: the window has gone.
    bool offerConnection(int rounds, int milliseconds);

    const CommandContext& m_context;
};
