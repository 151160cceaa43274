// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick-sim: the simulated instrument as a program.
#include "sim/Instrument.h"
#include "sim/LogPlayer.h"
#include "sim/MemoryFile.h"
#include "sim/Options.h"
#include "sim/Replay.h"
#include "sim/Station.h"
#include "sim/StatusLine.h"
#include "sim/parts/PartFile.h"
#include "sim/port/DeviceEntry.h"
#include "sim/program/EndSignals.h"
#include "sim/script/FrameScript.h"
#include "sim/script/Interpreter.h"

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>

#include <cstdio>
#include <unistd.h>

namespace {

enum ExitCode
{
    kSuccess = 0,
    kFailure = 1,
    kUsage = 2
};

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
    for (const QString& name : sim::partfile::shippedNames()) {
        const ValueOr<sim::PartModel> part = sim::partfile::load(name);
        out << name.leftJustified(14) << (part ? part.value().name() : part.sentence()) << '\n';
    }
}

/// For people, with the range of one that is not known at every frequency.
QString describe(const sim::Specimen& specimen)
{
    const std::optional<sim::Specimen::Range> known = specimen.knownRange();
    return known ? tr("%1, from %2 to %3 Hz")
                       .arg(specimen.name())
                       .arg(known->low, 0, 'g', 10)
                       .arg(known->high, 0, 'g', 10)
                 : specimen.name();
}

/// The part or the table that the options name; the setup of a link log's replay is left alone.
Outcome chooseSpecimen(const sim::Options& options, const sim::Replay& replay, sim::Instrument::Setup& setup)
{
    setup.noise = options.noise.value_or(replay.table ? 0 : 1);
    setup.specimen = replay.table;
    if (setup.specimen)
        return Outcome::success();
    const ValueOr<sim::PartModel> part = sim::partfile::load(options.part);
    if (!part)
        return Outcome::failure(part.sentence());
    setup.specimen = std::make_shared<sim::PartModel>(part.value());
    return Outcome::success();
}

Outcome chooseScript(const QString& fileName, sim::Instrument::Setup& setup)
{
    if (fileName.isEmpty()) {
        setup.scriptRunner = std::make_unique<sim::Interpreter>();
        return Outcome::success();
    }
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

/// What every way of running needs.
struct Session
{
    const sim::Options& options;
    sim::StatusLine& status;
    int endDescriptor;
};

int serve(const Session& session, sim::Device& device, sim::Line& line, sim::DeviceEntry& entry,
          const QString& introduction)
{
    sim::Station station(device, line, entry, session.status, session.options.notOn);
    if (const Outcome plugged = station.plugIn(); !plugged)
        return complain(plugged.sentence(), kFailure);
    QTextStream out(stdout);
    out << introduction
        << tr("\nDevice %1, listed as %2. Ctrl+C ends it.\n")
               .arg(QString::fromLocal8Bit(station.devicePath()), QString::fromLocal8Bit(entry.linkPath()));
    out.flush();
    const Outcome ran = station.run(session.endDescriptor);
    return ran ? kSuccess : complain(ran.sentence(), kFailure);
}

int playLog(const Session& session, sim::Replay& replay)
{
    const sim::Options& options = session.options;
    sim::DeviceEntry entry;
    if (const Outcome claimed = claimSerial(options, sim::LogPlayer::recordedSerial(replay.log), entry); !claimed)
        return complain(claimed.sentence(), kFailure);
    sim::Line line(options.faults, options.seed);
    const auto entries = replay.log.size();
    sim::LogPlayer player(std::move(replay.log), entry.serial(), options.pace, line);
    return serve(session, player, line, entry,
                 tr("Recording of an instrument, %1 entries, as serial number %2.")
                     .arg(entries)
                     .arg(QString::fromLatin1(entry.serial())));
}

int runInstrument(const Session& session, const sim::Replay& replay)
{
    const sim::Options& options = session.options;
    sim::StatusLine& status = session.status;
    sim::Instrument::Setup setup;
    setup.model = options.model;
    setup.seed = options.seed;
    setup.pace = options.pace;
    setup.idleLevelsPerSecond = options.idleLevelsPerSecond;
    setup.firmwareMajor = options.firmwareMajor;
    setup.firmwareMinor = options.firmwareMinor;
    setup.firmwareKeys = firmware::TrustedKeys::ofFolder(
        options.trustedKeys.isEmpty() ? firmware::TrustedKeys::installedFolder() : options.trustedKeys);
    setup.firmwareFaults = options.faults;
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
                                          QString::fromLatin1(entry.serial()), describe(*setup.specimen));
    sim::Line line(options.faults, options.seed);
    sim::Instrument instrument(std::move(setup), line);
    return serve(session, instrument, line, entry, introduction);
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
    const int endDescriptor = sim::endDescriptor();
    if (endDescriptor < 0)
        return complain(tr("The signals of the system cannot be caught."), kFailure);
    sim::StatusLine status(stderr, options.status || ::isatty(STDERR_FILENO) == 1);
    const Session session{options, status, endDescriptor};
    return replay.log.empty() ? runInstrument(session, replay) : playLog(session, replay);
}
