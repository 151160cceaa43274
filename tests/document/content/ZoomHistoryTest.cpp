// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/ZoomHistory.h"

#include "document/DocumentBench.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

graph::ZoomLimits limits(double minX, double maxX)
{
    graph::ZoomLimits zoom;
    zoom.ZoomMinX = minX;
    zoom.ZoomMaxX = maxX;
    zoom.ZoomMinY = minX + 1;
    zoom.ZoomMaxY = maxX + 1;
    zoom.ZoomMinRY = minX + 2;
    zoom.ZoomMaxRY = maxX + 2;
    zoom.ZoomMinTX = minX + 3;
    zoom.ZoomMaxTX = maxX + 3;
    return zoom;
}

struct ZoomHistoryTest : ::testing::Test
{
    GraphModel graph;
    ZoomHistory history{graph};

    void zoom(double minX, double maxX)
    {
        graph.userZoom(limits(minX, maxX));
        history.StoreZoom();
    }
};

TEST_F(ZoomHistoryTest, NewNodeIsAllZero)
{
    const clsGraphZoomNode node;
    EXPECT_EQ(node.dblZoomMinX, 0);
    EXPECT_EQ(node.dblZoomMaxX, 0);
    EXPECT_EQ(node.dblZoomMinY, 0);
    EXPECT_EQ(node.dblZoomMaxY, 0);
    EXPECT_EQ(node.dblZoomMinRY, 0);
    EXPECT_EQ(node.dblZoomMaxRY, 0);
    EXPECT_EQ(node.dblZoomMinTX, 0);
    EXPECT_EQ(node.dblZoomMaxTX, 0);
}

TEST_F(ZoomHistoryTest, NewZoomAfterTwoUndosDropsTheRedoTail)
{
    zoom(1, 6);
    zoom(2, 5);
    zoom(3, 4);
    EXPECT_EQ(history.UndooZoom(), ZoomHistory::Step::Node);
    EXPECT_EQ(history.UndooZoom(), ZoomHistory::Step::Node);
    EXPECT_EQ(history.giZoomIndex(), 1);
    zoom(1.5, 5.5);
    EXPECT_EQ(history.count(), 2);
    EXPECT_EQ(history.giZoomIndex(), 2);
    EXPECT_FALSE(history.canRedo());
    EXPECT_EQ(history.RedooZoom(), ZoomHistory::Step::None);
    EXPECT_EQ(history.GetZoomLimits().dblZoomMinX, 1.5);
}

TEST_F(ZoomHistoryTest, UndoAtPositionOneGoesToFullExtentAndKeepsTheNodes)
{
    zoom(1, 6);
    EXPECT_EQ(history.UndooZoom(), ZoomHistory::Step::Extents);
    EXPECT_FALSE(graph.Zoomed());
    EXPECT_EQ(history.giZoomIndex(), 0);
    EXPECT_EQ(history.count(), 1);
    EXPECT_TRUE(history.canRedo());
    EXPECT_EQ(history.RedooZoom(), ZoomHistory::Step::Node);
    EXPECT_TRUE(graph.Zoomed());
    EXPECT_EQ(graph.zoomLimits().ZoomMinX, 1);
}

TEST_F(ZoomHistoryTest, UndoAtPositionZeroOnlyUndoesAllZoomAgain)
{
    int actions = 0;
    QObject::connect(&graph, &GraphModel::reinitialised, &graph, [&] { ++actions; });
    const auto before = graph.zoomLimits();
    EXPECT_EQ(history.UndooZoom(), ZoomHistory::Step::Extents);
    EXPECT_EQ(actions, 1);
    EXPECT_EQ(history.giZoomIndex(), 0);
    EXPECT_EQ(graph.zoomLimits(), before);
}

TEST_F(ZoomHistoryTest, StepsRestoreAllButTheRightLimits)
{
    zoom(1, 6);
    zoom(2, 5);
    history.UndooZoom();
    EXPECT_EQ(graph.zoomLimits().ZoomMinX, 1);
    EXPECT_EQ(graph.zoomLimits().ZoomMaxX, 6);
    EXPECT_EQ(graph.zoomLimits().ZoomMinY, 2);
    EXPECT_EQ(graph.zoomLimits().ZoomMaxY, 7);
    EXPECT_EQ(graph.zoomLimits().ZoomMinTX, 4);
    EXPECT_EQ(graph.zoomLimits().ZoomMaxTX, 9);
    EXPECT_EQ(graph.zoomLimits().ZoomMinRY, 4);
    EXPECT_EQ(graph.zoomLimits().ZoomMaxRY, 7);
    history.RedooZoom();
    EXPECT_EQ(graph.zoomLimits().ZoomMinX, 2);
    EXPECT_EQ(graph.zoomLimits().ZoomMaxTX, 8);
}

TEST_F(ZoomHistoryTest, NewZoomAtFullExtentReplacesTheWholeList)
{
    zoom(1, 6);
    zoom(2, 5);
    history.UndooZoom();
    history.UndooZoom();
    zoom(3, 4);
    EXPECT_EQ(history.count(), 1);
    EXPECT_EQ(history.giZoomIndex(), 1);
}

