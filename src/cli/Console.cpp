// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"

#include <utility>

namespace cli {

Console::Console(QTextStream& results, QTextStream& problems, bool interactive)
    : m_results(results)
    , m_problems(problems)
    , m_interactive(interactive)
{}

void Console::result(const QString& line)
{
    endProgress();
    m_results << line << Qt::endl;
}

void Console::problem(const QString& sentence)
{
    endProgress();
    m_problems << "marrowick: " << sentence << Qt::endl;
}

void Console::progress(const QString& text)
{
    if (!m_interactive)
        return;
    m_problems << "\r\033[K" << text << Qt::flush;
    m_progressShown = true;
}

void Console::endProgress()
{
    if (std::exchange(m_progressShown, false))
        m_problems << "\r\033[K" << Qt::flush;
}

int ConsoleMessages::message(const QString& strMessage, int style, const QString& strTitle)
{
    return systemBox(strMessage, style, strTitle);
}

int ConsoleMessages::systemBox(const QString& strMessage, int style, const QString& strTitle)
{
    m_said = true;
    m_console.problem(strTitle.isEmpty() ? strMessage : strTitle + QStringLiteral(": ") + strMessage);
    switch (style & 0xF) {
    case AbortRetryIgnore:
        return ReplyIgnore;
    case YesNoCancel:
    case YesNo:
        return ReplyYes;
    case RetryCancel:
        return ReplyCancel;
    default:
        return ReplyOk;
    }
}

bool ConsoleMessages::takeSaid()
{
    return std::exchange(m_said, false);
}

} // namespace cli
