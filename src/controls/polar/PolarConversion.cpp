// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/polar/PolarConversion.h"

#include <cmath>
#include <numbers>

namespace polar {

Rectangular toRectangular(double modulus, double phase) noexcept
{
    Rectangular result;
    if (!std::isfinite(modulus) || !std::isfinite(phase))
        return result;

    // remquo leaves at most 45 degrees, so that the axes themselves give exact zeros and ones.
    int quarter = 0;
    const double rest = std::remquo(phase, 90.0, &quarter) * (std::numbers::pi / 180.0);
    const double s = std::sin(rest);
    const double c = std::cos(rest);
    double cosine = c;
    double sine = s;
    switch (quarter & 3) {
    case 1:
        cosine = -s;
        sine = c;
        break;
    case 2:
        cosine = -c;
        sine = -s;
        break;
    case 3:
        cosine = s;
        sine = -c;
        break;
    default:
        break;
    }
    // Adding 0 turns a negative zero into a plain one, which would otherwise be shown with its sign.
    result.resistance = modulus * cosine + 0.0;
    result.reactance = modulus * sine + 0.0;
    const double admittance = 1.0 / modulus;
    if (std::isfinite(admittance)) {
        result.conductance = admittance * cosine + 0.0;
        result.susceptance = -admittance * sine + 0.0;
    }
    return result;
}

Polar toPolar(double reactance, double resistance) noexcept
{
    if (!std::isfinite(reactance) || !std::isfinite(resistance))
        return {};
    return {std::hypot(resistance, reactance),
            std::atan2(reactance + 0.0, resistance + 0.0) * (180.0 / std::numbers::pi)};
}

} // namespace polar
