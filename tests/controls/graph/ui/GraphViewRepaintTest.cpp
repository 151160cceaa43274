// SPDX-License-Identifier: GPL-3.0-or-later
#include "GraphFixture.h"

namespace {

class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QObject& watched) { watched.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

class GraphViewRepaint : public GraphFixture
{
protected:
    GraphViewRepaint()
    {
        show(1);
        for (const int subset : {0, 1}) {
            for (int i = 0; i < 100; ++i)
                model.setPoint(subset, i, static_cast<float>(1e3 * (i + 1)), 100);
        }
        settle();
        // The first data after a pause moves its curve to the live layer.
        model.setPoint(0, 100, 2e5F, 50);
        settle();
    }
};

} // namespace

TEST_F(GraphViewRepaint, ABurstCostsOneRepaint)
{
    PaintCounter paints(plot());
    const GraphPlot::Work before = plot().work();
    for (int i = 0; i < 500; ++i) {
        model.setMainTitle(QString::number(i));
        model.setPoint(0, 101 + i, 2e5F + static_cast<float>(i), 40);
        model.setVertLineAnnotation(0, 2e5 + i);
        model.PEactions(graph::Reinitialise);
    }
    EXPECT_EQ(paints.count, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return paints.count > 0; }));
    QApplication::processEvents();
    EXPECT_EQ(paints.count, 1);
    EXPECT_EQ(plot().work().full, before.full + 1);
    EXPECT_EQ(plot().work().live, before.live);
}

TEST_F(GraphViewRepaint, ALivePointRedrawsItsOwnLayerOnly)
{
    const GraphPlot::Work before = plot().work();
    const std::uint64_t live = plot().trace(0)->drawCount();
    const std::uint64_t settled = plot().trace(1)->drawCount();
    for (int i = 0; i < 20; ++i) {
        model.setPoint(0, 101 + i, 2.1e5F + static_cast<float>(i) * 1e3F, 40);
        settle();
    }
    EXPECT_EQ(plot().trace(0)->drawCount(), live + 20);
    EXPECT_EQ(plot().trace(1)->drawCount(), settled);
    EXPECT_EQ(plot().work().live, before.live + 20);
    EXPECT_EQ(plot().work().full, before.full);
    EXPECT_TRUE(isRedAt(picture(), view.toPixel(2.25e5, 40)));
}

TEST_F(GraphViewRepaint, AMovedLineRedrawsTheOverlayOnly)
{
    model.setVertLineAnnotationType(0, 0);
    settle();
    const GraphPlot::Work before = plot().work();
    const std::uint64_t live = plot().trace(0)->drawCount();
    model.setVertLineAnnotation(0, 5e4);
    model.PEactions(graph::Reinitialise);
    view.flush();
    EXPECT_EQ(plot().work().overlay, before.overlay + 1);
    EXPECT_EQ(plot().work().full, before.full);
    EXPECT_EQ(plot().trace(0)->drawCount(), live);
}

TEST_F(GraphViewRepaint, AnotherPenTakesTheLiveLayerOver)
{
    const GraphPlot::Work before = plot().work();
    model.setPoint(1, 100, 2e5F, 10);
    settle();
    EXPECT_EQ(plot().work().full, before.full + 1);
    const std::uint64_t settled = plot().trace(0)->drawCount();
    model.setPoint(1, 101, 2.2e5F, 10);
    settle();
    EXPECT_EQ(plot().work().full, before.full + 1);
    EXPECT_EQ(plot().trace(0)->drawCount(), settled);
}

TEST_F(GraphViewRepaint, DataThatWidensAnAutomaticAxisRedrawsAll)
{
    model.setManualScaleControlY(graph::ScaleAutomatic);
    settle();
    const GraphPlot::Work before = plot().work();
    model.setPoint(0, 101, 3e5F, 1e5F);
    settle();
    EXPECT_EQ(plot().work().full, before.full + 1);
    EXPECT_GE(view.toPixel(3e5, 1e5).y(), view.plotArea().top() - 1);
}

TEST_F(GraphViewRepaint, ARedrawWithoutChangesDrawsNothing)
{
    const GraphPlot::Work before = plot().work();
    for (int i = 0; i < 5; ++i)
        settle();
    EXPECT_EQ(plot().work().full, before.full);
    EXPECT_EQ(plot().work().live, before.live);
    EXPECT_EQ(plot().work().overlay, before.overlay);
}

TEST_F(GraphViewRepaint, AHiddenViewDrawsOnlyWhenShownAgain)
{
    view.hide();
    const GraphPlot::Work before = plot().work();
    for (int i = 0; i < 50; ++i) {
        model.setMainTitle(QString::number(i));
        model.PEactions(graph::Reinitialise);
    }
    QApplication::processEvents();
    EXPECT_EQ(plot().work().full, before.full);
    view.show();
    EXPECT_EQ(plot().work().full, before.full + 1);
}
