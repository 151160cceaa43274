// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace ferrolex {

enum class Type : std::uint8_t
{
    Number,
    Text,
    Condition,
    Unknown ///< after an error that has been told
};

enum class Operation : std::uint8_t
{
    Number,
    Text,     ///< left: its index
    Name,     ///< left: its slot
    Measured, ///< left: which, a Measurement
    Negate,
    Add,
    Subtract,
    Multiply,
    Divide,
    Remainder,
    Equal,
    Unequal,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Not,
    And,
    Or,
    Call,  ///< number: index of the function
    Join,  ///< two texts, or numbers as text
    Padded ///< left: a number; number: the digits that it is filled up to with zeros
};

enum class Measurement : std::uint8_t
{
    LastLevel,
    SmallestLevel,
    LargestLevel,
    FrequencyOfSmallest,
    FrequencyOfLargest
};

using ExpressionId = std::int32_t;
inline constexpr ExpressionId kNone = -1;

struct Expression
{
    Operation operation = Operation::Number;
    Type type = Type::Number;
    bool constant = false;
    bool written = false; ///< constant, and without a name: what a name stands for is meant to be changed
    ExpressionId left = kNone;
    ExpressionId right = kNone;
    double number = 0;
};

struct Statement;
using Block = std::vector<Statement>;

struct Statement
{
    enum class Kind : std::uint8_t
    {
        Action, ///< of the statement table
        Let,
        If,
        For,
        Times,
        While,
        Until,
        UntilStopped,
        Leave,
        Do,
        Finish
    };
    Kind kind = Kind::Finish;
    std::uint16_t row = 0; ///< Action: of the statement table
    std::uint32_t offset = 0;
    std::uint32_t line = 0;
    std::int32_t target = 0; ///< Let and For: slot of the name; Do: index of the procedure
    /// Action: first and number of the arguments; Do: the same. All else: see the kind.
    std::uint32_t firstArgument = 0;
    std::uint32_t argumentCount = 0;
    ExpressionId value = kNone; ///< Let: value; If, While, Until: condition; For: from; Times: how often
    ExpressionId to = kNone;    ///< For: to; While, Until: how often at most, or none
    ExpressionId step = kNone;  ///< For: by, or none
    Block body;
    Block otherwise;
};

struct Procedure
{
    QByteArray name;
    std::uint32_t offset = 0;
    std::vector<std::int32_t> parameters; ///< slots of numbers
    Block body;
};

/// An argument of an action.
struct Argument
{
    ExpressionId expression = kNone; ///< none: the number stands
    double number = 0;
};

/// A script as the interpreter runs it. Names have slots of their own; since a procedure can only call those above it,
/// none is entered twice and the slots of its parameters are its alone.
struct Program
{
    std::vector<Expression> expressions;
    std::vector<QByteArray> texts;
    std::vector<Argument> arguments;
    std::vector<Procedure> procedures;
    int nameCount = 0;
    Block statements;
    unsigned measures = 0; ///< that its analysis statements show: bits of F1, F2, Fr, Zr, Q
};

} // namespace ferrolex
