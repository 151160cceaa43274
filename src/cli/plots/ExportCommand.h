// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "cli/plots/PlotOutputs.h"
#include "export/TextExport.h"

namespace cli {

/// What "marrowick export" was asked to write.
struct ExportOptions
{
    std::vector<PlotOutput> files;
    int pen = TextStore::kAllPens; ///< 0 to 9, or all
    TextExport::Format format;
    bool force = false; ///< replaces a text file that is there
    bool json = false;
    int jobs = 1; ///< plots to work on at once
};

/// Writes the text of each plot and tells its name and number of points in a line, or in one JSON object for all. A
/// plot that cannot be read, or a text that cannot or may not be written, is told as a problem and does not keep the
/// others from being exported; the exit code is FileError then.
ExitCode exportPlots(const ExportOptions& options, Console& console);

class ExportCommand : public Command
{
public:
    ExportCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    Files files() const override { return Files::Many; }
    ExitCode run(Arguments& arguments, Console& console) override;

    /// The options of the arguments; outcome() of the arguments tells whether they fit.
    ExportOptions read(Arguments& arguments) const;

private:
    int readPen(Arguments& arguments) const;
    void readFiles(Arguments& arguments, ExportOptions& options) const;

    QCommandLineOption m_pen, m_comma, m_header, m_unix, m_output, m_force;
};

} // namespace cli
