// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/parts/Specimen.h"

#include <functional>

namespace sim {

/// Says so when a measurement leaves the range in which its specimen is known, once for each that begins.
class RangeWatch
{
public:
    /// Tell takes a sentence for the person who runs the simulator; it may be empty. The specimen outlives the watch.
    RangeWatch(const Specimen& specimen, std::function<void(const QString&)> tell);

    /// What begins, for example "impedance sweep"; Hz, either may be the higher one.
    void begins(const QString& what, double from, double to) const;
    /// Levels between tests are measured at that frequency; told of once until it is another.
    void idlesAt(double frequency);

private:
    const Specimen& m_specimen;
    std::function<void(const QString&)> m_tell;
    double m_idle = 0;
};

} // namespace sim
