// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/GraphModel.h"

#include <QSignalSpy>

#include <gtest/gtest.h>
#include <limits>

namespace {

graph::ZoomLimits someLimits()
{
    return {.ZoomMinX = 3, .ZoomMaxX = 4, .ZoomMinY = 1, .ZoomMaxY = 5, .ZoomMinRY = -90, .ZoomMaxRY = 90};
}

} // namespace

TEST(GraphModelActions, APropertyIsShownFromTheNextActionOn)
{
    GraphModel model;
    model.setMainTitle(QStringLiteral("first"));
    EXPECT_TRUE(model.shownProperties().MainTitle.isEmpty());
    const std::uint64_t before = model.shownRevision();
    model.PEactions(graph::Reinitialise);
    EXPECT_EQ(model.shownProperties().MainTitle, QStringLiteral("first"));
    EXPECT_GT(model.shownRevision(), before);
    model.setMainTitle(QStringLiteral("second"));
    EXPECT_EQ(model.shownProperties().MainTitle, QStringLiteral("first"));
    model.PEactions(graph::Redraw);
    EXPECT_EQ(model.shownProperties(), model.properties());
}

TEST(GraphModelActions, EachActionRaisesItsSignalOnce)
{
    GraphModel model;
    QSignalSpy rebuilt(&model, &GraphModel::reinitialised);
    QSignalSpy redrawn(&model, &GraphModel::redrawWanted);
    model.PEactions(0);
    EXPECT_EQ(rebuilt.count(), 1);
    EXPECT_EQ(redrawn.count(), 0);
    model.PEactions(3);
    EXPECT_EQ(rebuilt.count(), 1);
    EXPECT_EQ(redrawn.count(), 1);
    model.PEactions(19);
    EXPECT_EQ(rebuilt.count(), 2);
    for (const int unknown : {-1, 1, 2, 4, 22, 1000}) {
        model.setMainTitle(QString::number(unknown));
        model.PEactions(unknown);
    }
    EXPECT_EQ(rebuilt.count(), 2);
    EXPECT_EQ(redrawn.count(), 1);
    EXPECT_TRUE(model.shownProperties().MainTitle.isEmpty());
}

TEST(GraphModelActions, AMovedLineLeavesTheOtherShownPropertiesAlone)
{
    GraphModel model;
    model.setVertLineAnnotationType(0, 0);
    model.PEactions(0);
    const std::uint64_t properties = model.shownRevision();
    const std::uint64_t lines = model.shownLinesRevision();
    model.setVertLineAnnotation(0, 40000);
    model.PEactions(0);
    EXPECT_EQ(model.shownRevision(), properties);
    EXPECT_GT(model.shownLinesRevision(), lines);
    EXPECT_EQ(model.shownProperties().verticalLines.at(0).position, 40000);
    EXPECT_EQ(model.shownProperties(), model.properties());
}

TEST(GraphModelActions, SettingWhatIsAlreadySetChangesNothing)
{
    GraphModel model;
    model.setMainTitle(QStringLiteral("title"));
    model.PEactions(0);
    const std::uint64_t before = model.shownRevision();
    model.setMainTitle(QStringLiteral("title"));
    model.setCustomMenuState(0, 0, graph::MenuNormal);
    model.PEactions(0);
    EXPECT_EQ(model.shownRevision(), before + 1); // the menu grew by one item
    model.setCustomMenuState(0, 0, graph::MenuNormal);
    model.setGraphAnnotationText(5, QString());
    model.PEactions(0);
    EXPECT_EQ(model.shownRevision(), before + 1);
    EXPECT_EQ(model.shownProperties(), model.properties());
}

TEST(GraphModelActions, AZoomOfTheUserIsShownAtOnceAndRaisesZoomIn)
{
    GraphModel model;
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    QSignalSpy redrawn(&model, &GraphModel::redrawWanted);
    model.setMainTitle(QStringLiteral("not yet"));
    model.userZoom(someLimits());
    EXPECT_EQ(in.count(), 1);
    EXPECT_EQ(redrawn.count(), 1);
    EXPECT_TRUE(model.Zoomed());
    EXPECT_TRUE(model.shownProperties().zoomed);
    EXPECT_EQ(model.zoomLimits(), someLimits());
    EXPECT_EQ(model.shownProperties().zoom, someLimits());
    EXPECT_TRUE(model.shownProperties().MainTitle.isEmpty());
}

