// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "cli/plots/PlotOutputs.h"

#include <QSize>

namespace cli {

/// What "marrowick picture" was asked to draw.
struct PictureOptions
{
    std::vector<PlotOutput> files;
    QSize size;
    QString format;     ///< of standard output; names tell their own
    bool force = false; ///< replaces a picture that is there
    bool json = false;
    int jobs = 1; ///< plots to work on at once
};

/// Draws each plot by marrowick-draw and tells the name of its picture in a line, or in one JSON object for all. A plot
/// that cannot be read, or a picture that cannot or may not be written, is told as a problem and does not keep the
/// others from being drawn; the exit code is FileError then.
ExitCode drawPictures(const PictureOptions& options, Console& console);

class PictureCommand : public Command
{
public:
    PictureCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    Files files() const override { return Files::Many; }
    ExitCode run(Arguments& arguments, Console& console) override;

    /// The options of the arguments; outcome() of the arguments tells whether they fit.
    PictureOptions read(Arguments& arguments) const;

private:
    void readFiles(Arguments& arguments, PictureOptions& options) const;

    QCommandLineOption m_output, m_format, m_size, m_force;
};

} // namespace cli
