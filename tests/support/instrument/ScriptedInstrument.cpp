// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/instrument/ScriptedInstrument.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace played {
namespace {

using namespace std::chrono_literals;

constexpr auto kLongestLine = 256;
/// A blank that nothing has followed for that long is an acknowledgement.
constexpr auto kBlankAlone = 5ms;
/// A script that has been silent for that long has been cancelled.
constexpr auto kTransferSilence = 1s;
/// How often a terminal without a host is looked at.
constexpr auto kHostWatch = 2ms;
constexpr auto kSpotInterval = 100ms;
constexpr auto kIdle = 100ms;

bool isWord(const std::string& command, const std::string& word)
{
    return command.compare(0, word.size(), word) == 0;
}

} // namespace

ScriptedInstrument::ScriptedInstrument(const QString& serial, const Traits& traits, const Manners& manners)
    : m_serial(serial)
    , m_protocol(serial.toStdString(), traits)
    , m_manners(manners)
{
    if (manners.line)
        m_line.emplace(*manners.line);
    if (openTerminal() && enter())
        m_thread = std::thread([this] { serve(); });
}

ScriptedInstrument::~ScriptedInstrument()
{
    hangUp();
    if (m_thread.joinable())
        m_thread.join();
    if (m_master >= 0)
        ::close(m_master);
    for (const int file : m_wake) {
        if (file >= 0)
            ::close(file);
    }
}

bool ScriptedInstrument::openTerminal()
{
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    std::array<char, 64> name{};
    termios mode{};
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0 ||
        ::ptsname_r(m_master, name.data(), name.size()) != 0 || ::tcgetattr(m_master, &mode) != 0 ||
        ::pipe2(m_wake, O_NONBLOCK | O_CLOEXEC) != 0) {
        m_problem = QStringLiteral("no pseudo-terminal: ") + QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    ::cfmakeraw(&mode);
    ::tcsetattr(m_master, TCSANOW, &mode);
    m_terminal = QString::fromLocal8Bit(name.data());
    return true;
}

bool ScriptedInstrument::enter()
{
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/marrowick/devices");
    m_entry = folder + u'/' + m_serial;
    QFile::remove(m_entry);
    if (QDir().mkpath(folder) && QFile::link(m_terminal, m_entry))
        return true;
    m_problem = QStringLiteral("no entry ") + m_entry;
    return false;
}

void ScriptedInstrument::wake() const
{
    [[maybe_unused]] const ssize_t count = ::write(m_wake[1], "", 1);
}

void ScriptedInstrument::setManners(const Manners& manners)
{
    const std::lock_guard lock(m_mutex);
    m_manners = manners;
    m_line.reset();
    if (manners.line)
        m_line.emplace(*manners.line);
    wake();
}

void ScriptedInstrument::send(const std::string& bytes)
{
    const std::lock_guard lock(m_mutex);
    m_urgent.push_back(bytes);
    wake();
}

void ScriptedInstrument::hangUp()
{
    const std::lock_guard lock(m_mutex);
    pullCable();
    wake();
}

void ScriptedInstrument::pullCable()
{
    if (!m_ending && !m_entry.isEmpty())
        QFile::remove(m_entry);
    m_ending = true;
}

bool ScriptedInstrument::hungUp() const
{
    const std::lock_guard lock(m_mutex);
    return m_ending;
}

void ScriptedInstrument::afterFrame(char code, int nth, std::function<void()> action)
{
    const std::lock_guard lock(m_mutex);
    m_triggers.push_back({false, std::string(1, code), nth, std::move(action)});
}

void ScriptedInstrument::onCommand(const std::string& word, int nth, std::function<void()> action)
{
    const std::lock_guard lock(m_mutex);
    m_triggers.push_back({true, word, nth, std::move(action)});
}

void ScriptedInstrument::onStart(std::function<void(Settings&)> change)
{
    const std::lock_guard lock(m_mutex);
    m_protocol.setOnStart(std::move(change));
}

void ScriptedInstrument::endScript()
{
    const std::lock_guard lock(m_mutex);
    for (const std::string& frame : m_protocol.endScript())
        queue(frame);
    wake();
}

