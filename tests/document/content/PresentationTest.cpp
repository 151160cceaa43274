// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/Presentation.h"

#include "document/content/GraphScope.h"
#include "document/content/Pens.h"

#include <gtest/gtest.h>

namespace {

struct PresentationTest : ::testing::Test
{
    GraphModel graph;
    Pens pens{graph};
    Presentation view{graph};

    QString title(int axis) const { return graph.properties().yAxes[static_cast<std::size_t>(axis)].YAxisLabel; }
};

} // namespace

TEST_F(PresentationTest, EveryViewOfEveryTypeIsReadBackFromItsTitles)
{
    for (const std::int16_t type : {plot::Amplitude, plot::Impedance, plot::Reactance}) {
        for (const bool alternate : {false, true}) {
            for (const std::int16_t right : {1, 2}) {
                view.configureTest(type, {});
                view.setAlternate(alternate);
                EXPECT_EQ(view.setPhaseView(right), type != plot::Reactance);
                EXPECT_EQ(view.setRGView(right), type == plot::Reactance);
                Presentation read(graph);
                read.readTitles();
                EXPECT_EQ(read.testType(), type);
                EXPECT_EQ(read.isAlternate(), alternate);
                EXPECT_EQ(type == plot::Reactance ? read.rgView() : read.phaseView(), right);
            }
        }
    }
}

TEST_F(PresentationTest, AViewThatTheTypeDoesNotHaveIsRefusedAndChangesNothing)
{
    view.configureTest(plot::Impedance, {});
    EXPECT_TRUE(view.setPhaseView(plot::WholeCycle));
    EXPECT_FALSE(view.setPhaseView(3));
    EXPECT_FALSE(view.setPhaseView(-1));
    EXPECT_FALSE(view.setRGView(plot::Resistance));
    EXPECT_EQ(view.phaseView(), plot::WholeCycle);
    EXPECT_EQ(title(3), "Phase - Degrees");
}

TEST_F(PresentationTest, ShownPensAreReadBackInBothViews)
{
    view.configureTest(plot::Impedance, {});
    pens.setHidden(0, true);
    pens.setHidden(7, true);
    for (const bool alternate : {false, true}) {
        view.setAlternate(alternate);
        view.showPens(pens);
        Pens read(graph);
        view.readShownPens(read);
        for (int pen = 0; pen < plot::kPens; ++pen)
            EXPECT_EQ(read.isHidden(pen), pen == 0 || pen == 7) << pen << alternate;
    }
}

TEST_F(PresentationTest, LimitsOfTheInstrumentBecomeThoseOfTheAxes)
{
    PlotSource::Limits limits;
    limits.lowestImpedance = 0.5;
    limits.highestImpedance = 2000;
    limits.sweepStart = 50000;
    limits.sweepEnd = 30000;
    view.configureTest(plot::Impedance, limits);
    view.configureFrequency(false, limits);
    const auto& axes = graph.properties().yAxes;
    EXPECT_EQ(axes[0].ManualMinY, 0.5);
    EXPECT_EQ(axes[1].ManualMaxY, 2.0);
    EXPECT_EQ(graph.ManualMinX(), 30000) << "a sweep set up downward spans the same range";
    EXPECT_EQ(graph.ManualMaxX(), 50000);
}

TEST_F(PresentationTest, OnlyALogarithmicFrequencyAxisZoomsByExponents)
{
    view.configureTest(plot::Impedance, {});
    view.configureFrequency(false, {});
    EXPECT_EQ(view.plainX(4), 10000);
    view.setFrequencyLinear(true);
    EXPECT_EQ(view.plainX(4), 4);
    view.setFrequencyLinear(false);
    graph.setXAxisLabel("Phase trim");
    EXPECT_EQ(view.plainX(4), 4);
}

TEST_F(PresentationTest, TheCursorNamesTheUnitOfItsSubset)
{
    view.configureTest(plot::Reactance, {});
    view.configureFrequency(true, {});
    for (const int subset : {0, 10, 20, 30})
        graph.setPoint(subset, 0, 1000.0F, 2.5F);
    EXPECT_EQ(view.cursorTexts(0, 0).x, "X: 1000 Hz");
    EXPECT_EQ(view.cursorTexts(0, 0).y, "Y: 2.5 Ohms");
    EXPECT_EQ(view.cursorTexts(10, 0).y, "Y: 2.5 Siemens");
    EXPECT_EQ(view.cursorTexts(30, 0).y, "Y: 2.5 Ohms");
    view.setRGView(plot::Conductance);
    EXPECT_EQ(view.cursorTexts(20, 0).y, "Y: 2.5 Siemens");
    view.configureTest(plot::Amplitude, {});
    EXPECT_EQ(view.cursorTexts(10, 0).y, "Y: 2.5 dB");
    EXPECT_EQ(view.cursorTexts(30, 0).y, "Y: 2.5 Deg");
}
