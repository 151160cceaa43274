// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/Frames.h"
#include "sim/protocol/InstrumentState.h"

#include <QStringList>

#include <optional>
#include <string_view>

/// The commands that change what makes this very instrument, and need no more than the number behind the word. What
/// they change is to be kept at once.
namespace sim::constants {

QStringList words();
/// The frame of the answer, which tells what is in force; nothing when the word is none of words().
std::optional<Frame> apply(std::string_view word, std::string_view argument, InstrumentState& state);

} // namespace sim::constants
