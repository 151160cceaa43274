// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/bench/Specimen.h"
#include "values/Outcome.h"

#include <QByteArray>
#include <QStringList>

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
    static constexpr int kLongestFile = 1024 * 1024;
    static constexpr int kMostBranches = 256;

    /// From the JSON text of a part file. Every entry is checked; an entry that is not known is refused, since it is
    /// most often a misspelt one. The sentence of a failure names the entry and what is expected there.
    ///
    ///     { "name": "40 kHz Langevin transducer",     text, needed
    ///       "source": "where the figures come from",  text
    ///       "seriesResistance": 0.1,                  Ohm, 0 or more; default 0
    ///       "staticCapacitance": 4e-9,                Farad, 0 or more; default 0
    ///       "leakageResistance": 1e9,                 Ohm, above 0; default none
    ///       "branches": [ { "resistance": 15, ... } ] default none
    ///     }
    ///
    /// A branch has "resistance" (Ohm) and, at choice, "inductance" (Henry), "capacitance" (Farad), both, "resonance"
    /// (Hz) with one of the two, or "resonance" with "quality".
    static ValueOr<PartModel> fromJson(const QByteArray& text);
    /// A shipped part by its short name, or else a file.
    static ValueOr<PartModel> load(const QString& nameOrFile);
    /// Short names of the shipped parts, in alphabetical order.
    static QStringList shippedNames();

    PartModel(QString name, double seriesResistance, double staticCapacitance, std::optional<double> leakageResistance,
              std::vector<MotionalBranch> branches);

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
