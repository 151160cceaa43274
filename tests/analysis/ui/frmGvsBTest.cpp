// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/ui/frmGvsB.h"

#include "analysis/rules/AnalysisBench.h"
#include "analysis/ui/LoopMarks.h"
#include "controls/graph/ui/GraphView.h"
#include "controls/resonance/ResonanceEngine.h"
#include "support/FindControl.h"

#include <QImage>
#include <QLabel>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;
using ::testing::StartsWith;

class frmGvsBTest : public ::testing::Test, protected AnalysisBench
{
protected:
    void open()
    {
        form = std::make_unique<frmGvsB>(active, engine);
        form->show();
        form->RefreshGraph();
        waitForResults();
    }
    void waitForResults()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return form->isSettled(); }, 30000));
    }
    std::string panel(int number) { return form->panelText(number).toStdString(); }
    void choose(int item, int sub = 0) { Q_EMIT form->loop().graph().CustomMenuClicked(item, sub); }
    int state(int item) { return form->loop().graph().CustomMenuState(item); }
    void zoom(double share)
    {
        GraphModel& graph = form->loop().graph();
        graph::ZoomLimits limits;
        limits.ZoomMinX = graph.ManualMinX() * share;
        limits.ZoomMaxX = graph.ManualMaxX() * share;
        limits.ZoomMinY = graph.ManualMinY() * share;
        limits.ZoomMaxY = graph.ManualMaxY() * share;
        graph.userZoom(limits);
    }

    ResonanceEngine engine;
    std::unique_ptr<frmGvsB> form;
};

} // namespace

TEST_F(frmGvsBTest, TheStatusBarShowsTheCurrentPensResults)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    sweep(*made, 1, partAt(42e3));
    made->setCurrentPen(1);
    open();
    EXPECT_EQ(form->windowTitle(), u"Admittance loop for Document 1"_s);
    EXPECT_EQ(panel(1), "2");
    EXPECT_THAT(panel(2), StartsWith("F1:4"));
    EXPECT_THAT(panel(4), ::testing::MatchesRegex("Fr:(42000|41999)\\.[0-9][0-9] Hz"));
    EXPECT_THAT(panel(5), StartsWith("Zr:"));
    EXPECT_THAT(panel(6), StartsWith("Q:"));
}

TEST_F(frmGvsBTest, APenWithNoResonanceShowsAllFivePanelsAsNotAvailable)
{
    const auto made = document(PenDocument::Impedance);
    capacitor(*made, 0);
    open();
    const char* const texts[] = {"1", "F1:N/A", "F2:N/A", "Fr:N/A", "Zr:N/A", "Q:N/A"};
    for (int i = 0; i < frmGvsB::kPanels; ++i)
        EXPECT_EQ(panel(i + 1), texts[i]);
}

TEST_F(frmGvsBTest, RefreshIfGraphChangedRebuildsForAnotherDocumentAlone)
{
    const auto first = document(PenDocument::Impedance);
    sweep(*first, 0, partAt(40e3));
    open();
    // The same document: nothing, even where its data is other.
    first->peGraph().setYData(0, 0, 1234);
    const float before = form->loop().graph().XData(0, 0);
    form->RefreshIfGraphChanged();
    EXPECT_EQ(form->loop().graph().XData(0, 0), before);
    const auto second = document(PenDocument::Reactance);
    second->gstrKey = u"Doc2"_s;
    sweep(*second, 0, partAt(45e3));
    form->RefreshIfGraphChanged();
    waitForResults();
    EXPECT_EQ(form->strDocumentKey(), u"Doc2"_s);
    EXPECT_THAT(panel(4), ::testing::MatchesRegex("Fr:(45000|44999)\\..*"));
    // An amplitude document has no loop: the one before stays.
    const auto amplitude = document(PenDocument::Amplitude);
    amplitude->gstrKey = u"Doc3"_s;
    form->RefreshIfGraphChanged();
    EXPECT_EQ(form->strDocumentKey(), u"Doc2"_s);
}

