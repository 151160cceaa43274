// SPDX-License-Identifier: GPL-3.0-or-later
// Frames of a test: its start, its points, the turn of the next pen, its end.
#include "DispatchFixture.h"

namespace {

using frametext::numbers;

class TestFramesTest : public DispatchFixture
{};

TEST_F(TestFramesTest, TestStartedDReadsTheStatusAndStartsThePlot)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    send(numbers('D', '0', 1, 20000, 60000, 1, 1));
    EXPECT_TRUE(state.gbfPlotting);
    EXPECT_EQ(module.recorder().gstrPlotKey(), document->gstrKey);
    EXPECT_TRUE(mirror.bfRunning);
    EXPECT_EQ(mirror.dblStartFrequency, 20000);
    EXPECT_EQ(mirror.dblEndFrequency, 60000);
    EXPECT_TRUE(state.gbfSweepActive);
    EXPECT_TRUE(mirror.bfIdleOutput);
    EXPECT_EQ(panel(1), QStringLiteral("Testing"));
    EXPECT_EQ(panel(3), QStringLiteral("20000 Hz"));
    EXPECT_EQ(panel(4), QStringLiteral("60000 Hz"));
    EXPECT_FALSE(penBarEnabled);
    // SetPlotting of the document has named the pen by the time of day.
    EXPECT_NE(document->peGraph().SubsetLabels(0), QStringLiteral("Pen 1"));
}

TEST_F(TestFramesTest, TestStartedDWithoutADocumentDoesNothingAtAll)
{
    const InstrumentMirror before = mirror;
    send(numbers('D', '1', 1, 20000, 60000, 1, 1));
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_FALSE(state.gbfSweepActive);
    EXPECT_EQ(mirror.dblStartFrequency, before.dblStartFrequency);
    EXPECT_FALSE(mirror.bfRunning);
    EXPECT_TRUE(window.panels.empty());
}

TEST_F(TestFramesTest, TestEndedEReturnsToViewing)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    mirror.iPointsInTest = 200;
    send(numbers('E', '0', 0, 30000, 50000, 0, 0));
    EXPECT_FALSE(state.gbfPlotting);
    EXPECT_FALSE(mirror.bfRunning);
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
    EXPECT_EQ(panel(3), QStringLiteral("30000 Hz"));
    EXPECT_EQ(panel(4), QStringLiteral("50000 Hz"));
    EXPECT_EQ(panel(5), QStringLiteral("200 pts"));
    EXPECT_TRUE(penBarEnabled);
    EXPECT_FALSE(state.gbfSweepActive);
}

TEST_F(TestFramesTest, TestEndedEWorksWithoutADocument)
{
    send(numbers('E', '0', 1, 100, 200, 1, 1));
    EXPECT_EQ(mirror.dblEndFrequency, 200);
    EXPECT_TRUE(state.gbfSweepActive);
    EXPECT_TRUE(mirror.bfIdleOutput);
    EXPECT_EQ(panel(1), QStringLiteral("Connected"));
    EXPECT_EQ(panel(5), QStringLiteral("0 pts"));
}

TEST_F(TestFramesTest, ImpedancePointFLandsInTheCurrentPenAndMovesTheCursor)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    mirror.iPointsInTest = 100;
    document->setCurrentPen(2);
    send(numbers('F', '1', 40000, 50, 30, -1, 7));
    const GraphModel& graph = document->peGraph();
    EXPECT_EQ(mirror.iCurrentPoint, 7);
    EXPECT_EQ(graph.XData(2, 7), 40000.0F);
    EXPECT_EQ(graph.YData(2, 7), 50.0F);
    EXPECT_EQ(graph.YData(12, 7), 0.02F);
    EXPECT_EQ(graph.YData(22, 7), -30.0F);
    EXPECT_EQ(graph.YData(32, 7), -30.0F);
    EXPECT_EQ(panel(5), QStringLiteral("8/100 pts"));
    EXPECT_EQ(graph.VertLineAnnotation(0), 40000);
    EXPECT_EQ(pointsShown, 1);
}

TEST_F(TestFramesTest, PointWithoutTheMarkerIsStoredButShowsNothing)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    window.panels.erase(5);
    const double cursor = document->peGraph().VertLineAnnotation(0);
    send(numbers('F', '0', 40000, 50, 30, 1, 7));
    EXPECT_EQ(document->peGraph().YData(0, 7), 50.0F);
    EXPECT_EQ(window.panels.count(5), 0U);
    EXPECT_EQ(document->peGraph().VertLineAnnotation(0), cursor);
    EXPECT_EQ(pointsShown, 0);
}

TEST_F(TestFramesTest, ImpedancePointFOfZeroOhmStopsTheTest)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    written();
    send(numbers('F', '1', 40000, 0, 30, 1, 7));
    EXPECT_EQ(written(), QStringList{QStringLiteral("y")});
    EXPECT_EQ(document->peGraph().XData(0, 7), 0.0F);
    EXPECT_EQ(mirror.iCurrentPoint, 7);
}

