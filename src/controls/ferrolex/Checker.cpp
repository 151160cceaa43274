// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Checker.h"

#include "controls/ferrolex/Evaluation.h"
#include "controls/ferrolex/Finding.h"
#include "controls/ferrolex/StatementTable.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <set>

namespace ferrolex {
namespace {

constexpr double kCoarsestStep = 0.01; // of the frequency, for an analysis

QString tr(const char* text)
{
    return QCoreApplication::translate("Ferrolex", text);
}

class Judge
{
public:
    Judge(const Program& program, Findings& findings)
        : m_program(program)
        , m_findings(findings)
        , m_isReadable(findings.errors() == 0)
    {}

    void run()
    {
        if (m_program.statements.empty() && m_findings.errors() == 0)
            m_findings.error(0, tr("The script has no statements."));
        for (const Procedure& procedure : m_program.procedures)
            m_traits.push_back(traitsOf(procedure.body));
        m_called.resize(m_program.procedures.size());
        const bool loads = std::any_of(m_traits.begin(), m_traits.end(),
                                       [](unsigned traits) { return (traits & Action::Loads) != 0; }) ||
                           (traitsOf(m_program.statements) & Action::Loads) != 0;
        for (const Procedure& procedure : m_program.procedures) {
            m_now = {};
            m_now.graph = true;
            m_now.masks = m_now.loaded = loads;
            walk(procedure.body);
        }
        m_now = {};
        walk(m_program.statements);
        if (m_now.unkept)
            warn(*m_now.unkept, tr("The results of this sweep are never saved, exported or printed."));
        for (std::size_t i = 0; i < m_called.size(); ++i) {
            if (!m_called[i])
                warn(m_program.procedures[i].offset, tr("This procedure is never called."));
        }
    }

private:
    enum class Graph
    {
        Unknown,
        Amplitude,
        Impedance,
        Reactance
    };
    /// What holds when a statement is reached.
    struct State
    {
        bool graph = false;
        bool masks = false;  ///< the active graph may have some
        bool loaded = false; ///< a graph behind it may
        bool repeats = false;
        Graph kind = Graph::Unknown;
        std::optional<std::uint32_t> unkept; ///< the sweep whose results are in no file yet
        std::optional<double> start, end, points;
        bool linear = false;
        std::optional<double> step; ///< between the points of the last sweep, as a part of the frequency
    };

    void warn(std::uint32_t offset, const QString& sentence, const QString& suggestion = {})
    {
        if (m_isReadable)
            m_findings.warning(offset, sentence, suggestion);
    }

    const Action& actionOf(const Statement& statement) const { return actions()[statement.row]; }

    unsigned traitsOf(const Block& block) const
    {
        unsigned traits = 0;
        for (const Statement& statement : block) {
            if (statement.kind == Statement::Kind::Action)
                traits |= actionOf(statement).traits;
            else if (statement.kind == Statement::Kind::Do)
                traits |= m_traits[static_cast<std::size_t>(statement.target)];
            else
                traits |= traitsOf(statement.body) | traitsOf(statement.otherwise);
        }
        return traits;
    }

    std::optional<Value> constant(ExpressionId id) const
    {
        if (id == kNone || !m_program.expressions[static_cast<std::size_t>(id)].constant)
            return {};
        ValueOr<Value> value = evaluate(m_program, id, {}, {});
        return value ? std::optional(value.value()) : std::nullopt;
    }

    /// Of a condition or number that is written out.
    std::optional<Value> written(ExpressionId id) const
    {
        const bool known = id != kNone && m_program.expressions[static_cast<std::size_t>(id)].written;
        return known ? constant(id) : std::nullopt;
    }

    std::optional<Value> argument(const Statement& statement, std::size_t index) const
    {
        const Argument& argument = m_program.arguments[statement.firstArgument + index];
        return argument.expression == kNone ? std::optional(Value{argument.number, {}}) : constant(argument.expression);
    }

    void unreachable(const Block& block)
    {
        if (!block.empty())
            warn(block.front().offset, tr("This statement is never reached."));
    }

    /// False when what stands behind the block is not reached.
    bool walk(const Block& block)
    {
        bool goesOn = true;
        for (const Statement& statement : block) {
            if (!goesOn) {
                warn(statement.offset, tr("This statement is never reached."));
                return false;
            }
            goesOn = step(statement);
        }
        return goesOn;
    }

    bool step(const Statement& statement)
    {
        switch (statement.kind) {
        case Statement::Kind::Action:
            act(statement);
            return (actionOf(statement).traits & Action::EndsScript) == 0;
        case Statement::Kind::Let:
            return true;
        case Statement::Kind::Do:
            call(static_cast<std::size_t>(statement.target), statement.offset);
            return true;
        case Statement::Kind::If:
            return branch(statement);
        case Statement::Kind::Leave:
            m_leaves = true;
            return false;
        case Statement::Kind::Finish:
            return false;
        default:
            return loop(statement);
        }
    }

