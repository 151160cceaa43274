// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "program/UserMessages.h"
#include "script/ScriptPorts.h"

#include <QObject>
#include <QStringList>

#include <optional>

namespace cli {

/// The user of a script that runs without windows: the answers of the command line, and where there are none the
/// terminal. What is only told goes to the problem stream.
///
/// One answer serves every question, several serve one question each. "ok" and "yes" agree, "no" and "cancel" refuse;
/// any other text agrees, and is the answer where a text is wanted. Without an answer and without a terminal every
/// question is refused.
class ScriptAnswers : public QObject, public UserMessages, public ScriptFileNames, public ScriptInput
{
    Q_OBJECT

public:
    /// The console outlives this.
    ScriptAnswers(Console& console, const QStringList& answers);

    int message(const QString& strMessage, int style, const QString& strTitle) override;
    int systemBox(const QString& strMessage, int style, const QString& strTitle) override;
    QString Dialog(const QString& caption) override;
    void clearFileName() override {}
    std::optional<QString> inputBox(const QString& prompt, const QString& title) override;

    /// The question on the terminal, if any, and all that follow are refused.
    void giveUp();

Q_SIGNALS:
    /// Something was told with a title, and nothing asked.
    void told(const QString& sentence, const QString& title);
    void asked(const QString& question, const QString& answer);
    void givenUp();

private:
    /// Nothing: there is none.
    std::optional<QString> nextAnswer(const QString& question);
    std::optional<QString> readLine(const QString& question);

    Console& m_console;
    QStringList m_answers;
    qsizetype m_next = 0;
    QByteArray m_typed; ///< read from the terminal and not yet taken
    bool m_givenUp = false;
};

} // namespace cli
