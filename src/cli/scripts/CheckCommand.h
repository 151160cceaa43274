// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace cli {

/// What "marrowick check" was asked to check.
struct CheckOptions
{
    QStringList files;
    QString model;       ///< empty: the widest
    double firmware = 0; ///< as the instrument's version is told; 0: unknown
    bool json = false;
    int jobs = 1;
};

/// How a check ends, by its worst script; part of the command's interface.
namespace checkcode {
inline constexpr auto kClean = ExitCode::Done;
inline constexpr auto kWarnings = static_cast<ExitCode>(1);
inline constexpr auto kErrors = static_cast<ExitCode>(2);
} // namespace checkcode

/// Prints what is wrong with each of the scripts, or one JSON object for all. A file that cannot be read is told as a
/// problem and does not keep the others from being checked; the exit code is FileError then.
ExitCode checkScripts(const CheckOptions& options, Console& console);

class CheckCommand : public Command
{
public:
    CheckCommand();

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    Files files() const override { return Files::Many; }
    QString filesText() const override;
    QString missingFileText() const override;
    /// 1 would say that a script has warnings.
    ExitCode refusal() const override { return checkcode::kErrors; }
    QString exitCodes() const override;
    ExitCode run(Arguments& arguments, Console& console) override;

    /// The options of the arguments; outcome() of the arguments tells whether they fit.
    CheckOptions read(Arguments& arguments) const;

private:
    QCommandLineOption m_model;
    QCommandLineOption m_firmware;
};

} // namespace cli
