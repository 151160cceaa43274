// SPDX-License-Identifier: GPL-3.0-or-later
// The pages of the axes: scales, limits, zoom, driven in the window itself.
#include "ViewWindows.h"

namespace {

class AxisPagesTest : public ViewWindowTest
{
protected:
    AxisPagesTest() { open(PenDocument::Impedance); }
};

TEST_F(AxisPagesTest, TheFrequencyAxisIsLinearOrLogarithmic)
{
    showTab("Axes");
    EXPECT_TRUE(isChecked("optLog"));
    click("optLinear");
    EXPECT_EQ(graph().XAxisScaleControl(), graph::ScaleLinear);
    EXPECT_TRUE(changed());
    click("optLog");
    EXPECT_EQ(graph().XAxisScaleControl(), graph::ScaleLogarithmic);
}

TEST_F(AxisPagesTest, FrequencyLimitsAreSetByButtonAndByEnter)
{
    showTab("Axes");
    type("txtUpperFreqLimit", "40k5");
    EXPECT_NE(graph().ManualMaxX(), 40500) << "not before it is set";
    click("cmdSetUpperFrequencyLimit");
    EXPECT_EQ(graph().ManualMaxX(), 40500);
    EXPECT_EQ(text("txtUpperFreqLimit"), "40500");
    EXPECT_TRUE(changed());
    type("txtLowerFreqLimit", "1,5k");
    enter("txtLowerFreqLimit");
    EXPECT_EQ(graph().ManualMinX(), 1500);
    EXPECT_EQ(dialog->focusWidget()->objectName(), "txtUpperFreqLimit");
    EXPECT_TRUE(dialog->isVisible()) << "Enter in a box closes nothing";
    type("txtLowerFreqLimit", "0");
    click("cmdSetLowerFrequencyLimit");
    EXPECT_EQ(graph().ManualMinX(), 10);
    click("cmdDefaultXAxis");
    EXPECT_EQ(text("txtUpperFreqLimit"), "50000000");
    EXPECT_EQ(text("txtLowerFreqLimit"), "10");
    EXPECT_EQ(graph().ManualMaxX(), 50000000);
}

TEST_F(AxisPagesTest, AnEmptyFrequencyIsRefilledFromTheSweep)
{
    document->UpdateTestExtents(2000, 3000);
    showTab("Axes");
    type("txtUpperFreqLimit", "");
    click("cmdSetUpperFrequencyLimit");
    EXPECT_EQ(text("txtUpperFreqLimit"), "3000");
    type("txtLowerFreqLimit", "");
    click("cmdSetLowerFrequencyLimit");
    EXPECT_EQ(graph().ManualMinX(), 2000);
}

TEST_F(AxisPagesTest, ZoomButtonsAreEnabledWhileTheGraphIsZoomed)
{
    showTab("Axes");
    click("optManualZScale");
    EXPECT_FALSE(isEnabled("cmdSetXAxisToZoomLevel"));
    EXPECT_FALSE(isEnabled("cmdSetImpedanceDisplayLimitsToZoom"));
    zoomIn();
    EXPECT_TRUE(isEnabled("cmdSetXAxisToZoomLevel"));
    click("cmdSetXAxisToZoomLevel");
    EXPECT_EQ(graph().ManualMinX(), 1000);
    EXPECT_EQ(graph().ManualMaxX(), 10000);
    EXPECT_EQ(text("txtUpperFreqLimit"), "10000");
    EXPECT_FALSE(isEnabled("cmdSetXAxisToZoomLevel")) << "back at full extent";
    zoomIn();
    click("cmdSetImpedanceDisplayLimitsToZoom");
    EXPECT_EQ(axis(0).ManualMinY, 10);
    EXPECT_EQ(axis(0).ManualMaxY, 100);
    EXPECT_EQ(text("txtLimits_0"), "100");
    EXPECT_TRUE(changed());
}

TEST_F(AxisPagesTest, ImpedanceLimitsAreAutomaticOrManual)
{
    showTab("Axes");
    click("optAutoZScale");
    EXPECT_EQ(axis(0).ManualScaleControlY, graph::ScaleAutomatic);
    EXPECT_FALSE(isEnabled("txtLimits_0"));
    EXPECT_TRUE(changed());
    click("optManualZScale");
    EXPECT_EQ(axis(0).ManualScaleControlY, graph::ScaleManual);
    EXPECT_TRUE(isEnabled("txtLimits_0"));
    type("txtLimits_0", "4m7");
    EXPECT_EQ(text("txtLimits_0"), "4M7") << "there are no small impedances";
    enter("txtLimits_0");
    EXPECT_EQ(axis(0).ManualMaxY, 4700000);
    EXPECT_EQ(dialog->focusWidget()->objectName(), "txtLimits_1");
    type("txtLimits_1", "2,5");
    click("cmdSetLimit_1");
    EXPECT_EQ(axis(0).ManualMinY, 2.5);
    EXPECT_EQ(text("txtLimits_1"), "2.5");
    type("txtLimits_1", "-1");
    click("cmdSetLimit_1");
    EXPECT_EQ(axis(0).ManualMinY, 2.5);
    EXPECT_EQ(text("txtLimits_1"), "2.5") << "refused in place";
    click("cmdDefaultImpedanceAxisDisplayLimits");
    EXPECT_EQ(axis(0).ManualMinY, 0.01);
    EXPECT_EQ(text("txtLimits_0"), "999999");
}

TEST_F(AxisPagesTest, AdmittanceLimitsTakeSmallUnits)
{
    document->graphSetAlternateView(true);
    showTab("Axes");
    click("optManualZScale");
    type("txtLimits_0", "4M7x");
    EXPECT_EQ(text("txtLimits_0"), "4m7");
    click("cmdSetLimit_0");
    EXPECT_EQ(axis(1).ManualMaxY, 0.0047);
    type("txtLimits_1", "2U");
    enter("txtLimits_1");
    EXPECT_EQ(axis(1).ManualMinY, 0.000002);
    type("txtLimits_1", "1E-3");
    enter("txtLimits_1");
    EXPECT_EQ(axis(1).ManualMinY, 0.001);
    type("txtLimits_1", "E");
    enter("txtLimits_1");
    EXPECT_EQ(axis(1).ManualMinY, 0.001) << "an E without its numbers is refused";
}

TEST_F(AxisPagesTest, TheImpedanceAxisIsLinearOrLogarithmic)
{
    showTab("Axes");
    EXPECT_TRUE(isChecked("optZScaleLogarithmic"));
    click("optZScaleLinear");
    EXPECT_EQ(axis(0).YAxisScaleControl, graph::ScaleLinear);
    EXPECT_EQ(axis(1).YAxisScaleControl, graph::ScaleLinear);
    EXPECT_TRUE(changed());
    click("optZScaleLogarithmic");
    EXPECT_EQ(axis(0).YAxisScaleControl, graph::ScaleLogarithmic);
}

TEST_F(AxisPagesTest, AmplitudeLimitsAreSet)
{
    open(PenDocument::Amplitude);
    showTab("Axes");
    EXPECT_EQ(title("fAmpScaleControl"), "Amplitude scale limits");
    EXPECT_EQ(title("fAmpRange"), "Amplitude manual scale limits");
    click("optManScaleAmp");
    EXPECT_EQ(axis(0).ManualScaleControlY, graph::ScaleManual);
    type("txtAmpUpper", "0");
    click("cmdAmpSetUpper");
    type("txtAmpLower", "-42,5");
    click("cmdAmpSetLower");
    EXPECT_EQ(axis(0).ManualMaxY, 0);
    EXPECT_EQ(axis(0).ManualMinY, -42.5);
    EXPECT_TRUE(changed());
    zoomIn();
    click("cmdSetAmpLimitsToZoom");
    EXPECT_EQ(axis(0).ManualMaxY, 2) << "of a linear axis";
    click("cmdDefaultAmplitude");
    EXPECT_EQ(text("txtAmpUpper"), "10");
    EXPECT_EQ(text("txtAmpLower"), "-90");
    click("optAutoScaleAmp");
    EXPECT_EQ(axis(0).ManualScaleControlY, graph::ScaleAutomatic);
    EXPECT_FALSE(isEnabled("txtAmpUpper"));
}

} // namespace
