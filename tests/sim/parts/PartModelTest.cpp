// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/parts/PartFile.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using sim::PartModel;

namespace {

constexpr double kPi = std::numbers::pi;

PartModel good(const QByteArray& json)
{
    ValueOr<PartModel> part = sim::partfile::fromJson(json);
    EXPECT_TRUE(part.ok()) << part.sentence().toStdString();
    return part.value();
}

} // namespace

TEST(PartModel, AtSeriesResonanceTheBranchIsItsResistance)
{
    const PartModel part =
        good(R"({"name": "x", "branches": [{"resistance": 15, "inductance": 0.05, "capacitance": 3e-10}]})");
    const double resonance = part.branches()[0].seriesResonance();
    EXPECT_DOUBLE_EQ(resonance, 1 / (2 * kPi * std::sqrt(0.05 * 3e-10)));
    EXPECT_NEAR(part.impedance(resonance).real(), 15, 1e-6);
    EXPECT_NEAR(part.impedance(resonance).imag(), 0, 1e-6);
}

TEST(PartModel, ParallelResonanceStandsWhereTheRatioOfTheCapacitancesPutsIt)
{
    // Far above the losses: fp = fs sqrt(1 + C1 / C0), and there the impedance is highest.
    const PartModel part = good(
        R"({"name": "x", "staticCapacitance": 4e-9, "branches": [{"resonance": 40000, "resistance": 1, "capacitance": 2.8e-10}]})");
    const double expected = 40000 * std::sqrt(1 + 2.8e-10 / 4e-9);
    double highest = 0, at = 0;
    for (double frequency = 40500; frequency < 42500; frequency += 0.5) {
        if (std::abs(part.impedance(frequency)) > highest) {
            highest = std::abs(part.impedance(frequency));
            at = frequency;
        }
    }
    EXPECT_NEAR(at, expected, 2);
}

TEST(PartModel, ABareCapacitanceAndResistancesFollowTheirFormulas)
{
    const PartModel capacitor = good(R"({"name": "c", "staticCapacitance": 1e-9})");
    EXPECT_NEAR(capacitor.impedance(1000).imag(), -1 / (2 * kPi * 1000 * 1e-9), 1);
    const PartModel leaky = good(R"({"name": "r", "leakageResistance": 470, "seriesResistance": 30})");
    EXPECT_NEAR(std::abs(leaky.impedance(5e5)), 500, 1e-6);
}

TEST(PartModel, ALosslessBranchAtItsResonanceStaysFinite)
{
    const PartModel part =
        good(R"({"name": "x", "branches": [{"resistance": 0, "resonance": 1000, "inductance": 1}]})");
    const double resonance = part.branches()[0].seriesResonance();
    EXPECT_GT(std::abs(part.impedance(resonance)), 0);
    EXPECT_TRUE(std::isfinite(std::abs(part.impedance(resonance))));
}