TEST(GraphModelActions, AZoomWithoutASpanIsRefused)
{
    GraphModel model;
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    graph::ZoomLimits limits = someLimits();
    limits.ZoomMaxX = limits.ZoomMinX;
    model.userZoom(limits);
    limits = someLimits();
    limits.ZoomMaxY = std::numeric_limits<double>::quiet_NaN();
    model.userZoom(limits);
    limits = someLimits();
    limits.ZoomMinRY = 91;
    model.userZoom(limits);
    EXPECT_EQ(in.count(), 0);
    EXPECT_FALSE(model.Zoomed());
    EXPECT_EQ(model.zoomLimits(), graph::ZoomLimits());
}

TEST(GraphModelActions, ReturningToFullExtentRaisesZoomOutOnlyWhenZoomed)
{
    GraphModel model;
    QSignalSpy out(&model, &GraphModel::ZoomOut);
    model.userZoomOut();
    model.PEactions(19);
    EXPECT_EQ(out.count(), 0);
    model.userZoom(someLimits());
    model.userZoomOut();
    EXPECT_EQ(out.count(), 1);
    EXPECT_FALSE(model.shownProperties().zoomed);
    model.userZoom(someLimits());
    model.PEactions(19);
    EXPECT_EQ(out.count(), 2);
    EXPECT_FALSE(model.Zoomed());
    EXPECT_FALSE(model.shownProperties().zoomed);
}

TEST(GraphModelActions, UndoOfAllZoomIsShownBeforeZoomOutIsRaised)
{
    GraphModel model;
    model.userZoom(someLimits());
    bool zoomedInHandler = true;
    QObject::connect(&model, &GraphModel::ZoomOut, &model, [&] { zoomedInHandler = model.shownProperties().zoomed; });
    model.PEactions(19);
    EXPECT_FALSE(zoomedInHandler);
}

TEST(GraphModelActions, AStoredZoomIsShownByARedraw)
{
    GraphModel model;
    model.setZoomMinX(1);
    model.setZoomMaxX(2);
    model.setZoomMinY(3);
    model.setZoomMaxY(4);
    model.setZoomMinRY(5);
    model.setZoomMaxRY(6);
    model.setZoomMinTX(7);
    model.setZoomMaxTX(8);
    model.setZoomed(true);
    EXPECT_FALSE(model.shownProperties().zoomed);
    model.PEactions(3);
    EXPECT_TRUE(model.shownProperties().zoomed);
    EXPECT_EQ(model.shownProperties().zoom, (graph::ZoomLimits{1, 2, 3, 4, 5, 6, 7, 8}));
    model.setZoomMaxX(std::numeric_limits<double>::infinity());
    EXPECT_EQ(model.zoomLimits().ZoomMaxX, 2);
}

TEST(GraphModelActions, ALoadReplacesEverythingAndIsShown)
{
    GraphModel source(2, 3);
    source.setMainTitle(QStringLiteral("loaded"));
    source.setVertLineAnnotation(4, 12);
    GraphModel model(2, 3);
    model.setWorkingAxis(2);
    model.setWorkingTable(1);
    QSignalSpy rebuilt(&model, &GraphModel::reinitialised);
    ASSERT_TRUE(model.replaceAll(source.properties(), std::vector<float>(6, 1.0F), std::vector<float>(6, 2.0F)));
    EXPECT_EQ(rebuilt.count(), 1);
    EXPECT_EQ(model.properties(), source.properties());
    EXPECT_EQ(model.shownProperties(), source.properties());
    EXPECT_EQ(model.XData(1, 2), 1.0F);
    EXPECT_EQ(model.YData(1, 2), 2.0F);
    EXPECT_EQ(model.WorkingAxis(), 0);
    EXPECT_EQ(model.WorkingTable(), 0);
    EXPECT_EQ(model.takeDirtySubsets(), 0b11U);
}

TEST(GraphModelActions, ALoadThatDoesNotFitLeavesTheGraphAsItWas)
{
    GraphModel model(2, 3);
    model.setMainTitle(QStringLiteral("kept"));
    model.setPoint(0, 0, 5, 6);
    const std::vector<float> six(6, 1.0F);
    const GraphModel other(3, 2);
    EXPECT_FALSE(model.replaceAll(model.properties(), std::vector<float>(5), six));
    EXPECT_FALSE(model.replaceAll(model.properties(), six, std::vector<float>(7)));
    EXPECT_FALSE(model.replaceAll(other.properties(), six, six));
    graph::Properties broken = model.properties();
    broken.tables[1].TARows = 2;
    EXPECT_FALSE(model.replaceAll(broken, six, six));
    EXPECT_EQ(model.MainTitle(), QStringLiteral("kept"));
    EXPECT_EQ(model.XData(0, 0), 5.0F);
}