Settings ScriptedInstrument::settings() const
{
    const std::lock_guard lock(m_mutex);
    return m_protocol.settings();
}

std::vector<Sweep> ScriptedInstrument::sweeps() const
{
    const std::lock_guard lock(m_mutex);
    return m_protocol.sweeps();
}

std::string ScriptedInstrument::script() const
{
    const std::lock_guard lock(m_mutex);
    return m_protocol.script();
}

SeriesPart ScriptedInstrument::part() const
{
    return m_protocol.part();
}

std::vector<LogEntry> ScriptedInstrument::log() const
{
    const std::lock_guard lock(m_mutex);
    return m_log;
}

std::vector<std::string> ScriptedInstrument::commands() const
{
    std::vector<std::string> commands;
    for (LogEntry& entry : log()) {
        if (entry.received)
            commands.push_back(std::move(entry.text));
    }
    return commands;
}

int ScriptedInstrument::count(const std::string& word) const
{
    const std::vector<std::string> all = commands();
    return static_cast<int>(
        std::count_if(all.begin(), all.end(), [&word](const auto& command) { return isWord(command, word); }));
}

int ScriptedInstrument::framesSent(char code) const
{
    const std::vector<LogEntry> all = log();
    return static_cast<int>(std::count_if(all.begin(), all.end(), [code](const LogEntry& entry) {
        return !entry.received && entry.text.front() == code;
    }));
}

std::string ScriptedInstrument::logText() const
{
    std::string text;
    for (const LogEntry& entry : log()) {
        std::array<char, 32> time{};
        std::snprintf(time.data(), time.size(), "%.6f", static_cast<double>(entry.at.count()) / 1e6);
        text += time.data();
        text += entry.received ? " > " : " < ";
        text += entry.text.substr(0, entry.text.find_last_not_of("\r\n") + 1) + '\n';
    }
    return text;
}

bool ScriptedInstrument::saveLog(const QString& fileName) const
{
    QFile file(fileName);
    const QByteArray text = QByteArray::fromStdString(logText());
    return file.open(QFile::WriteOnly) && file.write(text) == text.size();
}

void ScriptedInstrument::serve()
{
    while (round())
        runActions();
    runActions();
    const std::lock_guard lock(m_mutex);
    ::close(m_master);
    m_master = -1;
}

bool ScriptedInstrument::round()
{
    std::array<pollfd, 2> watched{pollfd{m_wake[0], POLLIN, 0}, pollfd{m_master, POLLIN, 0}};
    Clock::duration wait{};
    {
        const std::lock_guard lock(m_mutex);
        const auto now = Clock::now();
        if ((!m_output.empty() || !m_urgent.empty()) && m_nextPiece <= now)
            watched[1].events |= POLLOUT;
        wait = std::max(nextTurn() - now, Clock::duration::zero());
    }
    // Pauses between pieces are shorter than poll() can wait.
    const timespec patience{0, static_cast<long>(std::chrono::nanoseconds(wait).count())};
    ::ppoll(watched.data(), watched.size(), &patience, nullptr);
    if ((watched[1].revents & POLLHUP) != 0 && (watched[1].revents & POLLIN) == 0) {
        // Nobody at the other end. Waiting for somebody is not an event, so look again soon.
        watched[1].fd = -1;
        ::poll(watched.data(), watched.size(), static_cast<int>(kHostWatch.count()));
    }
    const std::lock_guard lock(m_mutex);
    if ((watched[0].revents & POLLIN) != 0) {
        std::array<char, 256> dropped{};
        [[maybe_unused]] const ssize_t count = ::read(m_wake[0], dropped.data(), dropped.size());
    }
    if (m_ending)
        return false;
    if (watched[1].fd < 0) {
        hostGone();
        return true;
    }
    if ((watched[1].revents & POLLIN) != 0)
        read();
    cutCommands();
    takeDue();
    measure();
    write();
    return !m_ending;
}

