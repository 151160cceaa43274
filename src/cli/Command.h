// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/ExitCode.h"

#include <QCommandLineOption>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace cli {

/// One sub-command of marrowick. The program's table of commands gives help, parsing and refusals alike, so a new one
/// is a class of this kind and a line in that table (and its paragraph in the manual page, which a test compares).
class Command
{
public:
    enum class Files
    {
        None,
        One,
        Many, ///< --jobs is understood
        Words ///< words of its own, which it judges itself
    };

    virtual ~Command() = default;

    /// The word on the command line.
    virtual QString name() const = 0;
    /// For the list of commands: "lists the instruments found".
    virtual QString summary() const = 0;
    /// A sentence or two for the command's own help.
    virtual QString description() const = 0;
    /// Its own options, in the order of the help; the common ones come behind them.
    virtual QList<QCommandLineOption> options() const { return {}; }
    /// The files it reads, each "-" for standard input where that is read. At least one is asked for where any are
    /// taken.
    virtual Files files() const { return Files::None; }
    /// What the program ends with when the command line cannot be carried out.
    virtual ExitCode refusal() const { return ExitCode::Usage; }
    /// The last lines of the command's help. A command whose answer is its exit code has codes of its own.
    virtual QString exitCodes() const { return exitCodeHelp(); }
    /// For the help of a command with words of its own: "show|check FILE".
    virtual QString words() const { return {}; }
    /// What files these are, for the help: "Plot files".
    virtual QString filesText() const;
    /// Told when there is none: "A plot file is missing."
    virtual QString missingFileText() const;
    /// Whether "-" stands for standard input.
    virtual bool readsStandardInput() const { return true; }
    /// Reads its options and does its work; problems have been told on the console when it returns.
    virtual ExitCode run(Arguments& arguments, Console& console) = 0;
};

using CommandTable = std::vector<std::unique_ptr<Command>>;

/// Does what the arguments ask for (the first is the program's name) and gives the program's exit code. Needs a
/// QCoreApplication for name and version. Results that get lost make FileError of Done.
ExitCode runCommandLine(const CommandTable& commands, const QStringList& arguments, Console& console);

} // namespace cli