TEST_F(ZoomHistoryTest, RemovalCutsFromTheEndAndAtZeroReturnsToFullExtent)
{
    zoom(1, 6);
    zoom(2, 5);
    zoom(3, 4);
    history.RemoveStoredZooms(2);
    EXPECT_EQ(history.count(), 2);
    history.RemoveStoredZooms(5);
    EXPECT_EQ(history.count(), 2);
    history.RemoveStoredZooms(0);
    EXPECT_EQ(history.count(), 0);
    EXPECT_EQ(history.giZoomIndex(), 0);
    EXPECT_TRUE(history.canZoomExtents());
    graph.PEactions(19);
    EXPECT_FALSE(history.canZoomExtents());
}

TEST_F(ZoomHistoryTest, LimitsAreTheNodesOrAtPositionZeroTheGraphs)
{
    graph.setZoomLimits(limits(10, 20));
    EXPECT_EQ(history.GetZoomLimits().dblZoomMinX, 10);
    EXPECT_EQ(history.GetZoomLimits().dblZoomMaxRY, 22);
    zoom(1, 6);
    graph.setZoomLimits(limits(30, 40));
    EXPECT_EQ(history.GetZoomLimits().dblZoomMinX, 1);
}

struct PenDocumentZoom : ::testing::Test
{
    DocumentBench bench;
    std::unique_ptr<PenDocument> document;

    void SetUp() override
    {
        document = bench.document(PenDocument::Impedance);
        bench.source.follows = true;
        document->gbfSendZoom = true;
    }
    GraphModel& graph() { return document->peGraph(); }
};

TEST_F(PenDocumentZoom, LogViewStoresExponentsAndSendsHertz)
{
    ASSERT_EQ(graph().XAxisScaleControl(), 2);
    document->gbfSendZoom = true;
    graph().userZoom(limits(4, 5));
    EXPECT_EQ(bench.takeExtents(), QStringList{"10000 to 100000 logarithmic"});
    EXPECT_EQ(document->gdblTestMinFreq(), 10000);
    EXPECT_EQ(document->gdblTestMaxFreq(), 100000);
    double maxX = 0, maxY = 0, minX = 0, minY = 0, maxTX = 0, minTX = 0;
    document->GetZoomLimits(maxX, maxY, minX, minY, maxTX, minTX);
    EXPECT_EQ(minX, 4);
    EXPECT_EQ(maxX, 5);
    EXPECT_EQ(minY, 5);
    EXPECT_EQ(maxY, 6);
    EXPECT_EQ(minTX, 7);
    EXPECT_EQ(maxTX, 8);
    EXPECT_FALSE(document->gbfZoomExtents());
}

TEST_F(PenDocumentZoom, FirstZoomSendsOnlyWhenToldToAndTellsToFromThenOn)
{
    document->gbfSendZoom = false;
    graph().userZoom(limits(4, 5));
    EXPECT_TRUE(bench.takeExtents().isEmpty());
    EXPECT_TRUE(document->gbfSendZoom);
    graph().userZoom(limits(4.1, 4.5));
    EXPECT_FALSE(bench.takeExtents().isEmpty());
}

TEST_F(PenDocumentZoom, LinearViewSendsPlainLimits)
{
    document->graphSetFrequecyLinear(true);
    bench.takeExtents();
    graph().userZoom(limits(2500, 7500));
    EXPECT_EQ(bench.takeExtents(), QStringList{"2500 to 7500 linear"});
}

TEST_F(PenDocumentZoom, UndoAndRedoSendTheExtentOnScreen)
{
    graph().userZoom(limits(3, 6));
    graph().userZoom(limits(4, 5));
    document->setModified(false);
    bench.takeExtents();
    document->UndooZoom();
    EXPECT_EQ(bench.takeExtents(), QStringList{"1000 to 1000000 logarithmic"});
    EXPECT_TRUE(document->gbfModified());
    document->setModified(false);
    document->RedooZoom();
    EXPECT_EQ(bench.takeExtents(), QStringList{"10000 to 100000 logarithmic"});
    EXPECT_TRUE(document->gbfModified());
    document->setModified(false);
    document->RedooZoom();
    EXPECT_TRUE(bench.takeExtents().isEmpty());
    EXPECT_FALSE(document->gbfModified());
}

TEST_F(PenDocumentZoom, UndoToFullExtentSendsTheManualLimits)
{
    graph().setManualMinX(20);
    graph().setManualMaxX(3000);
    graph().userZoom(limits(2, 3));
    bench.takeExtents();
    document->UndooZoom();
    EXPECT_FALSE(graph().Zoomed());
    EXPECT_TRUE(document->gbfZoomExtents());
    EXPECT_EQ(bench.takeExtents(), QStringList{"20 to 3000 logarithmic"});
    EXPECT_TRUE(document->canRedoZoom());
    document->UndooZoom();
    EXPECT_TRUE(bench.takeExtents().isEmpty());
}

