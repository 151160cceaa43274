// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick-sim: the simulated instrument as a program.
#include "sim/Instrument.h"
#include "sim/LogPlayer.h"
#include "sim/MemoryFile.h"
#include "sim/Options.h"
#include "sim/Replay.h"
#include "sim/Station.h"
#include "sim/StatusLine.h"
#include "sim/bench/PartModel.h"
#include "sim/port/DeviceEntry.h"
#include "sim/script/FrameScript.h"

#include <QCoreApplication>
#include <QFile>
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
    // A reader that is gone and a file that may grow no further are told by the call that meets them.
    action.sa_handler = SIG_IGN;
    for (const int signal : {SIGPIPE, SIGXFSZ})
        ::sigaction(signal, &action, nullptr);
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

void listParts(QTextStream& out)
{
    for (const QString& name : sim::PartModel::shippedNames()) {
        const ValueOr<sim::PartModel> part = sim::PartModel::load(name);
        out << name.leftJustified(14) << (part ? part.value().name() : part.sentence()) << '\n';
    }
}

/// The part or the table that the options name; the setup of a link log's replay is left alone.
Outcome chooseSpecimen(const sim::Options& options, const sim::Replay& replay, sim::Instrument::Setup& setup)
{
    setup.noise = options.noise.value_or(replay.table ? 0 : 1);
    setup.specimen = replay.table;
    if (setup.specimen)
        return Outcome::success();
    const ValueOr<sim::PartModel> part = sim::PartModel::load(options.part);
    if (!part)
        return Outcome::failure(part.sentence());
    setup.specimen = std::make_shared<sim::PartModel>(part.value());
    return Outcome::success();
}

Outcome chooseScript(const QString& fileName, sim::Instrument::Setup& setup)
{
    if (fileName.isEmpty())
        return Outcome::success();
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return Outcome::failure(tr("The script frames \"%1\" cannot be read: %2.").arg(fileName, file.errorString()));
    const ValueOr<sim::FrameScript> script = sim::FrameScript::fromText(file.readAll());
    if (!script)
        return Outcome::failure(tr("\"%1\": %2").arg(fileName, script.sentence()));
    setup.scriptRunner = std::make_unique<sim::FrameScript>(script.value());
    return Outcome::success();
}

Outcome recall(const sim::MemoryFile& file, sim::Instrument::Setup& setup, sim::StatusLine& status)
{
    ValueOr<sim::MemoryFile::Content> content = file.recall();
    if (!content)
        return Outcome::failure(content.sentence());
    if (!content.value().notice.isEmpty())
        status.say(content.value().notice);
    setup.memory = std::move(content.value().memory);
    if (setup.memory && setup.memory->model != setup.model)
        return Outcome::failure(
            tr("\"%1\" is the memory of a %2. Choose --model %2, or another serial number.")
                .arg(file.fileName(), QLatin1String(sim::ModelFacts::of(setup.memory->model).name)));
    return Outcome::success();
}

