// SPDX-License-Identifier: GPL-3.0-or-later
#include "GraphFixture.h"

#include "controls/graph/ui/PointerBox.h"

#include <QContextMenuEvent>

namespace {

class GraphViewInput : public GraphFixture
{
protected:
    GraphViewInput()
    {
        for (int i = 0; i < 10; ++i) {
            const double f = std::pow(10.0, 3.15 + 0.3 * i);
            model.setPoint(0, i, static_cast<float>(f), 100);
            model.setPoint(1, i, static_cast<float>(f), 10);
        }
        model.setSubsetLabels(1, QStringLiteral("Pen 2"));
        show(1);
        settle();
    }

    QPoint pixel(double x, double y) { return view.toPixel(x, y).toPoint(); }

    QMenu* openMenu()
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, view.plotArea().center(),
                                view.mapToGlobal(view.plotArea().center()));
        QApplication::sendEvent(&view, &event);
        return menu();
    }
    QMenu* menu() { return view.findChild<QMenu*>(QStringLiteral("graphMenu")); }
    static QAction* action(QMenu* menu, const QString& text)
    {
        for (QAction* candidate : menu->actions()) {
            if (candidate->text() == text)
                return candidate;
        }
        return nullptr;
    }
    void closeMenu()
    {
        if (QMenu* open = menu()) {
            open->close();
            QApplication::sendPostedEvents(open, QEvent::DeferredDelete);
        }
    }
};

} // namespace

TEST_F(GraphViewInput, ADragZoomsToExponentsOnLogarithmicAxes)
{
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    drag(pixel(1e4, 100), pixel(1e5, 10));
    ASSERT_EQ(in.count(), 1);
    EXPECT_TRUE(model.Zoomed());
    EXPECT_NEAR(model.zoomLimits().ZoomMinX, 4, 0.01);
    EXPECT_NEAR(model.zoomLimits().ZoomMaxX, 5, 0.01);
    EXPECT_NEAR(model.zoomLimits().ZoomMinY, 1, 0.01);
    EXPECT_NEAR(model.zoomLimits().ZoomMaxY, 2, 0.01);
    EXPECT_EQ(model.zoomLimits().ZoomMinTX, model.zoomLimits().ZoomMinX);
    view.flush();
    EXPECT_NEAR(view.toPixel(1e4, 10).x(), view.plotArea().left(), 6);
    EXPECT_NEAR(view.toPixel(1e5, 100).y(), view.plotArea().top(), 6);
}

TEST_F(GraphViewInput, ADragZoomsToPlainLimitsOnLinearAxes)
{
    model.setXAxisScaleControl(graph::ScaleLinear);
    show(30);
    settle();
    drag(view.toPixel(2e5, -90, 3).toPoint(), view.toPixel(4e5, 0, 3).toPoint());
    EXPECT_NEAR(model.zoomLimits().ZoomMinX, 2e5, 2e3);
    EXPECT_NEAR(model.zoomLimits().ZoomMaxX, 4e5, 2e3);
    EXPECT_NEAR(model.zoomLimits().ZoomMinRY, -90, 2);
    EXPECT_NEAR(model.zoomLimits().ZoomMaxRY, 0, 2);
}

TEST_F(GraphViewInput, UndoOfAllZoomReturnsToFullExtent)
{
    const QPointF before = view.toPixel(1e5, 10);
    drag(pixel(1e4, 100), pixel(1e5, 10));
    EXPECT_GT(std::abs(view.toPixel(1e5, 10).x() - before.x()), 50);
    QSignalSpy out(&model, &GraphModel::ZoomOut);
    model.PEactions(graph::UndoZoom);
    EXPECT_EQ(out.count(), 1);
    EXPECT_EQ(view.toPixel(1e5, 10), before);
}

TEST_F(GraphViewInput, ADoubleClickReturnsToFullExtent)
{
    drag(pixel(1e4, 100), pixel(1e5, 10));
    QSignalSpy out(&model, &GraphModel::ZoomOut);
    QTest::mouseDClick(&view, Qt::LeftButton, Qt::NoModifier, view.plotArea().center());
    EXPECT_EQ(out.count(), 1);
    EXPECT_FALSE(model.Zoomed());
}

