// SPDX-License-Identifier: GPL-3.0-or-later
// The commands of the instrument: what each word does and with which frame it is answered.
#include "sim/Instrument.h"
#include "sim/protocol/StatusFrames.h"
#include "values/Conversions.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace sim {

namespace {

std::optional<double> finiteNumber(std::string_view text)
{
    const std::optional<double> number = values::strictNumber(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<int> integer(std::string_view text, int low, int high)
{
    const std::optional<double> number = finiteNumber(text);
    if (!number)
        return {};
    return static_cast<int>(std::clamp(std::nearbyint(*number), static_cast<double>(low), static_cast<double>(high)));
}

std::optional<bool> flag(std::string_view text)
{
    const std::optional<double> number = finiteNumber(text);
    if (!number)
        return {};
    return *number != 0;
}

/// "1.28" of an enquiry; nothing for anything else.
std::optional<std::pair<int, int>> programVersion(std::string_view text)
{
    const std::size_t dot = text.find('.');
    if (dot == std::string_view::npos)
        return {};
    const std::optional<std::int32_t> major = values::strictInt32(text.substr(0, dot));
    const std::optional<std::int32_t> minor = values::strictInt32(text.substr(dot + 1));
    if (!major || !minor)
        return {};
    return std::pair(*major, *minor);
}

} // namespace

const std::vector<Instrument::Command>& Instrument::commands()
{
    static const std::vector<Command> table{
        {"startfreq", &Instrument::startFrequency},
        {"endfreq", &Instrument::endFrequency},
        {"idlefreq", &Instrument::idleFrequency},
        {"spotfreq", &Instrument::spotFrequency},
        {"points", &Instrument::points},
        {"atten", &Instrument::attenuation},
        {"repeat", &Instrument::repeat},
        {"sweepmode", &Instrument::sweepMode},
        {"period", &Instrument::period},
        {"phase", &Instrument::phase},
        {"samples", &Instrument::samples},
        {"linear", &Instrument::linear},
        {"amptest", &Instrument::amplitudeTest},
        {"imptest", &Instrument::impedanceTest},
        {"ampspot", &Instrument::amplitudeSpot},
        {"impspot", &Instrument::impedanceSpot},
        {"y", &Instrument::stopCommand},
        {"x", &Instrument::stopCommand},
        {"run", &Instrument::runScript},
        {"enquire", &Instrument::enquire},
        {"setpin", &Instrument::setPin},
        {"loadscript", &Instrument::loadScript},
        {"setvref", &Instrument::setReferenceTrim},
        {"setvdut", &Instrument::setDutTrim},
        {"setfreqcomp", &Instrument::setFrequencyCompensation},
        {"setserial", &Instrument::setSerial},
        {"calon", &Instrument::applyCalibration},
        {"loopback", &Instrument::loopback},
        {"phasecal", &Instrument::phaseCalibration},
        {"calibrate", &Instrument::calibrate},
        {"zerocal", &Instrument::slopeCalibration},
        {"diagnose", &Instrument::diagnose},
        {"default", &Instrument::factorySettings},
        {"save", &Instrument::save},
    };
    return table;
}

QStringList Instrument::commandWords()
{
    QStringList words;
    for (const Command& command : commands())
        words.append(QLatin1String(command.word));
    return words;
}

bool Instrument::dispatch(const std::string& word, const std::string& argument)
{
    static const std::unordered_map<std::string_view, Handler> handlers = [] {
        std::unordered_map<std::string_view, Handler> map;
        for (const Command& command : commands())
            map.emplace(command.word, command.handler);
        return map;
    }();
    if (const auto found = handlers.find(word); found != handlers.end()) {
        (this->*found->second)(argument);
        return true;
    }
    // The pin number may stand directly behind the word.
    if (word == "setpin1" || word == "setpin2") {
        setPin(word.substr(6));
        return true;
    }
    return false;
}

// A number that is none, or is out of range, leaves or bounds the setting; the answer tells what is in force.

void Instrument::setFrequency(double SweepSettings::*frequency, const std::string& argument)
{
    if (const std::optional<double> number = finiteNumber(argument))
        m_state.settings.*frequency = std::clamp(*number, m_state.facts->minFrequency, m_state.facts->maxFrequency);
}

void Instrument::startFrequency(const std::string& argument)
{
    setFrequency(&SweepSettings::startFrequency, argument);
    send(status::frequencies(m_state));
}

void Instrument::endFrequency(const std::string& argument)
{
    setFrequency(&SweepSettings::endFrequency, argument);
    send(status::frequencies(m_state));
}

void Instrument::idleFrequency(const std::string& argument)
{
    const std::optional<double> number = finiteNumber(argument);
    if (number && (*number == 0 || *number == -1))
        m_state.settings.idleFrequency = *number;
    else
        setFrequency(&SweepSettings::idleFrequency, argument);
    m_state.idleOutput = m_state.settings.idleFrequency != 0;
    send(status::sweepMode(m_state));
}

void Instrument::spotFrequency(const std::string& argument)
{
    setFrequency(&SweepSettings::spotFrequency, argument);
    send(status::slope(m_state));
}

void Instrument::points(const std::string& argument)
{
    m_state.settings.points = integer(argument, 1, kMostPoints).value_or(m_state.settings.points);
    if (!m_run)
        m_state.pointsInTest = m_state.settings.points;
    send(status::points(m_state));
}

void Instrument::attenuation(const std::string& argument)
{
    m_state.settings.attenuation =
        integer(argument, 0, m_state.facts->attenuationSteps).value_or(m_state.settings.attenuation);
    send(status::attenuation(m_state));
}

void Instrument::repeat(const std::string& argument)
{
    m_state.settings.repeat = flag(argument).value_or(m_state.settings.repeat);
    send(status::points(m_state));
}

void Instrument::sweepMode(const std::string& argument)
{
    m_state.settings.sweepMode = integer(argument, 0, 2).value_or(m_state.settings.sweepMode);
    send(status::sweepMode(m_state));
}

void Instrument::period(const std::string& argument)
{
    m_state.settings.period = integer(argument, 0, 32767).value_or(m_state.settings.period);
    send(status::sampling(m_state));
}

void Instrument::phase(const std::string& argument)
{
    m_state.settings.phase = flag(argument).value_or(m_state.settings.phase);
    send(status::phase(m_state));
}

void Instrument::samples(const std::string& argument)
{
    m_state.settings.samples = integer(argument, 1, kMostSamples).value_or(m_state.settings.samples);
    send(status::sampling(m_state));
}

void Instrument::linear(const std::string& argument)
{
    m_state.settings.linear = flag(argument).value_or(m_state.settings.linear);
    send(status::sampling(m_state));
}

void Instrument::setPin(const std::string& argument)
{
    m_state.settings.pin = integer(argument, 1, 2).value_or(m_state.settings.pin);
    send(status::options(m_state));
}

void Instrument::amplitudeTest(const std::string&)
{
    begin(makeSweep(TestKind::Amplitude, m_state.settings));
}

void Instrument::impedanceTest(const std::string&)
{
    begin(makeSweep(TestKind::Impedance, m_state.settings));
}

void Instrument::amplitudeSpot(const std::string& argument)
{
    beginSpot(TestKind::Amplitude, argument);
}

void Instrument::impedanceSpot(const std::string& argument)
{
    beginSpot(TestKind::Impedance, argument);
}

void Instrument::beginSpot(TestKind kind, const std::string& argument)
{
    if (m_run)
        endRun(false);
    setFrequency(&SweepSettings::spotFrequency, argument);
    m_state.lastTest = kind;
    m_spot = kind;
    sendSpotLevel();
}

void Instrument::stopCommand(const std::string&)
{
    if (m_scriptRunning)
        stopScript();
    m_spot.reset();
    scheduleIdleLevel();
    // Answered even when nothing runs: a host that lost the first answer must be able to ask again.
    if (m_run)
        endRun(false);
    else
        send(status::testEnded(m_state));
}

void Instrument::enquire(const std::string& argument)
{
    for (const Frame& frame : status::everything(m_state))
        send(frame);
    const auto version = programVersion(argument);
    if (version && *version != std::pair(m_state.firmwareMajor, m_state.firmwareMinor))
        send(status::notice(true, "Version number mismatch. The firmware may need upgrading."));
    send(status::complete(m_state));
    m_hostKnown = true;
    scheduleIdleLevel();
}

void Instrument::loadScript(const std::string& argument)
{
    const std::optional<std::int32_t> length = values::strictInt32(argument);
    if (!length || *length < 0) {
        send(status::notice(true, "The length of the script is not a number."));
        return;
    }
    if (m_scriptRunning)
        stopScript();
    m_script.clear();
    m_transferring = true;
    m_transferTooLong = *length > kLongestScript;
    m_lastTransferByte = m_now;
    m_parser.expectBlock(static_cast<std::size_t>(*length));
    if (*length == 0)
        takeScriptBytes({});
}

void Instrument::runScript(const std::string&)
{
    if (m_scriptRunning)
        stopScript();
    if (m_script.isEmpty()) {
        send(status::notice(true, "No script is loaded."));
        send(status::scriptRunning(false));
        return;
    }
    if (!m_setup.scriptRunner) {
        send(status::notice(true, "This instrument keeps scripts but cannot run them."));
        send(status::scriptRunning(false));
        return;
    }
    m_scriptRunning = true;
    send(status::scriptRunning(true));
    if (const Outcome started = m_setup.scriptRunner->start(m_script, *this, m_now); !started)
        finished(started);
}

void Instrument::setTrim(int InstrumentConstants::*code, const std::string& argument)
{
    // A second number follows the code; it has no meaning here.
    const std::string first = argument.substr(0, argument.find(' '));
    m_state.constants.*code = integer(first, 0, kHighestTrimCode).value_or(m_state.constants.*code);
    keepConstants();
    send(status::phase(m_state));
}

void Instrument::setReferenceTrim(const std::string& argument)
{
    setTrim(&InstrumentConstants::vrefCode, argument);
}

void Instrument::setDutTrim(const std::string& argument)
{
    setTrim(&InstrumentConstants::vdutCode, argument);
}

void Instrument::setFrequencyCompensation(const std::string& argument)
{
    // Within a thousandth: anything further off is a slip of the hand, not a crystal.
    if (const std::optional<double> number = finiteNumber(argument);
        number && *number >= 999000 && *number <= 1001000) {
        m_state.constants.frequencyCompensation = *number;
        keepConstants();
    }
    send(status::frequencyCompensation(m_state));
}

void Instrument::setSerial(const std::string& argument)
{
    const auto serial = QByteArray::fromStdString(argument);
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

void Instrument::applyCalibration(const std::string& argument)
{
    m_state.constants.applyCalibration = flag(argument).value_or(m_state.constants.applyCalibration);
    keepConstants();
    send(status::calibration(m_state));
}

void Instrument::loopback(const std::string& argument)
{
    m_state.loopback = flag(argument).value_or(m_state.loopback);
    send(status::options(m_state));
}

void Instrument::phaseCalibration(const std::string&)
{
    begin(makePhaseCalibration(m_state.settings));
}

void Instrument::calibrate(const std::string& argument)
{
    begin(makeAmplitudeCalibration(*m_state.facts, QByteArray::fromStdString(argument).left(61)));
}

void Instrument::slopeCalibration(const std::string&)
{
    m_state.constants.calibrationOffset = 0;
    m_state.constants.calibrationSlope = m_measurement.measuredSlope(++m_runNumber);
    keepConstants();
    send(status::slope(m_state));
}

void Instrument::diagnose(const std::string&)
{
    begin(makeDiagnosis(*m_state.facts));
}

void Instrument::factorySettings(const std::string&)
{
    m_state.settings = SweepSettings();
    m_state.idleOutput = m_state.settings.idleFrequency != 0;
    if (!m_run)
        m_state.pointsInTest = m_state.settings.points;
    for (const Frame& frame : status::settings(m_state))
        send(frame);
}

void Instrument::save(const std::string&)
{
    m_kept.settings = m_state.settings;
    keep();
    send(status::panelText("Settings saved"));
}

} // namespace sim
