// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/Noise.h"
#include "controls/resonance/Sweep.h"

#include <vector>

namespace resonance {

/// A local maximum of the conductance.
struct Peak
{
    std::size_t index = 0;
    double prominence = 0; ///< S
    double width = 0;      ///< Hz between the points of half the prominence; at an edge twice the inner half
};

/// The strongest peaks that stand out of the noise, strongest first; the highest of all is always among them.
/// Maxima within a half-width of a stronger one are left out. Keeps the memory of the vector.
void findPeaks(const Sweep& sweep, const Noise& noise, std::vector<Peak>& peaks);

} // namespace resonance
