// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace cli {

/// What "marrowick show" was asked to print.
struct ShowOptions
{
    QStringList files;   ///< exactly one when points are asked for
    int pointsOfPen = 0; ///< 1 to 10: print the points of that pen instead; 0: the summary
    bool json = false;
    int jobs = 1; ///< files to read at once
};

/// Prints what each of the files holds, a blank line between them, or one JSON object for all; or the points of one pen
/// as a table. A file that cannot be read is told as a problem and does not keep the others from being shown; the exit
/// code is FileError then. No file is changed.
ExitCode showPlots(const ShowOptions& options, Console& console);

class ShowCommand : public Command
{
public:
    ShowCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    Files files() const override { return Files::Many; }
    ExitCode run(Arguments& arguments, Console& console) override;

    /// The options of the arguments; outcome() of the arguments tells whether they fit.
    ShowOptions read(Arguments& arguments) const;

private:
    QCommandLineOption m_points;
};

} // namespace cli
