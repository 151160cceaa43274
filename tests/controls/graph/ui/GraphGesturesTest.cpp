// SPDX-License-Identifier: GPL-3.0-or-later
#include "GraphFixture.h"

#include <QWheelEvent>

namespace {

class GraphGesturesTest : public GraphFixture
{
protected:
    GraphGesturesTest()
    {
        for (int i = 0; i < 100; ++i) {
            const auto f = static_cast<float>(std::pow(10.0, 4 + 0.01 * i));
            model.setPoint(0, i, f, static_cast<float>(100 + i));
            model.setPoint(30, i, f, static_cast<float>(i - 50));
        }
        show(0);
        model.setRandomSubsetsToGraph(30, 30);
        settle();
    }

    void turn(const QPointF& position, int notches, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWheelEvent event(position, view.mapToGlobal(position), {}, QPoint(0, notches * 120), Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&view, &event);
    }

    void pan(const QPoint& from, const QPoint& to)
    {
        QTest::mousePress(&view, Qt::MiddleButton, Qt::NoModifier, from);
        QMouseEvent move(QEvent::MouseMove, to, view.mapToGlobal(to), Qt::NoButton, Qt::MiddleButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &move);
    }

    void clickTwice(const QPoint& position)
    {
        QTest::mouseDClick(&view, Qt::LeftButton, Qt::NoModifier, position);
        settle();
    }

    QPointF centre() { return QPointF(view.plotArea().center()); }
};

} // namespace

TEST_F(GraphGesturesTest, TheWheelMagnifiesAboutThePointer)
{
    // Narrower numbers on the axes may widen the plotting area meanwhile: the place is a share of it.
    const auto valueAt = [](const graph::Range& range, double share) {
        return std::log10(range.lower) + share * std::log10(range.upper / range.lower);
    };
    const QRectF area(view.plotArea());
    const QPointF pointer(area.left() + 0.25 * area.width(), area.bottom() - 0.75 * area.height());
    const double x = valueAt(plot().ranges().x, 0.25);
    const double y = valueAt(plot().ranges().y[0], 0.75);
    turn(pointer, 3);
    settle();
    EXPECT_NEAR(valueAt(plot().ranges().x, 0.25), x, 1e-6);
    EXPECT_NEAR(valueAt(plot().ranges().y[0], 0.75), y, 1e-6);
    const double decades = std::log10(plot().ranges().x.upper / plot().ranges().x.lower);
    EXPECT_NEAR(decades, 3 / std::pow(1.25, 3), 1e-6);
}

TEST_F(GraphGesturesTest, ManyTurnsAreOneZoom)
{
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    for (int i = 0; i < 5; ++i)
        turn(centre(), 1);
    EXPECT_EQ(in.count(), 0);
    EXPECT_FALSE(model.Zoomed());
    ASSERT_TRUE(QTest::qWaitFor([&] { return in.count() > 0; }));
    EXPECT_EQ(in.count(), 1);
    EXPECT_TRUE(model.Zoomed());
    EXPECT_NEAR(model.zoomLimits().ZoomMaxX - model.zoomLimits().ZoomMinX, 3 / std::pow(1.25, 5), 1e-6);
    EXPECT_NEAR(model.zoomLimits().ZoomMaxRY - model.zoomLimits().ZoomMinRY, 360 / std::pow(1.25, 5), 1e-6);
}

TEST_F(GraphGesturesTest, ThePixelsFollowTheWheelBeforeItRests)
{
    const QImage before = picture();
    turn(centre(), 4);
    view.flush();
    EXPECT_FALSE(model.Zoomed());
    EXPECT_NE(before, picture());
}

TEST_F(GraphGesturesTest, ShiftTurnsTheFrequencyAxisAndCtrlTheYAxes)
{
    const graph::ShownRanges before = plot().ranges();
    turn(centre(), 2, Qt::ShiftModifier);
    view.flush();
    EXPECT_NE(plot().ranges().x, before.x);
    EXPECT_NEAR(plot().ranges().y[0].upper, before.y[0].upper, 1e-9 * before.y[0].upper);
    EXPECT_NEAR(plot().ranges().y[3].upper, before.y[3].upper, 1e-6);
    view.hide();
    view.show();
    view.flush();
    ASSERT_EQ(plot().ranges(), before);
    turn(centre(), 2, Qt::ControlModifier);
    view.flush();
    EXPECT_NEAR(plot().ranges().x.upper, before.x.upper, 1e-9 * before.x.upper);
    EXPECT_LT(plot().ranges().y[0].upper, before.y[0].upper * 0.9);
    EXPECT_LT(plot().ranges().y[3].upper, before.y[3].upper * 0.9);
}

TEST_F(GraphGesturesTest, TheWheelOverAnAxisTurnsThatAxis)
{
    const graph::ShownRanges before = plot().ranges();
    turn(QPointF(view.plotArea().left() - 20, view.plotArea().center().y()), 2);
    view.flush();
    EXPECT_LT(plot().ranges().y[0].upper, before.y[0].upper * 0.9);
    EXPECT_NEAR(plot().ranges().y[3].upper, before.y[3].upper, 1e-6);
    EXPECT_NEAR(plot().ranges().x.upper, before.x.upper, 1e-9 * before.x.upper);
}

