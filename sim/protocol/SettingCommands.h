// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/Frames.h"
#include "sim/protocol/InstrumentState.h"

#include <QStringList>

#include <optional>
#include <string_view>
#include <vector>

/// The commands that change a setting and nothing else. A number out of range is bounded, a text that is none leaves
/// the setting as it is: the frames of the answer tell what is in force.
namespace sim::settings {

QStringList words();
/// The frames of the answer; nothing when the word is none of words().
std::optional<std::vector<Frame>> apply(std::string_view word, std::string_view argument, InstrumentState& state);
/// Takes the frequency over, bounded by the model; a text that is no number changes nothing.
void setFrequency(double SweepSettings::*frequency, std::string_view argument, InstrumentState& state);
/// As a text that anybody may have edited needs it: every frequency and the attenuator within what the model can do.
SweepSettings bounded(SweepSettings settings, const ModelFacts& facts);

} // namespace sim::settings
