// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Lexer.h"
#include "controls/ferrolex/Names.h"
#include "controls/ferrolex/Program.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <string_view>
#include <vector>

namespace ferrolex {

class Findings;

/// The tokens of a line, from left to right.
class TokenCursor
{
public:
    explicit TokenCursor(const std::vector<Token>& tokens)
        : m_tokens(tokens)
    {}

    const Token& peek() const { return m_tokens[m_at]; }
    /// Stays at the end.
    const Token& next() { return m_tokens[peek().kind == Token::Kind::End ? m_at : m_at++]; }
    bool atEnd() const { return peek().kind == Token::Kind::End; }
    bool isWord(std::string_view word) const { return peek().kind == Token::Kind::Word && sameWord(peek().text, word); }
    bool isSymbol(std::string_view symbol) const { return peek().kind == Token::Kind::Symbol && peek().text == symbol; }
    bool takeWord(std::string_view word);
    bool takeSymbol(std::string_view symbol);

private:
    const std::vector<Token>& m_tokens;
    std::size_t m_at = 0;
};

/// Reads expressions into a program. The first mistake is told, and the rest of the expression is none.
class ExpressionParser
{
public:
    ExpressionParser(Program& program, Names& names, Findings& findings)
        : m_program(program)
        , m_names(names)
        , m_findings(findings)
    {}

    /// None after a mistake.
    ExpressionId read(TokenCursor& cursor);
    /// The same, which must be of that type; a number is taken as a text.
    ExpressionId read(TokenCursor& cursor, Type wanted);

    const Expression& at(ExpressionId id) const { return m_program.expressions[static_cast<std::size_t>(id)]; }
    /// Only of a constant one; nothing when it has no value, which has been told.
    std::optional<Value> constantOf(ExpressionId id) const;

    /// Whether any measurement stands above: what is measured can be read from there on.
    void measurementsExist() { m_hasMeasured = true; }

    /// Tells what stands there in place of what was expected; "did you mean" with the nearest of the words.
    void unexpected(const Token& token, const QString& expected, const QStringList& words = {});
    QString suggestion(const Token& token, const QStringList& words) const;

    static bool isReserved(std::string_view word);
    /// A name in use, or a word that begins a value.
    bool isKnown(std::string_view word) const { return isReserved(word) || m_names.find(word) != nullptr; }

private:
    ExpressionId either(TokenCursor& cursor);
    ExpressionId both(TokenCursor& cursor);
    ExpressionId inverse(TokenCursor& cursor);
    ExpressionId comparison(TokenCursor& cursor);
    ExpressionId sum(TokenCursor& cursor);
    ExpressionId product(TokenCursor& cursor);
    ExpressionId sign(TokenCursor& cursor);
    ExpressionId primary(TokenCursor& cursor);
    ExpressionId word(TokenCursor& cursor);
    ExpressionId measured(TokenCursor& cursor, const Token& first);
    ExpressionId call(TokenCursor& cursor, const Token& name, std::size_t function);
    ExpressionId name(const Token& token);
    ExpressionId text(const Token& token);
    ExpressionId insertion(std::string_view content, std::uint32_t offset);
    ExpressionId literal(QByteArray text);

    ExpressionId add(const Token& place, Expression expression);
    ExpressionId operation(const Token& place, Operation operation, Type operands, Type result, ExpressionId left,
                           ExpressionId right);
    bool is(ExpressionId id, Type type) const { return at(id).type == type || at(id).type == Type::Unknown; }
    ExpressionId wrongType(const Token& place, Type wanted);

    Program& m_program;
    Names& m_names;
    Findings& m_findings;
    int m_depth = 0;
    std::size_t m_start = 0; ///< of the expression in the program
    bool m_hasMeasured = false;
};

} // namespace ferrolex
