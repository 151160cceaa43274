// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/script/Interpreter.h"

#include "controls/ferrolex/Checker.h"
#include "controls/ferrolex/Finding.h"
#include "controls/ferrolex/Source.h"
#include "values/Conversions.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <utility>

namespace sim {

using ferrolex::Statement;
using ferrolex::Step;

namespace {

// A script that never waits still leaves the instrument time for its host.
constexpr int kStatementsAtOnce = 200;
constexpr Duration kBreather = std::chrono::milliseconds(1);
constexpr double kMostRounds = 1e6;

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::Interpreter", text);
}

/// As a frame carries it: one "?" for each character that is not in ASCII.
std::string frameText(const QByteArray& text)
{
    std::string carried;
    for (const QChar c : QString::fromUtf8(text).trimmed()) {
        if (c.isLowSurrogate())
            continue;
        carried += c >= QLatin1Char(' ') && c <= QLatin1Char('~') ? static_cast<char>(c.unicode()) : '?';
    }
    return carried;
}

char selector(double field)
{
    const int number = static_cast<int>(field);
    return static_cast<char>(number < 10 ? '0' + number : 'A' + number - 10);
}

} // namespace

Outcome Interpreter::start(const QByteArray& script, ScriptHost& host, Moment now)
{
    const InstrumentState& state = host.state();
    m_target = {ferrolex::DeviceRanges(QLatin1String(state.facts->modelText)),
                ferrolex::firmwareNumber(state.firmwareMajor, state.firmwareMinor)};
    const ValueOr<ferrolex::Source> source = ferrolex::Source::of(script);
    if (!source)
        return Outcome::failure(source.sentence());
    ferrolex::Findings findings(source.value());
    m_program = ferrolex::parse(source.value(), m_target, findings);
    ferrolex::judge(m_program, findings);
    if (findings.errors() > 0) {
        for (const ferrolex::Finding& finding : std::move(findings).sorted()) {
            if (finding.severity == ferrolex::Finding::Severity::Error)
                return Outcome::failure(tr("Line %1: %2").arg(finding.line).arg(finding.sentence));
        }
    }
    m_names.assign(static_cast<std::size_t>(m_program.nameCount), {});
    m_running.clear();
    m_running.push_back({&m_program.statements});
    m_lastNumbers.clear();
    m_action = nullptr;
    m_host = &host;
    carryOn(now);
    return Outcome::success();
}

void Interpreter::carryOn(Moment now)
{
    m_awaiting = Awaiting::Nothing;
    for (int count = 0; m_host && m_awaiting == Awaiting::Nothing; ++count) {
        if (count == kStatementsAtOnce) {
            m_awaiting = Awaiting::Time;
            m_due = now + kBreather;
            return;
        }
        goOn(now);
    }
}

void Interpreter::goOn(Moment now)
{
    if (m_action) {
        const Step& step = m_action->steps[m_step++];
        const bool ends = (m_action->traits & ferrolex::Action::EndsScript) != 0;
        if (m_step == m_action->steps.size())
            m_action = nullptr;
        runStep(step, now);
        if (ends && !m_action)
            end(Outcome::success());
        return;
    }
    Running& running = m_running.back();
    if (running.next < running.block->size()) {
        runStatement((*running.block)[running.next++], now);
        return;
    }
    if (running.loop && beginRound(running))
        return;
    if (!m_host)
        return; // a fault in the condition
    m_running.pop_back();
    if (m_running.empty())
        end(Outcome::success());
}

void Interpreter::runStatement(const Statement& statement, Moment)
{
    m_line = statement.line;
    switch (statement.kind) {
    case Statement::Kind::Action:
        beginAction(statement);
        break;
    case Statement::Kind::Let:
        m_names[static_cast<std::size_t>(statement.target)] = valueOf(statement.value);
        break;
    case Statement::Kind::If: {
        const bool holds = valueOf(statement.value).number != 0;
        if (m_host)
            m_running.push_back({holds ? &statement.body : &statement.otherwise});
        break;
    }
    case Statement::Kind::Do:
        call(statement);
        break;
    case Statement::Kind::Leave:
        leaveLoop();
        break;
    case Statement::Kind::Finish:
        end(Outcome::success());
        break;
    default:
        beginLoop(statement);
    }
}

