// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace cli {

/// What "marrowick recover" was asked to do.
struct RecoverOptions
{
    QString folder; ///< to write to; empty: nothing is written
    bool list = true;
    bool json = false;
};

/// Lists what the journals in that state folder hold and writes it where told, each thing into a new file. A thing that
/// cannot be read or written is told as a problem and does not keep the others back; the exit code is FileError then.
ExitCode recoverPlots(const QString& stateFolder, const RecoverOptions& options, Console& console);

class RecoverCommand : public Command
{
public:
    RecoverCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    ExitCode run(Arguments& arguments, Console& console) override;

private:
    QCommandLineOption m_list;
    QCommandLineOption m_output;
};

} // namespace cli
