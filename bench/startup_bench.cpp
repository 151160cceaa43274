// From process start to the first painted window: MarrowickGraph against a program that shows an empty main window and
// does nothing else. Both are started afresh in turns, on the offscreen platform, with settings of their own in a
// temporary folder; the splash and the search for paths are switched off, as they wait for a person.
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
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kRounds = 15;
constexpr double kLimit = 4.0;
constexpr auto kMark = "first paint";

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

/// Milliseconds until the program reports its first paint; negative when it never does.
double timeToFirstPaint(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment)
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
        if (output.contains(kMark)) {
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
    return true;
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
        const double a = timeToFirstPaint(ours, {}, environment);
        const double b = timeToFirstPaint(self, {QStringLiteral("--empty-window")}, environment);
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
    return ratio <= kLimit ? EXIT_SUCCESS : EXIT_FAILURE;
}
