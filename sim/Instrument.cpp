// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/Instrument.h"

#include "sim/protocol/StatusFrames.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace sim {

namespace {

/// Run number of level frames between tests, whose noise has nothing to do with that of the sweeps.
constexpr std::uint64_t kLevelRun = 0;
/// How far measuring may fall behind (host not reading, machine asleep) before the lost time is let go.
constexpr Duration kLongestLag = std::chrono::milliseconds(200);
/// "No phase" in a level frame of amplitude.
constexpr double kNoLevelPhase = -65536;

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::Instrument", text);
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
    const ModelFacts& facts = *m_state.facts;
    SweepSettings& settings = m_state.settings;
    settings = m_kept.settings;
    // A memory file is a text that anybody may have edited.
    for (double* frequency : {&settings.startFrequency, &settings.endFrequency, &settings.spotFrequency})
        *frequency = std::clamp(*frequency, facts.minFrequency, facts.maxFrequency);
    if (settings.idleFrequency != 0 && settings.idleFrequency != -1)
        settings.idleFrequency = std::clamp(settings.idleFrequency, facts.minFrequency, facts.maxFrequency);
    settings.attenuation = std::clamp(settings.attenuation, 0, facts.attenuationSteps);
    m_state.constants = m_kept.constants;
    m_state.pointsInTest = m_state.settings.points;
    m_state.idleOutput = m_state.settings.idleFrequency != 0;
    m_script = m_kept.script;
}

Instrument::~Instrument() = default;

bool Instrument::isSerialNumber(const QByteArray& text)
{
    const auto allowed = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '_' ||
               c == '-';
    };
    return !text.isEmpty() && text.size() <= 32 && text.front() != '.' &&
           std::all_of(text.begin(), text.end(), allowed);
}

void Instrument::send(const Frame& frame)
{
    m_sink.send(frame);
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
    if (m_scriptRunning)
        m_setup.scriptRunner->stop();
    m_scriptRunning = false;
    m_runEndedNews.reset();
    m_run.reset();
    m_spot.reset();
    m_transferring = false;
    m_state.running = false;
    m_state.repeating = false;
    m_state.pointsInTest = m_state.settings.points;
    m_parser.reset();
    m_hostKnown = false;
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
            if (m_scriptRunning)
                m_setup.scriptRunner->acknowledged(now);
            break;
        case CommandParser::Kind::StopScript:
            stopCommand({});
            break;
        case CommandParser::Kind::Block:
            takeScriptBytes(input->argument);
            break;
        case CommandParser::Kind::Command:
            if (!dispatch(input->word, input->argument))
                ++m_unknownCommands;
            break;
        }
    }
}

void Instrument::advance(Moment now, int frameBudget)
{
    m_now = now;
    takeInput(now);
    if (m_transferring && now - m_lastTransferByte >= kTransferSilence)
        giveUpTransfer();
    advanceScript(now);
    if (m_run) {
        measureDuePoints(frameBudget);
    } else if (m_spot) {
        if (m_levelDue <= now)
            sendSpotLevel();
    } else if (idleLevelsWanted() && m_levelDue <= now) {
        sendIdleLevel();
    }
}

void Instrument::advanceScript(Moment now)
{
    // Told here and not where the run ended, which may be inside a call that the runner itself has made.
    if (const std::optional<bool> completed = std::exchange(m_runEndedNews, std::nullopt); completed && m_scriptRunning)
        m_setup.scriptRunner->runEnded(*completed, now);
    if (!m_scriptRunning)
        return;
    const std::optional<Moment> due = m_setup.scriptRunner->nextDue();
    if (due && *due <= now)
        m_setup.scriptRunner->advance(now);
}

std::optional<Moment> Instrument::nextDue() const
{
    if (m_runEndedNews)
        return m_now;
    std::optional<Moment> due = m_parser.nextDue();
    if (m_transferring)
        due = earlier(due, m_lastTransferByte + kTransferSilence);
    if (m_scriptRunning)
        due = earlier(due, m_setup.scriptRunner->nextDue());
    if (m_run)
        due = earlier(due, m_pointDue);
    else if (m_spot || idleLevelsWanted())
        due = earlier(due, m_levelDue);
    return due;
}

QString Instrument::activity() const
{
    const auto hertz = [](double frequency) { return QString::number(frequency, 'g', 6); };
    if (m_run)
        return tr("%1, point %2 of %3 at %4 Hz")
            .arg(m_run->name())
            .arg(m_nextPoint)
            .arg(m_run->points())
            .arg(hertz(m_run->frequency(std::max(0, m_nextPoint - 1))));
    if (m_spot)
        return (*m_spot == TestKind::Amplitude ? tr("amplitude at %1 Hz") : tr("impedance at %1 Hz"))
            .arg(hertz(m_state.settings.spotFrequency));
    if (m_transferring)
        return tr("receiving a script, %1 bytes to come").arg(m_parser.blockLeft());
    if (m_scriptRunning)
        return tr("script running");
    return m_state.idleOutput ? tr("idle, signal on") : tr("idle, signal off");
}

// Runs

void Instrument::begin(std::unique_ptr<Run> run)
{
    if (m_run) {
        endRun(false);
        // A script that waits for the end of a run now waits for that of this one.
        m_runEndedNews.reset();
    }
    m_spot.reset();
    m_run = std::move(run);
    m_state.lastTest = m_run->kind();
    m_state.running = true;
    if (m_state.pointsInTest != m_run->points()) {
        m_state.pointsInTest = m_run->points();
        send(status::points(m_state));
    }
    beginPass();
}

