// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"

#include <QObject>

/// The commands of the pen bar: choice, colour, lock and display of the active document's pens.
class PenCommands : public QObject
{
    Q_OBJECT

public:
    /// Registers them. The context outlives the object.
    explicit PenCommands(const CommandContext& context);

    /// The default colours of new documents come from the preferences.
    void penInitialise();
    void penLock_Click();
    void penUnlockAll_Click();
    void penView_Click();
    void penViewAll_Click();
    /// Asks for another colour of that pen (from 0), which later documents have too.
    void choosePenColour(int pen);

Q_SIGNALS:
    /// The default colours in ProgramState are others now.
    void coloursChanged();

private:
    void registerCommands();

    const CommandContext& m_context;
};
