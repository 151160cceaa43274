// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/parts/PartModel.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace sim {

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

/// Stands for an open circuit; far beyond what any instrument resolves.
constexpr double kOpenOhms = 1e15;
constexpr double kShortOhms = 1e-9;

} // namespace

double MotionalBranch::seriesResonance() const
{
    return inductance > 0 && capacitance > 0 ? 1.0 / (kTwoPi * std::sqrt(inductance * capacitance)) : 0.0;
}

double MotionalBranch::quality() const
{
    return resistance > 0 ? kTwoPi * seriesResonance() * inductance / resistance : 0.0;
}

PartModel::PartModel(QString name, QString source, double seriesResistance, double staticCapacitance,
                     std::optional<double> leakageResistance, std::vector<MotionalBranch> branches)
    : m_name(std::move(name))
    , m_source(std::move(source))
    , m_seriesResistance(seriesResistance)
    , m_staticCapacitance(staticCapacitance)
    , m_leakageResistance(leakageResistance)
    , m_branches(std::move(branches))
{}

std::complex<double> PartModel::impedance(double frequencyHz) const
{
    const double omega = kTwoPi * frequencyHz;
    std::complex<double> admittance(m_leakageResistance ? 1.0 / *m_leakageResistance : 0.0,
                                    omega * m_staticCapacitance);
    for (const MotionalBranch& branch : m_branches) {
        double reactance = omega * branch.inductance;
        if (branch.capacitance > 0)
            reactance -= 1.0 / (omega * branch.capacitance);
        // A branch without loss exactly at its resonance would be a short circuit of nothing at all.
        const double resistance = std::max(branch.resistance, kShortOhms);
        admittance += 1.0 / std::complex<double>(resistance, reactance);
    }
    admittance += 1.0 / kOpenOhms;
    return std::max(m_seriesResistance, kShortOhms) + 1.0 / admittance;
}

} // namespace sim
