// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick: the engine of MarrowickGraph without a window.
#include "cli/CommandLine.h"
#include "cli/Console.h"
#include "cli/DevicesCommand.h"
#include "cli/Interrupts.h"
#include "cli/ShowCommand.h"
#include "cli/SweepCommand.h"
#include "controls/graph/ui/GraphPicture.h"
#include "controls/korvalink/DeviceList.h"
#include "program/Version.h"

#include <QApplication>
#include <QHash>
#include <QLoggingCategory>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace {

/// Drawing needs the windowing library, but never a display; everything else starts without it.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char** argv)
{
    const bool draws = std::any_of(
        argv, argv + argc, [](const char* argument) { return std::string_view(argument).starts_with("--picture"); });
    if (!draws)
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QApplication>(argc, argv);
}

Outcome writePicture(const GraphModel& graph, const QString& fileName, const QSize& size)
{
    using graph::PictureFormat;
    static const QHash<QString, PictureFormat> formats = {
        {QStringLiteral("png"), PictureFormat::Png},   {QStringLiteral("jpg"), PictureFormat::Jpeg},
        {QStringLiteral("jpeg"), PictureFormat::Jpeg}, {QStringLiteral("bmp"), PictureFormat::Bmp},
        {QStringLiteral("svg"), PictureFormat::Svg},   {QStringLiteral("pdf"), PictureFormat::Pdf},
    };
    return graph::savePicture(graph, fileName, formats.value(cli::pictureSuffix(fileName), PictureFormat::Png),
                              size.width(), size.height());
}

cli::ExitCode sweep(const cli::SweepOptions& options, cli::Console& console)
{
    cli::SweepCommand command(options, console, writePicture);
    cli::Interrupts interrupts;
    QObject::connect(&interrupts, &cli::Interrupts::interrupted, &command, &cli::SweepCommand::stop);
    return command.run();
}

cli::ExitCode run(const cli::CommandLine& commandLine, cli::Console& console)
{
    if (commandLine.sweep)
        return sweep(*commandLine.sweep, console);
    if (commandLine.show)
        return cli::showPlots(*commandLine.show, console);
    if (commandLine.devices) {
        DeviceList devices;
        return cli::listDevices(devices, *commandLine.devices, console);
    }
    console.result(commandLine.text.trimmed());
    return cli::ExitCode::Done;
}

} // namespace

int main(int argc, char** argv)
{
    // Problems are told in sentences of our own; the libraries' remarks are for developers, who set QT_LOGGING_RULES.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("marrowick"));
    QCoreApplication::setApplicationVersion(version::text());

    QTextStream results(stdout);
    QTextStream problems(stderr);
    cli::Console console(results, problems, isatty(STDERR_FILENO) != 0);
    const ValueOr<cli::CommandLine> commandLine = cli::readCommandLine(QCoreApplication::arguments());
    if (!commandLine) {
        console.problem(commandLine.sentence());
        return static_cast<int>(cli::ExitCode::Usage);
    }
    return static_cast<int>(run(commandLine.value(), console));
}
