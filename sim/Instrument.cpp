// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/Instrument.h"

#include "sim/bench/CalibrationRuns.h"
#include "sim/bench/Diagnosis.h"
#include "sim/bench/Sweep.h"
#include "sim/protocol/CommandArguments.h"
#include "sim/protocol/ConstantCommands.h"
#include "sim/protocol/SerialNumber.h"
#include "sim/protocol/SettingCommands.h"
#include "sim/protocol/StatusFrames.h"
#include "values/Conversions.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace sim {

namespace {

constexpr qsizetype kLongestStamp = 61;

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::Instrument", text);
}

QByteArray bytesOf(std::string_view text)
{
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()));
}

std::optional<Moment> earlier(std::optional<Moment> first, std::optional<Moment> second)
{
    if (!first)
        return second;
    return second ? std::min(*first, *second) : *first;
}

} // namespace

Instrument::Instrument(Setup setup, FrameSink& sink)
    : m_sink(sink)
    , m_setup(std::move(setup))
    , m_measurement(m_setup.specimen, m_setup.seed, m_setup.noise)
    , m_range(*m_setup.specimen, m_setup.tell)
    , m_test(m_state, m_measurement, m_setup.pace, m_sink,
             [this](bool completed, bool constants) { runEnded(completed, constants); })
    , m_levels(m_state, m_measurement, m_sink, m_setup.idleLevelsPerSecond)
    , m_script(m_setup.memory ? m_setup.memory->script : QByteArray(), std::move(m_setup.scriptRunner))
{
    m_state.facts = &ModelFacts::of(m_setup.model);
    m_state.firmwareMajor = m_setup.firmwareMajor;
    m_state.firmwareMinor = m_setup.firmwareMinor;
    if (m_setup.memory) {
        m_kept = std::move(*m_setup.memory);
        m_setup.memory.reset();
    } else {
        m_kept.model = m_setup.model;
        m_kept.constants = m_measurement.factoryConstants(*m_state.facts, m_setup.serial);
    }
    if (!m_setup.serial.isEmpty())
        m_kept.constants.serial = m_setup.serial;
    m_state.settings = settings::bounded(m_kept.settings, *m_state.facts);
    m_state.constants = m_kept.constants;
    m_state.pointsInTest = m_state.settings.points;
    m_state.idleOutput = m_state.settings.idleFrequency != 0;
    m_update = std::make_unique<FirmwareUpdate>(
        m_kept.firmware, m_state, FirmwareUpdate::Setup{m_setup.firmwareKeys, m_setup.firmwareFaults, m_setup.tell},
        sink);
}

Instrument::~Instrument() = default;

void Instrument::send(const Frame& frame)
{
    m_sink.send(frame);
}

void Instrument::tell(const QString& sentence) const
{
    if (m_setup.tell)
        m_setup.tell(sentence);
}

void Instrument::hostArrived(Moment now)
{
    m_now = now;
    m_parser.reset();
    m_hostKnown = false;
}

void Instrument::hostLeft()
{
    // Nobody listens any more: whatever runs is dropped without a word.
    m_script.drop();
    m_test.drop();
    m_levels.endSpot();
    m_parser.reset();
    m_hostKnown = false;
    if (m_update->isExclusive())
        keepFirmware();
    m_update->hostLeft();
}

void Instrument::receive(std::string_view bytes, Moment now)
{
    m_now = now;
    m_parser.feed(bytes, now);
    takeInput(now);
}

void Instrument::takeInput(Moment now)
{
    while (const std::optional<CommandParser::Input> input = m_parser.next(now)) {
        switch (input->kind) {
        case CommandParser::Kind::Acknowledge:
            m_script.acknowledge(now);
            break;
        case CommandParser::Kind::StopScript:
            stop({});
            break;
        case CommandParser::Kind::Block:
            if (m_update->isReceiving())
                m_update->take(input->argument, now);
            else
                takeScriptBytes(input->argument);
            break;
        case CommandParser::Kind::Command:
            if (FirmwareUpdate::isOwn(input->word))
                bootCommand(input->word, input->argument);
            else if (m_update->isExclusive())
                break; // bytes of an image that have lost their beginning may look like anything
            else if (!dispatch(input->word, input->argument))
                ++m_unknownCommands;
            break;
        }
    }
}

