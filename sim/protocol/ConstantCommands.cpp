// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/ConstantCommands.h"

#include "sim/protocol/CommandArguments.h"
#include "sim/protocol/CommandTable.h"
#include "sim/protocol/StatusFrames.h"

namespace sim::constants {

namespace {

using Text = std::string_view;

Frame setTrim(int& code, Text text, const InstrumentState& state)
{
    // A second number follows the code; it has no meaning here.
    const Text first = text.substr(0, text.find(' '));
    code = argument::wholeNumber(first, 0, kHighestTrimCode).value_or(code);
    return status::phase(state);
}

Frame referenceTrim(Text text, InstrumentState& state)
{
    return setTrim(state.constants.vrefCode, text, state);
}

Frame dutTrim(Text text, InstrumentState& state)
{
    return setTrim(state.constants.vdutCode, text, state);
}

Frame frequencyCompensation(Text text, InstrumentState& state)
{
    // Within a thousandth: anything further off is a slip of the hand, not a crystal.
    const std::optional<double> number = argument::number(text);
    if (number && *number >= 999000 && *number <= 1001000)
        state.constants.frequencyCompensation = *number;
    return status::frequencyCompensation(state);
}

Frame applyCalibration(Text text, InstrumentState& state)
{
    bool& applied = state.constants.applyCalibration;
    applied = argument::flag(text).value_or(applied);
    return status::calibration(state);
}

constexpr StateCommand<Frame> kCommands[] = {
    {"setvref", referenceTrim},
    {"setvdut", dutTrim},
    {"setfreqcomp", frequencyCompensation},
    {"calon", applyCalibration},
};

} // namespace

QStringList words()
{
    return wordsOf(kCommands);
}

std::optional<Frame> apply(std::string_view word, std::string_view text, InstrumentState& state)
{
    return applyFrom(kCommands, word, text, state);
}

} // namespace sim::constants
