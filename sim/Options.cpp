// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/Options.h"

#include "sim/protocol/SerialNumber.h"
#include "values/Conversions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>

#include <vector>

namespace sim {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::Options", text);
}

using Apply = Outcome (*)(Options& options, const QString& value);

struct Declaration
{
    const char* name;
    const char* valueName; ///< none for a switch
    const char* explanation;
    Apply apply;
};

Outcome wrong(const char* expected, const QString& value)
{
    return Outcome::failure(tr(expected).arg(value));
}

std::optional<double> numberWithin(const QString& value, double low, double high)
{
    const std::optional<double> number = values::strictNumber(value);
    return number && *number >= low && *number <= high ? number : std::nullopt;
}

Outcome applyModel(Options& options, const QString& value)
{
    if (value.compare(QLatin1String("T46"), Qt::CaseInsensitive) == 0)
        options.model = Model::T46;
    else if (value.compare(QLatin1String("DT46"), Qt::CaseInsensitive) == 0)
        options.model = Model::DT46;
    else
        return wrong("The model is T46 or DT46, not \"%1\".", value);
    return Outcome::success();
}

Outcome applySerial(Options& options, const QString& value)
{
    if (!isSerialNumber(value.toLatin1()) || value.toLatin1() != value.toUtf8())
        return wrong("\"%1\" is no serial number: it has up to 32 letters, digits, dots, dashes and underscores.",
                     value);
    options.serial = value.toLatin1();
    return Outcome::success();
}

Outcome applyNotOn(Options& options, const QString& value)
{
    if (!value.startsWith(QLatin1String("/dev/")))
        return wrong("Behind --not-on stands a terminal device such as /dev/pts/3, not \"%1\".", value);
    options.notOn = QFile::encodeName(value);
    return Outcome::success();
}

Outcome applyRate(Options& options, const QString& value)
{
    const std::optional<double> number = numberWithin(value, 0, 1e6);
    if (!number || (*number > 0 && *number < 0.01))
        return wrong(
            "Behind --rate stands the number of points a second, from 0.01 to 1000000, or 0 for the pace of a real "
            "instrument, not \"%1\".",
            value);
    options.pace = *number == 0 ? Pace() : Pace{Pace::Kind::Rate, *number};
    return Outcome::success();
}

Outcome applySeed(Options& options, const QString& value)
{
    bool ok = false;
    options.seed = value.toULongLong(&ok);
    return ok ? Outcome::success() : wrong("Behind --seed stands a whole number of 0 or more, not \"%1\".", value);
}

Outcome applyFirmware(Options& options, const QString& value)
{
    const QStringList parts = value.split(QLatin1Char('.'));
    bool majorOk = false, minorOk = false;
    if (parts.size() == 2) {
        options.firmwareMajor = parts[0].toInt(&majorOk);
        options.firmwareMinor = parts[1].toInt(&minorOk);
    }
    if (!majorOk || !minorOk || options.firmwareMajor < 0 || options.firmwareMinor < 0)
        return wrong("Behind --firmware stands a version such as 1.28, not \"%1\".", value);
    return Outcome::success();
}

Outcome applyIdleLevels(Options& options, const QString& value)
{
    const std::optional<double> number = numberWithin(value, 0, 100);
    if (!number)
        return wrong("Behind --idle-levels stands a number from 0 to 100, not \"%1\".", value);
    options.idleLevelsPerSecond = *number;
    return Outcome::success();
}

Outcome applyNoise(Options& options, const QString& value)
{
    options.noise = numberWithin(value, 0, 1000);
    return options.noise ? Outcome::success()
                         : wrong("Behind --noise stands a number from 0 to 1000, not \"%1\".", value);
}

