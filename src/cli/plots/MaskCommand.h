// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace cli {

/// What "marrowick mask" was asked to do.
struct MaskOptions
{
    QString plot;     ///< "-" for standard input
    QString maskFile; ///< empty: the mask of the plot stays
    bool force = false;
    int pen = -1; ///< to test, 0 to 9; -1 none
    bool json = false;
};

/// The exit codes of "marrowick mask"; a plot that cannot be read or written is ExitCode::FileError.
namespace maskexit {

inline constexpr ExitCode kInside = ExitCode::Done;
inline constexpr ExitCode kOutside = static_cast<ExitCode>(1);
inline constexpr ExitCode kNoVerdict = static_cast<ExitCode>(2); ///< no data, no mask, or a command line in error

} // namespace maskexit

/// Puts the mask of a file into the plot, tests a pen, or both in this order.
ExitCode maskPlot(const MaskOptions& options, Console& console);

class MaskCommand : public Command
{
public:
    MaskCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    Files files() const override { return Files::One; }
    ExitCode refusal() const override { return maskexit::kNoVerdict; }
    QString exitCodes() const override;
    ExitCode run(Arguments& arguments, Console& console) override;

    /// The options of the arguments; outcome() of the arguments tells whether they fit.
    MaskOptions read(Arguments& arguments) const;

private:
    QCommandLineOption m_pen, m_set, m_force;
};

} // namespace cli
