// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/ExportCommand.h"

#include "cli/Jobs.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

struct Exported
{
    MadeOutput made;
    int points = 0;
};

Exported exported(const PlotOutput& file, const ExportOptions& options)
{
    Exported result;
    result.made = makeOutput(file, options.force, [&](PenDocument& document) {
        if (document.pgiTestType() == PenDocument::NoTest)
            return Outcome::failure(tr("%1: the plot is of no known type; there is nothing to export.").arg(file.plot));
        ExportStore store;
        TextExport::collect(store, document, file.file.name(), options.pen, options.format);
        result.points = store.points(options.pen);
        return file.file.write(store.text(options.pen));
    });
    return result;
}

} // namespace

ExitCode exportPlots(const ExportOptions& options, Console& console)
{
    ExitCode code = ExitCode::Done;
    QJsonArray exports;
    const bool streaming = streams(options.files);
    const auto deliver = [&](std::size_t index, const Exported& plot) {
        const PlotOutput& output = options.files[index];
        for (const QString& remark : plot.made.remarks)
            console.problem(remark);
        if (!plot.made.problem.isEmpty())
            code = console.failed(ExitCode::FileError, plot.made.problem);
        else if (options.json)
            exports.append(
                QJsonObject{{u"plot"_s, output.plot}, {u"file"_s, output.file.name()}, {u"points"_s, plot.points}});
        else if (!streaming)
            console.result(tr("%1: %2 points").arg(output.file.name()).arg(plot.points));
    };
    const auto work = [&options](std::size_t index) { return exported(options.files[index], options); };
    runJobs(options.jobs, options.files.size(), work, deliver);
    if (options.json)
        console.result(QJsonObject{{u"exports"_s, exports}});
    return code;
}

ExportCommand::ExportCommand()
    : m_pen(u"pen"_s, tr("Pen to export, 1 to 10 or all (all)."), u"pen"_s, u"all"_s)
    , m_comma(u"comma"_s, tr("Puts a comma and a blank between columns in place of a tab."))
    , m_header(u"header"_s, tr("Begins each file with lines about plot, pens and columns, marked by \"#\"."))
    , m_unix(u"unix"_s, tr("Ends lines in a line feed alone."))
    , m_output(u"output"_s, tr("Writes the files into that folder; - writes one to standard output."), u"folder"_s)
    , m_force(u"force"_s, tr("Replaces files that are there already."))
{}

QString ExportCommand::name() const
{
    return u"export"_s;
}

QString ExportCommand::summary() const
{
    return tr("writes the points of plot files as text");
}

QString ExportCommand::description() const
{
    return tr(
        "Writes the points of each plot as a table into a text file of its name, NAME.txt, beside it. A plot from "
        "standard input goes to standard output.");
}

QList<QCommandLineOption> ExportCommand::options() const
{
    return {m_pen, m_comma, m_header, m_unix, m_output, m_force};
}

ExportOptions ExportCommand::read(Arguments& arguments) const
{
    ExportOptions result;
    result.pen = readPen(arguments);
    result.format = {arguments.isSet(m_header), arguments.isSet(m_comma), arguments.isSet(m_unix)};
    result.force = arguments.isSet(m_force);
    result.json = arguments.common().json;
    result.jobs = arguments.common().jobs;
    readFiles(arguments, result);
    refuseClashes(result.files, tr("The text"), arguments);
    if (result.json && streams(result.files))
        arguments.refuse(tr("--json prints to standard output; no text can go there beside it."));
    return result;
}

int ExportCommand::readPen(Arguments& arguments) const
{
    const QString text = arguments.text(m_pen);
    if (text == u"all"_s)
        return TextStore::kAllPens;
    bool isWhole = false;
    const int number = text.toInt(&isWhole);
    if (!isWhole || number < 1 || number > TextStore::kPens)
        arguments.refuse(m_pen, tr("a pen from 1 to 10 or all"));
    return number - 1;
}

void ExportCommand::readFiles(Arguments& arguments, ExportOptions& options) const
{
    const OutputFile output = arguments.output(m_output);
    const QStringList plots = arguments.files();
    const bool toStream = output.isNamed() && output.isStandardOutput();
    if (toStream && plots.size() > 1)
        arguments.refuse(tr("--output %1 takes one plot, not %2.").arg(output.name()).arg(plots.size()));
    for (const QString& plot : plots) {
        const bool isInput = plot == "-"_L1;
        if (isInput && output.isNamed() && !toStream)
            arguments.refuse(tr("A plot from standard input has no name for a file in %1.").arg(output.name()));
        options.files.push_back({plot, isInput    ? OutputFile(plot)
                                       : toStream ? output
                                                  : besidePlot(plot, output.name(), u"txt"_s)});
    }
}

ExitCode ExportCommand::run(Arguments& arguments, Console& console)
{
    const ExportOptions options = read(arguments);
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    return exportPlots(options, console);
}

} // namespace cli