const std::vector<Declaration>& declarations()
{
    static const std::vector<Declaration> table{
        {"model", "T46|DT46", QT_TRANSLATE_NOOP("sim::Options", "Which instrument to be. Default: T46."), applyModel},
        {"serial", "SERIAL",
         QT_TRANSLATE_NOOP("sim::Options", "Serial number. Default: the first free one, such as T46-0001."),
         applySerial},
        {"not-on", "DEVICE",
         QT_TRANSLATE_NOOP("sim::Options",
                           "Come up on another terminal than this one, as an instrument that was plugged "
                           "into another socket."),
         applyNotOn},
        {"part", "NAME|FILE",
         QT_TRANSLATE_NOOP("sim::Options", "The part in the jig: a shipped one or a JSON file. Default: langevin40k."),
         [](Options& options, const QString& value) {
             options.part = value;
             return Outcome::success();
         }},
        {"list-parts", nullptr, QT_TRANSLATE_NOOP("sim::Options", "List the shipped parts and end."),
         [](Options& options, const QString&) {
             options.listParts = true;
             return Outcome::success();
         }},
        {"replay", "FILE",
         QT_TRANSLATE_NOOP(
             "sim::Options",
             "Instead of a part: a table of measured points (CSV: frequency, modulus, phase), or a recorded link log."),
         [](Options& options, const QString& value) {
             options.replay = value;
             return Outcome::success();
         }},
        {"rate", "POINTS",
         QT_TRANSLATE_NOOP(
             "sim::Options",
             "Measure that many points a second, whatever the host sets; 0 for the pace of a real instrument."),
         applyRate},
        {"fast", nullptr, QT_TRANSLATE_NOOP("sim::Options", "Measure as fast as the link carries."),
         [](Options& options, const QString&) {
             options.pace = {Pace::Kind::Fast, 0};
             return Outcome::success();
         }},
        {"seed", "NUMBER",
         QT_TRANSLATE_NOOP("sim::Options", "Fixes the noise, the faults and the temper of this instrument, so that a "
                                           "run can be had again. Default: 1."),
         applySeed},
        {"noise", "FACTOR",
         QT_TRANSLATE_NOOP("sim::Options",
                           "Noise, times that of a good instrument; 0 for none. Default: 1, with a table 0."),
         applyNoise},
        {"fault", "KIND[:N],...",
         QT_TRANSLATE_NOOP("sim::Options",
                           "Misbehave, on average once in N frames. May be given several times; see below."),
         [](Options& options, const QString& value) { return options.faults.add(value); }},
        {"memory", "FILE",
         QT_TRANSLATE_NOOP(
             "sim::Options",
             "Where settings, calibration, script and firmware are kept. Default: a file for each serial number in "
             "~/.local/state/marrowick/instruments."),
         [](Options& options, const QString& value) {
             options.memory = value;
             return Outcome::success();
         }},
        {"no-memory", nullptr, QT_TRANSLATE_NOOP("sim::Options", "Begin as a new instrument and keep nothing."),
         [](Options& options, const QString&) {
             options.memory = QString();
             return Outcome::success();
         }},
        {"script-frames", "FILE",
         QT_TRANSLATE_NOOP("sim::Options",
                           "What a script does when it is run: script actions, commands and pauses, one a line."),
         [](Options& options, const QString& value) {
             options.scriptFrames = value;
             return Outcome::success();
         }},
        {"idle-levels", "N",
         QT_TRANSLATE_NOOP("sim::Options", "Level frames a second between tests, 0 for none. Default: 2."),
         applyIdleLevels},
        {"firmware", "M.m",
         QT_TRANSLATE_NOOP("sim::Options", "Firmware version to report. Default: the version of this program."),
         applyFirmware},
        {"trusted-keys", "FOLDER",
         QT_TRANSLATE_NOOP("sim::Options", "Public keys whose firmware the instrument takes. Default: "
                                           "$MARROWICK_TRUSTED_KEYS, or /etc/marrowick/trusted-keys."),
         [](Options& options, const QString& value) {
             options.trustedKeys = value;
             return Outcome::success();
         }},
        {"status", nullptr,
         QT_TRANSLATE_NOOP("sim::Options", "Say what goes on, on standard error, even when that is no terminal."),
         [](Options& options, const QString&) {
             options.status = true;
             return Outcome::success();
         }},
        {"version", nullptr, QT_TRANSLATE_NOOP("sim::Options", "Print the version and end."),
         [](Options& options, const QString&) {
             options.version = true;
             return Outcome::success();
         }},
        {"help", nullptr, QT_TRANSLATE_NOOP("sim::Options", "Print this and end."),
         [](Options& options, const QString&) {
             options.help = true;
             return Outcome::success();
         }},
    };
    return table;
}

} // namespace