ScriptedInstrument::Clock::time_point ScriptedInstrument::nextTurn() const
{
    Clock::time_point turn = Clock::now() + kIdle;
    if (!m_actions.empty())
        return Clock::now();
    if (m_nextPiece > Clock::now())
        turn = std::min(turn, m_nextPiece);
    if (m_due)
        turn = std::min(turn, *m_due);
    if (m_protocol.running() && m_output.empty())
        turn = std::min(turn, m_nextPoint);
    if (m_protocol.spotRunning() || (m_enquiries > 0 && m_manners.levelsEvery > 0ms))
        turn = std::min(turn, m_nextLevel);
    if (m_input == " ")
        turn = std::min(turn, m_heard + kBlankAlone);
    return turn;
}

void ScriptedInstrument::read()
{
    std::array<char, 4096> chunk;
    for (;;) {
        const ssize_t count = ::read(m_master, chunk.data(), chunk.size());
        if (count <= 0)
            return;
        m_input.append(chunk.data(), static_cast<std::size_t>(count));
        m_heard = Clock::now();
        m_hostSeen = true;
    }
}

void ScriptedInstrument::hostGone()
{
    if (!m_hostSeen)
        return;
    m_hostSeen = false;
    m_protocol.hostGone();
    m_input.clear();
    m_waiting.clear();
    m_due.reset();
    m_output.clear();
    m_urgent.clear();
    m_written = 0;
    m_enquiries = 0;
}

void ScriptedInstrument::cutCommands()
{
    std::size_t from = 0;
    std::string line;
    while (from < m_input.size()) {
        if (m_protocol.scriptBytesAwaited() > 0) {
            const std::size_t taken = std::min(m_protocol.scriptBytesAwaited(), m_input.size() - from);
            queueAnswer(m_protocol.takeScript(std::string_view(m_input).substr(from, taken)), false);
            from += taken;
            continue;
        }
        const std::size_t end = m_input.find('\r', from);
        if (end == std::string::npos)
            break;
        line.clear();
        std::copy_if(m_input.begin() + static_cast<std::ptrdiff_t>(from),
                     m_input.begin() + static_cast<std::ptrdiff_t>(end), std::back_inserter(line),
                     [](char byte) { return static_cast<unsigned char>(byte) >= ' '; });
        from = end + 1;
        note(true, line);
        if (line.size() > kLongestLine)
            continue;
        m_waiting.push_back(line);
        // The bytes behind it are no commands: it has to be taken first.
        if (isWord(line, "loadscript"))
            takeDue();
    }
    m_input.erase(0, from);
    const auto now = Clock::now();
    if (m_input == " " && now - m_heard >= kBlankAlone) {
        note(true, m_input);
        match(true, m_input);
        m_input.clear();
    }
    if (m_protocol.scriptBytesAwaited() > 0 && now - m_heard > kTransferSilence)
        queueAnswer(m_protocol.giveUpScript(), false);
}

void ScriptedInstrument::takeDue()
{
    while (!m_waiting.empty()) {
        const std::string command = m_waiting.front();
        if (!m_due) {
            auto delay = m_manners.delay;
            if (isWord(command, "enquire")) {
                const auto number = static_cast<std::size_t>(m_enquiries++);
                delay = number < m_manners.enquiryDelays.size() ? m_manners.enquiryDelays[number] : 0ms;
            }
            m_due = Clock::now() + delay;
        }
        if (*m_due > Clock::now())
            return;
        m_due.reset();
        m_waiting.pop_front();
        takeCommand(command);
    }
}

void ScriptedInstrument::takeCommand(const std::string& command)
{
    match(true, command);
    const auto now = Clock::now();
    if (!m_protocol.running())
        m_nextPoint = now + m_manners.pointTime;
    queueAnswer(m_protocol.take(command), isWord(command, "enquire"));
    m_nextLevel = now + (m_protocol.spotRunning() ? kSpotInterval : m_manners.levelsEvery);
}

void ScriptedInstrument::queueAnswer(Frames frames, bool enquiry)
{
    if (enquiry && m_manners.order == Manners::Order::Backward)
        std::reverse(frames.begin(), frames.end());
    if (enquiry && m_manners.order == Manners::Order::XFirst)
        std::rotate(frames.rbegin(), frames.rbegin() + 1, frames.rend());
    for (int copy = 0; copy < m_manners.copies; ++copy) {
        for (const std::string& frame : frames) {
            if (copy == 0 || (frame.front() != 'D' && frame.front() != 'E' && frame.front() != 'k'))
                queue(frame);
        }
    }
}