TEST_F(frmGvsBTest, SolvesOnceForEachChangeOfDataNotForEachRefresh)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    open();
    form->RefreshGraph();
    waitForResults();
    EXPECT_EQ(engine.solveCount(), 1);
}

TEST_F(frmGvsBTest, ChangesOfTheDocumentAreFollowed)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    sweep(*made, 1, partAt(42e3));
    open();
    made->setCurrentPen(1);
    waitForResults();
    EXPECT_EQ(panel(1), "2");
    made->UpdatePenHide(1, true);
    waitForResults();
    EXPECT_FALSE(form->loop().graph().SubsetsToShow(1));
    EXPECT_EQ(panel(4), "Fr:N/A");
}

TEST_F(frmGvsBTest, ResonanceAndHalfPowerPointsAreMarkedAndTheCircleOnRequest)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    open();
    ASSERT_EQ(form->marks().marks().size(), 3U);
    EXPECT_TRUE(form->marks().circles().empty()) << "off by default";
    choose(frmGvsB::CircleItem);
    ASSERT_EQ(form->marks().circles().size(), 1U);
    EXPECT_TRUE(form->loop().graph().CustomMenuChecked(frmGvsB::CircleItem, 0));
    const GraphModel& graph = form->loop().graph();
    for (const QPointF& place : form->marks().circles().front().line) {
        EXPECT_GT(place.x(), graph.ManualMinX());
        EXPECT_LT(place.y(), graph.ManualMaxY());
    }
    choose(frmGvsB::CircleItem);
    EXPECT_TRUE(form->marks().circles().empty());
}

TEST_F(frmGvsBTest, MarksArePaintedWhereTheCurveRuns)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    made->SetPenColour(0, 0x0000FF);
    open();
    form->view().flush();
    ASSERT_FALSE(form->marks().marks().empty());
    const LoopMarks::Mark& mark = form->marks().marks().front();
    ASSERT_TRUE(mark.main);
    const QPointF pixel = form->view().toPixel(mark.place.x(), mark.place.y());
    const QImage picture = form->view().grab().toImage();
    EXPECT_EQ(picture.pixelColor(pixel.toPoint()), QColor(Qt::red));
}

TEST_F(frmGvsBTest, EqualScalesGiveBothAxesOneScaleOnTheScreen)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    open();
    choose(frmGvsB::EqualScaleItem);
    form->resize(900, 500);
    // The view takes its new size when the window system has told it.
    const auto proportion = [this] {
        const QPointF origin = form->view().toPixel(0, 0);
        const QPointF corner = form->view().toPixel(0.01, 0.01);
        return (corner.x() - origin.x()) / (origin.y() - corner.y());
    };
    EXPECT_TRUE(QTest::qWaitFor([&proportion] { return std::abs(proportion() - 1) < 0.02; }, 30000)) << proportion();
}

TEST_F(frmGvsBTest, ZoomsAreSteppedThroughAsInADocument)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    open();
    GraphModel& graph = form->loop().graph();
    EXPECT_EQ(state(frmGvsB::UndoZoomItem), graph::MenuGreyed);
    zoom(0.5);
    zoom(0.25);
    EXPECT_EQ(state(frmGvsB::UndoZoomItem), graph::MenuNormal);
    EXPECT_EQ(state(frmGvsB::RedoZoomItem), graph::MenuGreyed);
    choose(frmGvsB::UndoZoomItem);
    EXPECT_NEAR(graph.zoomLimits().ZoomMaxX, graph.ManualMaxX() * 0.5, 1e-9);
    choose(frmGvsB::UndoZoomItem);
    EXPECT_FALSE(graph.Zoomed());
    choose(frmGvsB::RedoZoomItem);
    choose(frmGvsB::RedoZoomItem);
    EXPECT_NEAR(graph.zoomLimits().ZoomMaxX, graph.ManualMaxX() * 0.25, 1e-9);
    choose(frmGvsB::ZoomExtentsItem);
    EXPECT_FALSE(graph.Zoomed());
}

