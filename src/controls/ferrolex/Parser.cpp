// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Parser.h"

#include "controls/ferrolex/ActionParser.h"
#include "controls/ferrolex/Blocks.h"
#include "controls/ferrolex/ExpressionParser.h"
#include "controls/ferrolex/Finding.h"
#include "controls/ferrolex/Lexer.h"
#include "controls/ferrolex/Names.h"
#include "controls/ferrolex/Source.h"
#include "controls/ferrolex/StatementTable.h"

#include <QCoreApplication>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace ferrolex {
namespace {

constexpr double kMostRounds = 1e6;

QString tr(const char* text)
{
    return QCoreApplication::translate("Ferrolex", text);
}

QString shown(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(std::min<std::size_t>(text.size(), 40)));
}

class Parser
{
public:
    Parser(const Source& source, const Target& target, Findings& findings)
        : m_source(source)
        , m_target(target)
        , m_findings(findings)
        , m_names(source)
        , m_expressions(m_program, m_names, findings)
        , m_actions(m_program, m_expressions, m_target.ranges, findings)
        , m_blocks(m_program, m_names, findings)
    {}

    Program run() &&
    {
        std::vector<Token> tokens;
        for (m_line = 1; m_line <= m_source.lineCount(); ++m_line) {
            lexLine(m_source.line(m_line), m_source.lineStart(m_line), tokens);
            if (tokens.front().kind == Token::Kind::End)
                continue;
            TokenCursor cursor(tokens);
            const int before = m_findings.errors();
            statement(cursor);
            if (m_findings.errors() == before && !cursor.atEnd())
                m_expressions.unexpected(cursor.peek(), tr("the end of the line"));
        }
        m_blocks.finish();
        m_program.nameCount = m_names.slotCount();
        return std::move(m_program);
    }

private:
    struct Rule
    {
        std::string_view word;
        void (Parser::*read)(TokenCursor& cursor, const Token& first);
    };

    static const std::vector<Rule>& rules()
    {
        static const std::vector<Rule> table{
            {"let", &Parser::let},          {"if", &Parser::beginIf},
            {"else", &Parser::beginElse},   {"end", &Parser::end},
            {"for", &Parser::beginFor},     {"repeat", &Parser::beginRepeat},
            {"leave", &Parser::leave},      {"procedure", &Parser::beginProcedure},
            {"do", &Parser::callProcedure}, {"finish", &Parser::finish},
            {"needs", &Parser::needs},
        };
        return table;
    }

    Statement make(Statement::Kind kind, const Token& first) const
    {
        Statement statement;
        statement.kind = kind;
        statement.offset = first.offset;
        statement.line = static_cast<std::uint32_t>(m_line);
        return statement;
    }

    void statement(TokenCursor& cursor)
    {
        const Token first = cursor.peek();
        if (first.kind == Token::Kind::Word) {
            const auto rule = std::find_if(rules().begin(), rules().end(),
                                           [&first](const Rule& entry) { return sameWord(first.text, entry.word); });
            if (rule != rules().end()) {
                cursor.next();
                (this->*rule->read)(cursor, first);
                return;
            }
            Statement action = make(Statement::Kind::Action, first);
            if (m_actions.read(cursor, action)) {
                if (actions()[action.row].traits & Action::Measures)
                    m_expressions.measurementsExist();
                m_blocks.add(std::move(action));
                return;
            }
        }
        unknown(first, cursor);
    }

    void unknown(const Token& first, TokenCursor& cursor)
    {
        cursor.next();
        if (first.kind != Token::Kind::Word) {
            m_expressions.unexpected(first, tr("a statement"));
            return;
        }
        if (cursor.isSymbol("=")) {
            m_findings.error(first.offset, tr("A name is given a value by \"let\"."),
                             tr("Write \"let %1 = ...\".").arg(shown(first.text)));
            return;
        }
        QStringList words = m_actions.firstWords();
        for (const Rule& rule : rules())
            words.append(QLatin1String(rule.word.data(), static_cast<qsizetype>(rule.word.size())));
        m_findings.error(first.offset, tr("No statement begins with \"%1\".").arg(shown(first.text)),
                         m_expressions.suggestion(first, words));
    }

