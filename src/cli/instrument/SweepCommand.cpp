// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/SweepCommand.h"

#include "cli/StandardStreams.h"
#include "cli/instrument/SweepRun.h"
#include "cli/plots/DrawProgram.h"
#include "document/PenDocument.h"
#include "program/Interrupts.h"

#include <QCoreApplication>

#include <unistd.h>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

} // namespace

bool SweepOptions::streams() const
{
    return output.isStandardOutput() || csv.isStandardOutput() || picture.isStandardOutput();
}

Outcome checkOutputs(const SweepOptions& options)
{
    for (const OutputFile* file : {&options.output, &options.csv, &options.picture}) {
        if (!file->isNamed())
            continue;
        if (Outcome writable = file->check(); !writable)
            return writable;
    }
    if (Outcome readable = checkStream(STDOUT_FILENO, standardOutputName()); !readable)
        return readable;
    return options.picture.isNamed() ? DrawProgram::check() : Outcome::success();
}

SweepCommand::SweepCommand()
    : m_device(u"device"_s, tr("Serial number, or path of a terminal device (the first instrument found)."),
               u"serial|path"_s)
    , m_type(u"type"_s, tr("amplitude, impedance or reactance (impedance)."), u"type"_s, u"impedance"_s)
    , m_from(u"from"_s, tr("Lowest frequency in Hz; 42k, 4k7 and 2.2M are understood (1k)."), u"frequency"_s, u"1k"_s)
    , m_to(u"to"_s, tr("Highest frequency (1M)."), u"frequency"_s, u"1M"_s)
    , m_points(u"points"_s, tr("Points of the sweep, 2 to 1024 (100)."), u"count"_s, u"100"_s)
    , m_period(u"period"_s, tr("Time a point in milliseconds, 0 to 32767 (0: as fast as it goes)."), u"ms"_s, u"0"_s)
    , m_attenuation(u"attenuation"_s, tr("Attenuation of the output in dB (0)."), u"dB"_s, u"0"_s)
    , m_direction(u"direction"_s, tr("up, down or alternate (up)."), u"direction"_s, u"up"_s)
    , m_noPhase(u"no-phase"_s, tr("Does not measure the phase; a reactance sweep always does."))
    , m_linear(u"linear"_s, tr("Spaces the frequencies evenly instead of logarithmically."))
    , m_repeat(u"repeat"_s, tr("Sweeps to run, 1 to 10, each into a pen of its own (1)."), u"count"_s, u"1"_s)
    , m_output(u"output"_s, tr("Writes a plot file, or a table when the name ends in .csv; - is standard output."),
               u"file"_s)
    , m_csv(u"csv"_s, tr("Writes the points as a table; - is standard output."), u"file"_s)
    , m_picture(
          u"picture"_s,
          tr("Draws the graph into a picture; its name tells the kind: .png, .jpg, .bmp, .wmf, .svg or .pdf. - is a "
             ".png on standard output."),
          u"file"_s)
    , m_pictureSize(u"picture-size"_s, tr("Size of the picture in pixels (1280x800)."), u"width x height"_s,
                    u"1280x800"_s)
    , m_linkLog(u"link-log"_s, tr("Logs everything that passes the link."), u"file"_s)
    , m_timeout(u"timeout"_s, tr("Stops after that many seconds (0: no limit)."), u"seconds"_s, u"0"_s)
    , m_analyse(u"analyse"_s, tr("Tells the resonance of each sweep too; not of an amplitude sweep."))
{}

QString SweepCommand::name() const
{
    return u"sweep"_s;
}

QString SweepCommand::summary() const
{
    return tr("runs a sweep and writes what was measured");
}

QString SweepCommand::description() const
{
    return tr("Runs a sweep and prints one line of results for each.");
}

QList<QCommandLineOption> SweepCommand::options() const
{
    return {m_device, m_type,   m_from,   m_to,  m_points,  m_period,      m_attenuation, m_direction, m_noPhase,
            m_linear, m_repeat, m_output, m_csv, m_picture, m_pictureSize, m_linkLog,     m_timeout,   m_analyse};
}

SweepOptions SweepCommand::read(Arguments& arguments) const
{
    SweepOptions result;
    result.device = arguments.text(m_device);
    result.type =
        static_cast<std::int16_t>(1 + arguments.choice(m_type, {u"amplitude"_s, u"impedance"_s, u"reactance"_s}));
    result.from = arguments.frequency(m_from);
    result.to = arguments.frequency(m_to);
    result.points = static_cast<std::int16_t>(arguments.whole(m_points, 2, 1024));
    result.period = static_cast<std::int16_t>(arguments.whole(m_period, 0, 32767));
    result.attenuation = arguments.number(m_attenuation, tr("a number of dB from 0"));
    result.direction =
        static_cast<SweepOptions::Direction>(arguments.choice(m_direction, {u"up"_s, u"down"_s, u"alternate"_s}));
    result.phase = !arguments.isSet(m_noPhase);
    result.linear = arguments.isSet(m_linear);
    result.repeat = arguments.whole(m_repeat, 1, 10);
    result.output = arguments.output(m_output);
    result.csv = arguments.output(m_csv);
    result.picture = arguments.output(m_picture);
    if (result.picture.isNamed() && DrawProgram::formatOf(result.picture).isEmpty())
        arguments.refuse(m_picture, tr("a name that ends in one of .%1").arg(DrawProgram::formats().join(u", ."_s)));
    result.pictureSize = arguments.size(m_pictureSize);
    result.linkLog = arguments.fileName(m_linkLog);
    result.timeout = arguments.number(m_timeout, tr("a number of seconds from 0"));
    result.quiet = arguments.common().quiet;
    result.json = arguments.common().json;
    result.analyse = arguments.isSet(m_analyse);
    if (result.analyse && result.type == PenDocument::Amplitude)
        arguments.refuse(tr("--analyse needs an impedance or reactance sweep."));
    if (result.analyse && result.streams())
        arguments.refuse(tr("--analyse prints to standard output; no file can go there beside it."));
    if (!(result.from < result.to))
        arguments.refuse(tr("--from must be below --to; --direction down sweeps downward."));
    refuseClashes(result, arguments);
    return result;
}

void SweepCommand::refuseClashes(const SweepOptions& options, Arguments& arguments) const
{
    const auto clash = [&arguments](const OutputFile& one, const QCommandLineOption& oneOption, const OutputFile& other,
                                    const QCommandLineOption& otherOption) {
        if (one.isSameAs(other))
            arguments.refuse(tr("--%1 and --%2 both want to write %3.")
                                 .arg(oneOption.names().constLast(), otherOption.names().constLast(),
                                      one.isStandardOutput() ? standardOutputName() : one.name()));
    };
    clash(options.output, m_output, options.csv, m_csv);
    clash(options.output, m_output, options.picture, m_picture);
    clash(options.csv, m_csv, options.picture, m_picture);
    if (options.json && options.streams())
        arguments.refuse(tr("--json prints to standard output; no file can go there beside it."));
}

ExitCode SweepCommand::run(Arguments& arguments, Console& console)
{
    const SweepOptions options = read(arguments);
    if (!arguments.outcome())
        return console.failed(ExitCode::Usage, arguments.outcome().sentence());
    if (const Outcome writable = checkOutputs(options); !writable)
        return console.failed(ExitCode::FileError, writable.sentence());
    SweepRun sweep(options, console);
    Interrupts interrupts;
    QObject::connect(&interrupts, &Interrupts::interrupted, &sweep, &SweepRun::stop);
    return sweep.run();
}

} // namespace cli
