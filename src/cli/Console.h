// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "program/UserMessages.h"

#include <QString>
#include <QTextStream>

namespace cli {

/// Where the program speaks: results go to one stream, problems and progress to the other.
class Console
{
public:
    /// Both outlive the console. interactive: the problem stream is a terminal and shows progress.
    Console(QTextStream& results, QTextStream& problems, bool interactive);

    /// A line of results.
    void result(const QString& line);
    /// A line that tells what went wrong; begins with the program's name.
    void problem(const QString& sentence);
    /// Replaces the line of progress before it; only on a terminal.
    void progress(const QString& text);
    /// Takes the line of progress away.
    void endProgress();

private:
    QTextStream& m_results;
    QTextStream& m_problems;
    bool m_interactive;
    bool m_progressShown = false;
};

/// Messages of the engine on the console: printed as problems, answered so that an unattended run goes on: OK, Yes,
/// Ignore. Remembers that something was said, which tells a refused test from a silent instrument.
class ConsoleMessages : public UserMessages
{
public:
    explicit ConsoleMessages(Console& console)
        : m_console(console)
    {}

    int message(const QString& strMessage, int style, const QString& strTitle) override;
    int systemBox(const QString& strMessage, int style, const QString& strTitle) override;

    /// True once after a message with the stop or exclamation icon, or an information.
    bool takeSaid();

private:
    Console& m_console;
    bool m_said = false;
};

} // namespace cli
