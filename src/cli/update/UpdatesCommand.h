// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

namespace cli {

/// "updates": what the web folder of updates holds, and what of it is newer. Fetches nothing but the listing.
class UpdatesCommand : public Command
{
public:
    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    ExitCode run(Arguments& arguments, Console& console) override;
};

} // namespace cli