void Instrument::advance(Moment now, int frameBudget)
{
    m_now = now;
    takeInput(now);
    if (m_script.hasFallenSilent(now))
        giveUpTransfer();
    if (m_update->hasFallenSilent(now)) {
        m_parser.reset();
        m_update->giveUp();
    }
    if (m_update->takeKeepWanted())
        keepFirmware();
    m_script.advance(now);
    if (m_test.isRunning()) {
        m_test.advance(now, frameBudget);
        return;
    }
    if (const std::optional<double> idle = m_levels.idleFrequency(); idle && idleLevelsWanted())
        m_range.idlesAt(*idle);
    m_levels.advance(now, idleLevelsWanted());
}

std::optional<Moment> Instrument::nextDue() const
{
    const std::optional<Moment> due =
        earlier(earlier(m_parser.nextDue(), m_script.nextDue(m_now)), m_update->nextDue());
    return earlier(due, m_test.isRunning() ? m_test.nextDue() : m_levels.nextDue(idleLevelsWanted()));
}

QString Instrument::activity() const
{
    if (m_test.isRunning())
        return m_test.activity();
    if (QString update = m_update->activity(); !update.isEmpty())
        return update;
    if (QString spot = m_levels.activity(); !spot.isEmpty())
        return spot;
    if (m_script.isTransferring())
        return tr("receiving a script, %1 bytes to come").arg(m_parser.blockLeft());
    if (m_script.isRunning())
        return tr("script running");
    if (!m_state.idleOutput)
        return tr("idle, signal off");
    return m_state.pen == 0 ? tr("idle, signal on, pin %1").arg(m_state.settings.pin)
                            : tr("idle, signal on, pin %1 for pen %2").arg(m_state.settings.pin).arg(m_state.pen);
}

// Commands

const std::vector<Instrument::Command>& Instrument::commands()
{
    static const std::vector<Command> table{
        {"amptest", &Instrument::amplitudeTest},
        {"imptest", &Instrument::impedanceTest},
        {"ampspot", &Instrument::amplitudeSpot},
        {"impspot", &Instrument::impedanceSpot},
        {"y", &Instrument::stop},
        {"x", &Instrument::stop},
        {"enquire", &Instrument::enquire},
        {"loadscript", &Instrument::loadScript},
        {"run", &Instrument::runScript},
        {"setserial", &Instrument::setSerial},
        {"calibrate", &Instrument::calibrate},
        {"phasecal", &Instrument::phaseCalibration},
        {"zerocal", &Instrument::slopeCalibration},
        {"diagnose", &Instrument::diagnose},
        {"save", &Instrument::save},
    };
    return table;
}

QStringList Instrument::commandWords()
{
    QStringList words = settings::words() + constants::words();
    for (const Command& command : commands())
        words.append(QLatin1String(command.word));
    for (const char* word : {"boot", "bootbegin", "bootblock", "bootswitch"})
        words.append(QLatin1String(word));
    return words;
}

bool Instrument::dispatch(std::string_view word, std::string_view argument)
{
    if (const auto answer = settings::apply(word, argument, m_state)) {
        for (const Frame& frame : *answer)
            send(frame);
        return true;
    }
    if (const auto answer = constants::apply(word, argument, m_state)) {
        keepConstants();
        send(*answer);
        return true;
    }
    const auto found = std::find_if(commands().begin(), commands().end(),
                                    [word](const Command& command) { return word == command.word; });
    if (found == commands().end())
        return false;
    (this->*found->handler)(argument);
    return true;
}

void Instrument::amplitudeTest(std::string_view)
{
    begin(makeSweep(TestKind::Amplitude, m_state.settings));
}