    bool branch(const Statement& statement)
    {
        const std::optional<Value> condition = written(statement.value);
        if (condition)
            unreachable(condition->number == 0 ? statement.body : statement.otherwise);
        const State before = m_now;
        const bool bodyGoesOn = walk(statement.body);
        State after = m_now;
        m_now = before;
        const bool otherwiseGoesOn = walk(statement.otherwise);
        if (!bodyGoesOn)
            return otherwiseGoesOn;
        if (!otherwiseGoesOn) {
            m_now = after;
            return true;
        }
        after.graph = after.graph || m_now.graph;
        after.masks = after.masks || m_now.masks;
        after.loaded = after.loaded || m_now.loaded;
        after.repeats = after.repeats && m_now.repeats;
        if (!m_now.unkept)
            after.unkept.reset();
        if (after.kind != m_now.kind)
            after.kind = Graph::Unknown;
        if (after.step != m_now.step)
            after.step.reset();
        for (const auto member : {&State::start, &State::end, &State::points}) {
            if (after.*member != m_now.*member)
                (after.*member).reset();
        }
        m_now = after;
        return true;
    }

    bool loop(const Statement& statement)
    {
        const unsigned traits = traitsOf(statement.body);
        const bool unbounded =
            statement.kind == Statement::Kind::UntilStopped ||
            ((statement.kind == Statement::Kind::While || statement.kind == Statement::Kind::Until) &&
             statement.to == kNone);
        if (unbounded && (traits & (Action::Measures | Action::Asks)) == 0)
            m_findings.error(statement.offset,
                             tr("This loop has no bound, and neither a measurement nor a question in it."),
                             tr("Add a bound: \"at most 100 times\"."));
        const std::optional<Value> times = written(statement.value);
        const bool never = times && ((statement.kind == Statement::Kind::Times && times->number < 1) ||
                                     (statement.kind == Statement::Kind::While && times->number == 0) ||
                                     (statement.kind == Statement::Kind::Until && times->number != 0));
        if (never)
            unreachable(statement.body);
        // What a later round finds may come from the round before.
        mayLoad(traits);
        const bool outerLeaves = std::exchange(m_leaves, false);
        const State before = m_now;
        walk(statement.body);
        const bool leaves = std::exchange(m_leaves, outerLeaves);
        m_now.graph = m_now.graph || before.graph;
        const bool endless =
            statement.kind == Statement::Kind::UntilStopped ||
            (statement.kind == Statement::Kind::While && statement.to == kNone && times && times->number != 0);
        return !endless || leaves;
    }

    void call(std::size_t procedure, std::uint32_t offset)
    {
        m_called[procedure] = true;
        const unsigned traits = m_traits[procedure];
        if ((traits & Action::Sweeps) != 0 && !m_now.graph && (traits & Action::Opens) == 0)
            withoutGraph(offset);
        m_now.graph = m_now.graph || (traits & Action::Opens) != 0;
        mayLoad(traits);
        if ((traits & Action::Keeps) != 0)
            m_now.unkept.reset();
        else if ((traits & (Action::Sweeps | Action::StartsSweep)) != 0 && !m_now.unkept)
            m_now.unkept = offset;
        m_now.start.reset();
        m_now.end.reset();
        m_now.points.reset();
        m_now.step.reset();
        m_now.kind = Graph::Unknown;
    }

    void mayLoad(unsigned traits)
    {
        m_now.masks = m_now.masks || (traits & Action::Loads) != 0;
        m_now.loaded = m_now.loaded || (traits & Action::Loads) != 0;
    }

    void withoutGraph(std::uint32_t offset)
    {
        warn(offset, tr("There is no graph that this sweep could go to."),
             tr("\"new impedance graph ...\" or \"load ...\" makes one."));
        m_now.graph = true; // once is enough
    }

