// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/ExpressionParser.h"

#include "controls/ferrolex/Finding.h"
#include "values/NearestWord.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <utility>

namespace ferrolex {
namespace {

// A script is no reason to run out of stack.
constexpr int kDeepest = 50;
constexpr std::size_t kLongest = 250;

constexpr std::array<std::string_view, 8> kReserved{"and",  "or",       "not",     "mod",
                                                    "last", "smallest", "largest", "frequency"};

QString tr(const char* text)
{
    return QCoreApplication::translate("Ferrolex", text);
}

QString shown(std::string_view text)
{
    constexpr std::size_t kLongestShown = 40;
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(std::min(text.size(), kLongestShown)));
}

QString nameOf(Type type)
{
    switch (type) {
    case Type::Number:
        return tr("a number");
    case Type::Text:
        return tr("a text");
    default:
        return tr("a condition");
    }
}

class Deeper
{
public:
    explicit Deeper(int& depth)
        : m_depth(depth)
    {
        ++m_depth;
    }
    ~Deeper() { --m_depth; }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;

private:
    int& m_depth;
};

} // namespace

bool TokenCursor::takeWord(std::string_view word)
{
    if (!isWord(word))
        return false;
    ++m_at;
    return true;
}

bool TokenCursor::takeSymbol(std::string_view symbol)
{
    if (!isSymbol(symbol))
        return false;
    ++m_at;
    return true;
}

bool ExpressionParser::isReserved(std::string_view word)
{
    const auto same = [word](std::string_view other) { return sameWord(word, other); };
    return std::any_of(kReserved.begin(), kReserved.end(), same) ||
           std::any_of(functions().begin(), functions().end(),
                       [word](const Function& function) { return sameWord(word, function.name); });
}

QString ExpressionParser::suggestion(const Token& token, const QStringList& words) const
{
    if (token.kind != Token::Kind::Word || words.isEmpty() || !m_findings.wantsSuggestions())
        return {};
    const QString nearest = values::nearestWord(shown(token.text), words);
    return nearest.isEmpty() ? QString() : tr("Did you mean \"%1\"?").arg(nearest);
}

void ExpressionParser::unexpected(const Token& token, const QString& expected, const QStringList& words)
{
    switch (token.kind) {
    case Token::Kind::BadNumber:
        m_findings.error(token.offset, tr("\"%1\" is no number.").arg(shown(token.text)),
                         tr("Numbers look like 12, 1.5, 4k7, 2M2 or 250ms."));
        return;
    case Token::Kind::OpenText:
        m_findings.error(token.offset, tr("The text has no closing quote."));
        return;
    case Token::Kind::BadCharacter:
        m_findings.error(token.offset, tr("The character \"%1\" has no meaning here.").arg(shown(token.text)));
        return;
    case Token::Kind::End:
        m_findings.error(token.offset, tr("The line ends where %1 is expected.").arg(expected));
        return;
    default:
        m_findings.error(token.offset,
                         tr("%1 is expected, not \"%2\".")
                             .arg(QString(expected).replace(0, 1, expected.left(1).toUpper()), shown(token.text)),
                         suggestion(token, words));
    }
}

std::optional<Value> ExpressionParser::constantOf(ExpressionId id) const
{
    static const std::vector<Value> none;
    static const Measured nothing;
    ValueOr<Value> value = evaluate(m_program, id, none, nothing);
    return value ? std::optional(std::move(value.value())) : std::nullopt;
}

ExpressionId ExpressionParser::read(TokenCursor& cursor)
{
    m_start = m_program.expressions.size();
    m_depth = 0;
    const Token first = cursor.peek();
    const ExpressionId id = either(cursor);
    if (id == kNone || !at(id).constant || at(id).operation == Operation::Number || at(id).operation == Operation::Text)
        return id;
    const ValueOr<Value> value = evaluate(m_program, id, {}, {});
    if (value)
        return id;
    m_findings.error(first.offset, value.sentence());
    return kNone;
}

ExpressionId ExpressionParser::read(TokenCursor& cursor, Type wanted)
{
    const Token first = cursor.peek();
    const ExpressionId id = read(cursor);
    if (id == kNone || is(id, wanted))
        return id;
    if (wanted != Type::Text || at(id).type != Type::Number)
        return wrongType(first, wanted);
    const ExpressionId empty = literal({});
    Expression joined;
    joined.operation = Operation::Join;
    joined.type = Type::Text;
    joined.constant = at(id).constant;
    joined.left = empty;
    joined.right = id;
    return add(first, joined);
}