/// The number asked for, or else the one that the memory or the recording tells, or the first free one of the model.
Outcome claimSerial(const sim::Options& options, const QByteArray& known, sim::DeviceEntry& entry)
{
    if (options.serial)
        return entry.claim(*options.serial);
    if (!known.isEmpty())
        return entry.claim(known);
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

int serve(sim::Device& device, sim::Line& line, sim::DeviceEntry& entry, sim::StatusLine& status,
          const QString& introduction)
{
    sim::Station station(device, line, entry, status);
    if (const Outcome plugged = station.plugIn(); !plugged)
        return complain(plugged.sentence(), kFailure);
    QTextStream out(stdout);
    out << introduction
        << tr("\nDevice %1, listed as %2. Ctrl+C ends it.\n")
               .arg(QString::fromLocal8Bit(station.devicePath()), QString::fromLocal8Bit(entry.linkPath()));
    out.flush();
    const Outcome ran = station.run(g_endPipe[0]);
    return ran ? kSuccess : complain(ran.sentence(), kFailure);
}

int playLog(const sim::Options& options, sim::Replay& replay, sim::StatusLine& status)
{
    sim::DeviceEntry entry;
    if (const Outcome claimed = claimSerial(options, sim::LogPlayer::recordedSerial(replay.log), entry); !claimed)
        return complain(claimed.sentence(), kFailure);
    sim::Line line(options.faults, options.seed);
    const auto entries = replay.log.size();
    sim::LogPlayer player(std::move(replay.log), entry.serial(), options.pace, line);
    return serve(player, line, entry, status,
                 tr("Recording of an instrument, %1 entries, as serial number %2.")
                     .arg(entries)
                     .arg(QString::fromLatin1(entry.serial())));
}

int runInstrument(const sim::Options& options, const sim::Replay& replay, sim::StatusLine& status)
{
    sim::Instrument::Setup setup;
    setup.model = options.model;
    setup.seed = options.seed;
    setup.pace = options.pace;
    setup.idleLevelsPerSecond = options.idleLevelsPerSecond;
    setup.firmwareMajor = options.firmwareMajor;
    setup.firmwareMinor = options.firmwareMinor;
    if (const Outcome chosen = chooseSpecimen(options, replay, setup); !chosen)
        return complain(chosen.sentence(), kUsage);
    if (const Outcome chosen = chooseScript(options.scriptFrames, setup); !chosen)
        return complain(chosen.sentence(), kUsage);

    const bool ownFile = options.memory && !options.memory->isEmpty();
    if (ownFile) {
        if (const Outcome recalled = recall(sim::MemoryFile(*options.memory), setup, status); !recalled)
            return complain(recalled.sentence(), kFailure);
    }
    sim::DeviceEntry entry;
    if (const Outcome claimed =
            claimSerial(options, setup.memory ? setup.memory->constants.serial : QByteArray(), entry);
        !claimed)
        return complain(claimed.sentence(), kFailure);
    if (!options.memory) {
        if (const Outcome recalled = recall(sim::MemoryFile::ofInstrument(entry.serial()), setup, status); !recalled)
            return complain(recalled.sentence(), kFailure);
    }
    if (!options.memory || ownFile)
        setup.keep = [file = options.memory](const sim::KeptMemory& content) {
            // An instrument that has been given another serial number is found again under that one.
            return (file ? sim::MemoryFile(*file) : sim::MemoryFile::ofInstrument(content.constants.serial))
                .write(content);
        };
    setup.tell = [&status](const QString& sentence) { status.say(sentence); };
    setup.serial = entry.serial();
    setup.serialChanging = [&entry](const QByteArray& serial) { return entry.claim(serial); };

    const QString introduction = tr("%1 with serial number %2 measures: %3.")
                                     .arg(QLatin1String(sim::ModelFacts::of(options.model).name),
                                          QString::fromLatin1(entry.serial()), setup.specimen->name());
    sim::Line line(options.faults, options.seed);
    sim::Instrument instrument(std::move(setup), line);
    return serve(instrument, line, entry, status, introduction);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("marrowick-sim"));

    const ValueOr<sim::Options> parsed = sim::Options::parse(QCoreApplication::arguments().mid(1));
    if (!parsed)
        return complain(parsed.sentence(), kUsage);
    const sim::Options& options = parsed.value();
    if (options.help || options.version || options.listParts) {
        QTextStream out(stdout);
        if (options.help)
            out << sim::Options::helpText();
        else if (options.version)
            out << "marrowick-sim " MG_VERSION "\n";
        else
            listParts(out);
        return kSuccess;
    }

    sim::Replay replay;
    if (!options.replay.isEmpty()) {
        ValueOr<sim::Replay> loaded = sim::Replay::load(options.replay);
        if (!loaded)
            return complain(loaded.sentence(), kUsage);
        replay = std::move(loaded.value());
    }
    if (!installSignals())
        return complain(tr("The signals of the system cannot be caught."), kFailure);
    sim::StatusLine status(stderr, options.status || ::isatty(STDERR_FILENO) == 1);
    return replay.log.empty() ? runInstrument(options, replay, status) : playLog(options, replay, status);
}
