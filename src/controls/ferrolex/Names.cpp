// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Names.h"

#include "controls/ferrolex/Lexer.h"
#include "controls/ferrolex/Source.h"

#include <algorithm>
#include <utility>

namespace ferrolex {

std::string folded(std::string_view name)
{
    std::string result(name);
    for (char& c : result)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return result;
}

Names::Names(const Source& source)
{
    constexpr std::string_view kBlanks = " \t\f";
    constexpr std::string_view kLet = "let";
    for (int number = 1; number <= source.lineCount(); ++number) {
        std::string_view line = source.line(number);
        line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
        if (!sameWord(line.substr(0, kLet.size()), kLet))
            continue;
        line.remove_prefix(kLet.size());
        line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
        ++m_valuesGiven[folded(line.substr(0, line.find_first_of(" \t\f=#\"")))];
    }
}

const Names::Name* Names::find(std::string_view name) const
{
    const auto found = m_names.find(folded(name));
    return found == m_names.end() ? nullptr : &found->second;
}

std::uint32_t Names::lineOfEnded(std::string_view name) const
{
    const auto found = m_ended.find(folded(name));
    return found == m_ended.end() ? 0 : found->second;
}

const Names::Name& Names::add(std::string_view name, Type type, std::uint32_t line, std::optional<Value> constant)
{
    std::string key = folded(name);
    if (const auto given = m_valuesGiven.find(key); given == m_valuesGiven.end() || given->second != 1)
        constant.reset();
    m_living.push_back(key);
    return m_names.insert_or_assign(std::move(key), Name{m_slots++, type, line, std::move(constant)}).first->second;
}

void Names::closeBlock()
{
    const std::size_t before = m_blocks.back();
    m_blocks.pop_back();
    while (m_living.size() > before) {
        const auto ending = m_names.find(m_living.back());
        m_ended.insert_or_assign(ending->first, ending->second.line);
        m_names.erase(ending);
        m_living.pop_back();
    }
}

QStringList Names::all() const
{
    QStringList names;
    for (const std::string& name : m_living)
        names.append(QString::fromStdString(name));
    return names;
}

} // namespace ferrolex