    /// The name at the cursor, if it can be one.
    std::optional<Token> newName(TokenCursor& cursor)
    {
        const Token token = cursor.peek();
        if (token.kind != Token::Kind::Word) {
            m_expressions.unexpected(token, tr("a name"));
            return {};
        }
        cursor.next();
        if (ExpressionParser::isReserved(token.text)) {
            m_findings.error(token.offset,
                             tr("\"%1\" is a word of the language and cannot be a name.").arg(shown(token.text)));
            return {};
        }
        constexpr std::size_t kLongestName = 40;
        if (token.text.size() > kLongestName) {
            m_findings.error(token.offset, tr("The name is longer than 40 characters."));
            return {};
        }
        return token;
    }

    bool expectWord(TokenCursor& cursor, const char* expected)
    {
        if (cursor.takeWord(expected))
            return true;
        m_expressions.unexpected(cursor.peek(), QStringLiteral("\"%1\"").arg(QLatin1String(expected)),
                                 {QLatin1String(expected)});
        return false;
    }

    void let(TokenCursor& cursor, const Token& first)
    {
        const std::optional<Token> name = newName(cursor);
        if (!name)
            return;
        ExpressionId value = kNone;
        if (cursor.takeSymbol("="))
            value = m_expressions.read(cursor);
        else
            m_expressions.unexpected(cursor.peek(), tr("\"=\""));
        if (value != kNone && m_expressions.at(value).type == Type::Condition) {
            m_findings.error(first.offset, tr("A name stands for a number or a text, not for a condition."));
            value = kNone;
        }
        const Type type = value == kNone ? Type::Unknown : m_expressions.at(value).type;
        Statement statement = make(Statement::Kind::Let, first);
        statement.value = value;
        if (const Names::Name* known = m_names.find(name->text)) {
            if (type != known->type && type != Type::Unknown && known->type != Type::Unknown)
                m_findings.error(
                    name->offset,
                    known->type == Type::Text
                        ? tr("\"%1\" stands for a text since line %2.").arg(shown(name->text)).arg(known->line)
                        : tr("\"%1\" stands for a number since line %2.").arg(shown(name->text)).arg(known->line));
            if (m_blocks.isCounter(known->slot))
                m_findings.error(
                    name->offset,
                    tr("\"%1\" is counted by its loop and cannot be changed in it.").arg(shown(name->text)));
            statement.target = known->slot;
        } else {
            std::optional<Value> constant;
            if (value != kNone && m_expressions.at(value).constant)
                constant = m_expressions.constantOf(value);
            statement.target =
                m_names.add(name->text, type, static_cast<std::uint32_t>(m_line), std::move(constant)).slot;
        }
        m_blocks.add(std::move(statement));
    }

    void beginIf(TokenCursor& cursor, const Token& first)
    {
        Statement statement = make(Statement::Kind::If, first);
        statement.value = m_expressions.read(cursor, Type::Condition);
        if (statement.value != kNone)
            cursor.takeWord("then");
        m_blocks.open(Blocks::What::If, std::move(statement));
    }

    void beginElse(TokenCursor& cursor, const Token& first)
    {
        if (!m_blocks.beginElse(first) || !cursor.isWord("if"))
            return;
        const Token chained = cursor.next();
        beginIf(cursor, chained);
        m_blocks.chain();
    }

    void end(TokenCursor& cursor, const Token& first) { m_blocks.end(cursor, first); }