void ScriptedInstrument::queue(const std::string& frame)
{
    if (m_manners.silent || leavesOut(frame))
        return;
    if (!m_line) {
        m_output.push_back({frame});
        return;
    }
    for (BadLine::Piece& piece : m_line->carry(frame))
        m_output.push_back(std::move(piece));
}

bool ScriptedInstrument::leavesOut(const std::string& frame) const
{
    return m_manners.leftOut.find(frame.front()) != std::string::npos;
}

void ScriptedInstrument::measure()
{
    const auto now = Clock::now();
    // A host that does not read makes the instrument wait.
    constexpr std::size_t kMostUnsent = 64;
    while (m_protocol.running() && m_output.size() < kMostUnsent && m_nextPoint <= now) {
        for (const std::string& frame : m_protocol.next())
            queue(frame);
        m_nextPoint = m_manners.pointTime > 0ms ? m_nextPoint + m_manners.pointTime : now;
        if (m_manners.silent)
            break;
    }
    const bool spot = m_protocol.spotRunning();
    const auto interval = spot ? std::chrono::milliseconds(kSpotInterval) : m_manners.levelsEvery;
    if (interval == 0ms || now < m_nextLevel || (!spot && m_enquiries == 0))
        return;
    m_nextLevel = now + interval;
    for (const std::string& frame : m_protocol.level())
        queue(frame);
}

std::string ScriptedInstrument::nextBytes() const
{
    std::string bytes = m_output.front().bytes.substr(m_written);
    if (m_manners.piece == 0)
        return bytes;
    const bool others = m_written == 0 || m_urgent.empty(); // what is urgent comes behind this frame
    for (auto next = m_output.begin() + 1; others && next != m_output.end() && bytes.size() < m_manners.piece; ++next) {
        if (next->before > 0ms || std::prev(next)->last)
            break;
        bytes += next->bytes;
    }
    bytes.resize(std::min(bytes.size(), m_manners.piece));
    return bytes;
}

void ScriptedInstrument::bytesGone(std::size_t count)
{
    m_written += count;
    while (!m_output.empty() && m_written >= m_output.front().bytes.size()) {
        const BadLine::Piece piece = std::move(m_output.front());
        m_output.pop_front();
        m_written -= piece.bytes.size();
        note(false, piece.bytes);
        match(false, piece.bytes);
        if (piece.last)
            pullCable();
    }
}

void ScriptedInstrument::write()
{
    while (m_nextPiece <= Clock::now()) {
        if (m_written == 0 && !m_urgent.empty()) {
            m_output.push_front({m_urgent.front()});
            m_urgent.pop_front();
        }
        if (m_output.empty())
            return;
        if (const auto silence = std::exchange(m_output.front().before, 0ms); silence > 0ms) {
            m_nextPiece = Clock::now() + silence;
            return;
        }
        const std::string bytes = nextBytes();
        const ssize_t count = ::write(m_master, bytes.data(), bytes.size());
        if (count <= 0)
            return;
        if (m_manners.piece > 0)
            m_nextPiece = Clock::now() + m_manners.pause;
        bytesGone(static_cast<std::size_t>(count));
        if (m_ending || !m_actions.empty())
            return; // what they do comes ahead of the next frame
    }
}

void ScriptedInstrument::note(bool received, const std::string& text)
{
    m_log.push_back({std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - m_on), received, text});
}

void ScriptedInstrument::match(bool onCommand, const std::string& text)
{
    for (auto trigger = m_triggers.begin(); trigger != m_triggers.end();) {
        const bool fits = trigger->onCommand == onCommand && isWord(text, trigger->key);
        if (fits && --trigger->left == 0) {
            m_actions.push_back(std::move(trigger->action));
            trigger = m_triggers.erase(trigger);
        } else {
            ++trigger;
        }
    }
}

void ScriptedInstrument::runActions()
{
    Actions actions;
    {
        const std::lock_guard lock(m_mutex);
        actions.swap(m_actions);
    }
    for (const auto& action : actions)
        action();
}

} // namespace played