void Instrument::beginPass()
{
    ++m_runNumber;
    m_nextPoint = 0;
    m_sinceMarker = 0;
    m_state.running = true;
    m_state.repeating = m_run->repeats(m_state);
    send(status::testStarted(m_state, m_run->startFrequency(), m_run->endFrequency()));
    m_pointDue = m_now + m_setup.pace.pointTime(m_run->frequency(0), m_state);
}

void Instrument::measureDuePoints(int& frameBudget)
{
    if (m_now - m_pointDue > kLongestLag)
        m_pointDue = m_now;
    while (m_run && frameBudget > 0 && m_pointDue <= m_now) {
        const double frequency = m_run->frequency(m_nextPoint);
        const bool last = m_nextPoint + 1 == m_run->points();
        const bool marker = last || ++m_sinceMarker >= m_setup.pace.markerInterval(frequency, m_state);
        if (marker)
            m_sinceMarker = 0;
        send(m_run->measure(m_nextPoint, marker, m_measurement, m_state, m_runNumber));
        --frameBudget;
        ++m_nextPoint;
        if (last)
            passEnded();
        else
            m_pointDue += m_setup.pace.pointTime(m_run->frequency(m_nextPoint), m_state);
    }
}

void Instrument::passEnded()
{
    const bool again = m_run->nextPass(m_state);
    m_state.running = false;
    m_state.repeating = again;
    if (!again) {
        endRun(true);
        return;
    }
    send(status::testEnded(m_state));
    send(status::pointsFinished());
    beginPass();
}

void Instrument::endRun(bool completed)
{
    const std::unique_ptr<Run> run = std::move(m_run);
    m_state.running = false;
    m_state.repeating = false;
    const bool ownPoints = m_state.pointsInTest != m_state.settings.points;
    send(status::testEnded(m_state));
    if (completed) {
        send(status::pointsFinished());
        const InstrumentConstants before = m_state.constants;
        for (const Frame& frame : run->conclude(m_state))
            send(frame);
        if (!(m_state.constants == before))
            keepConstants();
    }
    if (ownPoints) {
        m_state.pointsInTest = m_state.settings.points;
        send(status::points(m_state));
    }
    scheduleIdleLevel();
    if (m_scriptRunning)
        m_runEndedNews = completed;
}

// Levels between tests

void Instrument::sendSpotLevel()
{
    const double frequency = m_state.settings.spotFrequency;
    const bool phase = m_state.settings.phase;
    if (*m_spot == TestKind::Amplitude)
        send(levelFrame('G', frequency, m_measurement.amplitude(frequency, m_state, kLevelRun, m_levelNumber), phase,
                        kNoLevelPhase));
    else
        send(levelFrame('I', frequency, m_measurement.impedance(frequency, m_state, kLevelRun, m_levelNumber), phase,
                        0));
    ++m_levelNumber;
    m_levelDue = m_now + kSpotInterval;
}

bool Instrument::idleLevelsWanted() const
{
    return m_hostKnown && m_state.idleOutput && m_setup.idleLevelsPerSecond > 0 && !m_scriptRunning && !m_transferring;
}

void Instrument::sendIdleLevel()
{
    const SweepSettings& settings = m_state.settings;
    const double frequency = settings.idleFrequency == -1 ? settings.startFrequency : settings.idleFrequency;
    send(levelFrame('G', frequency, m_measurement.amplitude(frequency, m_state, kLevelRun, m_levelNumber),
                    settings.phase, kNoLevelPhase));
    ++m_levelNumber;
    scheduleIdleLevel();
}

void Instrument::scheduleIdleLevel()
{
    if (m_setup.idleLevelsPerSecond > 0)
        m_levelDue = m_now + secondsToDuration(1.0 / m_setup.idleLevelsPerSecond);
}

// Scripts

void Instrument::takeScriptBytes(const std::string& bytes)
{
    m_lastTransferByte = m_now;
    if (!m_transferTooLong)
        m_script.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (m_parser.blockLeft() > 0)
        return;
    m_transferring = false;
    if (m_transferTooLong) {
        send(status::notice(true, "The script is too long for the instrument."));
        return;
    }
    m_kept.script = m_script;
    keep();
    send(status::panelText("Script loaded"));
}

void Instrument::giveUpTransfer()
{
    m_parser.reset();
    m_transferring = false;
    m_script.clear();
    send(status::scriptRunning(false));
    send(status::panelText("Script transfer incomplete"));
}

bool Instrument::execute(std::string_view command)
{
    const std::size_t blank = command.find(' ');
    const std::string word(command.substr(0, blank));
    if (word == "y" || word == "x") {
        if (m_run)
            endRun(false);
        m_spot.reset();
        return true;
    }
    // A script neither replaces nor restarts itself.
    if (word == "run" || word == "loadscript")
        return false;
    const std::string argument(blank == std::string_view::npos ? std::string_view() : command.substr(blank + 1));
    return dispatch(word, argument);
}

void Instrument::finished(const Outcome& outcome)
{
    m_scriptRunning = false;
    m_runEndedNews.reset();
    if (!outcome)
        send(status::notice(true, outcome.sentence().toStdString()));
    send(status::scriptRunning(false));
}

void Instrument::stopScript()
{
    m_scriptRunning = false;
    m_runEndedNews.reset();
    m_setup.scriptRunner->stop();
    send(status::scriptRunning(false));
}

void Instrument::keepConstants()
{
    m_kept.constants = m_state.constants;
    keep();
}

void Instrument::keep()
{
    if (!m_setup.keep)
        return;
    if (const Outcome kept = m_setup.keep(m_kept); !kept)
        send(status::notice(true, "The instrument could not write its memory."));
}

} // namespace sim
