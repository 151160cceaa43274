// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick-draw: draws a plot into a picture, for programs that know no windows. It needs no display.
#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/ExitCode.h"
#include "cli/OutputFile.h"
#include "cli/StandardStreams.h"
#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphPicture.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QLoggingCategory>

#include <array>
#include <memory>

namespace {

using namespace Qt::StringLiterals;
using cli::Arguments;
using cli::Console;
using cli::ExitCode;
using graph::PictureFormat;

struct NamedFormat
{
    const char* name;
    PictureFormat format;
};

constexpr std::array<NamedFormat, 7> kFormats = {{
    {"png", PictureFormat::Png},
    {"jpg", PictureFormat::Jpeg},
    {"jpeg", PictureFormat::Jpeg},
    {"bmp", PictureFormat::Bmp},
    {"wmf", PictureFormat::Wmf},
    {"svg", PictureFormat::Svg},
    {"pdf", PictureFormat::Pdf},
}};

QString tr(const char* text)
{
    return QCoreApplication::translate("draw", text);
}

QStringList formatNames()
{
    QStringList names;
    for (const NamedFormat& format : kFormats)
        names.append(QLatin1String(format.name));
    return names;
}

struct Options
{
    QCommandLineOption output{u"output"_s, tr("The picture; - is standard output."), u"file"_s};
    QCommandLineOption format{u"format"_s, tr("png, jpg, bmp, wmf, svg or pdf (as the name of the picture ends)."),
                              u"format"_s};
    QCommandLineOption size{u"size"_s, tr("Size of the picture in pixels (1280x800)."), u"width x height"_s,
                            u"1280x800"_s};
    QCommandLineOption help{{u"h"_s, u"help"_s}, tr("Shows this help.")};
    QCommandLineOption version{{u"v"_s, u"version"_s}, tr("Tells the version.")};

    QList<QCommandLineOption> all() const { return {output, format, size, help, version}; }
};

struct Request
{
    cli::OutputFile output;
    PictureFormat format = PictureFormat::Png;
    QSize size;
};

Request readRequest(const QCommandLineParser& parser, const Options& options, Arguments& arguments)
{
    Request request;
    request.output = arguments.output(options.output);
    if (!parser.isSet(options.output))
        arguments.refuse(tr("--output is missing; marrowick-draw --help tells more."));
    const bool named = parser.isSet(options.format);
    const QString name = named ? parser.value(options.format) : QFileInfo(request.output.name()).suffix().toLower();
    const qsizetype index = formatNames().indexOf(name);
    if (index >= 0)
        request.format = kFormats[static_cast<std::size_t>(index)].format;
    else if (named)
        arguments.refuse(options.format, tr("one of %1").arg(formatNames().join(u", "_s)));
    else
        arguments.refuse(options.output,
                         tr("a name that ends in one of .%1, or --format").arg(formatNames().join(u", ."_s)));
    request.size = arguments.size(options.size);
    return request;
}

ExitCode draw(const Request& request, Console& console)
{
    if (const Outcome writable = request.output.check(); !writable)
        return console.failed(ExitCode::FileError, writable.sentence());
    const ValueOr<QByteArray> plot = cli::readStandardInput(GraphFile::kLargestFile);
    if (!plot)
        return console.failed(ExitCode::FileError, plot.sentence());
    GraphModel model;
    if (const Outcome loaded = GraphFile::PEload(model, plot.value()); !loaded)
        return console.failed(ExitCode::FileError, loaded.sentence());
    const ValueOr<QByteArray> picture =
        graph::pictureBytes(model, request.format, request.size.width(), request.size.height());
    if (!picture)
        return console.failed(ExitCode::FileError, picture.sentence());
    if (const Outcome written = request.output.write(picture.value()); !written)
        return console.failed(ExitCode::FileError, written.sentence());
    return ExitCode::Done;
}

ExitCode run(const QStringList& words, Console& console)
{
    const Options options;
    QCommandLineParser parser;
    parser.setApplicationDescription(tr("Draws the plot file that comes on standard input into a picture. It is the "
                                        "part of marrowick that draws, and needs no display."));
    parser.addOptions(options.all());
    const bool understood = parser.parse(words);
    if (parser.isSet(options.help) || parser.isSet(options.version)) {
        console.result(parser.isSet(options.help)
                           ? parser.helpText().replace(words.constFirst(), u"marrowick-draw"_s).trimmed()
                           : QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion());
        return console.resultsLost() ? ExitCode::FileError : ExitCode::Done;
    }
    if (!understood)
        return console.failed(ExitCode::Usage, parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return console.failed(ExitCode::Usage, tr("\"%1\" has no place here; the plot comes on standard input.")
                                                   .arg(parser.positionalArguments().constFirst()));
    Arguments arguments(parser);
    const Request request = readRequest(parser, options, arguments);
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    return draw(request, console);
}

} // namespace

int main(int argc, char** argv)
{
    cli::guardStandardStreams();
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("marrowick-draw"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MG_VERSION));

    Console console = Console::ofProgram(QStringLiteral("marrowick-draw"));
    return static_cast<int>(run(QCoreApplication::arguments(), console));
}
