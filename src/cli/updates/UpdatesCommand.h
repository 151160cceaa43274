// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <QStringList>

namespace cli {

/// "updates": what the web folder of updates holds, and what of it is newer. Fetches nothing but the listing.
class UpdatesCommand : public Command
{
public:
    /// What names of firmware files begin with, by model.
    explicit UpdatesCommand(QStringList firmwareTags);

    QString name() const override;
    QString summary() const override;
    QString description() const override;
    QList<QCommandLineOption> options() const override;
    ExitCode run(Arguments& arguments, Console& console) override;

private:
    QStringList m_firmwareTags;
};

} // namespace cli
