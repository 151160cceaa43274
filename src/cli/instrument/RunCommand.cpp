// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/RunCommand.h"

#include "cli/instrument/ScriptRun.h"
#include "program/Interrupts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

} // namespace

RunCommand::RunCommand()
    : m_device(u"device"_s, tr("Serial number, or path of a terminal device (the first instrument found)."),
               u"serial|path"_s)
    , m_answer(u"answer"_s,
               tr("ok, yes, no, cancel or a text: the answer to every question of the script; given more than once, "
                  "the answers in their order."),
               u"answer"_s)
    , m_plots(u"plots"_s, tr("Folder of the plots that the script saves and loads (the present one)."), u"folder"_s,
              u"."_s)
    , m_exports(u"exports"_s, tr("Folder of the texts and pictures that the script exports (the present one)."),
                u"folder"_s, u"."_s)
    , m_linkLog(u"link-log"_s, tr("Logs everything that passes the link."), u"file"_s)
    , m_timeout(u"timeout"_s, tr("Stops after that many seconds (0: no limit)."), u"seconds"_s, u"0"_s)
{}

QString RunCommand::name() const
{
    return u"run"_s;
}

QString RunCommand::summary() const
{
    return tr("runs a script on an instrument and does what it asks for");
}

QString RunCommand::description() const
{
    return tr("Checks a script, sends it to an instrument and runs it there; graphs, files and questions of the script "
              "are dealt with here. Prints a line for each file, and at the end pass, fail or stopped.");
}

QList<QCommandLineOption> RunCommand::options() const
{
    return {m_device, m_answer, m_plots, m_exports, m_linkLog, m_timeout};
}

QString RunCommand::filesText() const
{
    return tr("The script");
}

QString RunCommand::missingFileText() const
{
    return tr("A script is missing.");
}

QString RunCommand::exitCodes() const
{
    return tr(
        "Exit codes: 0 pass, 9 fail, 6 stopped or a sweep incomplete, 5 something not written, loaded or printed,\n"
        "            4 errors in the script, or not sent, 3 link lost, 2 no instrument, 1 usage.\n");
}

RunOptions RunCommand::read(Arguments& arguments) const
{
    RunOptions result;
    result.script = arguments.files().value(0);
    result.device = arguments.text(m_device);
    result.answers = arguments.texts(m_answer);
    for (const auto& [option, folder] : {std::pair(&m_plots, &result.plots), std::pair(&m_exports, &result.exports)}) {
        *folder = QDir(arguments.text(*option)).absolutePath();
        if (!QFileInfo(*folder).isDir())
            arguments.refuse(*option, tr("a folder that exists"));
    }
    result.linkLog = arguments.fileName(m_linkLog);
    result.timeout = arguments.number(m_timeout, tr("a number of seconds from 0"));
    result.quiet = arguments.common().quiet;
    result.json = arguments.common().json;
    return result;
}

ExitCode RunCommand::run(Arguments& arguments, Console& console)
{
    const RunOptions options = read(arguments);
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    ScriptRun script(options, console);
    Interrupts interrupts;
    QObject::connect(&interrupts, &Interrupts::interrupted, &script, &ScriptRun::stop);
    return script.run();
}

} // namespace cli
