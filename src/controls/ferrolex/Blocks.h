// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Program.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

namespace ferrolex {

class Findings;
class Names;
class TokenCursor;
struct Token;

/// The blocks that are open while a script is read, from the script itself to the innermost. One that is closed becomes
/// part of the one around it, a procedure part of the program. Names live as long as their block.
class Blocks
{
public:
    enum class What
    {
        Script,
        If,
        Chained, ///< an "else if", which ends with its "if"
        Repeat,
        For,
        Procedure
    };

    /// All of it outlives this.
    Blocks(Program& program, Names& names, Findings& findings);

    /// Behind the last statement of the innermost block.
    void add(Statement statement);
    /// Too deep a nesting is told.
    void open(What what, Statement statement);
    /// The innermost block is the program's next procedure.
    void openProcedure(Statement statement);
    /// The innermost block, which is an "if", ends with the one around it.
    void chain() { m_open.back().what = What::Chained; }
    /// The innermost block, which is a "for", counts with the name of that slot.
    void count(std::int32_t slot);

    /// False, and told, when the innermost block can have no "else" here.
    bool beginElse(const Token& first);
    /// The word behind "end" is read where there is one.
    void end(TokenCursor& cursor, const Token& first);
    /// The script is over: what is open still is told and closed. Its statements are the program's.
    void finish();

    bool isOutermost() const { return m_open.size() == 1; }
    bool inLoop() const;
    bool isCounter(std::int32_t slot) const { return m_counters.count(slot) != 0; }
    bool isOpen(std::size_t procedure) const;
    /// Procedures below this index can be called.
    std::size_t callable() const { return m_callable; }

private:
    struct Open
    {
        What what = What::Script;
        bool inElse = false;
        Statement statement;
        std::size_t procedure = 0;
    };

    static QString word(What what);
    Block& block();
    void close();

    Program& m_program;
    Names& m_names;
    Findings& m_findings;
    std::vector<Open> m_open;
    std::set<std::int32_t> m_counters;
    std::size_t m_callable = 0;
};

} // namespace ferrolex