TEST_F(GraphGesturesTest, TurningBackEndsAtTheFullExtent)
{
    turn(centre(), 4);
    QTest::keyClick(&view, Qt::Key_Right); // any key ends the turn
    ASSERT_TRUE(model.Zoomed());
    QSignalSpy out(&model, &GraphModel::ZoomOut);
    turn(centre(), -20);
    ASSERT_TRUE(QTest::qWaitFor([&] { return out.count() > 0; }));
    EXPECT_FALSE(model.Zoomed());
}

TEST_F(GraphGesturesTest, AZoomFromElsewhereEndsTheTurn)
{
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    turn(centre(), 2);
    model.userZoom(graph::ZoomLimits{4, 5, 1, 2, -90, 90, 4, 5});
    settle();
    EXPECT_NEAR(plot().ranges().x.lower, 1e4, 1);
    QTest::qWait(500);
    EXPECT_EQ(in.count(), 1);
    EXPECT_EQ(model.zoomLimits().ZoomMinX, 4);
}

TEST_F(GraphGesturesTest, TheMiddleButtonMovesTheView)
{
    model.userZoom(graph::ZoomLimits{4, 5, 1, 2, -90, 90, 4, 5});
    settle();
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    const QPoint from = view.plotArea().center();
    const QPoint to = from + QPoint(-view.plotArea().width() / 4, -view.plotArea().height() / 4);
    pan(from, to);
    view.flush();
    EXPECT_NEAR(std::log10(plot().ranges().x.lower), 4.25, 0.01);
    EXPECT_NEAR(std::log10(plot().ranges().y[0].lower), 0.75, 0.01);
    EXPECT_EQ(in.count(), 0);
    QTest::mouseRelease(&view, Qt::MiddleButton, Qt::NoModifier, to);
    ASSERT_EQ(in.count(), 1);
    EXPECT_NEAR(model.zoomLimits().ZoomMinX, 4.25, 0.01);
    EXPECT_NEAR(model.zoomLimits().ZoomMinRY, -135, 1);
}

TEST_F(GraphGesturesTest, EscapeTakesAMoveBack)
{
    model.userZoom(graph::ZoomLimits{4, 5, 1, 2, -90, 90, 4, 5});
    settle();
    const graph::ShownRanges before = plot().ranges();
    const QPoint from = view.plotArea().center();
    pan(from, from + QPoint(60, 40));
    view.flush();
    ASSERT_NE(plot().ranges(), before);
    QTest::keyClick(&view, Qt::Key_Escape);
    view.flush();
    EXPECT_EQ(plot().ranges(), before);
    QTest::mouseRelease(&view, Qt::MiddleButton, Qt::NoModifier, from);
    EXPECT_EQ(model.zoomLimits().ZoomMinX, 4);
}

TEST_F(GraphGesturesTest, NewPointsLeaveAMoveAsItIs)
{
    const QPoint from = view.plotArea().center();
    turn(centre(), 4);
    view.flush();
    const graph::ShownRanges during = plot().ranges();
    model.setPoint(0, 100, 2e5F, 500);
    model.PEactions(graph::Reinitialise);
    view.flush();
    EXPECT_EQ(plot().ranges(), during);
    QTest::mouseMove(&view, from);
}

TEST_F(GraphGesturesTest, ADoubleClickOnAnAxisFitsIt)
{
    clickTwice({view.plotArea().center().x(), view.plotArea().bottom() + 12});
    ASSERT_TRUE(model.Zoomed());
    EXPECT_NEAR(model.zoomLimits().ZoomMinX, 4, 1e-4);
    EXPECT_NEAR(model.zoomLimits().ZoomMaxX, 4.99, 1e-4);
    EXPECT_NEAR(model.zoomLimits().ZoomMaxY, 3, 1e-6);
    clickTwice({view.plotArea().right() + 20, view.plotArea().center().y()});
    EXPECT_NEAR(model.zoomLimits().ZoomMinRY, -50 - 0.04 * 99, 1e-3);
    EXPECT_NEAR(model.zoomLimits().ZoomMaxRY, 49 + 0.04 * 99, 1e-3);
    clickTwice({view.plotArea().left() - 20, view.plotArea().center().y()});
    EXPECT_NEAR(model.zoomLimits().ZoomMinY, 2 - 0.04 * std::log10(1.99), 1e-4);
}

TEST_F(GraphGesturesTest, ADoubleClickInThePlotReturnsToTheFullExtent)
{
    turn(centre(), 2);
    clickTwice(view.plotArea().center());
    EXPECT_FALSE(model.Zoomed());
}

TEST_F(GraphGesturesTest, AListenerMayCloseTheViewWhenAMoveComesToRest)
{
    auto* doomed = new GraphView(model);
    doomed->resize(400, 300);
    doomed->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(doomed));
    doomed->flush();
    QObject::connect(&model, &GraphModel::ZoomIn, doomed, [doomed] { delete doomed; });
    const QPointF position(doomed->plotArea().center());
    QWheelEvent event(position, doomed->mapToGlobal(position), {}, QPoint(0, 240), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(doomed, &event);
    const QPointer<GraphView> alive(doomed);
    QTest::keyClick(doomed, Qt::Key_Left);
    EXPECT_TRUE(alive.isNull());
}
