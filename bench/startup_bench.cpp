// SPDX-License-Identifier: GPL-3.0-or-later
// From process start to the first painted window: MarrowickGraph against a program that shows an empty main window and
// does nothing else. Both are started afresh in turns, on the offscreen platform, with settings of their own in a
// temporary folder; the splash and the search for paths are switched off, as they wait for a person. Then the program
// with ten full plots on its command line, until all of them stand on the screen, against the program without any.
#include "controls/graph/GraphFile.h"
#include "controls/graph/GraphModel.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QMainWindow>
#include <QMenuBar>
#include <QProcess>
#include <QStatusBar>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kRounds = 15;
constexpr double kLimit = 4.0;
constexpr auto kMark = "first paint";
constexpr auto kStarted = "started";
constexpr int kPlots = 10;
constexpr double kPlotLimit = 50; ///< milliseconds that each plot may add to the start

class EmptyWindow : public QMainWindow
{
protected:
    bool event(QEvent* event) override
    {
        const bool handled = QMainWindow::event(event);
        if (event->type() == QEvent::UpdateRequest) {
            std::puts(kMark);
            std::fflush(stdout);
        }
        return handled;
    }
};

int runEmptyWindow(int argc, char** argv)
{
    QApplication application(argc, argv);
    EmptyWindow window;
    window.resize(800, 600);
    window.show();
    return QApplication::exec();
}

/// Milliseconds until the program prints the mark; negative when it never does.
double timeTo(const char* mark, const QString& program, const QStringList& arguments,
              const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments, QIODevice::ReadOnly);
    QByteArray output;
    double milliseconds = -1;
    while (process.waitForReadyRead(20000)) {
        output += process.readAllStandardOutput();
        if (output.contains(mark)) {
            milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
            break;
        }
    }
    process.kill();
    process.waitForFinished();
    return milliseconds;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

bool writeSettings(const QString& configFolder)
{
    QDir().mkpath(configFolder + QStringLiteral("/marrowick"));
    QFile file(configFolder + QStringLiteral("/marrowick/MarrowickGraph.ini"));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray folder = configFolder.toUtf8();
    file.write("[Prompts]\nSplashScreen=0\n[Paths]\nPlotFiles=" + folder + "\nExportFiles=" + folder +
               "\nScriptFiles=" + folder + "\nUpdateFiles=" + folder + "\n");
    // A full list of the files last opened, as it stands after a few days: each opened plot moves all of it.
    file.write("[QuickOpen]\n");
    for (int i = 0; i < 9; ++i)
        file.write("File" + QByteArray::number(i) + "=" + folder + "/earlier" + QByteArray::number(i) + ".gad\n");
    return true;
}

/// A full impedance plot: ten pens of 1024 points in modulus and phase.
bool writePlot(const QString& fileName)
{
    GraphModel model;
    model.setXAxisLabel(QStringLiteral("Frequency - Hz"));
    model.setXAxisScaleControl(graph::ScaleLogarithmic);
    model.setManualScaleControlX(graph::ScaleManual);
    model.setManualMinX(1e3);
    model.setManualMaxX(1e6);
    model.setYAxisLabel(QStringLiteral("Modulus of Impedance - Ohms"));
    model.setYAxisScaleControl(graph::ScaleLogarithmic);
    model.setWorkingAxis(3);
    model.setYAxisLabel(QStringLiteral("Phase - Degrees"));
    for (int pen = 0; pen < 10; ++pen) {
        model.setRandomSubsetsToGraph(pen, pen);
        model.setRandomSubsetsToGraph(pen + 30, pen + 30);
        for (int point = 0; point < 1024; ++point) {
            const auto frequency = static_cast<float>(std::pow(10.0, 3 + 3.0 * point / 1023));
            const auto ohms = static_cast<float>(1e4 / (pen + 1) * (1 + 0.5 * std::sin(point * 0.05 + pen)));
            const auto degrees = static_cast<float>(90 * std::sin(point * 0.02 + pen));
            model.setPoint(pen, point, frequency, ohms);
            model.setPoint(pen + 10, point, frequency, 1 / ohms);
            model.setPoint(pen + 20, point, frequency, -std::abs(degrees));
            model.setPoint(pen + 30, point, frequency, degrees);
        }
    }
    for (int slot = 10; slot < 30; ++slot)
        model.setRandomSubsetsToGraph(slot, -1);
    return GraphFile::PEsavetofile(model, fileName).ok();
}

/// Whether ten plots on the command line stand on the screen soon enough.
bool measurePlots(const QString& program, const QString& folder, const QProcessEnvironment& environment)
{
    QStringList plots;
    for (int plot = 0; plot < kPlots; ++plot) {
        plots.append(QStringLiteral("%1/plot%2.gzd").arg(folder).arg(plot));
        if (!writePlot(plots.last())) {
            std::fputs("bench_startup: the plots cannot be written\n", stderr);
            return false;
        }
    }
    std::vector<double> without, with;
    for (int round = -1; round < kRounds; ++round) {
        const double a = timeTo(kStarted, program, {}, environment);
        const double b = timeTo(kStarted, program, plots, environment);
        if (a < 0 || b < 0) {
            std::fputs("bench_startup: marrowickgraph did not start up\n", stderr);
            return false;
        }
        if (round >= 0) {
            without.push_back(a);
            with.push_back(b);
        }
    }
    const double each = (median(with) - median(without)) / kPlots;
    std::printf("start until all is painted: %d full plots %.1f ms, none %.1f ms (medians of %d), %.1f ms a plot, "
                "limit %.1f ms a plot\n",
                kPlots, median(with), median(without), kRounds, each, kPlotLimit);
    return each <= kPlotLimit;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--empty-window") == 0)
        return runEmptyWindow(argc, argv);

    const QCoreApplication application(argc, argv);
    QTemporaryDir home;
    if (!home.isValid() || !writeSettings(home.filePath(QStringLiteral("config")))) {
        std::fputs("bench_startup: no temporary folder\n", stderr);
        return EXIT_FAILURE;
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
    environment.insert(QStringLiteral("MARROWICK_STARTUP_MARK"), QStringLiteral("1"));

    const QString ours = QStringLiteral(MG_PROGRAM_DIR "/marrowickgraph");
    const QString self = QCoreApplication::applicationFilePath();
    std::vector<double> program;
    std::vector<double> empty;
    for (int round = -2; round < kRounds; ++round) {
        const double a = timeTo(kMark, ours, {}, environment);
        const double b = timeTo(kMark, self, {QStringLiteral("--empty-window")}, environment);
        if (a < 0 || b < 0) {
            std::fprintf(stderr, "bench_startup: %s showed no window\n",
                         a < 0 ? "marrowickgraph" : "the empty program");
            return EXIT_FAILURE;
        }
        if (round >= 0) { // two rounds to warm the disk cache
            program.push_back(a);
            empty.push_back(b);
        }
    }
    const double ratio = median(program) / median(empty);
    std::printf("start to first painted window: marrowickgraph %.1f ms, empty Qt window %.1f ms (medians of %d), "
                "ratio %.2f, limit %.1f\n",
                median(program), median(empty), kRounds, ratio, kLimit);
    const bool plotsHold = measurePlots(ours, home.path(), environment);
    return ratio <= kLimit && plotsHold ? EXIT_SUCCESS : EXIT_FAILURE;
}