void Instrument::impedanceTest(std::string_view)
{
    begin(makeSweep(TestKind::Impedance, m_state.settings));
}

void Instrument::amplitudeSpot(std::string_view argument)
{
    beginSpot(TestKind::Amplitude, argument);
}

void Instrument::impedanceSpot(std::string_view argument)
{
    beginSpot(TestKind::Impedance, argument);
}

void Instrument::stop(std::string_view)
{
    if (m_script.isRunning())
        stopScript();
    m_levels.endSpot();
    m_levels.postponeIdle(m_now);
    // Answered even when nothing runs: a host that lost the first answer must be able to ask again.
    if (m_test.isRunning())
        m_test.stop();
    else
        send(status::testEnded(m_state));
}

void Instrument::enquire(std::string_view text)
{
    for (const Frame& frame : status::everything(m_state))
        send(frame);
    const auto version = argument::version(text);
    if (version && *version != std::pair(m_state.firmwareMajor, m_state.firmwareMinor))
        send(status::notice(true, "Version number mismatch. The firmware may need upgrading."));
    send(status::complete(m_state));
    m_hostKnown = true;
    m_levels.postponeIdle(m_now);
}

void Instrument::setSerial(std::string_view argument)
{
    const QByteArray serial = bytesOf(argument);
    if (!isSerialNumber(serial)) {
        send(status::notice(true, "This is not a serial number: use letters, digits, . _ and -."));
    } else if (serial != m_state.constants.serial) {
        const Outcome changed = m_setup.serialChanging ? m_setup.serialChanging(serial) : Outcome::success();
        if (changed) {
            m_state.constants.serial = serial;
            keepConstants();
        } else {
            send(status::notice(true, "This serial number is in use by another instrument."));
        }
    }
    send(status::serial(m_state));
}

void Instrument::calibrate(std::string_view argument)
{
    begin(makeAmplitudeCalibration(*m_state.facts, bytesOf(argument).left(kLongestStamp)));
}

void Instrument::phaseCalibration(std::string_view)
{
    begin(makePhaseCalibration(m_state.settings));
}

void Instrument::slopeCalibration(std::string_view)
{
    m_state.constants.calibrationOffset = 0;
    m_state.constants.calibrationSlope = m_measurement.measuredSlope(m_test.takeRunNumber());
    keepConstants();
    send(status::slope(m_state));
}

void Instrument::diagnose(std::string_view)
{
    begin(makeDiagnosis(*m_state.facts));
}

void Instrument::save(std::string_view)
{
    m_kept.settings = m_state.settings;
    if (keep())
        send(status::panelText("Settings saved"));
}

// Tests and levels

void Instrument::begin(std::unique_ptr<Run> run)
{
    if (m_test.isRunning())
        m_test.stop();
    // A script that waits for the end of a run now waits for that of this one.
    m_script.forgetRunEnd();
    m_levels.endSpot();
    if (run->measuresSpecimen())
        m_range.begins(run->name(), run->startFrequency(), run->endFrequency());
    m_test.begin(std::move(run), m_now);
}

void Instrument::runEnded(bool completed, bool constants)
{
    if (constants)
        keepConstants();
    m_levels.postponeIdle(m_now);
    m_script.runEnded(completed);
}

void Instrument::beginSpot(TestKind kind, std::string_view argument)
{
    m_test.stop();
    settings::setFrequency(&SweepSettings::spotFrequency, argument, m_state);
    m_state.lastTest = kind;
    const double frequency = m_state.settings.spotFrequency;
    m_range.begins(tr("measurement at one frequency"), frequency, frequency);
    m_levels.beginSpot(kind, m_now);
}

bool Instrument::idleLevelsWanted() const
{
    return m_hostKnown && !m_script.isRunning() && !m_script.isTransferring();
}

// Scripts

