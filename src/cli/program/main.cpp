// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick: the engine of MarrowickGraph without a window.
#include "cli/Command.h"
#include "cli/Completion.h"
#include "cli/Console.h"
#include "cli/StandardStreams.h"
#include "cli/instrument/DevicesCommand.h"
#include "cli/instrument/RunCommand.h"
#include "cli/instrument/SweepCommand.h"
#include "cli/plots/AnalyseCommand.h"
#include "cli/plots/ExportCommand.h"
#include "cli/plots/MaskCommand.h"
#include "cli/plots/PictureCommand.h"
#include "cli/plots/RecoverCommand.h"
#include "cli/plots/ShowCommand.h"
#include "cli/scripts/CheckCommand.h"
#include "cli/update/FirmwareCommand.h"
#include "cli/update/UpdatesCommand.h"
#include "program/Version.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <memory>

namespace {

/// Every command of the program, in the order of its help.
void fill(cli::CommandTable& table)
{
    table.push_back(std::make_unique<cli::DevicesCommand>());
    table.push_back(std::make_unique<cli::SweepCommand>());
    table.push_back(std::make_unique<cli::RunCommand>());
    table.push_back(std::make_unique<cli::ShowCommand>());
    table.push_back(std::make_unique<cli::AnalyseCommand>());
    table.push_back(std::make_unique<cli::ExportCommand>());
    table.push_back(std::make_unique<cli::PictureCommand>());
    table.push_back(std::make_unique<cli::MaskCommand>());
    table.push_back(std::make_unique<cli::RecoverCommand>());
    table.push_back(std::make_unique<cli::CheckCommand>());
    table.push_back(std::make_unique<cli::FirmwareCommand>());
    table.push_back(std::make_unique<cli::UpdatesCommand>());
    table.push_back(std::make_unique<cli::CompletionCommand>(table));
}

} // namespace

int main(int argc, char** argv)
{
    cli::guardStandardStreams();
    // Problems are told in sentences of our own; the libraries' remarks are for developers, who set QT_LOGGING_RULES.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("marrowick"));
    QCoreApplication::setApplicationVersion(version::text());

    cli::Console console = cli::Console::ofProgram(QStringLiteral("marrowick"));
    cli::CommandTable commands;
    fill(commands);
    return static_cast<int>(cli::runCommandLine(commands, QCoreApplication::arguments(), console));
}
