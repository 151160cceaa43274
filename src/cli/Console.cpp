// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Console.h"

#include "cli/StandardStreams.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <unistd.h>
#include <utility>

namespace cli {

Console::Console(const QString& name, Writer results, Writer problems, bool interactive)
    : m_name(name)
    , m_results(std::move(results))
    , m_problems(std::move(problems))
    , m_interactive(interactive)
{}

Console::Writer Console::into(QString& text)
{
    return [&text](const QByteArray& bytes) {
        text += QString::fromUtf8(bytes);
        return Outcome::success();
    };
}

Console Console::ofProgram(const QString& name)
{
    const auto problems = [](const QByteArray& bytes) { return writeStream(STDERR_FILENO, bytes, QString()); };
    const auto results = [](const QByteArray& bytes) {
        return writeStream(STDOUT_FILENO, bytes, standardOutputName());
    };
    return Console(name, results, problems, ::isatty(STDERR_FILENO) != 0);
}

void Console::result(const QString& line)
{
    if (m_resultsLost)
        return;
    endProgress();
    const Outcome written = m_results((line + QLatin1Char('\n')).toUtf8());
    m_resultsLost = !written;
    if (m_resultsLost)
        problem(written.sentence());
}

void Console::result(const QJsonObject& object)
{
    result(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
}

void Console::problem(const QString& sentence)
{
    endProgress();
    tell(m_name + QLatin1String(": ") + sentence + QLatin1Char('\n'));
}

ExitCode Console::failed(ExitCode code, const QString& sentence)
{
    problem(sentence);
    return code;
}

void Console::progress(const QString& text)
{
    if (!m_interactive)
        return;
    tell(QLatin1String("\r\033[K") + text);
    m_progressShown = true;
}

void Console::endProgress()
{
    if (std::exchange(m_progressShown, false))
        tell(QStringLiteral("\r\033[K"));
}

// Problems that cannot be told leave the exit code.
void Console::tell(const QString& text)
{
    static_cast<void>(m_problems(text.toUtf8()));
}

int ConsoleMessages::message(const QString& strMessage, int style, const QString& strTitle)
{
    return systemBox(strMessage, style, strTitle);
}

int ConsoleMessages::systemBox(const QString& strMessage, int style, const QString& strTitle)
{
    m_said = true;
    m_tell(strTitle.isEmpty() ? strMessage : strTitle + QStringLiteral(": ") + strMessage);
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
