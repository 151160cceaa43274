// SPDX-License-Identifier: GPL-3.0-or-later
// Switching the views of a full document, ten pens of 1024 points each, until the new view stands on the screen.
#include "cli/instrument/Session.h"
#include "controls/graph/ui/GraphPlot.h"
#include "controls/graph/ui/GraphView.h"

#include <QApplication>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <vector>

namespace {

constexpr int kRounds = 41;
constexpr double kFrame = 1000.0 / 60; // of a usual display, milliseconds

/// Processor time of this thread, which does all the work: other load of the machine does not count. Milliseconds.
double now()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

void fill(PenDocument& document)
{
    const bool amplitude = document.pgiTestType() == PenDocument::Amplitude;
    for (int pen = 0; pen < PenDocument::kPens; ++pen) {
        document.setCurrentPen(pen);
        for (int point = 0; point < 1024; ++point) {
            const double frequency = std::pow(10.0, 3 + 3.0 * point / 1023);
            const double ripple = (1 + 0.5 * std::sin(point * 0.05 + pen)) * (1 + 0.02 * ((point * 7919) % 17));
            const double phase = 90 * std::sin(point * 0.02 + pen);
            if (amplitude)
                document.AddAmplitudePoint(frequency, -40 * ripple, std::abs(phase), phase < 0 ? -1 : 1, point);
            else
                document.AddImpedancePoint(frequency, 1e4 * ripple / (pen + 1), std::abs(phase), phase < 0 ? -1 : 1,
                                           point);
        }
    }
}

bool measure(cli::Session& session, PenDocument::TestType type, const char* typeName, double width)
{
    session.mirror().dblStartFrequency = 1000;
    session.mirror().dblEndFrequency = 1e6;
    session.mirror().bfPhaseOn = true;
    PenDocument& document = session.newDocument(type);
    fill(document);
    document.peGraph().setLineWidth(width);
    document.peGraph().PEactions(graph::Reinitialise);
    GraphView view(document.peGraph());
    view.resize(1280, 800);
    view.show();
    view.flush();
    auto* plot = view.findChild<GraphPlot*>();

    struct Switch
    {
        const char* name;
        std::function<void(int)> act;
    };
    std::vector<Switch> switches = {
        {"alternate view", [&](int) { document.graphSetAlternateView(!document.gbfAltSubset()); }},
        {"frequency axis", [&](int) { document.graphSetFrequecyLinear(!document.graphGetFrequncyView()); }},
    };
    if (type == PenDocument::Reactance)
        switches.push_back(
            {"R and G view", [&](int round) { document.graphSetRG(static_cast<std::int16_t>((round + 3) % 3)); }});
    else
        switches.push_back(
            {"phase view", [&](int round) { document.graphSetPhase(static_cast<std::int16_t>((round + 3) % 3)); }});
    bool good = true;
    for (const Switch& item : switches) {
        std::vector<double> times;
        for (int round = -3; round < kRounds; ++round) {
            const auto before = plot->work().full;
            const double start = now();
            item.act(round);
            document.peGraph().PEactions(graph::Reinitialise);
            view.flush();
            plot->repaint();
            const double time = now() - start;
            if (plot->work().full == before) {
                std::printf("%s, %s: nothing was drawn anew: FAILS\n", typeName, item.name);
                return false;
            }
            if (round >= 0)
                times.push_back(time);
        }
        std::sort(times.begin(), times.end());
        const double median = times[times.size() / 2];
        const bool holds = times.back() <= kFrame;
        good = good && holds;
        std::printf("%-10s pen width %g  %-15s median %6.2f ms  (longest %6.2f ms)  at most %.1f  %s\n", typeName,
                    width, item.name, median, times.back(), kFrame, holds ? "holds" : "FAILS");
    }
    return good;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LC_ALL", "C.UTF-8");
    const QApplication application(argc, argv);
    cli::Console console = cli::Console::ofProgram(QStringLiteral("bench_views"));
    cli::Session session(console);
    bool good = true;
    for (const double width : {1.0, 2.0}) {
        good = measure(session, PenDocument::Amplitude, "amplitude", width) && good;
        good = measure(session, PenDocument::Impedance, "impedance", width) && good;
        good = measure(session, PenDocument::Reactance, "reactance", width) && good;
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
