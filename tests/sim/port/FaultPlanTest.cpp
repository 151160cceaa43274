// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/FaultPlan.h"

#include <gtest/gtest.h>

TEST(FaultPlan, UnknownKindsAndDistancesAreAnsweredWithWhatIsPossible)
{
    sim::FaultPlan faults;
    EXPECT_EQ(
        faults.add("gremlins").sentence(),
        QString(
            "There is no fault \"gremlins\". The kinds are: garbage, lost, split, stall, unplug, flood, wrong-length, "
            "non-numeric, power, cable, dead-image."));
    EXPECT_EQ(faults.add("lost:often").sentence(),
              QString("Behind \"lost:\" stands in how many frames the fault strikes once, for example lost:60."));
    EXPECT_FALSE(faults.add("lost:0").ok());
    EXPECT_FALSE(faults.any());
    EXPECT_TRUE(faults.add("lost:7, split").ok());
    EXPECT_EQ(faults.every(sim::Fault::LostBytes), 7u);
    EXPECT_GT(faults.every(sim::Fault::SplitWrites), 0u);
}
