// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/FrequencyPlan.h"

#include <cmath>

namespace sim {

double FrequencyPlan::frequency(int point, bool fromB) const
{
    const int steps = points - 1;
    const int step = fromB ? steps - point : point;
    if (step <= 0)
        return steps == 0 && fromB ? b : a;
    if (step >= steps)
        return b;
    const double share = static_cast<double>(step) / steps;
    return linear ? a + (b - a) * share : a * std::pow(b / a, share);
}

} // namespace sim