TEST_F(GraphViewInput, EscapeGivesADragUp)
{
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    const QPoint from = pixel(1e4, 100);
    const QPoint to = pixel(1e5, 10);
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, from);
    QTest::mouseMove(&view, to);
    QTest::keyClick(&view, Qt::Key_Escape);
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, to);
    EXPECT_EQ(in.count(), 0);
    EXPECT_FALSE(model.Zoomed());
}

TEST_F(GraphViewInput, ASmallRectangleIsAClick)
{
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    QSignalSpy cursor(&model, &GraphModel::CursorMoved);
    const QPoint on = pixel(model.XData(0, 4), 100);
    drag(on, on + QPoint(3, 2));
    EXPECT_EQ(in.count(), 0);
    ASSERT_EQ(cursor.count(), 1);
    EXPECT_EQ(cursor.at(0).at(0).toInt(), 0);
    EXPECT_EQ(cursor.at(0).at(1).toInt(), 4);
}

TEST_F(GraphViewInput, ADragThatLeavesTheAreaEndsAtItsEdge)
{
    drag(pixel(1e5, 100), QPoint(799, 599));
    EXPECT_TRUE(model.Zoomed());
    EXPECT_NEAR(model.zoomLimits().ZoomMaxX, 6, 0.02);
    EXPECT_NEAR(model.zoomLimits().ZoomMinY, 0, 0.02);
}

TEST_F(GraphViewInput, ADragFromOutsideTheAreaDoesNothing)
{
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    drag(QPoint(3, 3), view.plotArea().center());
    EXPECT_EQ(in.count(), 0);
}

TEST_F(GraphViewInput, HoveringNearAPointRaisesTheCursorEventOnce)
{
    QSignalSpy cursor(&model, &GraphModel::CursorMoved);
    const QPoint on = pixel(model.XData(1, 6), 10);
    QTest::mouseMove(&view, on);
    ASSERT_EQ(cursor.count(), 1);
    EXPECT_EQ(cursor.at(0).at(0).toInt(), 1);
    EXPECT_EQ(cursor.at(0).at(1).toInt(), 6);
    QTest::mouseMove(&view, on + QPoint(1, 1));
    EXPECT_EQ(cursor.count(), 1);
    QTest::mouseMove(&view, pixel(2e3, 2.5));
    EXPECT_EQ(cursor.count(), 1);
    EXPECT_EQ(view.cursorSubset(), 1);
}

TEST_F(GraphViewInput, KeysWalkAlongACurveAndChangeIt)
{
    QSignalSpy cursor(&model, &GraphModel::CursorMoved);
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.cursorSubset(), 0);
    EXPECT_EQ(view.cursorPoint(), 0);
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.cursorPoint(), 1);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(view.cursorPoint(), 9);
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.cursorPoint(), 9);
    QTest::keyClick(&view, Qt::Key_Left);
    EXPECT_EQ(view.cursorPoint(), 8);
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_EQ(view.cursorSubset(), 1);
    EXPECT_EQ(view.cursorPoint(), 8);
    QTest::keyClick(&view, Qt::Key_Home);
    EXPECT_EQ(view.cursorPoint(), 0);
    EXPECT_EQ(cursor.count(), 6);
    EXPECT_TRUE(view.accessibleDescription().contains(QStringLiteral("point 1")));
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_EQ(view.cursorSubset(), -1);
}

TEST_F(GraphViewInput, KeysPassOverPointsWithoutData)
{
    model.setYData(0, 1, graph::kNullValue);
    model.setYData(0, 2, graph::kNullValue);
    settle();
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Right);
    EXPECT_EQ(view.cursorPoint(), 3);
}

TEST_F(GraphViewInput, TheCursorGoesWithItsPoint)
{
    QTest::keyClick(&view, Qt::Key_Right);
    ASSERT_EQ(view.cursorSubset(), 0);
    model.setYData(0, 0, graph::kNullValue);
    settle();
    EXPECT_EQ(view.cursorSubset(), -1);
    EXPECT_FALSE(plot().overlay().cursor());
}

