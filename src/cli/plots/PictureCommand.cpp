// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/PictureCommand.h"

#include "cli/Jobs.h"
#include "cli/plots/DrawProgram.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

} // namespace

ExitCode drawPictures(const PictureOptions& options, Console& console)
{
    ExitCode code = ExitCode::Done;
    QJsonArray pictures;
    const bool streaming = streams(options.files);
    const auto deliver = [&](std::size_t index, const MadeOutput& picture) {
        const PlotOutput& output = options.files[index];
        for (const QString& remark : picture.remarks)
            console.problem(remark);
        if (!picture.problem.isEmpty())
            code = console.failed(ExitCode::FileError, picture.problem);
        else if (options.json)
            pictures.append(QJsonObject{{u"plot"_s, output.plot}, {u"file"_s, output.file.name()}});
        else if (!streaming)
            console.result(output.file.name());
    };
    const auto work = [&options](std::size_t index) {
        const OutputFile& file = options.files[index].file;
        const QString format = file.isStandardOutput() ? options.format : QString();
        return makeOutput(options.files[index], options.force, [&](PenDocument& document) {
            return DrawProgram::draw(document.peGraph(), file, options.size, format);
        });
    };
    runJobs(options.jobs, options.files.size(), work, deliver);
    if (options.json)
        console.result(QJsonObject{{u"pictures"_s, pictures}});
    return code;
}

PictureCommand::PictureCommand()
    : m_output(
          u"output"_s,
          tr("The picture, whose name tells its kind; or a folder for the pictures of several plots; - is standard "
             "output."),
          u"file"_s)
    , m_format(u"format"_s, tr("png, svg, pdf, jpg, bmp or wmf, where no name tells (png)."), u"format"_s, u"png"_s)
    , m_size(u"size"_s, tr("Size of each picture in pixels (1280x800)."), u"width x height"_s, u"1280x800"_s)
    , m_force(u"force"_s, tr("Replaces pictures that are there already."))
{}

QString PictureCommand::name() const
{
    return u"picture"_s;
}

QString PictureCommand::summary() const
{
    return tr("draws plot files into pictures");
}

QString PictureCommand::description() const
{
    return tr(
        "Draws each plot as it was last shown, on light paper, into a picture of its name, NAME.png, beside it. A "
        "plot from standard input goes to standard output.");
}

QList<QCommandLineOption> PictureCommand::options() const
{
    return {m_output, m_format, m_size, m_force};
}

PictureOptions PictureCommand::read(Arguments& arguments) const
{
    PictureOptions result;
    result.size = arguments.size(m_size);
    result.force = arguments.isSet(m_force);
    result.json = arguments.common().json;
    result.jobs = arguments.common().jobs;
    readFiles(arguments, result);
    refuseClashes(result.files, tr("The picture"), arguments);
    if (result.json && streams(result.files))
        arguments.refuse(tr("--json prints to standard output; no picture can go there beside it."));
    return result;
}

void PictureCommand::readFiles(Arguments& arguments, PictureOptions& options) const
{
    const OutputFile output = arguments.output(m_output);
    const QStringList plots = arguments.files();
    const qsizetype chosen = arguments.choice(m_format, DrawProgram::formats());
    if (!arguments.outcome())
        return;
    const QString format = DrawProgram::formats().at(chosen);
    options.format = format;
    const bool isFolder = output.isNamed() && QFileInfo(output.name()).isDir();
    const bool isFile = output.isNamed() && !isFolder;
    if (isFile && plots.size() > 1)
        arguments.refuse(
            tr("--output %1 takes one plot, not %2; a folder takes several.").arg(output.name()).arg(plots.size()));
    if (isFile && !output.isStandardOutput() && DrawProgram::formatOf(output).isEmpty())
        arguments.refuse(m_output,
                         tr("a folder, or a name that ends in one of .%1").arg(DrawProgram::formats().join(u", ."_s)));
    for (const QString& plot : plots) {
        const bool isInput = plot == "-"_L1;
        if (isInput && isFolder)
            arguments.refuse(tr("A plot from standard input has no name for a file in %1.").arg(output.name()));
        options.files.push_back({plot, isFile    ? output
                                       : isInput ? OutputFile(plot)
                                                 : besidePlot(plot, output.name(), format)});
    }
}

ExitCode PictureCommand::run(Arguments& arguments, Console& console)
{
    const PictureOptions options = read(arguments);
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    return drawPictures(options, console);
}

} // namespace cli