void Instrument::loadScript(std::string_view argument)
{
    const std::optional<std::int32_t> length = values::strictInt32(argument);
    if (!length || *length < 0) {
        send(status::notice(true, "The length of the script is not a number."));
        return;
    }
    if (m_script.isRunning())
        stopScript();
    m_script.announce(*length, m_now);
    m_parser.expectBlock(static_cast<std::size_t>(*length));
    if (*length == 0)
        takeScriptBytes({});
}

void Instrument::takeScriptBytes(const std::string& bytes)
{
    m_script.take(bytesOf(bytes), m_now);
    if (m_parser.blockLeft() > 0)
        return;
    if (m_script.endTransfer() == ScriptSlot::Transfer::TooLong) {
        send(status::notice(true, "The script is too long for the instrument."));
        return;
    }
    m_kept.script = m_script.script();
    // Loaded it is, even when it could not be kept and that was told.
    static_cast<void>(keep());
    send(status::panelText("Script loaded"));
}

void Instrument::giveUpTransfer()
{
    m_parser.reset();
    m_script.giveUpTransfer();
    send(status::scriptRunning(false));
    send(status::panelText("Script transfer incomplete"));
}

void Instrument::runScript(std::string_view)
{
    if (m_script.isRunning())
        stopScript();
    const char* refusal = nullptr;
    if (m_script.script().isEmpty())
        refusal = "No script is loaded.";
    else if (!m_script.canRun())
        refusal = "This instrument keeps scripts but cannot run them.";
    if (refusal) {
        send(status::notice(true, refusal));
        send(status::scriptRunning(false));
        return;
    }
    m_sink.forget();
    send(status::scriptRunning(true));
    if (const Outcome started = m_script.run(*this, m_now); !started)
        finished(started);
}

bool Instrument::execute(std::string_view command)
{
    const std::size_t blank = command.find(' ');
    const std::string_view word = command.substr(0, blank);
    if (word == "y" || word == "x") {
        m_test.stop();
        m_levels.endSpot();
        return true;
    }
    // A script neither replaces nor restarts itself.
    if (word == "run" || word == "loadscript" || FirmwareUpdate::isOwn(word))
        return false;
    return dispatch(word, blank == std::string_view::npos ? std::string_view() : command.substr(blank + 1));
}

void Instrument::finished(const Outcome& outcome)
{
    m_script.finished();
    if (!outcome)
        send(status::notice(true, outcome.sentence().toStdString()));
    send(status::scriptRunning(false));
}

void Instrument::stopScript()
{
    m_script.stop();
    send(status::scriptRunning(false));
}

// Firmware

void Instrument::bootCommand(std::string_view word, std::string_view argument)
{
    const bool busy = m_test.isRunning() || m_script.isRunning() || m_script.isTransferring();
    m_levels.endSpot();
    if (const std::size_t bytes = m_update->command(word, argument, busy, m_now))
        m_parser.expectBlock(bytes);
}

Device::Leave Instrument::takeLeave()
{
    return m_update->takeLeave();
}

void Instrument::powered(Moment now)
{
    m_now = now;
    if (!m_update->powered())
        return;
    m_state.settings = settings::bounded(m_kept.settings, *m_state.facts);
    m_state.loopback = false;
    m_state.pen = 0;
    m_state.pointsInTest = m_state.settings.points;
    m_state.idleOutput = m_state.settings.idleFrequency != 0;
    keepFirmware();
}

void Instrument::keepFirmware()
{
    // It lies in the flash of this run all the same; the next run goes on from what was kept last.
    static_cast<void>(keep());
}

// Memory

void Instrument::keepConstants()
{
    m_kept.constants = m_state.constants;
    // A failure has been told, and there is nothing else to do about it here.
    static_cast<void>(keep());
}

Outcome Instrument::keep()
{
    if (!m_setup.keep)
        return Outcome::success();
    Outcome kept = m_setup.keep(m_kept);
    if (!kept) {
        send(status::notice(true, "The instrument could not write its memory."));
        tell(kept.sentence());
    }
    return kept;
}

} // namespace sim
