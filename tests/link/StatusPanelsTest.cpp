// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/StatusPanels.h"

#include "support/RecordingMainWindow.h"

#include <gtest/gtest.h>

namespace {

class StatusPanelsTest : public testing::Test
{
protected:
    RecordingMainWindow window;
    StatusPanels panels{window};
};

TEST_F(StatusPanelsTest, ShowNumbersWithTheirUnits)
{
    panels.showFrequency(StatusPanels::StartFrequency, 38000.5);
    panels.showFrequency(StatusPanels::EndFrequency, 1e6);
    panels.showPoints(1024);
    panels.ShowTestPeriod(2.5);
    EXPECT_EQ(window.panels[3], "38000.5 Hz");
    EXPECT_EQ(window.panels[4], "1000000 Hz");
    EXPECT_EQ(window.panels[5], "1024 pts");
    EXPECT_EQ(window.panels[7], "2.5 mS");
    panels.showProgress(12, 1024);
    EXPECT_EQ(window.panels[5], "12/1024 pts");
}

TEST_F(StatusPanelsTest, AttenuationIsAShortNegativeLevelAndPlainZeroForNone)
{
    panels.ShowAttenuation(3, 0.1);
    EXPECT_EQ(window.panels[10], "-0.3 dB");
    panels.ShowAttenuation(0, 2.5);
    EXPECT_EQ(window.panels[10], "0 dB");
    panels.ShowAttenuation(7, 10);
    EXPECT_EQ(window.panels[10], "-70 dB");
}

TEST_F(StatusPanelsTest, IdleFrequencyHasWordsForOffAndStart)
{
    panels.ShowIdleFrequency(0);
    EXPECT_EQ(window.panels[8], "Off");
    panels.ShowIdleFrequency(-1);
    EXPECT_EQ(window.panels[8], "Start");
    panels.ShowIdleFrequency(1000);
    EXPECT_EQ(window.panels[8], "1000 Hz");
}

TEST_F(StatusPanelsTest, AnUnknownSweepModeLeavesThePanelAlone)
{
    panels.ShowSweepMode(0);
    EXPECT_EQ(window.panels[9], "A to B");
    panels.ShowSweepMode(1);
    EXPECT_EQ(window.panels[9], "B to A");
    panels.ShowSweepMode(2);
    EXPECT_EQ(window.panels[9], "Alternate");
    panels.ShowSweepMode(3);
    panels.ShowSweepMode(-1);
    EXPECT_EQ(window.panels[9], "Alternate");
}

} // namespace
