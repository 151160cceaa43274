// Saving and loading a full plot file against numpy's and HDF5's files of the same arrays and texts.
#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>

namespace {

constexpr int kRounds = 200;

double bestMilliseconds(const std::function<void()>& task)
{
    double best = 1e9;
    for (int round = 0; round < kRounds; ++round) {
        const auto start = std::chrono::steady_clock::now();
        task();
        const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
        best = std::min(best, time.count());
    }
    return best;
}

void fill(GraphModel& model)
{
    for (int subset = 0; subset < model.Subsets(); ++subset) {
        model.setSubsetLabels(subset, QStringLiteral("Pen %1").arg(subset % 10 + 1));
        for (int point = 0; point < model.Points(); ++point)
            model.setPoint(subset, point, static_cast<float>(10 * std::pow(10.0, 6.69 * point / 1023)),
                           static_cast<float>(std::sin(point * 0.37 + subset) * 1e3));
    }
    for (int text = 0; text < 20; ++text)
        model.setGraphAnnotationText(text, QStringLiteral("annotation %1").arg(text));
}

bool report(const char* name, double figure, const QByteArray& peer, double peerFigure)
{
    const bool good = figure <= peerFigure;
    std::printf("%-10s %8.3f ms  %-12s %8.3f ms  ratio %6.2f  at most 1.00  %s\n", name, figure, peer.constData(),
                peerFigure, figure / peerFigure, good ? "holds" : "FAILS");
    return good;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    // In memory: the figures are those of the formats, not of a disk.
    QTemporaryDir folder(QStringLiteral("/dev/shm/plotfile-XXXXXX"));
    if (!folder.isValid()) {
        std::printf("no folder in memory: FAILS\n");
        return EXIT_FAILURE;
    }
    const QString fileName = folder.filePath(QStringLiteral("full.gzd"));
    GraphModel model;
    fill(model);
    bool done = true;
    const double save = bestMilliseconds([&] { done = GraphFile::PEsavetofile(model, fileName).ok() && done; });
    GraphModel loaded;
    const double load = bestMilliseconds([&] { done = GraphFile::PEloadfromfile(loaded, fileName).ok() && done; });
    if (!done || loaded.properties() != model.properties()) {
        std::printf("a save or load went wrong: FAILS\n");
        return EXIT_FAILURE;
    }

    QProcess peers;
    peers.start(QStringLiteral("/usr/bin/python3"),
                {QStringLiteral(MG_SOURCE_DIR "/bench/plotfile_peers.py"), folder.path(), QString::number(kRounds)});
    if (!peers.waitForFinished(120000) || peers.exitCode() != 0) {
        std::printf("the peers need python3-numpy and python3-h5py: %s\n",
                    peers.readAllStandardError().trimmed().constData());
        return EXIT_FAILURE;
    }
    bool good = true;
    for (const QByteArray& line : peers.readAllStandardOutput().trimmed().split('\n')) {
        const QList<QByteArray> fields = line.split(' '); // name, save, load
        if (fields.size() != 3) {
            std::printf("unexpected line of the peers: %s\n", line.constData());
            return EXIT_FAILURE;
        }
        good = report("save", save, fields[0], fields[1].toDouble()) && good;
        good = report("load", load, fields[0], fields[2].toDouble()) && good;
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
