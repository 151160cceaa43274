// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/script/FrameScript.h"

#include "controls/ferrolex/StatementTable.h"
#include "values/Conversions.h"

#include <QCoreApplication>
#include <QList>

#include <cmath>

namespace sim {

namespace {

constexpr std::string_view kTextCodes = "TUVZbfgiloprx";
constexpr int kLongestPause = 3'600'000; // ms

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::FrameScript", text);
}

} // namespace

std::optional<FrameScript::Step> FrameScript::stepOf(const QByteArray& line)
{
    const qsizetype blank = line.indexOf(' ');
    const QByteArray word = blank < 0 ? line : line.left(blank);
    const QByteArray rest = blank < 0 ? QByteArray() : line.mid(blank + 1).trimmed();
    if (word == ">")
        return rest.isEmpty() ? std::nullopt : std::optional<Step>(Execute{rest.toStdString()});
    if (word == "sweep") {
        if (rest == "impedance")
            return Sweep{TestKind::Impedance};
        return rest == "amplitude" ? std::optional<Step>(Sweep{TestKind::Amplitude}) : std::nullopt;
    }
    if (word == "wait") {
        bool ok = false;
        const int milliseconds = rest.toInt(&ok);
        if (!ok || milliseconds < 0 || milliseconds > kLongestPause)
            return {};
        return Pause{std::chrono::milliseconds(milliseconds)};
    }
    if (word.size() != 1)
        return {};
    const char code = word[0];
    const bool answered = ferrolex::isAnswered(code);
    if (kTextCodes.find(code) != std::string_view::npos) {
        const QByteArray text = rest.mid(1).trimmed();
        if (rest.isEmpty() || (rest.size() > 1 && rest[1] != ' '))
            return {};
        return SendFrame{selectorFrame(code, rest[0], text.toStdString()), answered};
    }
    FrameNumbers numbers;
    int field = 0;
    const QList<QByteArray> cells = rest.isEmpty() ? QList<QByteArray>() : rest.simplified().split(' ');
    if (cells.size() > 6)
        return {};
    double* const places[] = {&numbers.n1, &numbers.n2, &numbers.n3, &numbers.n4};
    for (qsizetype i = 0; i < cells.size(); ++i) {
        const auto number = i == 0 && cells[0] == "A"
                                ? std::optional(10.0)
                                : values::strictNumber(std::string_view(cells[i].constData(),
                                                                        static_cast<std::size_t>(cells[i].size())));
        if (!number || !std::isfinite(*number))
            return {};
        if (i == 0)
            field = values::roundToInt32(*number);
        else if (i == 5)
            numbers.i = values::roundToInt32(*number);
        else
            *places[i - 1] = *number;
    }
    return SendFrame{numberFrame(code, field, numbers), answered};
}

ValueOr<FrameScript> FrameScript::fromText(const QByteArray& text)
{
    FrameScript script;
    int lineNumber = 0;
    for (const QByteArray& raw : text.split('\n')) {
        ++lineNumber;
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const std::optional<Step> step = stepOf(line);
        if (!step)
            return Outcome::failure(
                tr("Line %1 of the script frames is neither a frame, a command (> ...), a sweep nor a wait.")
                    .arg(lineNumber));
        script.m_steps.push_back(*step);
    }
    return script;
}

Outcome FrameScript::start(const QByteArray&, ScriptHost& host, Moment now)
{
    m_host = &host;
    m_next = 0;
    m_awaiting = Awaiting::Nothing;
    carryOn(now);
    return Outcome::success();
}

void FrameScript::carryOn(Moment now)
{
    m_awaiting = Awaiting::Nothing;
    while (m_awaiting == Awaiting::Nothing) {
        if (m_next == m_steps.size()) {
            std::exchange(m_host, nullptr)->finished(Outcome::success());
            return;
        }
        const Step& step = m_steps[m_next++];
        if (const auto* frame = std::get_if<SendFrame>(&step)) {
            m_host->send(frame->frame);
            if (frame->answered)
                m_awaiting = Awaiting::Acknowledgement;
        } else if (const auto* command = std::get_if<Execute>(&step)) {
            if (!m_host->execute(command->command)) {
                std::exchange(m_host, nullptr)
                    ->finished(
                        Outcome::failure(tr("No such command: %1").arg(QString::fromStdString(command->command))));
                return;
            }
        } else if (const auto* sweep = std::get_if<Sweep>(&step)) {
            m_awaiting = Awaiting::RunEnd;
            m_host->execute(sweep->kind == TestKind::Amplitude ? "amptest" : "imptest");
        } else if (const auto* pause = std::get_if<Pause>(&step)) {
            m_awaiting = Awaiting::Time;
            m_due = now + pause->duration;
        }
    }
}

void FrameScript::acknowledged(Moment now)
{
    if (m_awaiting == Awaiting::Acknowledgement)
        carryOn(now);
}

void FrameScript::runEnded(bool completed, Moment now)
{
    if (m_awaiting != Awaiting::RunEnd)
        return;
    if (completed)
        carryOn(now);
    else
        std::exchange(m_host, nullptr)->finished(Outcome::success());
}

void FrameScript::stop()
{
    m_host = nullptr;
    m_awaiting = Awaiting::Nothing;
}

void FrameScript::advance(Moment now)
{
    if (m_awaiting == Awaiting::Time && now >= m_due)
        carryOn(now);
}

std::optional<Moment> FrameScript::nextDue() const
{
    return m_awaiting == Awaiting::Time ? std::optional(m_due) : std::nullopt;
}

} // namespace sim
