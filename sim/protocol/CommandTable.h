// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>

namespace sim {

struct InstrumentState;

/// A word of the protocol and what it does to the state; it answers with Answers.
template <typename Answers>
struct StateCommand
{
    const char* word;
    Answers (*apply)(std::string_view text, InstrumentState& state);
};

/// The words of a table in its order.
template <typename Answers, std::size_t Count>
QStringList wordsOf(const StateCommand<Answers> (&table)[Count])
{
    QStringList words;
    for (const StateCommand<Answers>& command : table)
        words.append(QLatin1String(command.word));
    return words;
}

/// What the command of that word answers; nothing where the table has no such word.
template <typename Answers, std::size_t Count>
std::optional<Answers> applyFrom(const StateCommand<Answers> (&table)[Count], std::string_view word,
                                 std::string_view text, InstrumentState& state)
{
    const auto* const found =
        std::find_if(std::begin(table), std::end(table),
                     [word](const StateCommand<Answers>& command) { return word == command.word; });
    if (found == std::end(table))
        return {};
    return found->apply(text, state);
}

} // namespace sim
