// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/ActionParser.h"

#include "controls/ferrolex/Finding.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <map>
#include <string>

namespace ferrolex {
namespace {

constexpr std::array<std::string_view, 5> kMeasures{"F1", "F2", "Fr", "Zr", "Q"};
constexpr qsizetype kTextColumns = 61; // of a frame

QString tr(const char* text)
{
    return QCoreApplication::translate("Ferrolex", text);
}

QString qstring(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The rows that begin with a word, in the order of the table.
const std::vector<std::size_t>* rowsOf(std::string_view word)
{
    static const std::map<std::string, std::vector<std::size_t>> rows = [] {
        std::map<std::string, std::vector<std::size_t>> made;
        for (std::size_t row = 0; row < actions().size(); ++row)
            made[actions()[row].head.front().word].push_back(row);
        return made;
    }();
    const auto found = rows.find(folded(word));
    return found == rows.end() ? nullptr : &found->second;
}

/// How many words of the row's beginning stand at the cursor.
std::size_t matchingWords(TokenCursor cursor, const Action& action)
{
    std::size_t count = 0;
    for (const Action::Part& part : action.head) {
        if (part.word.empty() || !cursor.takeWord(part.word))
            break;
        ++count;
    }
    return count;
}

bool goesOnWithWord(const Action& action, std::size_t matching)
{
    return matching < action.head.size() && !action.head[matching].word.empty();
}

/// The words that may stand behind so many words of the statement.
QStringList wordsBehind(const std::vector<std::size_t>& rows, const TokenCursor& cursor, std::size_t matching)
{
    QStringList words;
    for (const std::size_t row : rows) {
        const Action& action = actions()[row];
        if (matchingWords(cursor, action) != matching || !goesOnWithWord(action, matching))
            continue;
        if (const QString next = QString::fromStdString(action.head[matching].word); !words.contains(next))
            words.append(next);
    }
    return words;
}

} // namespace

const QStringList& ActionParser::firstWords() const
{
    static const QStringList words = [] {
        QStringList made;
        for (const Action& action : actions()) {
            if (const QString word = QString::fromStdString(action.head.front().word); !made.contains(word))
                made.append(word);
        }
        return made;
    }();
    return words;
}

bool ActionParser::read(TokenCursor& cursor, Statement& statement)
{
    const std::vector<std::size_t>* rows = rowsOf(cursor.peek().text);
    if (!rows)
        return false;
    // The row of which most words stand here; of several the one that has come to an argument.
    std::size_t best = rows->front();
    std::size_t most = 0;
    bool wordsOnly = true;
    for (const std::size_t row : *rows) {
        const std::size_t matching = matchingWords(cursor, actions()[row]);
        const bool wantsWord = goesOnWithWord(actions()[row], matching);
        if (matching > most || (matching == most && wordsOnly && !wantsWord)) {
            best = row;
            most = matching;
            wordsOnly = wantsWord;
        }
    }
    const Action& action = actions()[best];
    statement.row = static_cast<std::uint16_t>(best);
    std::vector<Argument> arguments(action.slots.size());
    for (std::size_t i = 0; i < arguments.size(); ++i)
        arguments[i].number = action.slots[i].fallback;

    TokenCursor ahead = cursor;
    for (std::size_t i = 0; i < most; ++i)
        ahead.next();
    // A word that no name has may be one of the statement's own, mistyped.
    const auto isArgument = [&action, most] {
        const int slot = action.head[most].slot;
        return slot >= 0 && action.slots[static_cast<std::size_t>(slot)].type != ArgumentType::Choice;
    };
    const bool mayBeMistyped =
        most < action.head.size() && (wordsOnly || (ahead.peek().kind == Token::Kind::Word && isArgument() &&
                                                    !m_expressions.isKnown(ahead.peek().text)));
    const QStringList words = mayBeMistyped ? wordsBehind(*rows, cursor, most) : QStringList();
    const bool mistyped = !words.isEmpty() && (wordsOnly || !m_expressions.suggestion(ahead.peek(), words).isEmpty());
    if (mistyped) {
        m_expressions.unexpected(ahead.peek(),
                                 words.size() == 1 ? QStringLiteral("\"%1\"").arg(words.front())
                                                   : tr("one of \"%1\"").arg(words.join(QStringLiteral("\", \""))),
                                 words);
    } else if (readGroup(cursor, action, action.head, arguments)) {
        readOptions(cursor, action, arguments);
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (action.slots[i].type == ArgumentType::Measures)
            m_program.measures |= static_cast<unsigned>(arguments[i].number);
    }
    statement.firstArgument = static_cast<std::uint32_t>(m_program.arguments.size());
    statement.argumentCount = static_cast<std::uint32_t>(arguments.size());
    m_program.arguments.insert(m_program.arguments.end(), arguments.begin(), arguments.end());
    return true;
}

bool ActionParser::readGroup(TokenCursor& cursor, const Action& action, const Action::Group& group,
                             std::vector<Argument>& arguments)
{
    for (const Action::Part& part : group) {
        if (part.slot >= 0) {
            const auto slot = static_cast<std::size_t>(part.slot);
            if (!readArgument(cursor, action.slots[slot], arguments[slot]))
                return false;
        } else if (!cursor.takeWord(part.word)) {
            const QString word = QString::fromStdString(part.word);
            m_expressions.unexpected(cursor.peek(), QStringLiteral("\"%1\"").arg(word), {word});
            return false;
        }
    }
    return true;
}

bool ActionParser::readOptions(TokenCursor& cursor, const Action& action, std::vector<Argument>& arguments)
{
    std::vector<bool> taken(action.options.size());
    for (;;) {
        cursor.takeSymbol(",");
        if (cursor.atEnd() || action.options.empty())
            return true;
        QStringList words;
        bool found = false;
        for (std::size_t i = 0; i < action.options.size() && !found; ++i) {
            words.append(QString::fromStdString(action.options[i].front().word));
            if (!cursor.isWord(action.options[i].front().word))
                continue;
            if (taken[i]) {
                m_findings.error(cursor.peek().offset, tr("\"%1\" stands twice.").arg(words.last()));
                return false;
            }
            found = true;
            taken[i] = true;
            if (!readGroup(cursor, action, action.options[i], arguments))
                return false;
        }
        if (!found) {
            m_expressions.unexpected(cursor.peek(), tr("one of \"%1\"").arg(words.join(QStringLiteral("\", \""))),
                                     words);
            return false;
        }
    }
}

bool ActionParser::readArgument(TokenCursor& cursor, const Action::Slot& slot, Argument& argument)
{
    switch (slot.type) {
    case ArgumentType::Choice:
        return readChoice(cursor, slot, argument);
    case ArgumentType::Measures:
        return readMeasures(cursor, argument);
    case ArgumentType::Text:
    case ArgumentType::FileName:
        return readText(cursor, slot, argument);
    default:
        return readNumber(cursor, slot, argument);
    }
}

bool ActionParser::readChoice(TokenCursor& cursor, const Action::Slot& slot, Argument& argument)
{
    QStringList words;
    for (const auto& [word, number] : slot.choices) {
        if (cursor.takeWord(word)) {
            argument.number = number;
            return true;
        }
        words.append(QString::fromStdString(word));
    }
    const QString last = words.last();
    const QString others = words.mid(0, words.size() - 1).join(QStringLiteral("\", \""));
    m_expressions.unexpected(cursor.peek(), tr("\"%1\" or \"%2\"").arg(others, last), words);
    return false;
}

bool ActionParser::readMeasures(TokenCursor& cursor, Argument& argument)
{
    unsigned bits = 0;
    do {
        const auto* const found = std::find_if(kMeasures.begin(), kMeasures.end(),
                                               [&cursor](std::string_view name) { return cursor.isWord(name); });
        if (found == kMeasures.end()) {
            QStringList words;
            for (const std::string_view name : kMeasures)
                words.append(qstring(name));
            m_expressions.unexpected(cursor.peek(), tr("one of \"%1\"").arg(words.join(QStringLiteral("\", \""))),
                                     words);
            return false;
        }
        cursor.next();
        bits |= 1U << static_cast<unsigned>(found - kMeasures.begin());
    } while ((cursor.takeSymbol(",") && !cursor.isWord("mode")) || cursor.takeWord("and"));
    argument.number = bits;
    return true;
}

bool ActionParser::readNumber(TokenCursor& cursor, const Action::Slot& slot, Argument& argument)
{
    const Token place = cursor.peek();
    argument.expression = m_expressions.read(cursor, Type::Number);
    if (argument.expression == kNone)
        return false;
    if (!m_expressions.at(argument.expression).constant)
        return true;
    const std::optional<Value> value = m_expressions.constantOf(argument.expression);
    argument = {kNone, value ? value->number : 0};
    const QString fault = m_ranges.fault(slot.type, argument.number);
    if (fault.isEmpty())
        return true;
    m_findings.error(place.offset, fault);
    return false;
}

bool ActionParser::readText(TokenCursor& cursor, const Action::Slot& slot, Argument& argument)
{
    const Token place = cursor.peek();
    argument.expression = m_expressions.read(cursor, Type::Text);
    if (argument.expression == kNone)
        return false;
    if (!m_expressions.at(argument.expression).constant) {
        judgeText(place, slot, writtenPart(argument.expression));
    } else if (const std::optional<Value> value = m_expressions.constantOf(argument.expression)) {
        if (slot.type == ArgumentType::FileName && value->text.trimmed().isEmpty())
            m_findings.error(place.offset, tr("The name is empty."),
                             tr("\"ask for name and ...\" lets the user give it."));
        judgeText(place, slot, value->text);
    }
    return true;
}

QByteArray ActionParser::writtenPart(ExpressionId id) const
{
    const Expression& expression = m_expressions.at(id);
    if (expression.operation == Operation::Text)
        return m_program.texts[static_cast<std::size_t>(expression.left)];
    if (expression.operation != Operation::Join)
        return {};
    return writtenPart(expression.left) + writtenPart(expression.right);
}

void ActionParser::judgeText(const Token& place, const Action::Slot& slot, const QByteArray& text)
{
    const QString shown = QString::fromUtf8(text);
    if (slot.type == ArgumentType::FileName) {
        const auto forbidden =
            std::find_if(text.begin(), text.end(), [](char c) { return QByteArrayView("\\/:*?\"<>|").contains(c); });
        if (forbidden != text.end())
            m_findings.error(place.offset, tr("A file name cannot have a \"%1\".").arg(QLatin1Char(*forbidden)));
    }
    if (shown.size() > kTextColumns)
        m_findings.warning(
            place.offset,
            tr("Of this text only the first 61 characters reach the host: \"%1\".").arg(shown.left(kTextColumns)));
    const bool ascii = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
    if (!ascii)
        m_findings.warning(place.offset, tr("Characters outside ASCII reach the host as \"?\"."));
}

} // namespace ferrolex