TEST_F(GraphViewInput, PlusZoomsAboutTheCursorAndMinusReturns)
{
    QTest::keyClick(&view, Qt::Key_End);
    // Labels of the new limits may move the plotting area: the place within it counts.
    const auto place = [this] {
        const QPointF offset = plot().overlay().cursor().value_or(QPointF()) - QPointF(view.plotArea().topLeft());
        return QPointF(offset.x() / view.plotArea().width(), offset.y() / view.plotArea().height());
    };
    const QPointF before = place();
    QSignalSpy in(&model, &GraphModel::ZoomIn);
    QTest::keyClick(&view, Qt::Key_Plus);
    EXPECT_EQ(in.count(), 1);
    view.flush();
    EXPECT_NEAR(place().x(), before.x(), 0.005);
    EXPECT_NEAR(place().y(), before.y(), 0.005);
    QTest::keyClick(&view, Qt::Key_Minus);
    EXPECT_FALSE(model.Zoomed());
}

TEST_F(GraphViewInput, MinusTakesBackOnePlusAtATime)
{
    QTest::keyClick(&view, Qt::Key_Plus);
    const graph::ZoomLimits first = model.zoomLimits();
    QTest::keyClick(&view, Qt::Key_Plus);
    ASSERT_FALSE(model.zoomLimits() == first);
    QTest::keyClick(&view, Qt::Key_Minus);
    EXPECT_TRUE(model.Zoomed());
    EXPECT_TRUE(model.zoomLimits() == first);
    QTest::keyClick(&view, Qt::Key_Minus);
    EXPECT_FALSE(model.Zoomed());
}

TEST_F(GraphViewInput, AZoomGivesNoLimitsToAnAxisThatIsNotShown)
{
    ASSERT_FALSE(plot().valueAxis(2).visible());
    drag(pixel(1e4, 100), pixel(1e5, 10));
    ASSERT_TRUE(model.Zoomed());
    EXPECT_EQ(model.zoomLimits().ZoomMinRY, 0);
    EXPECT_EQ(model.zoomLimits().ZoomMaxRY, 0);
}

TEST_F(GraphViewInput, ARectangleTooSmallForAZoomIsNotShown)
{
    const QPoint from = pixel(1e4, 100);
    const auto picture = [this] { return view.grab().toImage(); };
    const QImage before = picture();
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, from);
    QTest::mouseMove(&view, from + QPoint(200, 3));
    EXPECT_EQ(picture(), before);
    QTest::mouseMove(&view, from + QPoint(200, 60));
    EXPECT_NE(picture(), before);
    QTest::keyClick(&view, Qt::Key_Escape);
    QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, from);
}

TEST_F(GraphViewInput, OtherKeysGoToTheParent)
{
    QKeyEvent digit(QEvent::KeyPress, Qt::Key_5, Qt::NoModifier, QStringLiteral("5"));
    QApplication::sendEvent(&view, &digit);
    EXPECT_FALSE(digit.isAccepted());
    QKeyEvent control(QEvent::KeyPress, Qt::Key_Right, Qt::ControlModifier);
    QApplication::sendEvent(&view, &control);
    EXPECT_FALSE(control.isAccepted());
}

TEST_F(GraphViewInput, ThePopupShowsItemsStatesAndMarks)
{
    EXPECT_EQ(openMenu(), nullptr); // no items, no popup
    model.setCustomMenu(0, QStringLiteral("Test Settings"));
    model.setCustomMenu(1, QStringLiteral("Phase|360|Off"));
    model.setCustomMenu(2, QStringLiteral("I'm gone!"));
    model.setCustomMenu(3, QStringLiteral("Paste"));
    model.setCustomMenuState(2, 0, graph::MenuHidden);
    model.setCustomMenuState(3, 0, graph::MenuGreyed);
    model.setCustomMenuChecked(1, 1, true);
    model.setCustomMenuChecked(1, 2, false);
    QMenu* menu = openMenu();
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 3);
    EXPECT_TRUE(action(menu, QStringLiteral("Test Settings"))->isEnabled());
    EXPECT_EQ(action(menu, QStringLiteral("I'm gone!")), nullptr);
    EXPECT_FALSE(action(menu, QStringLiteral("Paste"))->isEnabled());
    QMenu* phase = action(menu, QStringLiteral("Phase"))->menu();
    ASSERT_NE(phase, nullptr);
    ASSERT_EQ(phase->actions().size(), 2);
    EXPECT_TRUE(phase->actions().at(0)->isChecked());
    EXPECT_TRUE(phase->actions().at(1)->isCheckable());
    EXPECT_FALSE(phase->actions().at(1)->isChecked());
    closeMenu();
}

