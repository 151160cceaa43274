// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Evaluation.h"
#include "controls/ferrolex/Program.h"

#include <QStringList>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ferrolex {

class Source;

/// The names that can be used at a place of the script. A name ends with the block in which it was given its first
/// value.
class Names
{
public:
    struct Name
    {
        std::int32_t slot = 0;
        Type type = Type::Unknown;
        std::uint32_t line = 0;
        std::optional<Value> constant; ///< it never has another value
    };

    /// Looks through the script for names that are given a value once only.
    explicit Names(const Source& source);

    const Name* find(std::string_view name) const;
    /// The line that gave a value to a name which has ended since; 0 for none.
    std::uint32_t lineOfEnded(std::string_view name) const;
    /// The name must not be in use. The value is kept where no other statement gives it one.
    const Name& add(std::string_view name, Type type, std::uint32_t line, std::optional<Value> constant);
    void openBlock() { m_blocks.push_back(m_living.size()); }
    void closeBlock();
    int slotCount() const { return m_slots; }
    /// For suggestions.
    QStringList all() const;

private:
    std::unordered_map<std::string, Name> m_names;
    std::unordered_map<std::string, std::uint32_t> m_ended;
    std::unordered_map<std::string, int> m_valuesGiven;
    std::vector<std::string> m_living;
    std::vector<std::size_t> m_blocks;
    int m_slots = 0;
};

/// In small letters.
std::string folded(std::string_view name);

} // namespace ferrolex
