// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/Run.h"

#include <memory>

namespace sim {

inline constexpr int kDiagnosePoints = 1007;

/// Two passes of kDiagnosePoints over the whole range: first the loopback, then the specimen.
std::unique_ptr<Run> makeDiagnosis(const ModelFacts& facts);

} // namespace sim
