// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/ScriptAnswers.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSocketNotifier>

#include <array>
#include <unistd.h>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

bool agrees(const QString& answer)
{
    return answer.compare("no"_L1, Qt::CaseInsensitive) != 0 && answer.compare("cancel"_L1, Qt::CaseInsensitive) != 0;
}

bool isText(const QString& answer)
{
    return agrees(answer) && answer.compare("ok"_L1, Qt::CaseInsensitive) != 0 &&
           answer.compare("yes"_L1, Qt::CaseInsensitive) != 0;
}

struct Buttons
{
    const char* choice;
    int agreed, refused;
};

Buttons buttonsOf(int style)
{
    switch (style & 0xF) {
    case UserMessages::OkCancel:
        return {"ok/cancel", UserMessages::ReplyOk, UserMessages::ReplyCancel};
    case UserMessages::AbortRetryIgnore:
        return {"yes/no", UserMessages::ReplyIgnore, UserMessages::ReplyAbort};
    case UserMessages::YesNoCancel:
        return {"yes/no", UserMessages::ReplyYes, UserMessages::ReplyCancel};
    case UserMessages::YesNo:
        return {"yes/no", UserMessages::ReplyYes, UserMessages::ReplyNo};
    case UserMessages::RetryCancel:
        return {"yes/no", UserMessages::ReplyRetry, UserMessages::ReplyCancel};
    default:
        return {nullptr, UserMessages::ReplyOk, UserMessages::ReplyOk};
    }
}

} // namespace

ScriptAnswers::ScriptAnswers(Console& console, const QStringList& answers)
    : m_console(console)
    , m_answers(answers)
{}

void ScriptAnswers::giveUp()
{
    m_givenUp = true;
    Q_EMIT givenUp();
}

int ScriptAnswers::message(const QString& strMessage, int style, const QString& strTitle)
{
    return systemBox(strMessage, style, strTitle);
}

int ScriptAnswers::systemBox(const QString& strMessage, int style, const QString& strTitle)
{
    const Buttons buttons = buttonsOf(style);
    const QString sentence = strTitle.isEmpty() ? strMessage : strTitle + u": "_s + strMessage;
    if (buttons.choice == nullptr) {
        m_console.problem(sentence);
        Q_EMIT told(strMessage, strTitle);
        return buttons.agreed;
    }
    const std::optional<QString> answer = nextAnswer(u"%1 [%2]"_s.arg(sentence, QLatin1String(buttons.choice)));
    const bool agreed = answer && agrees(*answer);
    Q_EMIT asked(strMessage, answer.value_or(QString()));
    return agreed ? buttons.agreed : buttons.refused;
}

QString ScriptAnswers::Dialog(const QString& caption)
{
    const QString answer = nextAnswer(caption).value_or(QString());
    Q_EMIT asked(caption, answer);
    return isText(answer) ? answer : QString();
}

std::optional<QString> ScriptAnswers::inputBox(const QString& prompt, const QString& title)
{
    const std::optional<QString> answer = nextAnswer(title + u": "_s + prompt);
    Q_EMIT asked(prompt, answer.value_or(QString()));
    return answer && isText(*answer) ? answer : std::nullopt;
}

std::optional<QString> ScriptAnswers::nextAnswer(const QString& question)
{
    if (m_givenUp)
        return std::nullopt;
    if (m_answers.size() == 1)
        return m_answers.constFirst();
    if (m_next < m_answers.size())
        return m_answers[m_next++];
    return readLine(question);
}

std::optional<QString> ScriptAnswers::readLine(const QString& question)
{
    m_console.problem(question);
    QEventLoop loop;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    bool ended = false;
    const auto read = [this, &loop, &input, &ended] {
        std::array<char, 512> chunk{};
        const ssize_t count = ::read(STDIN_FILENO, chunk.data(), chunk.size());
        ended = count <= 0;
        if (ended)
            input.setEnabled(false);
        else
            m_typed.append(chunk.data(), count);
        if (ended || m_typed.contains('\n'))
            loop.quit();
    };
    connect(&input, &QSocketNotifier::activated, &loop, read);
    connect(this, &ScriptAnswers::givenUp, &loop, &QEventLoop::quit);
    if (!m_typed.contains('\n'))
        loop.exec();
    const qsizetype end = m_typed.indexOf('\n');
    if (m_givenUp || end < 0)
        return std::nullopt;
    const QString line = QString::fromUtf8(m_typed.first(end)).trimmed();
    m_typed.remove(0, end + 1);
    return line;
}

} // namespace cli
