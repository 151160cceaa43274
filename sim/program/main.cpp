// marrowick-sim: the simulated instrument as a program.
#include "sim/DeviceEntry.h"
#include "sim/Instrument.h"
#include "sim/MemoryFile.h"
#include "sim/Options.h"
#include "sim/PartModel.h"
#include "sim/Station.h"
#include "sim/StatusLine.h"

#include <QCoreApplication>
#include <QTextStream>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

enum ExitCode
{
    kSuccess = 0,
    kFailure = 1,
    kUsage = 2
};

int g_endPipe[2] = {-1, -1};

void askToEnd(int)
{
    const char byte = 0;
    // Nothing can be done about a failure here; a full pipe means that the end was asked for before.
    [[maybe_unused]] const ssize_t written = ::write(g_endPipe[1], &byte, 1);
}

bool installSignals()
{
    if (::pipe2(g_endPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return false;
    struct sigaction action = {};
    action.sa_handler = askToEnd;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        ::sigaction(signal, &action, nullptr);
    action.sa_handler = SIG_IGN;
    ::sigaction(SIGPIPE, &action, nullptr);
    return true;
}

int complain(const QString& sentence, ExitCode code)
{
    QTextStream(stderr) << "marrowick-sim: " << sentence << Qt::endl;
    return code;
}

QString tr(const char* text)
{
    return QCoreApplication::translate("marrowick-sim", text);
}

/// The number asked for, or that of the memory, or the first free one of the model.
Outcome claimSerial(const sim::Options& options, const std::optional<sim::KeptMemory>& memory, sim::DeviceEntry& entry)
{
    if (options.serial)
        return entry.claim(*options.serial);
    if (memory)
        return entry.claim(memory->constants.serial);
    constexpr int kHighest = 99;
    const QByteArray model = sim::ModelFacts::of(options.model).name;
    Outcome claimed = Outcome::success();
    for (int number = 1; number <= kHighest; ++number) {
        claimed = entry.claim(model + '-' + QByteArray::number(number).rightJustified(4, '0'));
        if (claimed)
            break;
    }
    return claimed;
}

void listParts(QTextStream& out)
{
    for (const QString& name : sim::PartModel::shippedNames()) {
        const ValueOr<sim::PartModel> part = sim::PartModel::load(name);
        out << name.leftJustified(14) << (part ? part.value().name() : part.sentence()) << '\n';
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("marrowick-sim"));
    QTextStream out(stdout);

    const ValueOr<sim::Options> parsed = sim::Options::parse(QCoreApplication::arguments().mid(1));
    if (!parsed)
        return complain(parsed.sentence(), kUsage);
    const sim::Options& options = parsed.value();
    if (options.help) {
        out << sim::Options::helpText();
        return kSuccess;
    }
    if (options.version) {
        out << "marrowick-sim " MG_VERSION "\n";
        return kSuccess;
    }
    if (options.listParts) {
        listParts(out);
        return kSuccess;
    }

    const ValueOr<sim::PartModel> part = sim::PartModel::load(options.part);
    if (!part)
        return complain(part.sentence(), kUsage);
    if (!installSignals())
        return complain(tr("The signals of the system cannot be caught."), kFailure);

    sim::Instrument::Setup setup;
    if (options.memory && !options.memory->isEmpty()) {
        ValueOr<std::optional<sim::KeptMemory>> kept = sim::MemoryFile(*options.memory).read();
        if (!kept)
            return complain(kept.sentence(), kFailure);
        setup.memory = std::move(kept.value());
    }
    sim::DeviceEntry entry;
    if (const Outcome claimed = claimSerial(options, setup.memory, entry); !claimed)
        return complain(claimed.sentence(), kFailure);
    if (!options.memory) {
        ValueOr<std::optional<sim::KeptMemory>> kept =
            sim::MemoryFile(sim::MemoryFile::defaultFileName(entry.serial())).read();
        if (!kept)
            return complain(kept.sentence(), kFailure);
        setup.memory = std::move(kept.value());
    }
    if (!options.memory || !options.memory->isEmpty())
        setup.keep = [named = options.memory](const sim::KeptMemory& content) {
            // An instrument that has been given another serial number is found again under that one.
            return sim::MemoryFile(named ? *named : sim::MemoryFile::defaultFileName(content.constants.serial))
                .write(content);
        };

    setup.model = options.model;
    setup.serial = entry.serial();
    setup.specimen = std::make_shared<sim::PartModel>(part.value());
    setup.seed = options.seed;
    setup.pace = options.pace;
    setup.idleLevelsPerSecond = options.idleLevelsPerSecond;
    setup.firmwareMajor = options.firmwareMajor;
    setup.firmwareMinor = options.firmwareMinor;
    setup.serialChanging = [&entry](const QByteArray& serial) { return entry.claim(serial); };

    sim::Line line(options.faults, options.seed);
    sim::Instrument instrument(std::move(setup), line);
    sim::StatusLine status(stderr, options.status || ::isatty(STDERR_FILENO) == 1);
    sim::Station station(instrument, line, entry, status);
    if (const Outcome plugged = station.plugIn(); !plugged)
        return complain(plugged.sentence(), kFailure);

    out << tr("%1 with serial number %2 measures: %3\nDevice %4, listed as %5. Ctrl+C ends it.\n")
               .arg(QLatin1String(sim::ModelFacts::of(options.model).name), QString::fromLatin1(entry.serial()),
                    part.value().name(), QString::fromLocal8Bit(station.devicePath()),
                    QString::fromLocal8Bit(entry.linkPath()));
    out.flush();
    if (const Outcome ran = station.run(g_endPipe[0]); !ran)
        return complain(ran.sentence(), kFailure);
    return kSuccess;
}
