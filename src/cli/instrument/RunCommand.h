// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace cli {

/// What "marrowick run" was asked to do.
struct RunOptions
{
    QString script;
    QString device; ///< serial number or path of a terminal device; empty: the first instrument found
    QStringList answers;
    QString plots;   ///< folder
    QString exports; ///< folder
    QString linkLog;
    double timeout = 0; ///< seconds for everything; 0: no limit
    bool quiet = false;
    bool json = false; ///< a line of JSON for each result
};

class RunCommand : public Command
{
public:
    RunCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    Files files() const override { return Files::One; }
    QString filesText() const override;
    QString missingFileText() const override;
    /// The terminal is for the questions of the script.
    bool readsStandardInput() const override { return false; }
    QString exitCodes() const override;
    ExitCode run(Arguments& arguments, Console& console) override;

private:
    RunOptions read(Arguments& arguments) const;

    QCommandLineOption m_device, m_answer, m_plots, m_exports, m_linkLog, m_timeout;
};

} // namespace cli
