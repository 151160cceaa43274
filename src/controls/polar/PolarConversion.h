// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

/// Impedance between its polar and its rectangular form, and the admittance that belongs to it.
///
/// Z = R + jX (Ohm), Y = 1/Z = G + jB (Siemens): R = |Z| cos p, X = |Z| sin p, G = R/|Z|^2, B = -X/|Z|^2. With that
/// sign a capacitor has negative X and positive B. Multiples of 90 degrees convert exactly.
namespace polar {

struct Rectangular
{
    double resistance = 0;  ///< Ohm
    double reactance = 0;   ///< Ohm
    double conductance = 0; ///< Siemens
    double susceptance = 0; ///< Siemens
};

struct Polar
{
    double modulus = 0; ///< Ohm, not negative
    double phase = 0;   ///< degrees, above -180 up to 180; 0 at 0 Ohm
};

/// From modulus (Ohm) and signed phase (degrees, any number of turns). A short has no finite admittance: at 0 Ohm, and
/// where the admittance would overflow, conductance and susceptance read 0, so no graph is handed an infinity.
/// Arguments that are not finite give 0 throughout.
Rectangular toRectangular(double modulus, double phase) noexcept;

/// From reactance and resistance (Ohm). Arguments that are not finite give 0 throughout.
Polar toPolar(double reactance, double resistance) noexcept;

} // namespace polar
