// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "program/MainModule.h"
#include "values/Conversions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>

#include <array>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

constexpr int kLargestPicture = 16384;
const QStringList kPictureSuffixes = {u"png"_s, u"jpg"_s, u"jpeg"_s, u"bmp"_s, u"svg"_s, u"pdf"_s};

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

// Every option stands here once; parsing, help and errors derive from it.
struct Options
{
    QCommandLineOption help{{u"h"_s, u"help"_s}, tr("Shows this help.")};
    QCommandLineOption json{u"json"_s, tr("Prints the results as one JSON object.")};

    QCommandLineOption device{
        u"device"_s, tr("Serial number, or path of a terminal device (the first instrument found)."), u"serial|path"_s};
    QCommandLineOption type{u"type"_s, tr("amplitude, impedance or reactance (impedance)."), u"type"_s, u"impedance"_s};
    QCommandLineOption from{u"from"_s, tr("Lowest frequency in Hz; 42k, 4k7 and 2.2M are understood (1k)."),
                            u"frequency"_s, u"1k"_s};
    QCommandLineOption to{u"to"_s, tr("Highest frequency (1M)."), u"frequency"_s, u"1M"_s};
    QCommandLineOption points{u"points"_s, tr("Points of the sweep, 2 to 1024 (100)."), u"count"_s, u"100"_s};
    QCommandLineOption period{u"period"_s, tr("Time a point in milliseconds, 0 to 32767 (0: as fast as it goes)."),
                              u"ms"_s, u"0"_s};
    QCommandLineOption attenuation{u"attenuation"_s, tr("Attenuation of the output in dB (0)."), u"dB"_s, u"0"_s};
    QCommandLineOption direction{u"direction"_s, tr("up, down or alternate (up)."), u"direction"_s, u"up"_s};
    QCommandLineOption noPhase{u"no-phase"_s, tr("Does not measure the phase; a reactance sweep always does.")};
    QCommandLineOption linear{u"linear"_s, tr("Spaces the frequencies evenly instead of logarithmically.")};
    QCommandLineOption repeat{u"repeat"_s, tr("Sweeps to run, 1 to 10, each into a pen of its own (1)."), u"count"_s,
                              u"1"_s};
    QCommandLineOption output{u"output"_s, tr("Writes a plot file, or a table when the name ends in .csv."), u"file"_s};
    QCommandLineOption csv{u"csv"_s, tr("Writes the points as a table."), u"file"_s};
    QCommandLineOption picture{
        u"picture"_s, tr("Draws the graph into a picture; its name tells the kind: .png, .jpg, .bmp, .svg or .pdf."),
        u"file"_s};
    QCommandLineOption pictureSize{u"picture-size"_s, tr("Size of the picture in pixels (1280x800)."),
                                   u"width x height"_s, u"1280x800"_s};
    QCommandLineOption linkLog{u"link-log"_s, tr("Logs everything that passes the link."), u"file"_s};
    QCommandLineOption timeout{u"timeout"_s, tr("Stops after that many seconds (0: no limit)."), u"seconds"_s, u"0"_s};
    QCommandLineOption quiet{{u"q"_s, u"quiet"_s}, tr("Shows no progress.")};

    QCommandLineOption pointsOfPen{
        u"points"_s, tr("Prints the points of that pen, 1 to 10, as a table instead; takes one file."), u"pen"_s};

    QList<QCommandLineOption> ofDevices() const { return {json, help}; }
    QList<QCommandLineOption> ofShow() const { return {pointsOfPen, json, help}; }
    QList<QCommandLineOption> ofSweep() const
    {
        return {device, type,   from, to,      points,      period,  attenuation, direction, noPhase, linear,
                repeat, output, csv,  picture, pictureSize, linkLog, timeout,     quiet,     json,    help};
    }
};

QString exitCodes()
{
    return tr("Exit codes: 0 done, 1 usage, 2 no instrument, 3 link lost in mid-sweep, 4 refused, 5 file not written\n"
              "or not read, 6 stopped before the last point, 7 the instrument swept something else than asked.\n");
}

QString overview()
{
    return tr("Usage: marrowick COMMAND [OPTION...]\n\n"
              "Commands:\n"
              "  devices  lists the instruments found\n"
              "  sweep    runs a sweep and writes what was measured\n"
              "  show     prints what plot files hold\n\n"
              "marrowick COMMAND --help tells the options of a command; --version tells the version.\n\n") +
           exitCodes();
}