    void beginFor(TokenCursor& cursor, const Token& first)
    {
        Statement statement = make(Statement::Kind::For, first);
        const std::optional<Token> name = newName(cursor);
        if (name && m_names.find(name->text))
            m_findings.error(
                name->offset,
                tr("\"%1\" is in use already; a loop counts with a name of its own.").arg(shown(name->text)));
        const bool good = name && !m_names.find(name->text);
        if (name && expectWord(cursor, "from")) {
            statement.value = m_expressions.read(cursor, Type::Number);
            if (statement.value != kNone && expectWord(cursor, "to"))
                statement.to = m_expressions.read(cursor, Type::Number);
            if (statement.to != kNone && cursor.takeWord("step"))
                statement.step = step(cursor);
        }
        m_blocks.open(Blocks::What::For, std::move(statement));
        if (!good)
            return;
        m_blocks.count(m_names.add(name->text, Type::Number, static_cast<std::uint32_t>(m_line), std::nullopt).slot);
    }

    ExpressionId step(TokenCursor& cursor)
    {
        const Token place = cursor.peek();
        const ExpressionId id = m_expressions.read(cursor, Type::Number);
        if (id != kNone && m_expressions.at(id).constant) {
            if (const auto value = m_expressions.constantOf(id); value && value->number == 0)
                m_findings.error(place.offset, tr("With a step of 0 the loop never ends."));
        }
        return id;
    }

    /// How often a loop runs: a constant is held against the bound.
    ExpressionId rounds(TokenCursor& cursor)
    {
        const Token place = cursor.peek();
        const ExpressionId id = m_expressions.read(cursor, Type::Number);
        if (id == kNone || !m_expressions.at(id).constant)
            return id;
        const auto value = m_expressions.constantOf(id);
        if (value && !(value->number >= 0 && value->number <= kMostRounds))
            m_findings.error(place.offset, tr("A loop runs 0 to 1000000 times."));
        return id;
    }

    void beginRepeat(TokenCursor& cursor, const Token& first)
    {
        Statement statement = make(Statement::Kind::Times, first);
        const bool whileTrue = cursor.takeWord("while");
        if (!whileTrue && !cursor.takeWord("until")) {
            statement.value = rounds(cursor);
            if (statement.value != kNone)
                expectWord(cursor, "times");
        } else if (!whileTrue && cursor.takeWord("stopped")) {
            statement.kind = Statement::Kind::UntilStopped;
        } else {
            statement.kind = whileTrue ? Statement::Kind::While : Statement::Kind::Until;
            statement.value = m_expressions.read(cursor, Type::Condition);
            cursor.takeSymbol(",");
            if (statement.value != kNone && cursor.takeWord("at") && expectWord(cursor, "most")) {
                statement.to = rounds(cursor);
                if (statement.to != kNone)
                    expectWord(cursor, "times");
            }
        }
        m_blocks.open(Blocks::What::Repeat, std::move(statement));
    }

    void leave(TokenCursor&, const Token& first)
    {
        if (!m_blocks.inLoop())
            m_findings.error(first.offset, tr("There is no loop to leave here."));
        m_blocks.add(make(Statement::Kind::Leave, first));
    }

    void finish(TokenCursor&, const Token& first) { m_blocks.add(make(Statement::Kind::Finish, first)); }

    void beginProcedure(TokenCursor& cursor, const Token& first)
    {
        Procedure procedure;
        procedure.offset = first.offset;
        std::vector<Token> parameters;
        if (const std::optional<Token> name = newName(cursor)) {
            const std::string key = folded(name->text);
            procedure.name = QByteArray::fromStdString(key);
            if (!m_procedures.emplace(key, m_program.procedures.size()).second)
                m_findings.error(name->offset, tr("There is a procedure \"%1\" already.").arg(shown(name->text)));
            if (cursor.takeWord("with"))
                parameters = names(cursor);
        }
        m_blocks.openProcedure(make(Statement::Kind::Finish, first));
        for (const Token& parameter : parameters) {
            if (m_names.find(parameter.text)) {
                m_findings.error(parameter.offset, tr("\"%1\" is in use already.").arg(shown(parameter.text)));
                continue;
            }
            procedure.parameters.push_back(
                m_names.add(parameter.text, Type::Number, static_cast<std::uint32_t>(m_line), std::nullopt).slot);
        }
        m_program.procedures.push_back(std::move(procedure));
    }