TEST_F(GraphViewInput, ThePopupRaisesItemAndSubItem)
{
    model.setCustomMenu(0, QStringLiteral("Cut"));
    model.setCustomMenu(1, QStringLiteral("Amplitude|Gain|Loss"));
    QSignalSpy clicked(&model, &GraphModel::CustomMenuClicked);
    QMenu* menu = openMenu();
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&clicked] { return clicked.count() == 1; }));
    EXPECT_EQ(clicked.at(0).at(0).toInt(), 0);
    EXPECT_EQ(clicked.at(0).at(1).toInt(), 0);
    closeMenu();
    QTest::keyClick(&view, Qt::Key_Menu);
    menu = this->menu();
    ASSERT_NE(menu, nullptr);
    menu->actions().at(1)->menu()->actions().at(1)->trigger();
    EXPECT_EQ(clicked.count(), 1) << "the handler ran inside the menu";
    ASSERT_TRUE(QTest::qWaitFor([&clicked] { return clicked.count() == 2; }));
    EXPECT_EQ(clicked.at(1).at(0).toInt(), 1);
    EXPECT_EQ(clicked.at(1).at(1).toInt(), 2);
    closeMenu();
}

TEST_F(GraphViewInput, TheViewMayGoInTheMiddleOfItsOwnEvent)
{
    auto other = std::make_unique<GraphView>(model);
    other->resize(400, 300);
    other->show();
    QObject::connect(&model, &GraphModel::ZoomIn, &model, [&other] { other.reset(); });
    model.userZoom({.ZoomMinX = 4, .ZoomMaxX = 5, .ZoomMinY = 1, .ZoomMaxY = 2, .ZoomMinRY = 0, .ZoomMaxRY = 1});
    EXPECT_EQ(other, nullptr);
    view.flush();
    EXPECT_TRUE(model.Zoomed());
}

TEST_F(GraphViewInput, TheBoxBesideThePointerReadsEveryShownPenAndFollowsNewData)
{
    auto* box = view.findChild<PointerBox*>();
    ASSERT_NE(box, nullptr);
    EXPECT_FALSE(box->isVisible());
    const QPoint position = pixel(std::pow(10.0, 3.75), 300);
    const QImage before = picture();
    QTest::mouseMove(&view, position);
    ASSERT_TRUE(box->isVisible());
    EXPECT_EQ(box->text(), QStringLiteral("5.62341 kHz\nPen 1\t100 Ohms\nPen 2\t10 Ohms"));
    EXPECT_NE(picture(), before);
    EXPECT_FALSE(box->geometry().contains(position));
    EXPECT_TRUE(view.rect().contains(box->geometry()));
    model.setPoint(0, 2, static_cast<float>(std::pow(10.0, 3.75)), 5);
    settle();
    EXPECT_EQ(box->text(), QStringLiteral("5.62341 kHz\nPen 1\t5 Ohms\nPen 2\t10 Ohms"));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&view, &leave);
    EXPECT_FALSE(box->isVisible());
}

TEST_F(GraphViewInput, TheBoxBesideThePointerStaysWithinTheViewAndGoesWhenItIsNotWanted)
{
    auto* box = view.findChild<PointerBox*>();
    QTest::mouseMove(&view, QPoint(view.plotArea().right() - 2, view.plotArea().bottom() - 2));
    QTest::mouseMove(&view, pixel(std::pow(10.0, 5.85), 1.1));
    ASSERT_TRUE(box->isVisible());
    EXPECT_TRUE(view.rect().contains(box->geometry()));
    view.setPointerReadout(false);
    EXPECT_FALSE(box->isVisible());
    QTest::mouseMove(&view, view.plotArea().center());
    EXPECT_FALSE(box->isVisible());
}
