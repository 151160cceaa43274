// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/SettingCommands.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <utility>

using namespace sim;

TEST(SettingCommands, TheAttenuatorTakesNoCodeThatTheModelHasNot)
{
    InstrumentState state;
    for (const auto& [model, highest] : {std::pair(Model::T46, 4), std::pair(Model::DT46, 0)}) {
        state.facts = &ModelFacts::of(model);
        ASSERT_TRUE(settings::apply("atten", "3", state));
        EXPECT_EQ(state.settings.attenuation, std::min(3, highest));
        ASSERT_TRUE(settings::apply("atten", "99", state));
        EXPECT_EQ(state.settings.attenuation, highest);
    }
}

TEST(SettingCommands, FrequenciesEndWhereTheModelDoes)
{
    InstrumentState state;
    for (const Model model : {Model::T46, Model::DT46}) {
        state.facts = &ModelFacts::of(model);
        ASSERT_TRUE(settings::apply("endfreq", "1e12", state));
        EXPECT_EQ(state.settings.endFrequency, state.facts->maxFrequency);
    }
}
