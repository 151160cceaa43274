// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"

#include <QCoreApplication>

class PreferencesHost;

/// The preferences windows, and what a start has to say about settings and data folders.
class PreferencesCommands
{
    Q_DECLARE_TR_FUNCTIONS(PreferencesCommands)

public:
    /// Registers the command. Both outlive the object.
    PreferencesCommands(const CommandContext& context, PreferencesHost& host);

    void mnuPreferences_Click();
    /// All data folders are configured. Makes those that are missing; those that cannot be made are told in one
    /// message.
    bool boolArePathsSet();
    /// The check of a start: settings that cannot be stored, folders that cannot be made and folders not configured are
    /// told in one message; for the last the user gets the page to enter them, if what they enter can be stored.
    void checkAtStart();
    /// Tells once that a settings file was damaged and set aside; false when there is nothing to tell.
    bool tellDamagedSettings();

private:
    void show(int page);
    /// One sentence, or empty when all is well.
    QString problemOfStore() const;
    QStringList problemsOfFolders(bool& areSet) const;
    void tellProblems(const QStringList& problems);

    const CommandContext& m_context;
    PreferencesHost& m_host;
};
