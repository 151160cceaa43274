// SPDX-License-Identifier: GPL-3.0-or-later
// One measured point into the four subsets of a pen, beside the eight plain stores that it cannot do without. Limit:
// 100 ns.
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "document/content/PlotSource.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "tests/support/SilentPorts.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <memory>
#include <vector>

namespace {

struct World
{
    explicit World(std::int16_t type) { document.PrepareNew(type, QStringLiteral("bench")); }

    QTemporaryDir folder;
    SettingsStore store{folder.path()};
    Preferences preferences{store, QStringLiteral("MarrowickGraph")};
    SilentMessages messages;
    PlotSource source;
    ActiveDocument active;
    PenDocument document{DocumentContext{preferences, messages, source, active}};
};

void impedancePoint(benchmark::State& state)
{
    World world(PenDocument::Impedance);
    std::int32_t point = 0;
    for (auto _ : state) {
        world.document.AddImpedancePoint(1000.0 + point, 50.0 + point, 12.5, -1.0, point);
        point = (point + 1) & 1023;
    }
}

void impedancePointIntoReactanceDocument(benchmark::State& state)
{
    World world(PenDocument::Reactance);
    std::int32_t point = 0;
    for (auto _ : state) {
        world.document.AddImpedancePoint(1000.0 + point, 50.0 + point, 12.5, -1.0, point);
        point = (point + 1) & 1023;
    }
}

void plainStores(benchmark::State& state)
{
    std::vector<float> x(40 * 1024), y(40 * 1024);
    std::size_t point = 0;
    for (auto _ : state) {
        const double frequency = 1000.0 + static_cast<double>(point), impedance = 50.0 + static_cast<double>(point);
        for (std::size_t subset = 0; subset < 40; subset += 10)
            x[subset * 1024 + point] = static_cast<float>(frequency);
        y[point] = static_cast<float>(impedance);
        y[10 * 1024 + point] = static_cast<float>(1.0 / impedance);
        y[20 * 1024 + point] = -12.5F;
        y[30 * 1024 + point] = -12.5F;
        benchmark::ClobberMemory();
        point = (point + 1) & 1023;
    }
}

void switchViewOfAFullDocument(benchmark::State& state)
{
    World world(PenDocument::Impedance);
    for (int pen = 0; pen < PenDocument::kPens; ++pen) {
        world.document.setCurrentPen(pen);
        for (std::int32_t point = 0; point < 1024; ++point)
            world.document.AddImpedancePoint(1000.0 + point, 50.0 + point, 12.5, -1.0, point);
    }
    bool alternate = false;
    for (auto _ : state) {
        alternate = !alternate;
        world.document.graphSetAlternateView(alternate);
    }
}

BENCHMARK(plainStores);
BENCHMARK(impedancePoint);
BENCHMARK(impedancePointIntoReactanceDocument);
BENCHMARK(switchViewOfAFullDocument);

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
