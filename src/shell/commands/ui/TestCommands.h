// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"

#include <QCoreApplication>

/// The Test commands that drive the instrument. Start and stop look for an instrument themselves.
class TestCommands
{
    Q_DECLARE_TR_FUNCTIONS(TestCommands)

public:
    /// Registers them. The context outlives the object.
    explicit TestCommands(const CommandContext& context);

    void mnuTestRepeat_Click();

private:
    void registerCommands();

    const CommandContext& m_context;
};
