// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"
#include "cli/plots/PenAnalysis.h"

namespace cli {

/// What "marrowick analyse" was asked to tell.
struct AnalyseOptions
{
    QStringList files;
    int pen = 0; ///< 1 to 10; 0: every pen that has points
    int clf = 0; ///< the pen that the capacitance is read from; 0: the same
    AnalysisDetail detail;
    bool csv = false;
    bool json = false;
    int jobs = 1; ///< plots to work on at once
};

/// Solves the resonance of pens and tells it in lines, table rows or one JSON object. A plot that cannot be read is
/// told as a problem and does not keep the others from being analysed; the exit code is FileError then, and NotSolved
/// when all were read but a pen has no resonance.
ExitCode analysePlots(const AnalyseOptions& options, Console& console);

class AnalyseCommand : public Command
{
public:
    AnalyseCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    Files files() const override { return Files::Many; }
    ExitCode run(Arguments& arguments, Console& console) override;

    /// The options of the arguments; outcome() of the arguments tells whether they fit.
    AnalyseOptions read(Arguments& arguments) const;

private:
    QCommandLineOption m_pen, m_clf, m_csv, m_modes, m_circuit;
};

} // namespace cli