    void act(const Statement& statement)
    {
        const unsigned traits = actionOf(statement).traits;
        followSettings(statement);
        if ((traits & (Action::Sweeps | Action::StartsSweep)) != 0)
            sweep(statement);
        else if ((traits & Action::NeedsGraph) != 0 && !m_now.graph) {
            warn(statement.offset, tr("There is no graph yet; without one this does nothing."));
            m_now.graph = true;
        }
        if ((traits & Action::TestsMask) != 0 && !m_now.masks)
            m_findings.error(statement.offset,
                             m_now.loaded ? tr("There is no mask to test against: the active graph is a new one.")
                                          : tr("There is no mask to test against: nothing above loads a plot."),
                             tr("Masks come with a plot: \"load ...\"."));
        if ((traits & Action::Analyses) != 0)
            analyse(statement);
        if ((traits & Action::Keeps) != 0)
            m_now.unkept.reset();
        followFiles(statement, traits);
        if ((traits & Action::Opens) != 0) {
            m_now.graph = true;
            m_now.masks = false;
            mayLoad(traits);
            const std::optional<Value> kind = (traits & Action::Loads) != 0 ? std::nullopt : argument(statement, 0);
            m_now.kind = kind ? static_cast<Graph>(static_cast<int>(kind->number) + 1) : Graph::Unknown;
        }
    }

    void sweep(const Statement& statement)
    {
        if (!m_now.graph)
            withoutGraph(statement.offset);
        if (m_now.repeats && (actionOf(statement).traits & Action::Sweeps) != 0)
            warn(statement.offset, tr("With repeat on this sweep never ends by itself."),
                 tr("\"start ...\", \"wait ...\" and \"stop sweep\" end it."));
        if (!m_now.unkept)
            m_now.unkept = statement.offset;
        m_now.step.reset();
        if (!m_now.start || !m_now.end || !m_now.points || *m_now.points < 2 || *m_now.start <= 0 || *m_now.end <= 0)
            return;
        const double low = std::min(*m_now.start, *m_now.end);
        const double high = std::max(*m_now.start, *m_now.end);
        m_now.step = m_now.linear ? (high - low) / (*m_now.points - 1) / std::sqrt(low * high)
                                  : std::pow(high / low, 1 / (*m_now.points - 1)) - 1;
    }

    void analyse(const Statement& statement)
    {
        if (m_now.kind == Graph::Amplitude)
            warn(statement.offset, tr("An amplitude graph is not analysed."));
        if (m_now.step && *m_now.step > kCoarsestStep)
            warn(statement.offset,
                 tr("The sweep is too coarse for this analysis: its points are %1 % of the frequency "
                    "apart, where 1 % is wanted.")
                     .arg(100 * *m_now.step, 0, 'f', 1),
                 tr("Take more points or a smaller range."));
    }

    void followSettings(const Statement& statement)
    {
        const std::string& pattern = actionOf(statement).pattern;
        const auto begins = [&pattern](const char* words) { return pattern.rfind(words, 0) == 0; };
        if (!begins("set "))
            return;
        const std::optional<Value> value = statement.argumentCount > 0 ? argument(statement, 0) : std::nullopt;
        const std::optional<double> number = value ? std::optional(value->number) : std::nullopt;
        if (begins("set start "))
            m_now.start = number;
        else if (begins("set end "))
            m_now.end = number;
        else if (begins("set points "))
            m_now.points = number;
        else if (begins("set spacing "))
            m_now.linear = number && *number != 0;
        else if (begins("set repeat "))
            m_now.repeats = number && *number != 0;
    }

    void followFiles(const Statement& statement, unsigned traits)
    {
        if (actionOf(statement).pattern == "close graph") {
            if (m_now.unkept)
                warn(statement.offset, tr("The graph is closed before its results are saved, exported or "
                                          "printed."));
            m_now.unkept.reset();
            m_now.masks = m_now.loaded; // one that was opened before comes to the front
        }
        if (statement.argumentCount == 0 || (traits & (Action::Saves | Action::Loads)) == 0)
            return;
        const std::optional<Value> name = argument(statement, 0);
        if (!name)
            return;
        const QByteArray lower = name->text.toLower();
        if ((traits & Action::Saves) != 0) {
            if (m_now.kind == Graph::Reactance)
                m_reactancePlots.insert(lower);
            return;
        }
        const bool known = lower.contains(".gzd") || lower.contains(".gad") || lower.contains(".gxd");
        if (known || lower.isEmpty())
            return;
        if (m_reactancePlots.count(lower) != 0)
            warn(statement.offset,
                 tr("The reactance plot was saved under this very name, and the host refuses to load a "
                    "name without an extension."),
                 tr("Save and load it with \".gxd\" behind the name."));
        else
            warn(statement.offset, tr("The host loads only names with \".gad\", \".gzd\" or \".gxd\"."));
    }

    const Program& m_program;
    Findings& m_findings;
    const bool m_isReadable;
    std::vector<unsigned> m_traits; ///< of the procedures
    std::vector<bool> m_called;
    std::set<QByteArray> m_reactancePlots;
    State m_now;
    bool m_leaves = false;
};

} // namespace

void judge(const Program& program, Findings& findings)
{
    Judge(program, findings).run();
}

} // namespace ferrolex