void Interpreter::beginLoop(const Statement& statement)
{
    Running running{&statement.body, statement.body.size(), &statement};
    running.most = kMostRounds;
    if (statement.kind == Statement::Kind::For) {
        running.counter = valueOf(statement.value).number;
        running.last = m_host ? valueOf(statement.to).number : 0;
        running.step = !m_host || statement.step == ferrolex::kNone ? 1 : valueOf(statement.step).number;
        if (m_host && running.step == 0)
            fault(tr("With a step of 0 the loop never ends."));
    } else if (statement.kind == Statement::Kind::Times) {
        running.most = roundsOf(statement.value);
    } else if (statement.to != ferrolex::kNone) {
        running.most = roundsOf(statement.to);
    }
    if (m_host)
        m_running.push_back(running);
}

bool Interpreter::mayBeginRound(Running& running)
{
    const Statement& loop = *running.loop;
    switch (loop.kind) {
    case Statement::Kind::UntilStopped:
        return true;
    case Statement::Kind::While:
    case Statement::Kind::Until: {
        if (loop.to != ferrolex::kNone && running.rounds >= running.most)
            return false;
        const bool holds = valueOf(loop.value).number != 0;
        return m_host && holds == (loop.kind == Statement::Kind::While);
    }
    case Statement::Kind::For: {
        const double value = running.counter + running.rounds * running.step;
        if (running.step > 0 ? value > running.last : value < running.last)
            return false;
        if (running.rounds >= kMostRounds) {
            fault(tr("The loop runs more than 1000000 times."));
            return false;
        }
        m_names[static_cast<std::size_t>(loop.target)] = {value, {}};
        return true;
    }
    default:
        return running.rounds < running.most;
    }
}

bool Interpreter::beginRound(Running& running)
{
    m_line = running.loop->line;
    if (!mayBeginRound(running))
        return false;
    ++running.rounds;
    running.next = 0;
    return true;
}

void Interpreter::leaveLoop()
{
    while (!m_running.back().loop)
        m_running.pop_back();
    m_running.pop_back();
}

void Interpreter::call(const Statement& statement)
{
    const ferrolex::Procedure& procedure = m_program.procedures[static_cast<std::size_t>(statement.target)];
    for (std::size_t i = 0; i < statement.argumentCount && m_host; ++i)
        m_names[static_cast<std::size_t>(procedure.parameters[i])] =
            valueOf(m_program.arguments[statement.firstArgument + i].expression);
    if (m_host)
        m_running.push_back({&procedure.body});
}

void Interpreter::beginAction(const Statement& statement)
{
    const ferrolex::Action& action = ferrolex::actions()[statement.row];
    m_arguments.clear();
    for (std::size_t i = 0; i < statement.argumentCount; ++i) {
        const ferrolex::Argument& argument = m_program.arguments[statement.firstArgument + i];
        m_arguments.push_back(argument.expression == ferrolex::kNone ? ferrolex::Value{argument.number, {}}
                                                                     : valueOf(argument.expression));
        if (!m_host)
            return;
        if (const QString wrong = m_target.ranges.fault(action.slots[i].type, m_arguments.back().number);
            argument.expression != ferrolex::kNone && !wrong.isEmpty()) {
            fault(wrong);
            return;
        }
    }
    m_action = &action;
    m_step = 0;
}

