// SPDX-License-Identifier: GPL-3.0-or-later
// What the controls of the view options do to the picture of the graph.
#include "ViewWindows.h"

#include "controls/graph/ui/GraphPicture.h"

#include <QImage>

namespace {

class ShownPictureTest : public ViewWindowTest
{
protected:
    /// A graph with data in two pens, its dialog, and the picture of it.
    void begin(PenDocument::TestType type)
    {
        open(type);
        for (const int pen : {0, 1}) {
            document->setCurrentPen(pen);
            for (int i = 0; i < 50; ++i) {
                const double frequency = 2000 + 400 * i;
                if (type == PenDocument::Amplitude)
                    document->AddAmplitudePoint(frequency, -10.0 - i / 2.0 - pen, 45 + i, i % 2 == 0 ? 1 : -1, i);
                else
                    document->AddImpedancePoint(frequency, 100 + 20 * i + 300 * pen, 20 + i, i < 25 ? 1 : -1, i);
            }
        }
        graph().PEactions(graph::Reinitialise);
        m_before = picture();
        ASSERT_FALSE(m_before.isNull());
    }
    QImage picture() { return graph::pictureImage(graph(), 640, 400); }
    /// The picture is another one than at the last call.
    bool isAnother()
    {
        const QImage now = picture();
        const bool differs = now != m_before;
        m_before = now;
        return differs;
    }
    /// Each of the controls, clicked in turn, changes it.
    void eachChanges(const char* tab, const std::vector<const char*>& names)
    {
        showTab(tab);
        for (const char* name : names) {
            click(name);
            EXPECT_TRUE(isAnother()) << tab << ": " << name;
        }
    }
    void typed(const char* box, const char* text)
    {
        type(box, text);
        enter(box);
        EXPECT_TRUE(isAnother()) << box;
    }

private:
    QImage m_before;
};

TEST_F(ShownPictureTest, EachControlOfAnImpedanceGraphChangesIt)
{
    begin(PenDocument::Impedance);
    EXPECT_FALSE(isAnother()) << "nothing was done";
    bench.messages.replies = {UserMessages::ReplyYes};
    eachChanges("Pen", {"chkDisplay_0", "cmdDisplayAll", "cmdErase_1"});
    eachChanges("Display", {"chkMarkPoints", "chkInformation", "optWholeCycle", "optHalfCycle", "optOff", "optMhos",
                            "optOhms", "chkMarkPoints"});
    eachChanges("Axes", {"optLinear", "optLog", "optZScaleLinear", "optZScaleLogarithmic"});
    typed("txtUpperFreqLimit", "100k");
    typed("txtLowerFreqLimit", "1k5");
    click("cmdDefaultXAxis");
    EXPECT_TRUE(isAnother());
    eachChanges("Axes", {"optAutoZScale", "optManualZScale"});
    typed("txtLimits_0", "10k");
    typed("txtLimits_1", "10");
    click("cmdDefaultImpedanceAxisDisplayLimits");
    EXPECT_TRUE(isAnother());
    eachChanges("Style", {"optTop", "optBottom", "optLeft", "optRight", "optInsideAxis", "optHide", "optSmall",
                          "optMedium", "optLarge", "optTop", "optMonochrome", "optMonoSymbol", "optColour"});
}

TEST_F(ShownPictureTest, EachControlOfAnAmplitudeGraphChangesIt)
{
    begin(PenDocument::Amplitude);
    eachChanges("Display", {"optLoss", "optGain"});
    eachChanges("Axes", {"optAutoScaleAmp", "optManScaleAmp"});
    typed("txtAmpUpper", "0");
    typed("txtAmpLower", "-60");
    click("cmdDefaultAmplitude");
    EXPECT_TRUE(isAnother());
}

TEST_F(ShownPictureTest, EachControlOfAReactanceGraphChangesIt)
{
    begin(PenDocument::Reactance);
    showTab("Display and Frequency Axes");
    click("optReact");
    isAnother();
    eachChanges("Display and Frequency Axes", {"optSusc", "optReact", "optLinear", "optLog"});
    eachChanges("Axes", {"optXManualScale", "optRManualScale"});
    typed("txtXLimits_0", "2k");
    typed("txtXLimits_1", "-2k");
    typed("txtRLimits_0", "3k");
    click("cmdDefaultXAxisDisplayLimits");
    EXPECT_TRUE(isAnother());
    click("cmdDefaultRAxisDisplayLimits");
    EXPECT_TRUE(isAnother());
}

TEST_F(ShownPictureTest, AMaskIsDrawnAndMoved)
{
    begin(PenDocument::Impedance);
    showTab("Mask");
    click("chkEnableMasks");
    type("txtUpperMaskFrequency_8", "3k");
    type("txtUpperMaskDataPoint_8", "2k");
    click("cmdUpperMaskStepFwd_8");
    type("txtUpperMaskFrequency_8", "20k");
    type("txtUpperMaskDataPoint_8", "5k");
    enter("txtUpperMaskDataPoint_8");
    EXPECT_TRUE(isAnother());
    click("chkEnableMasks");
    EXPECT_TRUE(isAnother()) << "a mask that is off is a hairline";
}

TEST_F(ShownPictureTest, TheZoomThatBecomesTheLimitsShowsTheSame)
{
    begin(PenDocument::Impedance);
    showTab("Axes");
    zoomIn();
    EXPECT_TRUE(isAnother());
    click("cmdSetXAxisToZoomLevel");
    zoomIn();
    isAnother();
    click("cmdSetImpedanceDisplayLimitsToZoom");
    EXPECT_FALSE(isAnother()) << "both are the limits now";
}

} // namespace