Outcome wrong(const QCommandLineOption& option, const QString& value, const QString& wanted)
{
    return Outcome::failure(tr("--%1 needs %2, not \"%3\".").arg(option.names().constLast(), wanted, value));
}

/// Reads the values of "sweep" one by one; the first that does not fit ends it.
class SweepReader
{
public:
    SweepReader(const QCommandLineParser& parser, const Options& options)
        : m_parser(parser)
        , m_options(options)
    {}

    ValueOr<SweepOptions> read()
    {
        const Options& o = m_options;
        SweepOptions result;
        result.device = m_parser.value(o.device);
        result.type = choice(o.type, {u"amplitude"_s, u"impedance"_s, u"reactance"_s}, 1);
        result.from = frequency(o.from);
        result.to = frequency(o.to);
        result.points = static_cast<std::int16_t>(whole(o.points, 2, 1024));
        result.period = static_cast<std::int16_t>(whole(o.period, 0, 32767));
        result.attenuation = number(o.attenuation, tr("a number of dB from 0"));
        result.direction =
            static_cast<SweepOptions::Direction>(choice(o.direction, {u"up"_s, u"down"_s, u"alternate"_s}, 0));
        result.phase = !m_parser.isSet(o.noPhase);
        result.linear = m_parser.isSet(o.linear);
        result.repeat = whole(o.repeat, 1, 10);
        result.output = fileName(o.output);
        result.csv = fileName(o.csv);
        result.picture = fileName(o.picture);
        if (!result.picture.isEmpty() && pictureSuffix(result.picture).isEmpty())
            refuse(o.picture, tr("a name that ends in one of .%1").arg(kPictureSuffixes.join(u", ."_s)));
        result.pictureSize = size(o.pictureSize);
        result.linkLog = fileName(o.linkLog);
        result.timeout = number(o.timeout, tr("a number of seconds from 0"));
        result.quiet = m_parser.isSet(o.quiet);
        result.json = m_parser.isSet(o.json);
        if (m_outcome && !(result.from < result.to))
            m_outcome = Outcome::failure(tr("--from must be below --to; --direction down sweeps downward."));
        if (!m_outcome)
            return m_outcome;
        return result;
    }

private:
    void refuse(const QCommandLineOption& option, const QString& wanted)
    {
        if (m_outcome)
            m_outcome = wrong(option, m_parser.value(option), wanted);
    }

    std::int16_t choice(const QCommandLineOption& option, const QStringList& choices, int first)
    {
        const qsizetype index = choices.indexOf(m_parser.value(option));
        if (index < 0)
            refuse(option, tr("one of %1").arg(choices.join(u", "_s)));
        return static_cast<std::int16_t>(index + first);
    }

    double frequency(const QCommandLineOption& option)
    {
        const std::optional<double> value = frequencyOf(m_parser.value(option));
        if (!value || *value <= 0)
            refuse(option, tr("a frequency above 0"));
        return value.value_or(0);
    }

    double number(const QCommandLineOption& option, const QString& wanted)
    {
        const std::optional<double> value = values::strictNumber(m_parser.value(option));
        if (!value || *value < 0)
            refuse(option, wanted);
        return value.value_or(0);
    }

    int whole(const QCommandLineOption& option, int low, int high)
    {
        bool isWhole = false;
        const int value = m_parser.value(option).toInt(&isWhole);
        if (!isWhole || value < low || value > high)
            refuse(option, tr("a whole number from %1 to %2").arg(low).arg(high));
        return value;
    }

    QString fileName(const QCommandLineOption& option)
    {
        if (m_parser.isSet(option) && m_parser.value(option).isEmpty())
            refuse(option, tr("a file name"));
        return m_parser.value(option);
    }

    QSize size(const QCommandLineOption& option)
    {
        static const QRegularExpression pattern(u"^([0-9]{1,5})x([0-9]{1,5})$"_s);
        const QRegularExpressionMatch match = pattern.match(m_parser.value(option));
        const QSize result(match.captured(1).toInt(), match.captured(2).toInt());
        if (!match.hasMatch() || qMin(result.width(), result.height()) < 100 ||
            qMax(result.width(), result.height()) > kLargestPicture)
            refuse(option, tr("a width and a height from 100 to %1, as 1280x800").arg(kLargestPicture));
        return result;
    }

    const QCommandLineParser& m_parser;
    const Options& m_options;
    Outcome m_outcome = Outcome::success();
};

