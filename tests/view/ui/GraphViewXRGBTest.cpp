// SPDX-License-Identifier: GPL-3.0-or-later
// What the view options of reactance documents have beyond those of the others.
#include "ViewWindows.h"

#include "mask/maskline.h"

namespace {

using namespace Qt::StringLiterals;

class GraphViewXRGBTest : public ViewWindowTest
{
protected:
    GraphViewXRGBTest() { open(PenDocument::Reactance); }

    std::string titles()
    {
        QStringList all;
        for (const char* name : {"fXScaleControl", "fXRange", "fRScaleControl", "fRRange"})
            all << title(name);
        return all.join(u'|').toStdString();
    }
    void setAdmittance(bool on)
    {
        showTab("Display and Frequency Axes");
        click(on ? "optSusc" : "optReact");
    }
};

TEST_F(GraphViewXRGBTest, ItHasFourTabsAndNoMasks)
{
    QStringList captions;
    for (int i = 0; i < tabs().count(); ++i)
        captions << tabs().tabText(i);
    EXPECT_EQ(captions.join(u'|'), "&Pen|&Display and Frequency Axes|A&xes|&Style");
    EXPECT_EQ(dialog->findChild<QWidget*>(u"chkEnableMasks"_s), nullptr);
    EXPECT_EQ(dialog->findChild<QWidget*>(u"optHalfCycle"_s), nullptr);
    EXPECT_EQ(dialog->windowTitle(), "Graph View Options: Document 1");
}

TEST_F(GraphViewXRGBTest, TheTabIsKept)
{
    EXPECT_EQ(tabs().currentIndex(), 0);
    showTab("Axes");
    click("OKButton");
    EXPECT_EQ(bench.preferences.value(options::kGraphViewOptionsXRGBTab), 2);
    reopen();
    EXPECT_EQ(tabs().currentIndex(), 2);
}

TEST_F(GraphViewXRGBTest, AdmittanceRenamesTheFramesAndImpedanceBringsThemBack)
{
    const char* impedance = "Reactance scale limits|Reactance manual scale limits|Resistance scale limits|Resistance "
                            "manual scale limits";
    setAdmittance(false);
    EXPECT_EQ(titles(), impedance);
    document->setModified(false);
    setAdmittance(true);
    EXPECT_EQ(titles(), "Susceptance scale limits|Susceptance manual scale limits|Conductance scale limits|"
                        "Conductance manual scale limits");
    EXPECT_TRUE(document->gbfAltSubset());
    EXPECT_EQ(document->giDisplayRG(), 2);
    EXPECT_EQ(axis(1).YAxisLabel, "Susceptance B - Siemens");
    EXPECT_EQ(axis(2).YAxisLabel, "Conductance G - Siemens");
    EXPECT_TRUE(changed());
    setAdmittance(false);
    EXPECT_EQ(titles(), impedance);
    EXPECT_FALSE(document->gbfAltSubset());
    EXPECT_EQ(document->giDisplayRG(), 1);
}

TEST_F(GraphViewXRGBTest, LimitsAreAutomaticOrManualInBothViews)
{
    showTab("Axes");
    click("optXManualScale");
    click("optRAutoScale");
    for (int number = 0; number < 4; ++number)
        EXPECT_EQ(axis(number).ManualScaleControlY, number < 2 ? graph::ScaleManual : graph::ScaleAutomatic) << number;
    EXPECT_TRUE(isEnabled("txtXLimits_0"));
    EXPECT_FALSE(isEnabled("txtRLimits_0"));
    click("optXAutoScale");
    click("optRManualScale");
    for (int number = 0; number < 4; ++number)
        EXPECT_EQ(axis(number).ManualScaleControlY, number < 2 ? graph::ScaleAutomatic : graph::ScaleManual) << number;
    EXPECT_FALSE(isEnabled("txtXLimits_0"));
    EXPECT_TRUE(isEnabled("txtRLimits_0"));
    EXPECT_TRUE(changed());
}

TEST_F(GraphViewXRGBTest, LimitsGoToTheAxesOfTheView)
{
    setAdmittance(false);
    showTab("Axes");
    click("optXManualScale");
    click("optRManualScale");
    type("txtXLimits_0", "1k");
    click("cmdXSetLimit_0");
    type("txtXLimits_1", "-2k5");
    enter("txtXLimits_1");
    type("txtRLimits_0", "3m");
    EXPECT_EQ(text("txtRLimits_0"), "3M");
    click("cmdRSetLimit_0");
    type("txtRLimits_1", "4,5");
    click("cmdRSetLimit_1");
    EXPECT_EQ(axis(0).ManualMaxY, 1000);
    EXPECT_EQ(axis(0).ManualMinY, -2500);
    EXPECT_EQ(axis(3).ManualMaxY, 3e6);
    EXPECT_EQ(axis(3).ManualMinY, 4.5);
    EXPECT_TRUE(changed());
    setAdmittance(true);
    showTab("Axes");
    type("txtXLimits_0", "5M");
    EXPECT_EQ(text("txtXLimits_0"), "5m");
    click("cmdXSetLimit_0");
    type("txtRLimits_0", "6U");
    click("cmdRSetLimit_0");
    EXPECT_EQ(axis(1).ManualMaxY, 0.005);
    EXPECT_EQ(axis(2).ManualMaxY, 0.000006);
    EXPECT_EQ(axis(0).ManualMaxY, 1000);
    EXPECT_EQ(axis(3).ManualMaxY, 3e6);
}

TEST_F(GraphViewXRGBTest, TheFullRangesAreSetForBothViews)
{
    showTab("Axes");
    click("optXManualScale");
    click("optRManualScale");
    click("cmdDefaultXAxisDisplayLimits");
    click("cmdDefaultRAxisDisplayLimits");
    EXPECT_EQ(axis(0).ManualMinY, -50000);
    EXPECT_EQ(axis(1).ManualMaxY, 500);
    EXPECT_EQ(axis(2).ManualMaxY, 100);
    EXPECT_EQ(axis(3).ManualMaxY, 500000);
    EXPECT_EQ(graph().WorkingAxis(), 0);
    EXPECT_TRUE(changed());
}

TEST_F(GraphViewXRGBTest, TheZoomBecomesTheLimitsOfReactance)
{
    setAdmittance(false);
    showTab("Axes");
    click("optXManualScale");
    EXPECT_FALSE(isEnabled("cmdSetXDisplayLimitsToZoom"));
    zoomIn();
    click("cmdSetXDisplayLimitsToZoom");
    EXPECT_EQ(axis(0).ManualMinY, 1);
    EXPECT_EQ(axis(0).ManualMaxY, 2);
    EXPECT_EQ(text("txtXLimits_0"), "2");
    EXPECT_EQ(document->zoomHistory().count(), 0);
}

TEST_F(GraphViewXRGBTest, TheFrequencyAxisIsThatOfTheOtherDialog)
{
    showTab("Display and Frequency Axes");
    click("optLinear");
    EXPECT_TRUE(document->graphGetFrequncyView());
    click("optLog");
    EXPECT_EQ(graph().XAxisScaleControl(), graph::ScaleLogarithmic);
    type("txtUpperFreqLimit", "2M");
    enter("txtUpperFreqLimit");
    EXPECT_EQ(graph().ManualMaxX(), 2000000);
    click("chkMarkPoints");
    EXPECT_TRUE(graph().MarkDataPoints());
}

TEST_F(GraphViewXRGBTest, APenUnderAMaskIsNotUnlocked)
{
    maskline(*document, bench.preferences).enable();
    reopen();
    bench.messages.shown.clear();
    showTab("Pen");
    click("chkLock_9");
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].text, "Disable mask before unlocking pen");
    EXPECT_TRUE(isChecked("chkLock_9"));
}

} // namespace
