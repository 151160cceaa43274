// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <complex>
#include <optional>

namespace sim {

/// What is clamped into the test jig.
class Specimen
{
public:
    virtual ~Specimen() = default;
    /// Ohm, at a frequency above 0 Hz. Finite and never exactly 0.
    virtual std::complex<double> impedance(double frequencyHz) const = 0;
    struct Range
    {
        double low, high; ///< Hz
    };
    /// Where impedance() is founded on something; nothing for a specimen that is known at every frequency.
    virtual std::optional<Range> knownRange() const { return {}; }
    /// For people, for example "40 kHz Langevin transducer".
    virtual QString name() const = 0;
};

} // namespace sim
