// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/parts/Specimen.h"

#include <optional>
#include <vector>

namespace sim {

/// One motional branch: resistance (Ohm), inductance (Henry; 0 is none) and capacitance (Farad; 0 is none) in series.
struct MotionalBranch
{
    double resistance = 0;
    double inductance = 0;
    double capacitance = 0;

    /// 1 / (2 pi sqrt(L C)) in Hz; 0 when the branch does not resonate.
    double seriesResonance() const;
    /// 2 pi fs L / R; 0 when the branch does not resonate or has no loss.
    double quality() const;
};

/// A Butterworth-Van Dyke network: the static capacitance, the leakage resistance and any number of motional branches
/// in parallel, all behind a series resistance.
///
///     o--[seriesResistance]--+--[staticCapacitance]--+--o
///                            +--[leakageResistance]--+
///                            +--[R1]--[L1]--[C1]-----+
///                            +--[R2]--[L2]--[C2]-----+   ...
///
/// Butterworth (1914) and Van Dyke (1925); the form with several branches as in IEEE Std 177-1966.
class PartModel : public Specimen
{
public:
    /// The source tells people where the figures come from.
    PartModel(QString name, QString source, double seriesResistance, double staticCapacitance,
              std::optional<double> leakageResistance, std::vector<MotionalBranch> branches);

    std::complex<double> impedance(double frequencyHz) const override;
    QString name() const override { return m_name; }
    QString source() const { return m_source; }

    double seriesResistance() const { return m_seriesResistance; }
    double staticCapacitance() const { return m_staticCapacitance; }
    std::optional<double> leakageResistance() const { return m_leakageResistance; }
    const std::vector<MotionalBranch>& branches() const { return m_branches; }

private:
    QString m_name;
    QString m_source;
    double m_seriesResistance;
    double m_staticCapacitance;
    std::optional<double> m_leakageResistance;
    std::vector<MotionalBranch> m_branches;
};

} // namespace sim
