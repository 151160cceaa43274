// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Arguments.h"
#include "cli/OutputFile.h"
#include "document/PenDocument.h"
#include "values/Outcome.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace cli {

/// A plot and the file that is made of it.
struct PlotOutput
{
    QString plot; ///< "-" for standard input
    OutputFile file;
};

/// Standard output carries one of the files, so no results.
bool streams(const std::vector<PlotOutput>& outputs);
/// The file of the plot's name with that extension, beside the plot or in the folder, as the user wrote either.
OutputFile besidePlot(const QString& plot, const QString& folder, const QString& extension);
/// Refuses files that would replace a plot to be read or one another. subject is what a file is, as "The text".
void refuseClashes(const std::vector<PlotOutput>& outputs, const QString& subject, Arguments& arguments);

/// What became of one plot.
struct MadeOutput
{
    QString problem;     ///< empty: the file was written
    QStringList remarks; ///< of the engine
};
/// Makes one file of one plot. Fails where the file is there and may not be replaced, cannot be written, or the plot
/// cannot be read; make is called with the open document otherwise.
MadeOutput makeOutput(const PlotOutput& output, bool force, const std::function<Outcome(PenDocument&)>& make);

} // namespace cli