TEST_F(PenDocumentZoom, ZoomOutSendsTheManualLimitsAndKeepsTheHistory)
{
    graph().userZoom(limits(4, 5));
    document->setModified(false);
    bench.takeExtents();
    graph().userZoomOut();
    EXPECT_TRUE(document->gbfZoomExtents());
    EXPECT_TRUE(document->gbfModified());
    EXPECT_EQ(document->zoomHistory().count(), 1);
    EXPECT_EQ(document->gdblTestMinFreq(), graph().ManualMinX());
    EXPECT_EQ(document->gdblTestMaxFreq(), graph().ManualMaxX());
    EXPECT_EQ(bench.takeExtents().size(), 1);
}

TEST_F(PenDocumentZoom, FromTheFullExtentTheLastZoomCanBeRedone)
{
    graph().userZoom(limits(4, 5));
    graph().userZoom(limits(4.2, 4.8));
    document->ZoomExtents();
    EXPECT_FALSE(graph().Zoomed());
    EXPECT_TRUE(document->canRedoZoom());
    document->RedooZoom();
    EXPECT_EQ(graph().zoomLimits().ZoomMinX, 4);
    document->ZoomExtents();
    graph().userZoom(limits(3, 4));
    EXPECT_EQ(document->zoomHistory().count(), 1);
    document->UndooZoom();
    EXPECT_FALSE(graph().Zoomed());
}

TEST_F(PenDocumentZoom, TheHistoryIsGoneAfterAReload)
{
    QString path = bench.path("plot");
    ASSERT_TRUE(document->fileSavePlot(path));
    graph().userZoom(limits(4, 5));
    graph().userZoom(limits(4.2, 4.8));
    ASSERT_TRUE(document->fileLoadPlot(path));
    EXPECT_EQ(document->zoomHistory().count(), 0);
    EXPECT_FALSE(document->canRedoZoom());
    EXPECT_FALSE(graph().Zoomed());
}

TEST_F(PenDocumentZoom, LinearImpedanceAxesEmptyTheHistory)
{
    graph().userZoom(limits(4, 5));
    document->ImpedanceLinear(true);
    EXPECT_EQ(document->zoomHistory().count(), 0);
    EXPECT_FALSE(graph().Zoomed());
}

TEST_F(PenDocumentZoom, ButtonsFollowTheZoom)
{
    const auto expectButtons = [&](bool extents, bool undo, bool redo) {
        EXPECT_EQ(document->canZoomExtents(), extents);
        EXPECT_EQ(document->canUndoZoom(), undo);
        EXPECT_EQ(document->canRedoZoom(), redo);
        EXPECT_EQ(graph().CustomMenuState(PopupUndoZoom, 0), undo ? 0 : 1);
        EXPECT_EQ(graph().CustomMenuState(PopupRedoZoom, 0), redo ? 0 : 1);
    };
    expectButtons(false, false, false);
    int updates = 0;
    QObject::connect(document.get(), &PenDocument::zoomChanged, [&] { ++updates; });
    graph().userZoom(limits(4, 5));
    EXPECT_EQ(updates, 1);
    expectButtons(true, true, false);
    document->UndooZoom();
    expectButtons(true, false, true);
    document->RemoveStoredZooms(0);
    expectButtons(false, false, false);
}

TEST_F(PenDocumentZoom, ChangeOfScaleEmptiesTheHistory)
{
    graph().userZoom(limits(4, 5));
    document->graphSetFrequecyLinear(true);
    EXPECT_EQ(document->zoomHistory().count(), 0);
    EXPECT_FALSE(graph().Zoomed());
    EXPECT_TRUE(document->gbfZoomExtents());
}

TEST_F(PenDocumentZoom, PowersOfTenComeOutWithoutNoise)
{
    graph().userZoom(limits(std::log10(40123.0), std::log10(2000000.0)));
    EXPECT_EQ(bench.takeExtents(), QStringList{"40123 to 2000000 logarithmic"});
}

TEST_F(PenDocumentZoom, AnExtentBeyondAllFrequenciesIsNotSent)
{
    graph().userZoom(limits(3, 400));
    EXPECT_TRUE(bench.takeExtents().isEmpty());
    graph().userZoom(limits(3, 4));
    EXPECT_EQ(bench.takeExtents(), QStringList{"1000 to 10000 logarithmic"});
}

TEST_F(PenDocumentZoom, ExtentStaysLocalDuringAMultiPenRun)
{
    bench.source.held = true;
    const double before = document->gdblTestMinFreq();
    document->UpdateTestExtents(5, 6);
    EXPECT_EQ(document->gdblTestMinFreq(), before);
    EXPECT_TRUE(bench.takeExtents().isEmpty());
}

TEST_F(PenDocumentZoom, SendGraphExtentsSendsTheFullExtentOrTheStoredLimits)
{
    graph().setManualMinX(100);
    graph().setManualMaxX(900);
    document->SendGraphExtents();
    EXPECT_EQ(bench.takeExtents(), QStringList{"100 to 900 logarithmic"});
    graph().userZoom(limits(4, 5));
    bench.takeExtents();
    document->SendGraphExtents();
    EXPECT_EQ(bench.takeExtents(), QStringList{"10000 to 100000 logarithmic"});
}

} // namespace
