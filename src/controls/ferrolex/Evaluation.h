// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Program.h"
#include "values/Outcome.h"

#include <QByteArray>

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace ferrolex {

/// A condition is a number: 1 or 0.
struct Value
{
    double number = 0;
    QByteArray text; ///< UTF-8
};

/// What the instrument has measured so far. Levels in Ohm or dB, as the last measurement was.
struct Measured
{
    std::optional<double> lastLevel;
    std::optional<double> smallestLevel, largestLevel;             ///< of the sweep made last
    std::optional<double> frequencyOfSmallest, frequencyOfLargest; ///< Hz
};

struct Function
{
    std::string_view name;
    int arguments;
    double (*of)(double, double);
};
inline constexpr int kFunctionCount = 8;
const std::array<Function, kFunctionCount>& functions();

inline constexpr qsizetype kLongestText = 1000; ///< bytes that a text may have

/// Fails with a sentence where a value cannot be: a division by zero, a result beyond all numbers, a text too long,
/// nothing measured yet. The names are by slot.
ValueOr<Value> evaluate(const Program& program, ExpressionId id, const std::vector<Value>& names,
                        const Measured& measured);

} // namespace ferrolex