ValueOr<ShowOptions> readShow(const QCommandLineParser& parser, const Options& options)
{
    ShowOptions result{parser.positionalArguments(), 0, parser.isSet(options.json)};
    if (result.files.isEmpty())
        return Outcome::failure(tr("A plot file is missing."));
    if (!parser.isSet(options.pointsOfPen))
        return result;
    const QString pen = parser.value(options.pointsOfPen);
    bool isWhole = false;
    result.pointsOfPen = pen.toInt(&isWhole);
    if (!isWhole || result.pointsOfPen < 1 || result.pointsOfPen > 10)
        return wrong(options.pointsOfPen, pen, tr("a pen from 1 to 10"));
    if (result.json)
        return Outcome::failure(tr("--points prints a table; --json has no place beside it."));
    if (result.files.size() > 1)
        return Outcome::failure(tr("--points takes one plot file, not %1.").arg(result.files.size()));
    return result;
}

struct Command
{
    QLatin1String name;
    QList<QCommandLineOption> options;
    QString description;
};

std::optional<Command> commandOf(const QString& name, const Options& options)
{
    const std::array<Command, 3> commands = {{
        {"devices"_L1, options.ofDevices(), tr("Lists the instruments found, one a line: serial number and place.")},
        {"sweep"_L1, options.ofSweep(), tr("Runs a sweep and prints one line of results for each.")},
        {"show"_L1, options.ofShow(), tr("Prints what plot files hold: type, title, origin, view and pens.")},
    }};
    for (const Command& command : commands) {
        if (command.name == name)
            return command;
    }
    return std::nullopt;
}

} // namespace

std::optional<double> frequencyOf(const QString& text)
{
    static const QRegularExpression suffixed(u"^(?=.*[0-9])[0-9]*(?:\\.[0-9]*)?[kKMgGtT]$|^[0-9]+[kKMgGtT][0-9]+$"_s);
    QString number = text.trimmed();
    if (number.endsWith("Hz"_L1))
        number = number.chopped(2).remove(u' ');
    if (suffixed.match(number).hasMatch())
        number = MainModule::ParseEngineeringValue(number);
    return values::strictNumber(number);
}

QString pictureSuffix(const QString& fileName)
{
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    return kPictureSuffixes.contains(suffix) ? suffix : QString();
}

ValueOr<CommandLine> readCommandLine(const QStringList& arguments)
{
    CommandLine result;
    const QString command = arguments.value(1);
    if (command == "--help"_L1 || command == "-h"_L1 || command == "help"_L1) {
        result.text = overview();
        return result;
    }
    if (command == "--version"_L1 || command == "-v"_L1) {
        result.text = QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion() + u'\n';
        return result;
    }
    if (command.isEmpty())
        return Outcome::failure(tr("A command is missing; marrowick --help lists them."));
    const Options options;
    const std::optional<Command> known = commandOf(command, options);
    if (!known)
        return Outcome::failure(tr("\"%1\" is no command; marrowick --help lists them.").arg(command));

    const bool isShow = known->name == "show"_L1;
    QCommandLineParser parser;
    parser.addOptions(known->options);
    parser.setApplicationDescription(known->description);
    if (isShow)
        parser.addPositionalArgument(u"file"_s, tr("Plot files."), u"FILE..."_s);
    QStringList rest = arguments;
    rest.removeAt(1);
    rest[0] += u' ' + command;
    if (!parser.parse(rest))
        return Outcome::failure(parser.errorText());
    if (parser.isSet(options.help)) {
        QString help = parser.helpText();
        help.replace(QCoreApplication::arguments().constFirst(), u"marrowick "_s + command);
        result.text = help + u'\n' + exitCodes();
        return result;
    }
    if (isShow) {
        ValueOr<ShowOptions> show = readShow(parser, options);
        if (!show)
            return Outcome::failure(show.sentence());
        result.show = show.value();
        return result;
    }
    if (!parser.positionalArguments().isEmpty())
        return Outcome::failure(
            tr("\"%1\" has no place here; options begin with \"--\".").arg(parser.positionalArguments().constFirst()));
    if (known->name == "devices"_L1) {
        result.devices = DevicesOptions{parser.isSet(options.json)};
        return result;
    }
    ValueOr<SweepOptions> sweep = SweepReader(parser, options).read();
    if (!sweep)
        return Outcome::failure(sweep.sentence());
    result.sweep = sweep.value();
    return result;
}

} // namespace cli