TEST_F(TestFramesTest, AmplitudePointHOfZeroDbIsAPoint)
{
    const auto document = makeDocument(PenDocument::Amplitude);
    activate(document);
    startPlotting();
    mirror.iPointsInTest = 50;
    written();
    send(numbers('H', '1', 40000, 0, 30, 1, 7));
    const GraphModel& graph = document->peGraph();
    EXPECT_EQ(graph.XData(0, 7), 40000.0F);
    EXPECT_EQ(graph.YData(0, 7), 0.0F);
    EXPECT_EQ(graph.YData(20, 7), -30.0F);
    EXPECT_EQ(graph.YData(30, 7), 30.0F);
    EXPECT_EQ(panel(5), QStringLiteral("8/50 pts"));
    EXPECT_EQ(graph.VertLineAnnotation(0), 40000);
    EXPECT_EQ(pointsShown, 1);
    EXPECT_TRUE(written().isEmpty());
}

TEST_F(TestFramesTest, PointsWithoutADocumentStopTheTest)
{
    send(numbers('F', '1', 40000, 50, 30, 1, 7) + numbers('H', '1', 40000, 50, 30, 1, 8));
    EXPECT_EQ(written(), (QStringList{QStringLiteral("y"), QStringLiteral("y")}));
}

TEST_F(TestFramesTest, PointsGoOnlyToTheDocumentOnWhichTheTestWasStarted)
{
    for (const std::int16_t type : {PenDocument::Impedance, PenDocument::Amplitude}) {
        const char code = type == PenDocument::Impedance ? 'F' : 'H';
        const auto first = makeDocument(type);
        const auto second = makeDocument(type);
        activate(first);
        // A run of several rounds: a single sweep would be stopped by the change of document.
        send(numbers('D', '1', 1, 1000, 1000000, 1));
        ASSERT_TRUE(state.gbfPlotting);
        written();
        activate(second);
        send(numbers(code, '1', 40000, 50, 30, 1, 3));
        EXPECT_EQ(first->peGraph().XData(0, 3), 0.0F);
        EXPECT_EQ(second->peGraph().XData(0, 3), 0.0F);
        EXPECT_TRUE(written().isEmpty());
        EXPECT_TRUE(state.gbfPlotting);
        activate(first);
        send(numbers(code, '1', 41000, 50, 30, 1, 4));
        EXPECT_EQ(first->peGraph().XData(0, 4), 41000.0F);
        send(numbers('E', '0'));
    }
}

TEST_F(TestFramesTest, RefusedPointsAreToldOncePerTest)
{
    struct Case
    {
        std::int16_t type;
        QByteArray point;
        const char* message;
    };
    const Case cases[] = {
        {PenDocument::Amplitude, numbers('F', '1', 40000, 50, 30, 1, 3), "Wrong type of data for graph"},
        {PenDocument::Impedance, numbers('H', '1', 40000, 50, 30, 1, 3), "Wrong type of data for graph"},
        {PenDocument::Reactance, numbers('H', '1', 40000, 50, 30, 1, 3), "Wrong type of data for graph"},
        {PenDocument::Amplitude, numbers('H', '1', 40000, 50, 30, 1, 1025), "Too many points!"},
    };
    for (const Case& refused : cases) {
        const auto document = makeDocument(refused.type);
        activate(document);
        for (int test = 0; test < 2; ++test) {
            messages.shown.clear();
            startPlotting();
            written();
            send(refused.point.repeated(1000));
            ASSERT_EQ(messages.shown.size(), 1U);
            EXPECT_EQ(messages.shown[0].title, QStringLiteral("Add Point Error"));
            EXPECT_EQ(messages.shown[0].text, QLatin1String(refused.message));
            EXPECT_EQ(written(), QStringList{QStringLiteral("y")});
            EXPECT_TRUE(device.DataEventEnabled());
            EXPECT_EQ(document->peGraph().XData(0, 3), 0.0F);
        }
    }
}

TEST_F(TestFramesTest, PointsFinishedYGoesToTheNextFreePen)
{
    const auto document = makeDocument(PenDocument::Impedance);
    activate(document);
    startPlotting();
    mirror.iPointsInTest = 128;
    document->UpdatePenLock(1, true);
    send(numbers('Y', 'x'));
    EXPECT_EQ(document->gCurrentPen(), 2);
    EXPECT_EQ(panel(5), QStringLiteral("128 pts"));
    EXPECT_TRUE(state.gbfPlotting);
    send(numbers('E', '0'));
    window.panels.erase(5);
    send(numbers('Y', '0'));
    EXPECT_EQ(window.panels.count(5), 0U);
    EXPECT_EQ(document->gCurrentPen(), 3);
}

} // namespace
