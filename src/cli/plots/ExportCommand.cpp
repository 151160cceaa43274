// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/ExportCommand.h"

#include "cli/Jobs.h"
#include "cli/StandardStreams.h"
#include "cli/plots/Workspace.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

/// What became of one plot.
struct Exported
{
    QString plot, file;
    int points = 0;
    QString problem;     ///< empty: the text was written
    QStringList remarks; ///< of the engine
};

Outcome checkText(const OutputFile& text, bool force)
{
    if (!text.isStandardOutput() && !force && QFileInfo::exists(text.name()))
        return Outcome::failure(tr("%1 is there already; --force replaces it.").arg(text.name()));
    return text.check();
}

Exported exported(const ExportOptions::File& file, const ExportOptions& options)
{
    Exported result{file.plot, file.text.name(), 0, {}, {}};
    if (const Outcome writable = checkText(file.text, options.force); !writable) {
        result.problem = writable.sentence();
        return result;
    }
    ConsoleMessages messages([&result](const QString& sentence) { result.remarks += sentence; });
    Workspace workspace(messages);
    const ValueOr<PenDocument*> document = workspace.openPlot(file.plot);
    if (!document) {
        const QString sentence = document.sentence();
        result.problem = sentence.contains(file.plot) ? sentence : file.plot + u": "_s + sentence;
        return result;
    }
    if (document.value()->pgiTestType() == PenDocument::NoTest) {
        result.problem = tr("%1: the plot is of no known type; there is nothing to export.").arg(file.plot);
        return result;
    }
    TextStore store;
    TextExport::collect(store, *document.value(), file.text.name(), options.pen, options.format);
    result.points = store.points(options.pen);
    if (const Outcome written = file.text.write(store.text(options.pen)); !written)
        result.problem = written.sentence();
    return result;
}

OutputFile besidePlot(const QString& plot, const QString& folder)
{
    const QFileInfo info(plot);
    const QString base = info.completeBaseName();
    const QString name = (base.isEmpty() ? info.fileName() : base) + u".txt"_s;
    // As the user wrote it, for the messages.
    return OutputFile(folder.isEmpty() ? plot.chopped(info.fileName().size()) + name : QDir(folder).filePath(name));
}

} // namespace

bool ExportOptions::streams() const
{
    return std::ranges::any_of(files, [](const File& file) { return file.text.isStandardOutput(); });
}

ExitCode exportPlots(const ExportOptions& options, Console& console)
{
    ExitCode code = ExitCode::Done;
    QJsonArray exports;
    const auto deliver = [&](std::size_t, const Exported& plot) {
        for (const QString& remark : plot.remarks)
            console.problem(remark);
        if (!plot.problem.isEmpty())
            code = console.failed(ExitCode::FileError, plot.problem);
        else if (options.json)
            exports.append(QJsonObject{{u"plot"_s, plot.plot}, {u"file"_s, plot.file}, {u"points"_s, plot.points}});
        else if (!options.streams())
            console.result(tr("%1: %2 points").arg(plot.file).arg(plot.points));
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
    refuseClashes(result, arguments);
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
                                                  : besidePlot(plot, output.name())});
    }
}

void ExportCommand::refuseClashes(const ExportOptions& options, Arguments& arguments)
{
    QHash<QString, QString> plots, texts; // by what they are, in place of comparing each with each
    for (const ExportOptions::File& file : options.files) {
        if (file.plot != "-"_L1)
            plots.insert(OutputFile(file.plot).identity(), file.plot);
    }
    for (const ExportOptions::File& file : options.files) {
        const QString identity = file.text.identity();
        if (identity.isEmpty())
            continue;
        if (plots.contains(identity))
            arguments.refuse(tr("The text of %1 would replace the plot %2.").arg(file.plot, plots.value(identity)));
        if (texts.contains(identity))
            arguments.refuse(
                tr("%1 and %2 both want to write %3.").arg(texts.value(identity), file.plot, file.text.name()));
        texts.insert(identity, file.plot);
    }
    if (options.json && options.streams())
        arguments.refuse(tr("--json prints to standard output; no text can go there beside it."));
}

ExitCode ExportCommand::run(Arguments& arguments, Console& console)
{
    const ExportOptions options = read(arguments);
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    return exportPlots(options, console);
}

} // namespace cli