ExpressionId ExpressionParser::wrongType(const Token& place, Type wanted)
{
    m_findings.error(place.offset, tr("This is not %1, which is expected here.").arg(nameOf(wanted)));
    return kNone;
}

ExpressionId ExpressionParser::add(const Token& place, Expression expression)
{
    if (m_program.expressions.size() - m_start >= kLongest) {
        m_findings.error(place.offset, tr("This is too long; give parts of it names of their own."));
        return kNone;
    }
    m_program.expressions.push_back(expression);
    return static_cast<ExpressionId>(m_program.expressions.size() - 1);
}

ExpressionId ExpressionParser::operation(const Token& place, Operation operation, Type operands, Type result,
                                         ExpressionId left, ExpressionId right)
{
    if (left == kNone)
        return kNone;
    const bool anyType = operands == Type::Unknown;
    if (!anyType && (!is(left, operands) || (right != kNone && !is(right, operands))))
        return wrongType(place, operands);
    Expression expression;
    expression.operation = operation;
    expression.type = result;
    expression.left = left;
    expression.right = right;
    expression.constant = at(left).constant && (right == kNone || at(right).constant);
    expression.written = at(left).written && (right == kNone || at(right).written);
    return add(place, expression);
}

ExpressionId ExpressionParser::either(TokenCursor& cursor)
{
    ExpressionId left = both(cursor);
    while (left != kNone && cursor.isWord("or")) {
        const Token place = cursor.next();
        const ExpressionId right = both(cursor);
        left = right == kNone ? kNone : operation(place, Operation::Or, Type::Condition, Type::Condition, left, right);
    }
    return left;
}

ExpressionId ExpressionParser::both(TokenCursor& cursor)
{
    ExpressionId left = inverse(cursor);
    while (left != kNone && cursor.isWord("and")) {
        const Token place = cursor.next();
        const ExpressionId right = inverse(cursor);
        left = right == kNone ? kNone : operation(place, Operation::And, Type::Condition, Type::Condition, left, right);
    }
    return left;
}

ExpressionId ExpressionParser::inverse(TokenCursor& cursor)
{
    if (!cursor.isWord("not"))
        return comparison(cursor);
    const Deeper deeper(m_depth);
    const Token place = cursor.next();
    if (m_depth > kDeepest) {
        m_findings.error(place.offset, tr("This is nested too deeply."));
        return kNone;
    }
    return operation(place, Operation::Not, Type::Condition, Type::Condition, inverse(cursor), kNone);
}

ExpressionId ExpressionParser::comparison(TokenCursor& cursor)
{
    constexpr std::array<std::pair<std::string_view, Operation>, 6> kComparisons{{
        {"=", Operation::Equal},
        {"<>", Operation::Unequal},
        {"<", Operation::Less},
        {"<=", Operation::LessOrEqual},
        {">", Operation::Greater},
        {">=", Operation::GreaterOrEqual},
    }};
    const ExpressionId left = sum(cursor);
    if (left == kNone)
        return kNone;
    const auto* const found = std::find_if(kComparisons.begin(), kComparisons.end(),
                                           [&cursor](const auto& entry) { return cursor.isSymbol(entry.first); });
    if (found == kComparisons.end())
        return left;
    const Token place = cursor.next();
    const ExpressionId right = sum(cursor);
    if (right == kNone)
        return kNone;
    const bool ofTexts =
        (found->second == Operation::Equal || found->second == Operation::Unequal) && at(left).type == Type::Text;
    return operation(place, found->second, ofTexts ? Type::Text : Type::Number, Type::Condition, left, right);
}

ExpressionId ExpressionParser::sum(TokenCursor& cursor)
{
    ExpressionId left = product(cursor);
    while (left != kNone && (cursor.isSymbol("+") || cursor.isSymbol("-"))) {
        const Token place = cursor.next();
        const ExpressionId right = product(cursor);
        left = right == kNone ? kNone
                              : operation(place, place.text == "+" ? Operation::Add : Operation::Subtract, Type::Number,
                                          Type::Number, left, right);
    }
    return left;
}

ExpressionId ExpressionParser::product(TokenCursor& cursor)
{
    ExpressionId left = sign(cursor);
    while (left != kNone && (cursor.isSymbol("*") || cursor.isSymbol("/") || cursor.isWord("mod"))) {
        const Token place = cursor.next();
        const Operation which = place.text == "*"   ? Operation::Multiply
                                : place.text == "/" ? Operation::Divide
                                                    : Operation::Remainder;
        const ExpressionId right = sign(cursor);
        left = right == kNone ? kNone : operation(place, which, Type::Number, Type::Number, left, right);
    }
    return left;
}

