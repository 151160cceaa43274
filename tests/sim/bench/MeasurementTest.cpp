// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/bench/Measurement.h"

#include "sim/parts/PartModel.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace sim;

namespace {

/// Levels of one resistor far from 0 dB, where a wrong slope shows.
double levelWith(const Measurement& measurement, const InstrumentState& state)
{
    return measurement.amplitude(100000, state, 1, 0).value;
}

} // namespace

TEST(Measurement, TheDetectorsSlopeIsMadeTrueByTheCalibratedOneAndByNoOther)
{
    const auto part =
        std::make_shared<PartModel>(QStringLiteral("10 kOhm"), QString(), 0.0, 0.0, 1e4, std::vector<MotionalBranch>{});
    const Measurement measurement(part, 7, 0);
    InstrumentState state;
    state.constants = measurement.factoryConstants(*state.facts, "SN7");
    const double calibrated = levelWith(measurement, state);
    state.constants.calibrationSlope *= 1.01;
    EXPECT_NEAR(levelWith(measurement, state) / calibrated, 1.01, 1e-3);
    EXPECT_NE(measurement.factoryConstants(*state.facts, "SN7").calibrationSlope, 1.0)
        << "an instrument whose detector is perfect proves nothing";
}

TEST(Measurement, TheNoiseGrowsByAsManyDecibelsAsTheAttenuatorTakes)
{
    const auto wire =
        std::make_shared<PartModel>(QStringLiteral("wire"), QString(), 0.0, 0.0, 1e-3, std::vector<MotionalBranch>{});
    const Measurement noisy(wire, 7, 1);
    const Measurement quiet(wire, 7, 0);
    InstrumentState state;
    ASSERT_EQ(state.facts->attenuationSteps, 4);
    const auto noise = [&] { return noisy.deviation(100000, state, 1, 0) - quiet.deviation(100000, state, 1, 0); };
    const double plain = noise();
    ASSERT_NE(plain, 0);
    for (int code = 1; code <= 4; ++code) {
        state.settings.attenuation = code;
        EXPECT_NEAR(20 * std::log10(noise() / plain), code * state.facts->attenuationStep, 1e-6);
    }
}
