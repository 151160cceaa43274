// SPDX-License-Identifier: GPL-3.0-or-later
// Fit to Data and the read-out at the pointer, by the keys and entries of the real main window.
#include "controls/graph/ViewLimits.h"
#include "controls/graph/ui/PointerBox.h"
#include "shell/ui/MainWindowHarness.h"

#include <cmath>

namespace {

class ViewFitTest : public MainWindowHarness
{
protected:
    ViewFitTest() { load(); }

    static graph::ViewLimits limitsOf(PenDocument* document)
    {
        const graph::Properties& properties = document->peGraph().shownProperties();
        const std::vector<int> drawn = graph::drawnSubsets(properties, document->peGraph().Subsets());
        const std::vector<graph::Extent> extents(static_cast<std::size_t>(document->peGraph().Subsets()));
        return graph::limitsOf(properties, drawn, graph::shownRanges(properties, drawn, extents));
    }

    PointerBox* boxOf(PenDocument* document) { return windowOf(document)->view().findChild<PointerBox*>(); }

    /// The pointer rests over the middle of the points.
    void pointAt(PenDocument* document)
    {
        GraphView& view = windowOf(document)->view();
        QTest::mouseMove(&view, view.plotArea().center());
        QTest::mouseMove(&view, view.toPixel(2000, 60).toPoint());
        settle();
    }
};

} // namespace

TEST_F(ViewFitTest, fitShowsTheDataOfTheShownPensAsOneStepOfTheHistory)
{
    PenDocument* const document = measuredDocument();
    ASSERT_TRUE(pressShortcut("Ctrl+0"));
    ASSERT_TRUE(document->canUndoZoom());
    const graph::ZoomLimits& zoom = document->peGraph().zoomLimits();
    EXPECT_NEAR(std::pow(10.0, zoom.ZoomMinX), 1000, 0.1);
    EXPECT_NEAR(std::pow(10.0, zoom.ZoomMaxX), 2900, 0.1);
    EXPECT_LT(std::pow(10.0, zoom.ZoomMinY), 50);
    EXPECT_GT(std::pow(10.0, zoom.ZoomMinY), 45);
    EXPECT_EQ(document->zoomHistory().count(), 1);
    ASSERT_TRUE(pressShortcut("Ctrl+0"));
    EXPECT_EQ(document->zoomHistory().count(), 1);
    ASSERT_TRUE(pressMenu("mnuEditUndo"));
    EXPECT_FALSE(document->canUndoZoom());
}

TEST_F(ViewFitTest, fitOfOneAxisLeavesTheOther)
{
    PenDocument* const document = measuredDocument();
    const graph::ViewLimits before = limitsOf(document);
    ASSERT_TRUE(pressMenu("mnuViewFitFrequency"));
    EXPECT_NEAR(limitsOf(document).x.upper, std::log10(2900), 1e-4);
    EXPECT_NEAR(limitsOf(document).left.upper, before.left.upper, 1e-9);
    trigger("mnuViewZoomExtents");
    ASSERT_TRUE(pressMenu("mnuViewFitValues"));
    EXPECT_NEAR(limitsOf(document).x.upper, before.x.upper, 1e-9);
    EXPECT_LT(limitsOf(document).left.upper, std::log10(75));
}

TEST_F(ViewFitTest, fitWithoutDataSaysSoAndChangesNothing)
{
    PenDocument* const document = newDocument(PenDocument::Impedance);
    trigger("mnuViewFit");
    ASSERT_EQ(messages.shown.size(), 1);
    EXPECT_EQ(messages.shown.front().title, QStringLiteral("Fit to Data"));
    EXPECT_FALSE(document->canUndoZoom());
}

TEST_F(ViewFitTest, theReadOutIsSwitchedForAllGraphsAndKept)
{
    PenDocument* const document = measuredDocument();
    pointAt(document);
    ASSERT_TRUE(boxOf(document)->isVisible());
    EXPECT_TRUE(boxOf(document)->text().startsWith(QStringLiteral("2 kHz\n"))) << boxOf(document)->text().toStdString();
    EXPECT_TRUE(action("mnuViewPointerReadout").isChecked());
    ASSERT_TRUE(pressMenu("mnuViewPointerReadout"));
    EXPECT_FALSE(action("mnuViewPointerReadout").isChecked());
    EXPECT_FALSE(boxOf(document)->isVisible());
    EXPECT_FALSE(preferences.value(options::kPointerReadout));
    PenDocument* const next = measuredDocument();
    pointAt(next);
    EXPECT_FALSE(boxOf(next)->isVisible());
    trigger("mnuViewPointerReadout");
    pointAt(next);
    EXPECT_TRUE(boxOf(next)->isVisible());
    document->setModified(false);
    next->setModified(false);
}
