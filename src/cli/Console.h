// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/ExitCode.h"
#include "program/UserMessages.h"
#include "values/Outcome.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <utility>

class QJsonObject;

namespace cli {

/// Where the program speaks: results go to one stream, problems and progress to the other. Nothing is kept back in a
/// buffer: what has been told is out, or is known not to be.
class Console
{
public:
    /// Writes bytes to a stream.
    using Writer = std::function<Outcome(const QByteArray& bytes)>;

    /// A writer that appends to a text, which outlives it; never fails.
    static Writer into(QString& text);

    /// name stands in front of each problem. interactive: the problem stream is a terminal and shows progress.
    Console(const QString& name, Writer results, Writer problems, bool interactive);
    /// The console of a program on its standard streams.
    static Console ofProgram(const QString& name);

    /// A line of results. The first that cannot be written is told as a problem, all behind it are dropped.
    void result(const QString& line);
    /// The same: one JSON object, in one line.
    void result(const QJsonObject& object);
    /// True when a line of results was dropped: the program's work is not done, whatever else went well.
    bool resultsLost() const { return m_resultsLost; }

    /// A line that tells what went wrong; begins with the program's name.
    void problem(const QString& sentence);
    /// The same, for the end of a command.
    ExitCode failed(ExitCode code, const QString& sentence);

    /// Replaces the line of progress before it; only on a terminal.
    void progress(const QString& text);
    /// Takes the line of progress away.
    void endProgress();

private:
    void tell(const QString& text);

    QString m_name;
    Writer m_results;
    Writer m_problems;
    bool m_interactive;
    bool m_progressShown = false;
    bool m_resultsLost = false;
};

/// Messages of the engine on the console: told as problems, answered so that an unattended run goes on: OK, Yes,
/// Ignore. Remembers that something was said, which tells a refused test from a silent instrument.
class ConsoleMessages : public UserMessages
{
public:
    /// tell takes each sentence.
    explicit ConsoleMessages(std::function<void(const QString&)> tell)
        : m_tell(std::move(tell))
    {}
    /// The console outlives the messages.
    explicit ConsoleMessages(Console& console)
        : m_tell([&console](const QString& sentence) { console.problem(sentence); })
    {}

    int message(const QString& strMessage, int style, const QString& strTitle) override;
    int systemBox(const QString& strMessage, int style, const QString& strTitle) override;

    /// True once after a message with the stop or exclamation icon, or an information.
    bool takeSaid();

private:
    std::function<void(const QString&)> m_tell;
    bool m_said = false;
};

} // namespace cli
