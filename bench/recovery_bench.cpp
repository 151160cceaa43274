// SPDX-License-Identifier: GPL-3.0-or-later
// What the recovery journal costs a repeated sweep over one pen, the dearest case: every round keeps the points and the
// pen before. Processor time of all threads for each point, and its share of a sweep at 18 000 points a second.
// Limit: 2 %.
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "document/content/PlotSource.h"
#include "instrument/InstrumentEvents.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "recovery/RecoveryJournal.h"
#include "tests/support/SilentPorts.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <ctime>
#include <memory>

namespace {

constexpr int kPoints = 1024;
constexpr double kPointsPerSecond = 18'000;

double processorSeconds()
{
    timespec time = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

struct World
{
    World() { document.PrepareNew(PenDocument::Impedance, QStringLiteral("bench")); }

    void round()
    {
        document.SetPlotting({});
        Q_EMIT events.sweepStarted(&document);
        for (int point = 0; point < kPoints; ++point) {
            document.AddImpedancePoint(1000.0 + point, 50.0 + point, 12.5, -1.0, point);
            document.SetModified();
            Q_EMIT events.pointStored(&document, point);
        }
        Q_EMIT events.sweepEnded(&document);
    }

    QTemporaryDir folder;
    SettingsStore store{folder.path()};
    Preferences preferences{store, QStringLiteral("MarrowickGraph")};
    SilentMessages messages;
    PlotSource source;
    ActiveDocument active;
    PenDocument document{DocumentContext{preferences, messages, source, active}};
    InstrumentEvents events;
};

void roundOfPoints(benchmark::State& state)
{
    World world;
    std::unique_ptr<RecoveryJournal> journal;
    if (state.range(0) != 0) {
        journal = std::make_unique<RecoveryJournal>(world.folder.filePath(QStringLiteral("recovery")));
        journal->listen(world.events);
    }
    const double before = processorSeconds();
    for (auto _ : state) {
        world.round();
        if (journal && !journal->settle())
            state.SkipWithError("nothing is written");
    }
    const double perPoint = (processorSeconds() - before) / (static_cast<double>(state.iterations()) * kPoints);
    state.counters["ns_per_point"] = perPoint * 1e9;
    state.counters["percent_of_sweep"] = perPoint * kPointsPerSecond * 100;
    if (journal) {
        const auto points = static_cast<double>(state.iterations()) * kPoints;
        state.counters["bytes_per_point"] = static_cast<double>(journal->writer().bytesWritten()) / points;
        state.counters["calls_per_point"] = static_cast<double>(journal->writer().systemCalls()) / points;
    }
}
BENCHMARK(roundOfPoints)->ArgName("journal")->Arg(0)->Arg(1)->Iterations(200);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
