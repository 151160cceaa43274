// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/Run.h"

#include <QByteArray>

#include <memory>

namespace sim {

/// Records the detector's deviation over the whole range and marks the instrument calibrated with that stamp.
std::unique_ptr<Run> makeAmplitudeCalibration(const ModelFacts& facts, const QByteArray& stamp);
/// Tries the reference trim codes from 255 down to 0 and keeps the one with the least phase error.
std::unique_ptr<Run> makePhaseCalibration(const SweepSettings& settings);

} // namespace sim
