// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/ModeFit.h"

namespace resonance {

/// All figures of one of a fit's modes, with their uncertainties by the fit's covariance.
Mode figuresOf(const FitResult& fit, int mode);

} // namespace resonance
