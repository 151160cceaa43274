// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/instrument/PlayedProtocol.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ostream>

namespace played {
namespace {

constexpr double kLowestFrequency = 10;
constexpr int kMostPoints = 1024;
constexpr int kMostSamples = 1024;
constexpr int kCalibrationPoints = 512;
constexpr int kTrimCodes = 256;
constexpr int kDiagnosisPoints = 1007;
constexpr int kMarkerEvery = 16;
constexpr double kNoPhase = 65536;

/// The whole text as a number; none when it is not one.
std::optional<double> numberOf(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

char digit(bool on)
{
    return on ? '1' : '0';
}

char digit(int value)
{
    return static_cast<char>('0' + value);
}

} // namespace

std::string numberText(double value)
{
    constexpr std::ptrdiff_t kColumns = 13;
    std::array<char, 64> text{};
    for (int digits = 9;; --digits) {
        const auto [end, error] =
            std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, digits);
        if (error == std::errc() && end - text.data() <= kColumns)
            return {text.data(), end};
    }
}

std::string numbersFrame(char code, char f, const std::vector<double>& numbers, int i)
{
    std::string frame{code, ':', f};
    for (std::size_t n = 0; n < 4; ++n) {
        const std::string text = numberText(n < numbers.size() ? numbers[n] : 0);
        frame += ' ' + std::string(13 - text.size(), ' ') + text;
    }
    const std::string text = std::to_string(i);
    return frame + ' ' + std::string(5 - text.size(), ' ') + text + "\r\n";
}

std::string textFrame(char code, char f, std::string_view text)
{
    std::string columns(text.substr(0, 61));
    columns.resize(61, ' ');
    return std::string{code, ':', f, ' '} + columns + "\r\n";
}

std::ostream& operator<<(std::ostream& out, const Settings& s)
{
    return out << s.start << " to " << s.end << " Hz, idle " << s.idle << ", spot " << s.spot << ", " << s.points
               << " points, attenuation " << s.attenuation << ", mode " << s.mode << ", period " << s.period
               << ", samples " << s.samples << ", pin " << s.pin << " for pen " << s.penOfPin << ", repeat " << s.repeat
               << ", phase " << s.phase << ", linear " << s.linear;
}

double Protocol::Pass::frequency(int point) const
{
    const double a = backward ? to : from, b = backward ? from : to;
    if (point == 0 || points == 1)
        return a;
    if (point == points - 1)
        return b;
    const double share = double(point) / (points - 1);
    return linear ? a + (b - a) * share : a * std::pow(b / a, share);
}

Protocol::Protocol(std::string serial, Traits traits)
    : m_serial(std::move(serial))
    , m_traits(std::move(traits))
    , m_settings(m_traits.settings)
{
    addSettings();
    addActions();
}

Protocol::Answer Protocol::number(double low, double high, double Settings::*field, char answer)
{
    return [=, this](std::string_view argument) -> Frames {
        if (const auto value = numberOf(argument))
            m_settings.*field = std::clamp(*value, low, high);
        return {frame(answer)};
    };
}

Protocol::Answer Protocol::whole(int low, int high, int Settings::*field, char answer)
{
    return [=, this](std::string_view argument) -> Frames {
        if (const auto value = numberOf(argument))
            m_settings.*field = static_cast<int>(std::lround(std::clamp<double>(*value, low, high)));
        return {frame(answer)};
    };
}

Protocol::Answer Protocol::flag(bool Settings::*field, char answer)
{
    return [=, this](std::string_view argument) -> Frames {
        if (const auto value = numberOf(argument))
            m_settings.*field = *value != 0;
        return {frame(answer)};
    };
}

Protocol::Answer Protocol::trim(int& code)
{
    return [this, &code](std::string_view argument) -> Frames {
        // The second number has no meaning.
        if (const auto value = numberOf(argument.substr(0, argument.find(' '))))
            code = static_cast<int>(std::lround(std::clamp(*value, 0.0, kTrimCodes - 1.0)));
        return {frame('C')};
    };
}

void Protocol::addSettings()
{
    const double highest = highestFrequency();
    m_answers["startfreq"] = number(kLowestFrequency, highest, &Settings::start, 's');
    m_answers["endfreq"] = number(kLowestFrequency, highest, &Settings::end, 's');
    m_answers["idlefreq"] = [this, highest](std::string_view argument) -> Frames {
        if (const auto value = numberOf(argument))
            m_settings.idle = *value < 0 ? -1 : *value == 0 ? 0 : std::clamp(*value, kLowestFrequency, highest);
        return {frame('K')};
    };
    m_answers["spotfreq"] = number(kLowestFrequency, highest, &Settings::spot, 'B');
    m_answers["points"] = whole(1, kMostPoints, &Settings::points, 'P');
    m_answers["atten"] = whole(0, highestAttenuation(), &Settings::attenuation, 'A');
    m_answers["repeat"] = flag(&Settings::repeat, 'P');
    m_answers["sweepmode"] = whole(0, 2, &Settings::mode, 'K');
    m_answers["period"] = whole(0, 32767, &Settings::period, 'S');
    m_answers["phase"] = flag(&Settings::phase, 'C');
    m_answers["samples"] = whole(1, kMostSamples, &Settings::samples, 'S');
    m_answers["linear"] = flag(&Settings::linear, 'S');
    m_answers["setvref"] = trim(m_vref);
    m_answers["setvdut"] = trim(m_vdut);
    m_answers["setfreqcomp"] = [this](std::string_view argument) -> Frames {
        if (const auto value = numberOf(argument))
            m_compensation = std::clamp(*value, 999000.0, 1001000.0);
        return {frame('t')};
    };
    m_answers["calon"] = [this](std::string_view argument) -> Frames {
        if (const auto value = numberOf(argument))
            m_applyCalibration = *value != 0;
        return {frame('R')};
    };
    m_answers["loopback"] = [this](std::string_view argument) -> Frames {
        if (const auto value = numberOf(argument))
            m_loopBack = *value != 0;
        return {frame('J')};
    };
    m_answers["setserial"] = [this](std::string_view name) -> Frames {
        const bool good = !name.empty() && name.size() <= 32 && name.front() != '.' &&
                          std::all_of(name.begin(), name.end(), [](unsigned char letter) {
                              return std::isalnum(letter) || letter == '.' || letter == '_' || letter == '-';
                          });
        if (!good)
            return {textFrame('T', '1', "This is no serial number."), frame('V')};
        m_serial = name;
        return {frame('V')};
    };
    m_answers["default"] = [this](std::string_view) -> Frames {
        m_settings = {1000, 1000000, -1, 1000, 100, 0, 2, 0, 1, 1, 0, false, true, false};
        Frames answer;
        for (const char code : std::string_view("ACKPQSsJ"))
            answer.push_back(frame(code));
        return answer;
    };
    m_answers["save"] = [](std::string_view) -> Frames { return {textFrame('r', '0', "Settings kept")}; };
}

void Protocol::addActions()
{
    m_answers["amptest"] = [this](std::string_view) { return beginTest(true); };
    m_answers["imptest"] = [this](std::string_view) { return beginTest(false); };
    const auto spot = [this](Spot kind) {
        return [this, kind](std::string_view argument) -> Frames {
            if (const auto value = numberOf(argument))
                m_settings.spot = std::clamp(*value, kLowestFrequency, highestFrequency());
            m_spot = kind;
            return level();
        };
    };
    m_answers["ampspot"] = spot(Spot::Amplitude);
    m_answers["impspot"] = spot(Spot::Impedance);
    m_answers["y"] = m_answers["x"] = [this](std::string_view) { return stopped(); };
    m_answers["enquire"] = [this](std::string_view version) { return enquire(version); };
    m_answers["run"] = [this](std::string_view) -> Frames {
        m_scriptRunning = true;
        return {numbersFrame('k', '1', {})};
    };
    m_answers["loadscript"] = [this](std::string_view argument) -> Frames {
        m_script.clear();
        m_scriptAwaited = static_cast<std::size_t>(std::clamp(numberOf(argument).value_or(0), 0.0, 1e7));
        return m_scriptAwaited == 0 ? Frames{textFrame('r', '0', "Script loaded")} : Frames{};
    };
    m_answers["calibrate"] = [this](std::string_view stamp) {
        m_newStamp = stamp;
        return begin({Kind::Calibration, true, kLowestFrequency, highestFrequency(), kCalibrationPoints});
    };
    m_answers["phasecal"] = [this](std::string_view) {
        return begin({Kind::PhaseTrim, true, m_settings.start, m_settings.end, kTrimCodes});
    };
    m_answers["zerocal"] = [this](std::string_view) -> Frames {
        m_calOffset = 0.25;
        m_calSlope = 1.01;
        return {frame('B')};
    };
    m_answers["diagnose"] = [this](std::string_view) {
        return begin({Kind::DiagnosisInLoop, true, kLowestFrequency, highestFrequency(), kDiagnosisPoints});
    };
}

Frames Protocol::take(std::string_view command)
{
    // The stop of a script comes behind the blank of an acknowledgement.
    if (command == " y")
        command.remove_prefix(1);
    const std::size_t blank = command.find(' ');
    const std::string_view word = command.substr(0, blank);
    if (word.starts_with("setpin"))
        return setPin(command.substr(6));
    const auto found = m_answers.find(word);
    if (found == m_answers.end())
        return {};
    return found->second(blank == std::string_view::npos ? std::string_view() : command.substr(blank + 1));
}

Frames Protocol::setPin(std::string_view digits)
{
    while (!digits.empty() && digits.front() == ' ')
        digits.remove_prefix(1);
    // The pin is one digit; what stands directly behind it is the pen that it is selected for.
    if (const auto pen = numberOf(digits.substr(std::min<std::size_t>(1, digits.size()))); !digits.empty()) {
        if (digits.front() == '1' || digits.front() == '2') {
            m_settings.pin = digits.front() - '0';
            m_settings.penOfPin = static_cast<int>(pen.value_or(0));
        }
    }
    return {frame('J')};
}

Frames Protocol::enquire(std::string_view version)
{
    Frames answer{frame('O'), frame('V')};
    const std::array<std::string_view, 7> information = {m_traits.sampling ? "DT46" : "T46",
                                                         "Two outputs, one input",
                                                         "0.01 Ohm to 1 MOhm",
                                                         "-180 to 180 degrees",
                                                         "-90 to 10 dB",
                                                         m_traits.sampling ? "10 Hz to 5 MHz" : "10 Hz to 50 MHz",
                                                         m_traits.sampling ? "PELLFERN" : "T46"};
    for (std::size_t slot = 0; slot < information.size(); ++slot)
        answer.push_back(textFrame('l', digit(static_cast<int>(slot)), information[slot]));
    for (const char code : std::string_view("LMNABCJKPQRSst"))
        answer.push_back(frame(code));
    if (!m_traits.madeFor.empty() && version != m_traits.madeFor)
        answer.push_back(textFrame('T', '1', "Version number mismatch. The firmware may need upgrading."));
    answer.push_back(frame('X'));
    return answer;
}

std::string Protocol::pointsFrame(int points) const
{
    return numbersFrame(
        'P', digit(running()),
        {double(points), double(m_settings.repeat), double(m_settings.samples), double(m_settings.linear)}, m_lastTest);
}

std::string Protocol::frame(char code) const
{
    const Settings& s = m_settings;
    const bool attenuator = !m_traits.sampling;
    constexpr double kStep = 10;
    switch (code) {
    case 'A':
        return numbersFrame(
            'A', digit(attenuator),
            {0, attenuator ? kStep * highestAttenuation() : 0, attenuator ? kStep : 0, double(s.attenuation)},
            highestAttenuation());
    case 'B':
        return numbersFrame('B', digit(m_loopBack), {s.spot, m_calOffset, m_calOffset, m_calSlope});
    case 'C':
        return numbersFrame('C', digit(s.phase), {s.spot, 1.2, 1.3, double(m_vref)}, m_vdut);
    case 'J':
        return numbersFrame('J', digit(m_loopBack), {double(attenuator), double(m_traits.sampling), 1, 0}, s.pin);
    case 'K':
        return numbersFrame('K', digit(s.mode), {s.idle, s.start, s.end});
    case 'L':
        return numbersFrame('L', '1', {kLowestFrequency, highestFrequency(), -90, 10}, s.idle != 0);
    case 'M':
        return numbersFrame('M', '1', {kLowestFrequency, highestFrequency(), -50000, 50000});
    case 'N':
        return numbersFrame('N', '1', {kLowestFrequency, highestFrequency(), 0.01, 1000001});
    case 'O':
        return numbersFrame('O', '0', {1, 28, 12, 3});
    case 'P':
        return pointsFrame(s.points);
    case 'Q':
        return numbersFrame('Q', '0', {kMostPoints, double(s.period), kMostSamples, double(s.pin)});
    case 'R':
        return numbersFrame(
            'R', digit(m_applyCalibration),
            {numberOf(m_stampTime).value_or(0), numberOf(m_stampDate).value_or(0), double(m_calibrated)});
    case 'S':
        return numbersFrame('S', digit(m_traits.sampling), {0, double(s.period), double(s.samples), double(s.linear)});
    case 'V':
        return textFrame('V', '0', m_serial);
    case 's':
        return numbersFrame('s', '0', {0, s.start, s.end});
    case 't':
        return numbersFrame('t', '0', {m_compensation});
    case 'X':
        return numbersFrame('X', digit(s.mode), {s.start, s.end, double(s.points), s.idle}, s.pin);
    default:
        return {};
    }
}

std::string Protocol::testFrame(char code, bool running, double from, double to) const
{
    return numbersFrame(code, digit(m_lastTest), {double(running), from, to, double(m_settings.repeat)},
                        m_settings.idle != 0);
}

std::string Protocol::levelFrame(bool amplitude, double hertz) const
{
    const SeriesPart::Value value = amplitude ? part().asAmplitude(hertz) : part().asImpedance(hertz);
    const double sign = value.degrees < 0 ? -1 : 1;
    if (m_settings.phase)
        return numbersFrame(amplitude ? 'G' : 'I', '1', {hertz, value.size, std::abs(value.degrees), sign});
    return numbersFrame(amplitude ? 'G' : 'I', '1', {hertz, value.size, amplitude ? -kNoPhase : 0, 1});
}

Frames Protocol::level() const
{
    if (running())
        return {};
    if (m_spot != Spot::None)
        return {levelFrame(m_spot == Spot::Amplitude, m_settings.spot)};
    if (m_settings.idle == 0)
        return {};
    return {levelFrame(true, m_settings.idle < 0 ? m_settings.start : m_settings.idle)};
}

Frames Protocol::beginTest(bool amplitude)
{
    m_lastTest = amplitude ? 1 : 2;
    if (m_onStart)
        m_onStart(m_settings);
    Pass pass{Kind::Test, amplitude, m_settings.start, m_settings.end, m_settings.points, m_settings.linear};
    pass.backward = m_settings.mode == 1;
    return begin(pass);
}

Frames Protocol::begin(Pass pass)
{
    Frames frames;
    if (running())
        frames = stopped();
    m_spot = Spot::None;
    m_pass = pass;
    if (pass.kind != Kind::Test) {
        m_lastTest = 1;
        if (pass.points != m_settings.points)
            frames.push_back(pointsFrame(pass.points));
    }
    const Frames start = startOfPass();
    frames.insert(frames.end(), start.begin(), start.end());
    return frames;
}

Frames Protocol::startOfPass()
{
    if (m_pass->kind == Kind::Test)
        m_sweeps.push_back({m_pass->amplitude, m_settings, {}, Sweep::End::Running});
    return {testFrame('D', true, m_pass->from, m_pass->to)};
}

void Protocol::endSweep(Sweep::End end)
{
    if (m_pass && m_pass->kind == Kind::Test)
        m_sweeps.back().end = end;
}

Frames Protocol::stopped()
{
    Frames frames;
    if (m_scriptRunning)
        frames = endScript();
    endSweep(Sweep::End::Stopped);
    const bool ownPoints = m_pass && m_pass->kind != Kind::Test && m_pass->points != m_settings.points;
    m_pass.reset();
    m_spot = Spot::None;
    frames.push_back(testFrame('E', false, m_settings.start, m_settings.end));
    if (ownPoints)
        frames.push_back(pointsFrame(m_settings.points));
    return frames;
}

std::string Protocol::trimPoint(int point) const
{
    constexpr int kBest = 117;
    const int code = kTrimCodes - 1 - point;
    const double error = 0.1 * (code - kBest);
    return numbersFrame('H', digit(point == kTrimCodes - 1),
                        {double(code), 0.05 * (code - kBest), std::abs(error), error < 0 ? -1.0 : 1.0}, point);
}

std::string Protocol::pointFrame(int point)
{
    const Pass& pass = *m_pass;
    if (pass.kind == Kind::PhaseTrim)
        return trimPoint(point);
    const double hertz = pass.frequency(point);
    SeriesPart::Value value = pass.amplitude ? part().asAmplitude(hertz) : part().asImpedance(hertz);
    if (pass.kind == Kind::Calibration || pass.kind == Kind::DiagnosisInLoop)
        value = {0.5 * std::sin(point / 50.0), 0};
    if (pass.kind == Kind::Test)
        m_sweeps.back().points.push_back({hertz, value});
    const bool marker = point % kMarkerEvery == 0 || point == pass.points - 1;
    const double degrees = m_settings.phase ? std::abs(value.degrees) : kNoPhase;
    const double sign = m_settings.phase && value.degrees < 0 ? -1 : 1;
    return numbersFrame(pass.amplitude ? 'H' : 'F', digit(marker), {hertz, value.size, degrees, sign}, point);
}

Frames Protocol::next()
{
    Frames frames{pointFrame(m_pass->next++)};
    if (m_pass->next == m_pass->points) {
        const Frames end = endOfPass();
        frames.insert(frames.end(), end.begin(), end.end());
    }
    return frames;
}

Frames Protocol::endOfPass()
{
    endSweep(Sweep::End::Complete);
    Pass pass = *m_pass;
    const bool again = pass.kind == Kind::Test && m_settings.repeat;
    m_pass.reset();
    Frames frames{testFrame('E', false, m_settings.start, m_settings.end), numbersFrame('Y', '0', {})};
    if (again || pass.kind == Kind::DiagnosisInLoop) {
        pass.next = 0;
        if (again && m_settings.mode == 2)
            pass.backward = !pass.backward;
        if (pass.kind == Kind::DiagnosisInLoop)
            pass.kind = Kind::DiagnosisOfPart;
        m_pass = pass;
        frames.push_back(startOfPass().front());
        return frames;
    }
    if (pass.kind == Kind::Calibration) {
        m_calibrated = true;
        if (m_newStamp.size() == 18) { // CAL-hhmmssddmmyyyy
            m_stampTime = m_newStamp.substr(4, 6);
            m_stampDate = m_newStamp.substr(10);
        }
        frames.push_back(frame('R'));
    }
    if (pass.kind == Kind::PhaseTrim) {
        m_vref = 117;
        frames.push_back(frame('C'));
    }
    if (pass.kind != Kind::Test && pass.points != m_settings.points)
        frames.push_back(pointsFrame(m_settings.points));
    return frames;
}

Frames Protocol::takeScript(std::string_view bytes)
{
    m_script += bytes;
    m_scriptAwaited -= bytes.size();
    return m_scriptAwaited == 0 ? Frames{textFrame('r', '0', "Script loaded")} : Frames{};
}

Frames Protocol::giveUpScript()
{
    m_script.clear();
    m_scriptAwaited = 0;
    return {numbersFrame('k', '0', {})};
}

Frames Protocol::endScript()
{
    m_scriptRunning = false;
    return {numbersFrame('k', '0', {})};
}

void Protocol::hostGone()
{
    endSweep(Sweep::End::HostGone);
    m_pass.reset();
    m_spot = Spot::None;
    m_scriptAwaited = 0;
    m_scriptRunning = false;
}

} // namespace played
