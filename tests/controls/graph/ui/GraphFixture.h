// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphPlot.h"
#include "controls/graph/ui/GraphView.h"
#include "controls/graph/ui/PlotElements.h"
#include "controls/graph/ui/TracePlottable.h"

#include <QApplication>
#include <QImage>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <gtest/gtest.h>

/// A shown view of 800 x 600 on an impedance graph: both axes logarithmic, 1 kHz to 1 MHz by 1 to 1000 Ohm, phase on
/// the right from -180 to 180 degrees.
class GraphFixture : public ::testing::Test
{
protected:
    GraphFixture()
    {
        model.setXAxisLabel(QStringLiteral("Frequency - Hz"));
        model.setXAxisScaleControl(graph::ScaleLogarithmic);
        model.setManualScaleControlX(graph::ScaleManual);
        model.setManualMinX(1e3);
        model.setManualMaxX(1e6);
        model.setYAxisLabel(QStringLiteral("Modulus of Impedance - Ohms"));
        model.setYAxisScaleControl(graph::ScaleLogarithmic);
        model.setManualScaleControlY(graph::ScaleManual);
        model.setManualMinY(1);
        model.setManualMaxY(1000);
        model.setWorkingAxis(3);
        model.setYAxisLabel(QStringLiteral("Phase - Degrees"));
        model.setManualScaleControlY(graph::ScaleManual);
        model.setManualMinY(-180);
        model.setManualMaxY(180);
        model.setWorkingAxis(0);
        model.setAxisUnitPrefixes(QStringLiteral("p n u m k M G T "));
        for (int i = 0; i < 40; ++i)
            model.setRandomSubsetsToGraph(i, -1);
        show(0);
        model.setSubsetColors(0, 0x0000FF); // red
        model.setSubsetLabels(0, QStringLiteral("Pen 1"));
        view.resize(800, 600);
        view.show();
        if (!QTest::qWaitForWindowExposed(&view))
            ADD_FAILURE() << "the view was not shown";
        settle();
    }

    void show(int subset) { model.setRandomSubsetsToGraph(subset, subset); }

    /// Runs events until the view has drawn what it was told.
    void settle()
    {
        model.PEactions(graph::Redraw);
        view.flush();
        QApplication::processEvents();
    }

    GraphPlot& plot() { return *view.findChild<GraphPlot*>(); }
    QImage picture() { return view.grab().toImage().convertToFormat(QImage::Format_RGB32); }

    void drag(const QPoint& from, const QPoint& to)
    {
        QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, from);
        QTest::mouseMove(&view, (from + to) / 2);
        QTest::mouseMove(&view, to);
        QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, to);
    }

    /// True when a pixel within reach of a position is reddish.
    static bool isRedAt(const QImage& image, const QPointF& position, int reach = 1)
    {
        const double scale = image.devicePixelRatio();
        const QPoint centre = (position * scale).toPoint();
        for (int dy = -reach; dy <= reach; ++dy) {
            for (int dx = -reach; dx <= reach; ++dx) {
                const QPoint at = centre + QPoint(dx, dy);
                if (!image.valid(at))
                    continue;
                const QColor color = image.pixelColor(at);
                if (color.red() > 200 && color.green() < 160 && color.blue() < 160)
                    return true;
            }
        }
        return false;
    }

    static int redPixels(const QImage& image, const QRect& area)
    {
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                count += isRedAt(image, QPointF(x, y), 0) ? 1 : 0;
        }
        return count;
    }

    GraphModel model;
    GraphView view{model};
};
