// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/Pace.h"

#include <chrono>
#include <gtest/gtest.h>

using namespace sim;

namespace {

double seconds(Duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

} // namespace

TEST(Pace, APointTakesSetUpFourCyclesAndThePeriod)
{
    InstrumentState state;
    state.settings.period = 7;
    EXPECT_NEAR(seconds(Pace().pointTime(1000, state)), 0.001 + 0.004 + 0.007, 1e-9);
    EXPECT_NEAR(seconds(Pace().pointTime(10, state)), 0.001 + 0.25 + 0.007, 1e-9) << "at low frequencies fewer cycles";
}

TEST(Pace, EachSampleOfASamplingInstrumentTakesTwentyMicroseconds)
{
    InstrumentState state;
    state.facts = &ModelFacts::of(Model::DT46);
    const auto time = [&state](int samples) {
        state.settings.samples = samples;
        return seconds(Pace().pointTime(1e6, state));
    };
    EXPECT_NEAR(time(1001) - time(1), 0.02, 1e-9);
    state.facts = &ModelFacts::of(Model::T46);
    EXPECT_EQ(time(1001), time(1)) << "the T46 takes none";
}

TEST(Pace, ARateHoldsWhateverTheHostSets)
{
    InstrumentState state;
    state.settings.period = 1000;
    const Pace pace{Pace::Kind::Rate, 250};
    EXPECT_NEAR(seconds(pace.pointTime(10, state)), 0.004, 1e-9);
    EXPECT_EQ(pace.markerInterval(10, state), 5) << "fifty marked points a second";
}
