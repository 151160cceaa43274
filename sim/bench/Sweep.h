// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/Run.h"

#include <memory>

namespace sim {

/// Amplitude or impedance points over the range that was set when the sweep began. Repeats as long as the settings say
/// so; in sweep mode 2 the passes alternate in direction, the first going from A to B.
std::unique_ptr<Run> makeSweep(TestKind kind, const SweepSettings& settings);

} // namespace sim