    std::vector<Token> names(TokenCursor& cursor)
    {
        std::vector<Token> found;
        do {
            const std::optional<Token> name = newName(cursor);
            if (!name)
                return {};
            found.push_back(*name);
        } while (cursor.takeSymbol(","));
        return found;
    }

    void callProcedure(TokenCursor& cursor, const Token& first)
    {
        Statement statement = make(Statement::Kind::Do, first);
        const Token name = cursor.peek();
        if (name.kind != Token::Kind::Word) {
            m_expressions.unexpected(name, tr("the name of a procedure"));
            return;
        }
        cursor.next();
        const auto found = m_procedures.find(folded(name.text));
        if (found == m_procedures.end() || found->second >= m_blocks.callable()) {
            noSuchProcedure(name, found != m_procedures.end() && m_blocks.isOpen(found->second));
            return;
        }
        const std::size_t parameters = m_program.procedures[found->second].parameters.size();
        statement.target = static_cast<std::int32_t>(found->second);
        statement.firstArgument = static_cast<std::uint32_t>(m_program.arguments.size());
        if (cursor.takeWord("with")) {
            do {
                const ExpressionId value = m_expressions.read(cursor, Type::Number);
                if (value == kNone)
                    return;
                m_program.arguments.push_back({value, 0});
                ++statement.argumentCount;
            } while (cursor.takeSymbol(","));
        }
        if (statement.argumentCount != parameters)
            m_findings.error(name.offset, tr("\"%1\" takes %2 values, not %3.")
                                              .arg(shown(name.text))
                                              .arg(parameters)
                                              .arg(statement.argumentCount));
        m_blocks.add(std::move(statement));
    }

    void noSuchProcedure(const Token& name, bool isItself)
    {
        if (isItself) {
            m_findings.error(name.offset, tr("A procedure cannot call itself."));
            return;
        }
        QStringList known;
        for (const auto& [key, index] : m_procedures) {
            if (index < m_blocks.callable())
                known.append(QString::fromStdString(key));
        }
        m_findings.error(name.offset, tr("There is no procedure \"%1\" above.").arg(shown(name.text)),
                         m_expressions.suggestion(name, known));
    }

    void needs(TokenCursor& cursor, const Token&)
    {
        const bool model = cursor.takeWord("model");
        if (!model && !expectWord(cursor, "firmware"))
            return;
        const Token place = cursor.peek();
        const ExpressionId id = m_expressions.read(cursor, model ? Type::Text : Type::Number);
        if (id == kNone)
            return;
        if (!m_expressions.at(id).constant) {
            m_findings.error(place.offset, tr("What a script needs is written out."));
            return;
        }
        const std::optional<Value> value = m_expressions.constantOf(id);
        if (!value)
            return;
        const QString name = QString::fromUtf8(value->text);
        if (model && DeviceRanges(name).isWidest())
            m_findings.error(place.offset, tr("There is no model \"%1\".").arg(name),
                             tr("The models are \"T46\" and \"DT46\"."));
        else if (model && !m_target.ranges.isWidest() && DeviceRanges(name).modelName() != m_target.ranges.modelName())
            m_findings.error(place.offset, tr("The script is for the %1; a %2 is connected.")
                                               .arg(DeviceRanges(name).modelName(), m_target.ranges.modelName()));
        if (!model && m_target.firmware > 0 && m_target.firmware < value->number)
            m_findings.error(
                place.offset,
                tr("The script needs firmware %1; the instrument has %2.").arg(value->number).arg(m_target.firmware));
    }

    const Source& m_source;
    const Target& m_target;
    Findings& m_findings;
    Program m_program;
    Names m_names;
    ExpressionParser m_expressions;
    ActionParser m_actions;
    Blocks m_blocks;
    std::map<std::string, std::size_t> m_procedures;
    int m_line = 0;
};

} // namespace

double firmwareNumber(int major, int minor)
{
    double fraction = minor;
    while (fraction > 1)
        fraction /= 10;
    return major + fraction;
}

Program parse(const Source& source, const Target& target, Findings& findings)
{
    return Parser(source, target, findings).run();
}

} // namespace ferrolex