ExpressionId ExpressionParser::sign(TokenCursor& cursor)
{
    if (!cursor.isSymbol("-"))
        return primary(cursor);
    const Deeper deeper(m_depth);
    const Token place = cursor.next();
    if (m_depth > kDeepest) {
        m_findings.error(place.offset, tr("This is nested too deeply."));
        return kNone;
    }
    return operation(place, Operation::Negate, Type::Number, Type::Number, sign(cursor), kNone);
}

ExpressionId ExpressionParser::primary(TokenCursor& cursor)
{
    const Token& token = cursor.peek();
    if (token.kind == Token::Kind::Number) {
        Expression expression;
        expression.number = cursor.next().number;
        expression.constant = true;
        expression.written = true;
        return add(token, expression);
    }
    if (token.kind == Token::Kind::Text)
        return text(cursor.next());
    if (token.kind == Token::Kind::Word)
        return word(cursor);
    if (!cursor.isSymbol("(")) {
        unexpected(token, tr("a value"));
        return kNone;
    }
    const Deeper deeper(m_depth);
    cursor.next();
    if (m_depth > kDeepest) {
        m_findings.error(token.offset, tr("This is nested too deeply."));
        return kNone;
    }
    const ExpressionId inner = either(cursor);
    if (inner != kNone && !cursor.takeSymbol(")")) {
        unexpected(cursor.peek(), tr("a closing bracket"));
        return kNone;
    }
    return inner;
}

ExpressionId ExpressionParser::word(TokenCursor& cursor)
{
    const Token token = cursor.next();
    for (const std::string_view first : {"last", "smallest", "largest", "frequency"}) {
        if (sameWord(token.text, first))
            return measured(cursor, token);
    }
    for (std::size_t i = 0; i < functions().size(); ++i) {
        if (sameWord(token.text, functions()[i].name))
            return call(cursor, token, i);
    }
    return name(token);
}

ExpressionId ExpressionParser::measured(TokenCursor& cursor, const Token& first)
{
    Measurement which = sameWord(first.text, "last")       ? Measurement::LastLevel
                        : sameWord(first.text, "smallest") ? Measurement::SmallestLevel
                                                           : Measurement::LargestLevel;
    if (sameWord(first.text, "frequency")) {
        if (!cursor.takeWord("of")) {
            unexpected(cursor.peek(), tr("\"of smallest\" or \"of largest\""), {QStringLiteral("of")});
            return kNone;
        }
        if (!cursor.isWord("smallest") && !cursor.isWord("largest")) {
            unexpected(cursor.peek(), tr("\"smallest\" or \"largest\""),
                       {QStringLiteral("smallest"), QStringLiteral("largest")});
            return kNone;
        }
        which = sameWord(cursor.next().text, "smallest") ? Measurement::FrequencyOfSmallest
                                                         : Measurement::FrequencyOfLargest;
    } else if (!cursor.takeWord("level")) {
        unexpected(cursor.peek(), tr("\"level\""), {QStringLiteral("level")});
        return kNone;
    }
    if (!m_hasMeasured) {
        m_findings.error(first.offset, tr("Nothing has been measured above this line."));
        return kNone;
    }
    Expression expression;
    expression.operation = Operation::Measured;
    expression.left = static_cast<ExpressionId>(which);
    return add(first, expression);
}

ExpressionId ExpressionParser::call(TokenCursor& cursor, const Token& name, std::size_t function)
{
    const Deeper deeper(m_depth);
    if (m_depth > kDeepest) {
        m_findings.error(name.offset, tr("This is nested too deeply."));
        return kNone;
    }
    std::array<ExpressionId, 2> operands{kNone, kNone};
    for (int i = 0; i < functions()[function].arguments; ++i) {
        if (!cursor.takeSymbol(i == 0 ? "(" : ",")) {
            unexpected(cursor.peek(), i == 0 ? tr("an opening bracket") : tr("a comma and a second value"));
            return kNone;
        }
        operands[static_cast<std::size_t>(i)] = either(cursor);
        if (operands[static_cast<std::size_t>(i)] == kNone)
            return kNone;
    }
    if (!cursor.takeSymbol(")")) {
        unexpected(cursor.peek(), tr("a closing bracket"));
        return kNone;
    }
    const ExpressionId id = operation(name, Operation::Call, Type::Number, Type::Number, operands[0], operands[1]);
    if (id != kNone)
        m_program.expressions.back().number = static_cast<double>(function);
    return id;
}

