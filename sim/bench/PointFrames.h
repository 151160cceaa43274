// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/Measurement.h"
#include "sim/protocol/Frames.h"

/// The frames that carry what was measured; the columns are tabled in docs/instrument-protocol.md.
namespace sim {

/// "F" or "H": x is the frequency in Hz, or what else the run counts. A reading without phase is told as such.
Frame pointFrame(TestKind kind, bool marker, double x, const Measurement::Reading& reading, bool phase, int point);
/// "G" or "I".
Frame levelFrame(TestKind kind, double frequency, const Measurement::Reading& reading, bool phase);

} // namespace sim