void Interpreter::runStep(const Step& step, Moment now)
{
    switch (step.kind) {
    case Step::Kind::Command:
        if (const std::string command = commandOf(step); !m_host->execute(command))
            fault(tr("No such command: %1").arg(QString::fromStdString(command)));
        break;
    case Step::Kind::SweepEnd:
        if (m_host->state().running)
            m_awaiting = Awaiting::RunEnd;
        break;
    case Step::Kind::Pause:
        m_awaiting = Awaiting::Time;
        m_due = now + std::chrono::duration_cast<Duration>(std::chrono::duration<double>(sumOf(step.values.front())));
        break;
    case Step::Kind::Frame:
        sendFrame(step);
        if (ferrolex::isAnswered(step.code))
            m_awaiting = Awaiting::Acknowledgement;
        break;
    }
}

std::string Interpreter::commandOf(const Step& step) const
{
    std::string command = step.word;
    if (!step.values.empty())
        command += ' ';
    for (const ferrolex::Sum& value : step.values)
        command += values::plainDecimalText(sumOf(value)).toStdString();
    return command;
}

void Interpreter::sendFrame(const Step& step)
{
    if (step.textForm) {
        const std::string text =
            step.textSlot < 0 ? step.word : frameText(m_arguments[static_cast<std::size_t>(step.textSlot)].text);
        m_host->send(selectorFrame(step.code, selector(sumOf(step.field)), text));
        return;
    }
    FrameNumbers& numbers = m_lastNumbers[step.code];
    if (!step.keepsNumbers)
        numbers = {sumOf(step.n1), sumOf(step.n2), sumOf(step.n3), sumOf(step.n4), values::roundToInt32(sumOf(step.i))};
    m_host->send(numberFrame(step.code, static_cast<int>(sumOf(step.field)), numbers));
}

double Interpreter::sumOf(const ferrolex::Sum& sum) const
{
    double result = 0;
    for (const ferrolex::Sum::Term& term : sum.terms) {
        if (term.slot < 0) {
            result += term.factor;
            continue;
        }
        const double value = m_arguments[static_cast<std::size_t>(term.slot)].number;
        result += term.bit < 0
                      ? term.factor * value
                      : static_cast<double>((static_cast<unsigned>(value) >> static_cast<unsigned>(term.bit)) & 1U);
    }
    return result;
}

ferrolex::Value Interpreter::valueOf(ferrolex::ExpressionId id)
{
    ValueOr<ferrolex::Value> value = ferrolex::evaluate(m_program, id, m_names, m_host->measured());
    if (value)
        return std::move(value.value());
    fault(value.sentence());
    return {};
}

double Interpreter::roundsOf(ferrolex::ExpressionId id)
{
    const double rounds = valueOf(id).number;
    if (m_host && !(rounds >= 0 && rounds <= kMostRounds))
        fault(tr("A loop runs 0 to 1000000 times."));
    return std::floor(rounds);
}

void Interpreter::end(const Outcome& outcome)
{
    m_awaiting = Awaiting::Nothing;
    m_action = nullptr;
    if (m_host)
        std::exchange(m_host, nullptr)->finished(outcome);
}

void Interpreter::fault(const QString& sentence)
{
    end(Outcome::failure(tr("Line %1: %2").arg(m_line).arg(sentence)));
}

void Interpreter::acknowledged(Moment now)
{
    if (m_awaiting == Awaiting::Acknowledgement)
        carryOn(now);
}

void Interpreter::runEnded(bool completed, Moment now)
{
    if (m_awaiting != Awaiting::RunEnd)
        return;
    if (completed)
        carryOn(now);
    else
        end(Outcome::success());
}

void Interpreter::stop()
{
    m_host = nullptr;
    m_action = nullptr;
    m_awaiting = Awaiting::Nothing;
}

void Interpreter::advance(Moment now)
{
    if (m_awaiting == Awaiting::Time && now >= m_due)
        carryOn(now);
}

std::optional<Moment> Interpreter::nextDue() const
{
    return m_awaiting == Awaiting::Time ? std::optional(m_due) : std::nullopt;
}

} // namespace sim