ValueOr<Options> Options::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    for (const Declaration& declared : declarations()) {
        QStringList names{QLatin1String(declared.name)};
        if (names.first() == QLatin1String("help"))
            names.append(QStringLiteral("h"));
        QCommandLineOption option(names);
        if (declared.valueName)
            option.setValueName(QLatin1String(declared.valueName));
        parser.addOption(option);
    }
    // The parser takes the first entry for the program.
    if (!parser.parse(QStringList(QStringLiteral("marrowick-sim")) + arguments))
        return Outcome::failure(tr("%1 See marrowick-sim --help.").arg(parser.errorText()));
    if (!parser.positionalArguments().isEmpty())
        return Outcome::failure(
            tr("\"%1\" is no option. See marrowick-sim --help.").arg(parser.positionalArguments().first()));

    Options options;
    options.firmwareMajor = MG_VERSION_MAJOR;
    options.firmwareMinor = MG_VERSION_MINOR;
    for (const Declaration& declared : declarations()) {
        const QString name = QLatin1String(declared.name);
        if (!parser.isSet(name))
            continue;
        const QStringList given = declared.valueName ? parser.values(name) : QStringList(QString());
        for (const QString& value : given) {
            if (const Outcome applied = declared.apply(options, value); !applied)
                return applied;
        }
    }
    if (parser.isSet(QStringLiteral("rate")) && parser.isSet(QStringLiteral("fast")))
        return Outcome::failure(tr("Choose one of --rate and --fast."));
    if (parser.isSet(QStringLiteral("part")) && parser.isSet(QStringLiteral("replay")))
        return Outcome::failure(tr("Choose one of --part and --replay."));
    if (parser.isSet(QStringLiteral("memory")) && parser.isSet(QStringLiteral("no-memory")))
        return Outcome::failure(tr("Choose one of --memory and --no-memory."));
    return options;
}

QString Options::helpText()
{
    QString text = tr("Usage: marrowick-sim [options]\n"
                      "\n"
                      "A simulated impedance, amplitude and phase analyser on a pseudo-terminal. It\n"
                      "appears in the host's list of devices under its serial number, measures a\n"
                      "model of a real part, and can be told to misbehave. It runs until Ctrl+C.\n"
                      "\n"
                      "Options:\n");
    constexpr int kColumn = 24;
    constexpr int kWidth = 78;
    const auto entry = [&text](const QString& head, const QString& explanation) {
        QString line = QLatin1String("  ") + head;
        if (line.size() >= kColumn) {
            text += line + QLatin1Char('\n');
            line.clear();
        }
        line = line.leftJustified(kColumn);
        for (const QString& word : explanation.split(QLatin1Char(' '))) {
            if (line.size() + word.size() + 1 > kWidth) {
                text += line.trimmed().isEmpty() ? QString() : line + QLatin1Char('\n');
                line = QString(kColumn, QLatin1Char(' '));
            }
            line += (line.size() > kColumn ? QLatin1String(" ") : QLatin1String("")) + word;
        }
        text += line + QLatin1Char('\n');
    };
    for (const Declaration& declared : declarations()) {
        QString head = QLatin1String("--") + QLatin1String(declared.name);
        if (declared.valueName)
            head += QLatin1Char(' ') + QLatin1String(declared.valueName);
        entry(head, tr(declared.explanation));
    }
    text += QLatin1Char('\n') + tr("Faults:") + QLatin1Char('\n');
    const QStringList names = FaultPlan::names();
    const QStringList explanations = FaultPlan::explanations();
    for (qsizetype i = 0; i < names.size(); ++i)
        entry(names[i], explanations[i]);
    text += QLatin1Char('\n') + tr("Examples:\n"
                                   "  marrowick-sim                          a T46 with a 40 kHz transducer\n"
                                   "  marrowick-sim --part fork32k --fast    a tuning fork, measured in a flash\n"
                                   "  marrowick-sim --fault split,lost:20    a bad cable\n"
                                   "  marrowick-sim --replay measured.csv    a part that somebody has measured\n");
    return text;
}

} // namespace sim
