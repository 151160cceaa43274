// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cmath>
#include <complex>
#include <numbers>

/// A resistor, an inductor and a capacitor in series: a part whose value at any frequency a test can compute by itself.
/// As it stands it resonates near 40 kHz; its phase changes sign there.
struct SeriesPart
{
    double ohms = 80;
    double henries = 0.01;
    double farads = 1.5831e-9;

    struct Value
    {
        double size = 0;    ///< Ohm or dB
        double degrees = 0; ///< with its sign
    };

    std::complex<double> impedance(double hertz) const
    {
        const double omega = 2 * std::numbers::pi * hertz;
        return {ohms, omega * henries - 1 / (omega * farads)};
    }
    /// Modulus of the impedance and its angle.
    Value asImpedance(double hertz) const
    {
        const std::complex<double> z = impedance(hertz);
        return {std::abs(z), degrees(z)};
    }
    /// Gain between a source and a receiver of 50 Ohm each, relative to a plain wire, and its angle.
    Value asAmplitude(double hertz) const
    {
        const std::complex<double> fraction = 100.0 / (100.0 + impedance(hertz));
        return {20 * std::log10(std::abs(fraction)), degrees(fraction)};
    }

private:
    static double degrees(std::complex<double> value) { return std::arg(value) * 180 / std::numbers::pi; }
};
