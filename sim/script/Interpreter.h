// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Evaluation.h"
#include "controls/ferrolex/Parser.h"
#include "controls/ferrolex/Program.h"
#include "controls/ferrolex/StatementTable.h"
#include "sim/script/ScriptRunner.h"

#include <map>
#include <optional>
#include <vector>

namespace sim {

/// Runs scripts of the language that docs/script-language.md describes. A script with a mistake does not begin. It
/// waits for the reply to each action that the host answers, and a script that never waits leaves time for everything
/// else.
class Interpreter : public ScriptRunner
{
public:
    Outcome start(const QByteArray& script, ScriptHost& host, Moment now) override;
    void acknowledged(Moment now) override;
    void runEnded(bool completed, Moment now) override;
    void stop() override;
    void advance(Moment now) override;
    std::optional<Moment> nextDue() const override;

private:
    enum class Awaiting
    {
        Nothing,
        Acknowledgement,
        RunEnd,
        Time
    };
    /// A block that is being run, from the outermost to the innermost.
    struct Running
    {
        const ferrolex::Block* block = nullptr;
        std::size_t next = 0;
        const ferrolex::Statement* loop = nullptr; ///< whose body this is
        double rounds = 0;                         ///< begun so far
        double counter = 0, last = 0, step = 0;    ///< of a "for"
        double most = 0;
    };

    void carryOn(Moment now);
    /// The next statement, or the next step of the action in hand.
    void goOn(Moment now);
    void runStatement(const ferrolex::Statement& statement, Moment now);
    void beginLoop(const ferrolex::Statement& statement);
    /// False when the loop is over.
    bool beginRound(Running& running);
    bool mayBeginRound(Running& running);
    void leaveLoop();
    void call(const ferrolex::Statement& statement);
    void beginAction(const ferrolex::Statement& statement);
    void runStep(const ferrolex::Step& step, Moment now);
    void sendFrame(const ferrolex::Step& step);
    std::string commandOf(const ferrolex::Step& step) const;

    double sumOf(const ferrolex::Sum& sum) const;
    /// After a fault the script has ended, and the value means nothing.
    ferrolex::Value valueOf(ferrolex::ExpressionId id);
    double roundsOf(ferrolex::ExpressionId id);
    void end(const Outcome& outcome);
    void fault(const QString& sentence);

    ferrolex::Program m_program;
    ferrolex::Target m_target{ferrolex::DeviceRanges({}), 0};
    std::vector<ferrolex::Value> m_names;
    std::vector<Running> m_running;
    const ferrolex::Action* m_action = nullptr; ///< in hand, while it has steps left
    std::size_t m_step = 0;
    std::vector<ferrolex::Value> m_arguments;
    std::map<char, FrameNumbers> m_lastNumbers; ///< of the frames of this run, by code
    std::uint32_t m_line = 0;
    ScriptHost* m_host = nullptr; ///< while it runs
    Awaiting m_awaiting = Awaiting::Nothing;
    Moment m_due{0};
};

} // namespace sim