TEST_F(frmGvsBTest, TheQuantitiesAreOfferedInReactanceDocumentsAlone)
{
    const auto impedance = document(PenDocument::Impedance);
    sweep(*impedance, 0, partAt(40e3));
    open();
    EXPECT_EQ(state(frmGvsB::QuantityItem), graph::MenuHidden);
    const auto reactance = document(PenDocument::Reactance);
    reactance->gstrKey = u"Doc2"_s;
    sweep(*reactance, 0, partAt(40e3));
    form->RefreshIfGraphChanged();
    EXPECT_EQ(state(frmGvsB::QuantityItem), graph::MenuNormal);
    EXPECT_TRUE(form->loop().graph().CustomMenuChecked(frmGvsB::QuantityItem, 2));
    choose(frmGvsB::QuantityItem, 1);
    EXPECT_EQ(form->loop().graph().XAxisLabel(), u"Resistance R - Ohms"_s);
    EXPECT_TRUE(form->loop().graph().CustomMenuChecked(frmGvsB::QuantityItem, 1));
    choose(frmGvsB::QuantityItem, 2);
    EXPECT_EQ(form->loop().graph().XAxisLabel(), u"Conductance G - Siemens"_s);
}

TEST_F(frmGvsBTest, ImageEntriesAreThereOnceSomebodyHandlesThem)
{
    const auto made = document(PenDocument::Impedance);
    open();
    EXPECT_EQ(state(frmGvsB::ExportImageItem), graph::MenuHidden);
    EXPECT_EQ(state(frmGvsB::PrintImageItem), graph::MenuHidden);
    int exported = 0;
    form->setImageHandlers([&exported](GraphModel&) { ++exported; }, {});
    EXPECT_EQ(state(frmGvsB::ExportImageItem), graph::MenuNormal);
    EXPECT_EQ(state(frmGvsB::PrintImageItem), graph::MenuHidden);
    choose(frmGvsB::ExportImageItem);
    EXPECT_EQ(exported, 1);
}

TEST_F(frmGvsBTest, DataPointsAreMarkedHereAndNotInTheDocument)
{
    const auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    open();
    choose(frmGvsB::MarkPointsItem);
    EXPECT_TRUE(form->loop().graph().MarkDataPoints());
    EXPECT_FALSE(made->peGraph().MarkDataPoints());
    form->RefreshGraph();
    EXPECT_TRUE(form->loop().graph().MarkDataPoints()) << "a refresh leaves it";
}

TEST_F(frmGvsBTest, TheCursorReadsFrequencyConductanceAndSusceptance)
{
    const auto made = document(PenDocument::Impedance);
    made->AddImpedancePoint(1000, 100, 0, 1, 0);
    made->AddImpedancePoint(2000, 50, 45, 1, 1);
    open();
    Q_EMIT form->loop().graph().CursorMoved(0, 0);
    EXPECT_EQ(findControl<QLabel>(form.get(), "readOut")->text(), u"F:1000 Hz G:0.01 S B:0 S"_s);
    const int width = form->width();
    Q_EMIT form->loop().graph().CursorMoved(0, 1);
    QApplication::processEvents();
    EXPECT_EQ(form->width(), width) << "a longer text does not widen the window";
}

TEST_F(frmGvsBTest, EscapeTheMenuAndTheEndOfTheDocumentCloseTheWindow)
{
    auto made = document(PenDocument::Impedance);
    sweep(*made, 0, partAt(40e3));
    open();
    QTest::keyClick(&form->view(), Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
    form->show();
    choose(frmGvsB::CloseItem);
    EXPECT_FALSE(form->isVisible());
    form->show();
    made.reset();
    EXPECT_FALSE(form->isVisible());
}
