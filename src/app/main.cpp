// SPDX-License-Identifier: GPL-3.0-or-later
// marrowickgraph: the desktop program.
#include "app/FirstPaintMark.h"
#include "program/Interrupts.h"
#include "program/Version.h"
#include "shell/ui/StartUp.h"
#include "shell/ui/frmMain.h"
#include "widgets/ui/TintedIcon.h"

#include <QApplication>

#include <cstdio>

namespace {

/// Seconds between a request to end and the end, whatever happens.
constexpr unsigned kLongestEnd = 5;

int refuse(const QString& problem)
{
    std::fprintf(stderr, "marrowickgraph: %s\n", qPrintable(problem));
    return 2;
}

/// Answers what needs no display; -1 when the program shall start.
int answerWithoutWindow(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const StartUpOptions options = StartUpOptions::parse(arguments);
    if (!options.problem.isEmpty())
        return refuse(options.problem);
    if (options.help) {
        std::fputs(qPrintable(StartUpOptions::helpText()), stdout);
        return 0;
    }
    if (options.version) {
        std::puts(qPrintable(version::programTitle() + u' ' + version::text()));
        return 0;
    }
    return -1;
}

} // namespace

int main(int argc, char** argv)
{
    if (const int status = answerWithoutWindow(argc, argv); status >= 0)
        return status;

    QApplication application(argc, argv);
    QApplication::setApplicationName(version::programTitle());
    QApplication::setApplicationVersion(version::text());
    QApplication::setDesktopFileName(QStringLiteral("marrowickgraph"));
    QApplication::setWindowIcon(programIcon());

    // The toolkit has taken its own options by now.
    const StartUpOptions options = StartUpOptions::parse(QApplication::arguments().mid(1));
    if (const QString unknown = options.unknownOption(); !unknown.isEmpty())
        return refuse(unknown);

    FirstPaintMark mark;
    StartUp startUp;
    const Interrupts interrupts(kLongestEnd);
    QObject::connect(&interrupts, &Interrupts::interrupted, &application, [&startUp] { startUp.requestEnd(); });
    startUp.run(options);
    // The window may have been closed already, from a question at the start: then there is no loop to wait in.
    if (startUp.mainWindow()->isUnloaded())
        return 0;
    QObject::connect(
        startUp.mainWindow(), &frmMain::unloaded, &application,
        // Not quit(): a dialog that refuses to close would keep the program.
        [] { QApplication::exit(); }, Qt::QueuedConnection);
    mark.startedUp();
    return QApplication::exec();
}
