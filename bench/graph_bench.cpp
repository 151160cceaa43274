// SPDX-License-Identifier: GPL-3.0-or-later
// Drawing of the graph control against the plotting library's own graph and against bare painting, in one run.
#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphPlot.h"
#include "controls/graph/ui/GraphView.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

namespace {

constexpr int kTraces = 20;
constexpr int kPoints = 1024;
constexpr int kRounds = 41;
const QSize kSize(1280, 800);

double frequencyAt(int point)
{
    return std::pow(10.0, 1 + 6.69 * point / (kPoints - 1));
}

// A noisy curve over six decades with ripples, as a measured part gives.
double impedanceAt(int trace, int point)
{
    return 1e5 * std::pow(frequencyAt(point) / 10, -0.6) * (1 + 0.1 * trace) *
           (1 + 0.5 * std::sin(point * 0.05 + trace)) * (1 + 0.02 * ((point * 7919 + trace * 31) % 17));
}

/// Processor time of this thread, which does all the work: other load of the machine does not count. Milliseconds.
double now()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// Medians of tasks that take turns, so that a disturbance of the machine meets all alike; milliseconds.
std::vector<double> medians(const std::vector<std::function<void(int)>>& tasks)
{
    std::vector<std::vector<double>> times(tasks.size());
    for (int round = -3; round < kRounds; ++round) {
        for (std::size_t i = 0; i < tasks.size(); ++i) {
            const double start = now();
            tasks[i](round);
            const double time = now() - start;
            if (round >= 0)
                times[i].push_back(time);
        }
    }
    std::vector<double> result;
    for (std::vector<double>& list : times) {
        std::nth_element(list.begin(), list.begin() + kRounds / 2, list.end());
        result.push_back(list[kRounds / 2]);
    }
    return result;
}

bool report(const char* name, double figure, const char* peer, double peerFigure, double bound, bool atLeast)
{
    const double ratio = atLeast ? peerFigure / figure : figure / peerFigure;
    const bool good = atLeast ? ratio >= bound : ratio <= bound;
    std::printf("%-46s %8.3f ms  %s %8.3f ms  ratio %6.2f  %s %.2f  %s\n", name, figure, peer, peerFigure, ratio,
                atLeast ? "at least" : "at most", bound, good ? "holds" : "FAILS");
    return good;
}

void fill(GraphModel& model)
{
    model.setXAxisLabel(QStringLiteral("Frequency - Hz"));
    model.setXAxisScaleControl(graph::ScaleLogarithmic);
    model.setManualScaleControlX(graph::ScaleManual);
    model.setManualMinX(10);
    model.setManualMaxX(5e7);
    for (const int axis : {0, 1}) {
        model.setWorkingAxis(axis);
        model.setYAxisLabel(QStringLiteral("Modulus of Impedance - Ohms"));
        model.setYAxisScaleControl(graph::ScaleLogarithmic);
        model.setManualScaleControlY(graph::ScaleManual);
        model.setManualMinY(0.01);
        model.setManualMaxY(1e6);
    }
    model.setAxisUnitPrefixes(QStringLiteral("p n u m k M G T "));
    for (int trace = 0; trace < kTraces; ++trace) {
        model.setRandomSubsetsToGraph(trace, trace);
        model.setSubsetColors(trace, 0xC00000);
        for (int point = 0; point < kPoints; ++point)
            model.setPoint(trace, point, static_cast<float>(frequencyAt(point)),
                           static_cast<float>(impedanceAt(trace, point)));
    }
    model.PEactions(graph::Reinitialise);
}

void fill(QCustomPlot& plot, double width)
{
    for (QCPAxis* axis : {plot.xAxis, plot.yAxis}) {
        axis->setScaleType(QCPAxis::stLogarithmic);
        axis->setTicker(QSharedPointer<QCPAxisTickerLog>::create());
    }
    plot.xAxis->setRange(10, 5e7);
    plot.yAxis->setRange(0.01, 1e6);
    for (int trace = 0; trace < kTraces; ++trace) {
        QVector<double> x;
        QVector<double> y;
        for (int point = 0; point < kPoints; ++point) {
            x.append(frequencyAt(point));
            y.append(impedanceAt(trace, point));
        }
        QCPGraph* graph = plot.addGraph();
        graph->setData(x, y, true);
        graph->setPen(QPen(QColor(0, 0, 192), width));
    }
}

// Every round shows another stretch of the axes, so that nothing mapped for the last one serves.
double upperLimit(int round)
{
    return 5e7 * (1 + 0.001 * (round + 4));
}

bool measureReplot(double width)
{
    GraphModel model;
    fill(model);
    model.setLineWidth(width);
    GraphView view(model);
    view.resize(kSize);
    view.show();
    view.flush();

    QCustomPlot library;
    library.resize(kSize);
    fill(library, width);
    library.show();
    library.replot();

    const QRect area = view.plotArea();
    std::vector<QVector<QPointF>> lines;
    for (int trace = 0; trace < kTraces; ++trace) {
        QVector<QPointF> line;
        for (int point = 0; point < kPoints; ++point)
            line.append(view.toPixel(frequencyAt(point), impedanceAt(trace, point)));
        lines.push_back(line);
    }
    QPixmap pixmap(kSize);

    const std::vector<double> times = medians({
        [&](int round) {
            model.setManualMaxX(upperLimit(round));
            model.PEactions(graph::Reinitialise);
            view.flush();
        },
        [&](int round) {
            library.xAxis->setRange(10, upperLimit(round));
            library.replot(QCustomPlot::rpQueuedRefresh);
        },
        [&](int) {
            pixmap.fill(Qt::white);
            QPainter painter(&pixmap);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setClipRect(area);
            painter.setPen(QPen(QColor(0, 0, 192), width));
            for (const QVector<QPointF>& line : lines)
                painter.drawPolyline(line.constData(), static_cast<int>(line.size()));
        },
    });
    char name[64];
    std::snprintf(name, sizeof name, "full replot, 20 traces x 1024, pen width %g", width);
    const bool library3 = report(name, times[0], "library's graph ", times[1], 3, true);
    const bool bare2 = report(name, times[0], "bare polylines  ", times[2], 2, false);
    return library3 && bare2;
}

bool measureLivePoint(double width)
{
    GraphModel model;
    fill(model);
    model.setLineWidth(width);
    model.setWorkingAxis(3);
    model.setYAxisLabel(QStringLiteral("Phase - Degrees"));
    model.setManualScaleControlY(graph::ScaleManual);
    model.setManualMinY(-180);
    model.setManualMaxY(180);
    model.setRandomSubsetsToGraph(20, 30);
    model.setVertLineAnnotationType(0, 0);
    model.PEactions(graph::Reinitialise);
    GraphView view(model);
    view.resize(kSize);
    view.show();
    view.flush();
    auto* plot = view.findChild<GraphPlot*>();
    const auto addPoint = [&](int round) {
        const int point = 900 + round;
        const auto x = static_cast<float>(frequencyAt(point));
        model.setPoint(0, point, x, static_cast<float>(impedanceAt(3, point + round)));
        model.setPoint(30, point, x, static_cast<float>(90 * std::sin(point * 0.1)));
        model.setVertLineAnnotation(0, frequencyAt(point));
        model.PEactions(graph::Reinitialise);
        view.flush();
        plot->repaint();
    };
    for (int point = 0; point < 900; ++point)
        model.setPoint(30, point, static_cast<float>(frequencyAt(point)),
                       static_cast<float>(90 * std::sin(point * 0.1)));
    addPoint(-5);
    const GraphPlot::Work before = plot->work();
    const double time = medians({addPoint}).front();
    if (plot->work().full != before.full) {
        std::printf("a live point redrew everything: FAILS\n");
        return false;
    }
    char name[64];
    std::snprintf(name, sizeof name, "one live point to the screen, pen width %g", width);
    return report(name, time, "limit           ", 2, 1, false);
}

// The writes of one measured point, a fifth of the time that two million frames a second leave for each.
bool measurePoints()
{
    GraphModel model;
    constexpr int kFrames = 1'000'000;
    const double time = medians({[&](int) {
                            for (int i = 0; i < kFrames / 10; ++i) {
                                for (const int subset : {3, 13, 33, 23}) {
                                    model.setXData(subset, i & 1023, static_cast<float>(i));
                                    model.setYData(subset, i & 1023, 1.0F);
                                }
                                benchmark::ClobberMemory();
                            }
                        }}).front();
    return report("eight writes of a point, a million times", time * 10, "limit           ", 100, 1, false);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    QApplication application(argc, argv);
    bool good = measurePoints();
    for (const double width : {1.0, 2.0}) {
        good = measureReplot(width) && good;
        good = measureLivePoint(width) && good;
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