ExpressionId ExpressionParser::name(const Token& token)
{
    const Names::Name* known = m_names.find(token.text);
    if (!known) {
        if (const std::uint32_t line = m_names.lineOfEnded(token.text); line != 0) {
            m_findings.error(token.offset,
                             tr("\"%1\" is not known here: it was first given a value inside the block of line %2 and "
                                "ended with it.")
                                 .arg(shown(token.text))
                                 .arg(line),
                             tr("Give it a value ahead of that block."));
        } else {
            m_findings.error(token.offset, tr("\"%1\" has not been given a value above.").arg(shown(token.text)),
                             m_findings.wantsSuggestions() ? suggestion(token, m_names.all()) : QString());
        }
        return kNone;
    }
    Expression expression;
    expression.type = known->type;
    if (known->constant) {
        expression.constant = true;
        if (known->type == Type::Text) {
            const ExpressionId id = literal(known->constant->text);
            m_program.expressions.back().written = false;
            return id;
        }
        expression.number = known->constant->number;
        return add(token, expression);
    }
    expression.operation = Operation::Name;
    expression.left = known->slot;
    return add(token, expression);
}

ExpressionId ExpressionParser::literal(QByteArray text)
{
    Expression expression;
    expression.operation = Operation::Text;
    expression.type = Type::Text;
    expression.constant = true;
    expression.written = true;
    expression.left = static_cast<ExpressionId>(m_program.texts.size());
    m_program.texts.push_back(std::move(text));
    m_program.expressions.push_back(expression);
    return static_cast<ExpressionId>(m_program.expressions.size() - 1);
}

ExpressionId ExpressionParser::text(const Token& token)
{
    if (static_cast<qsizetype>(token.text.size()) > kLongestText) {
        m_findings.error(token.offset, tr("The text is longer than 1000 bytes."));
        return kNone;
    }
    ExpressionId whole = kNone;
    QByteArray plain;
    const auto append = [&](ExpressionId piece) {
        whole = whole == kNone ? piece : operation(token, Operation::Join, Type::Unknown, Type::Text, whole, piece);
        return whole != kNone;
    };
    const std::string_view content = token.text;
    for (std::size_t at = 0; at < content.size(); ++at) {
        const char c = content[at];
        const bool doubled = at + 1 < content.size() && content[at + 1] == c;
        if (c == '{' && !doubled) {
            const std::size_t end = content.find('}', at);
            const auto offset = token.offset + 1 + static_cast<std::uint32_t>(at);
            if (end == std::string_view::npos) {
                m_findings.error(offset, tr("The opening brace has no closing one."),
                                 tr("A brace of the text itself is written twice."));
                return kNone;
            }
            const ExpressionId piece = insertion(content.substr(at + 1, end - at - 1), offset + 1);
            if (piece == kNone || !append(literal(std::exchange(plain, {}))) || !append(piece))
                return kNone;
            at = end;
            continue;
        }
        if (c == '}' && !doubled) {
            m_findings.error(token.offset + 1 + static_cast<std::uint32_t>(at),
                             tr("The closing brace has no opening one."),
                             tr("A brace of the text itself is written twice."));
            return kNone;
        }
        plain.append(c);
        if (c == '{' || c == '}' || c == '"')
            ++at;
    }
    if (whole != kNone && plain.isEmpty())
        return whole;
    return append(literal(plain)) ? whole : kNone;
}

ExpressionId ExpressionParser::insertion(std::string_view content, std::uint32_t offset)
{
    const Deeper deeper(m_depth);
    std::vector<Token> tokens;
    lexLine(content, offset, tokens);
    if (m_depth > kDeepest) {
        m_findings.error(offset, tr("This is nested too deeply."));
        return kNone;
    }
    TokenCursor cursor(tokens);
    ExpressionId id = either(cursor);
    if (id == kNone)
        return kNone;
    if (at(id).type == Type::Condition)
        return wrongType(tokens.front(), Type::Number);
    if (cursor.isSymbol(":")) {
        const Token place = cursor.next();
        const Token digits = cursor.next();
        if (digits.kind != Token::Kind::Number || digits.number < 1 || digits.number > 15 ||
            digits.number != static_cast<int>(digits.number)) {
            m_findings.error(place.offset, tr("Behind the colon stands the number of digits, 1 to 15."));
            return kNone;
        }
        id = operation(place, Operation::Padded, Type::Number, Type::Text, id, kNone);
        if (id != kNone)
            m_program.expressions.back().number = digits.number;
    }
    if (id != kNone && !cursor.atEnd()) {
        unexpected(cursor.peek(), tr("a closing brace"));
        return kNone;
    }
    return id;
}

} // namespace ferrolex
