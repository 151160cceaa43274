// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/instrument/BadLine.h"
#include "support/instrument/PlayedProtocol.h"

#include <QString>

#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace played {

/// How an instrument behaves towards its host, beside what the protocol wants.
struct Manners
{
    using Milliseconds = std::chrono::milliseconds;

    /// Before the answer to the n-th enquiry of a connection; those beyond the list have none. Commands that come
    /// meanwhile wait: an instrument does one thing after the other.
    std::vector<Milliseconds> enquiryDelays;
    Milliseconds delay{0}; ///< before any other answer
    int copies = 1;        ///< how often an answer is sent; starts and ends of tests come once all the same
    std::size_t piece = 0; ///< bytes written at a time, wherever frames end; 0: a frame
    std::chrono::microseconds pause{100}; ///< between two pieces
    enum class Order
    {
        AsTold,
        Backward, ///< an enquiry's answer from its end to its beginning
        XFirst    ///< the frame that closes an enquiry's answer ahead of it
    } order = Order::AsTold;
    std::string leftOut; ///< codes of frames that are never sent
    bool silent = false; ///< sends nothing at all
    Milliseconds pointTime{0};
    Milliseconds levelsEvery{0};    ///< while the idle output is on; 0: tells no levels
    std::optional<LineFaults> line; ///< what becomes of frames on their way; the log has what was left of them
};

/// What passed, and when: time since the instrument was switched on.
struct LogEntry
{
    std::chrono::microseconds at{0};
    bool received = false; ///< a command, without its carriage return; otherwise a frame, whole
    std::string text;
};

/// A Protocol behind a real pseudo-terminal with an entry in the registry folder, served by a thread of its own: it
/// answers the test's own process and whole programs alike. Its log is what a sweep is judged by.
///
/// All members may be called from the test's thread at any time, and from the actions given to after...().
class ScriptedInstrument
{
public:
    explicit ScriptedInstrument(const QString& serial, const Traits& traits = {}, const Manners& manners = {});
    ~ScriptedInstrument();
    ScriptedInstrument(const ScriptedInstrument&) = delete;
    ScriptedInstrument& operator=(const ScriptedInstrument&) = delete;

    /// Empty when it has its terminal and its entry; otherwise what failed.
    const QString& problem() const { return m_problem; }
    const QString& serial() const { return m_serial; }
    const QString& devicePath() const { return m_terminal; } ///< the terminal itself
    const QString& entryPath() const { return m_entry; }     ///< its link in the registry folder

    void setManners(const Manners& manners);
    /// These bytes go out as soon as the frame that is on its way is through, ahead of all others.
    void send(const std::string& bytes);
    /// The cable is pulled. There is no way back: the next one is another object.
    void hangUp();
    /// The cable has been pulled, by hangUp() or by the line.
    bool hungUp() const;
    /// The action runs once, on the instrument's thread: when the n-th (from 1) frame of that code has gone out, before
    /// another one does (where pieces are written: before the next but one does); or when the n-th command beginning
    /// with that word has been taken.
    void afterFrame(char code, int nth, std::function<void()> action);
    void onCommand(const std::string& word, int nth, std::function<void()> action);
    /// The settings are changed behind the host's back at the start of every test.
    void onStart(std::function<void(Settings&)> change);
    /// The running script is over.
    void endScript();

    /// What is in force as commanded.
    Settings settings() const;
    std::vector<Sweep> sweeps() const;
    std::string script() const;
    SeriesPart part() const;
    std::vector<LogEntry> log() const;
    /// Commands taken so far, in their order; acknowledgements are a single blank.
    std::vector<std::string> commands() const;
    int count(const std::string& word) const; ///< of commands beginning so
    int framesSent(char code) const;
    /// The log as lines of seconds, an arrow and the text.
    std::string logText() const;
    /// False: the file could not be written.
    bool saveLog(const QString& fileName) const;

private:
    using Clock = std::chrono::steady_clock;
    struct Trigger
    {
        bool onCommand;
        std::string key;
        int left;
        std::function<void()> action;
    };
    using Actions = std::vector<std::function<void()>>;

    bool openTerminal();
    bool enter();
    void serve();
    /// One round; false when the cable has been pulled.
    bool round();
    Clock::time_point nextTurn() const;
    void wake() const;
    void read();
    void cutCommands();
    void takeDue();
    void takeCommand(const std::string& command);
    void measure();
    void write();
    std::string nextBytes() const;
    void bytesGone(std::size_t count);
    void hostGone();
    void queueAnswer(Frames frames, bool enquiry);
    void queue(const std::string& frame);
    void pullCable();
    void note(bool received, const std::string& text);
    void match(bool onCommand, const std::string& text);
    void runActions();
    bool leavesOut(const std::string& frame) const;

    const QString m_serial;
    QString m_terminal, m_entry, m_problem;
    int m_master = -1;
    int m_wake[2] = {-1, -1};
    const Clock::time_point m_on = Clock::now();

    mutable std::mutex m_mutex;
    // Behind the mutex.
    Protocol m_protocol;
    Manners m_manners;
    bool m_ending = false;
    bool m_hostSeen = false;
    std::string m_input;
    Clock::time_point m_heard;
    std::deque<std::string> m_waiting;      ///< commands not yet answered
    std::optional<Clock::time_point> m_due; ///< of the first of them
    std::optional<BadLine> m_line;
    std::deque<BadLine::Piece> m_output;
    std::deque<std::string> m_urgent; ///< goes out ahead of it
    std::size_t m_written = 0;        ///< bytes of the first in m_output
    Clock::time_point m_nextPiece, m_nextPoint, m_nextLevel;
    int m_enquiries = 0;
    std::vector<LogEntry> m_log;
    std::vector<Trigger> m_triggers;
    Actions m_actions;

    std::thread m_thread;
};

} // namespace played
