// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace cli {

/// The script that makes a shell complete marrowick's commands and options: "bash", "zsh" or "fish". Made from the
/// table that help and parsing are made from. Empty for any other shell.
QString completionScript(const CommandTable& commands, const QString& shell);

/// "marrowick completion": prints that script.
class CompletionCommand : public Command
{
public:
    /// The table outlives it and may hold it.
    explicit CompletionCommand(const CommandTable& commands);

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override { return {m_shell}; }
    ExitCode run(Arguments& arguments, Console& console) override;

private:
    const CommandTable& m_commands;
    QCommandLineOption m_shell;
};

} // namespace cli
