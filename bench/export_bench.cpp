// SPDX-License-Identifier: GPL-3.0-or-later
// A text export of 40 960 rows of five columns against numpy's savetxt and pandas' to_csv of the same table, in one run
// and in turns, with a header and without: in memory, and on the disk of the build folder, where ours reaches the disk
// and theirs need not.
#include "Peers.h"

#include "controls/textstore/TextStore.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

namespace {

constexpr int kRows = 40960;
constexpr int kRounds = 11;
constexpr double kLongest = 20; ///< ms
constexpr double kLeastGain = 5;

struct Row
{
    float frequency, reactance, resistance, conductance, susceptance;
};

std::vector<Row> rows()
{
    std::vector<Row> result;
    for (int row = 0; row < kRows; ++row) {
        const auto x = static_cast<float>(row);
        result.push_back({10 * std::pow(10.0F, 6.69F * x / kRows), std::sin(x) * 1e4F, 20 + std::cos(x),
                          std::sin(x * 0.37F) * 1e-3F, std::cos(x * 0.71F) * 1e-6F});
    }
    return result;
}

/// Milliseconds to collect and write all rows; negative when that failed.
double exportTime(const std::vector<Row>& table, const QString& fileName, bool header)
{
    const auto start = std::chrono::steady_clock::now();
    TextStore store;
    store.ExportSetFile(fileName);
    if (header) {
        store.ExportSetHeader(1);
        store.ExportSetTest(QStringLiteral("A test"));
        store.ExportSetTitle(QStringLiteral("A title"));
        store.ExportSetPenLabel(0, QStringLiteral("Pen 1"));
        store.ExportSetSolution(0, QStringLiteral("Resonance: Fr 40000 Hz"));
    }
    for (std::int32_t row = 0; row < kRows; ++row) {
        const Row& one = table[static_cast<std::size_t>(row)];
        store.ExportAddReactance(one.frequency, one.reactance, one.resistance, one.conductance, one.susceptance, 0,
                                 row);
    }
    const bool written = store.ExportWrite(0);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    return written ? time.count() : -1;
}

double median(std::vector<double>& times)
{
    std::sort(times.begin(), times.end());
    return times.front() < 0 ? -1 : times[times.size() / 2];
}

bool writeTable(const std::vector<Row>& table, const QString& fileName)
{
    QFile file(fileName);
    const auto size = static_cast<qint64>(table.size() * sizeof(Row));
    return file.open(QFile::WriteOnly) && file.write(reinterpret_cast<const char*>(table.data()), size) == size;
}

/// "in memory" is bounded in time as well; how fast a disk is says nothing about us.
bool measureIn(const QString& place, bool memory)
{
    const std::vector<Row> table = rows();
    const QTemporaryDir folder(place + QStringLiteral("/export-XXXXXX"));
    if (!folder.isValid() || !writeTable(table, folder.filePath(QStringLiteral("table.f32")))) {
        std::printf("%s: cannot write there\n", qPrintable(place));
        return false;
    }
    Peers peers;
    if (!peers.start(QStringLiteral("export_peers.py"), {folder.filePath(QStringLiteral("table.f32")), folder.path()},
                     "numpy")) {
        std::printf("the peers need python3-numpy and python3-pandas: %s\n", peers.errors().constData());
        return false;
    }
    std::vector<double> mine, headed, numpy, pandas;
    for (int round = 0; round < kRounds; ++round) {
        mine.push_back(exportTime(table, folder.filePath(QStringLiteral("ours.txt")), false));
        headed.push_back(exportTime(table, folder.filePath(QStringLiteral("headed.txt")), true));
        numpy.push_back(peers.time("numpy"));
        pandas.push_back(peers.time("pandas"));
    }
    const double figure = median(mine), withHeader = median(headed), a = median(numpy), b = median(pandas);
    if (figure < 0 || withHeader < 0 || a < 0 || b < 0) {
        std::printf("a round went wrong: FAILS\n");
        return false;
    }
    const double slower = std::max(figure, withHeader), gain = std::min(a, b) / slower;
    std::printf("%-10s %7.3f ms  with header %7.3f ms  numpy %7.3f ms  pandas %7.3f ms  %5.1f times as fast  ",
                memory ? "in memory" : "on disk", figure, withHeader, a, b, gain);
    const bool holds = (!memory || slower <= kLongest) && gain >= kLeastGain;
    std::printf("%sat least %.0f times  %s\n", memory ? "at most 20 ms, " : "", kLeastGain, holds ? "holds" : "FAILS");
    return holds;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const bool memory = measureIn(QStringLiteral("/dev/shm"), true);
    const bool disk = measureIn(QStringLiteral(MG_PROGRAM_DIR), false);
    return memory && disk ? EXIT_SUCCESS : EXIT_FAILURE;
}
