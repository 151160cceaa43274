// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/ExpressionParser.h"
#include "controls/ferrolex/StatementTable.h"

#include <QStringList>

namespace ferrolex {

class DeviceRanges;
class Findings;

/// Reads the statements of the table.
class ActionParser
{
public:
    ActionParser(Program& program, ExpressionParser& expressions, const DeviceRanges& ranges, Findings& findings)
        : m_program(program)
        , m_expressions(expressions)
        , m_ranges(ranges)
        , m_findings(findings)
    {}

    /// False when no statement begins with the word at the cursor, which stays there. After a mistake in the arguments
    /// the statement is there, so that what follows is judged with it.
    bool read(TokenCursor& cursor, Statement& statement);

    /// For suggestions.
    const QStringList& firstWords() const;

private:
    bool readGroup(TokenCursor& cursor, const Action& action, const Action::Group& group,
                   std::vector<Argument>& arguments);
    bool readOptions(TokenCursor& cursor, const Action& action, std::vector<Argument>& arguments);
    bool readArgument(TokenCursor& cursor, const Action::Slot& slot, Argument& argument);
    bool readChoice(TokenCursor& cursor, const Action::Slot& slot, Argument& argument);
    bool readMeasures(TokenCursor& cursor, Argument& argument);
    bool readNumber(TokenCursor& cursor, const Action::Slot& slot, Argument& argument);
    bool readText(TokenCursor& cursor, const Action::Slot& slot, Argument& argument);
    /// What stands in a text before the run puts values into it.
    QByteArray writtenPart(ExpressionId id) const;
    void judgeText(const Token& place, const Action::Slot& slot, const QByteArray& text);

    Program& m_program;
    ExpressionParser& m_expressions;
    const DeviceRanges& m_ranges;
    Findings& m_findings;
};

} // namespace ferrolex
