// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"

#include <QCoreApplication>

/// The Help commands: manuals, the maker's page and the about box.
class HelpCommands
{
    Q_DECLARE_TR_FUNCTIONS(HelpCommands)

public:
    /// Registers them. The context outlives the object.
    explicit HelpCommands(const CommandContext& context);

    void mnuOnLineHelp_Click();
    void mnuHelpAbout_Click();

private:
    void registerCommands();
    void openManual(QLatin1String fileName);

    const CommandContext& m_context;
};
