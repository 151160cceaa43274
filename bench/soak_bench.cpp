// SPDX-License-Identifier: GPL-3.0-or-later
// Repeat sweeps at the pace of a full-speed USB link, as long as one likes: the desktop program with its window, the
// simulated instrument behind a pseudo-terminal at 18 000 frames a second, 1024 points a sweep.
//
//     bench_soak [SECONDS]    default 20; ten minutes for the figures in docs/performance.md
//
// Counted: sweeps that ended with a point missing; how long the window takes to answer an event posted from outside
// every 5 ms; how much of that its thread spent working, which is what the program itself is to blame for when others
// keep the machine busy; resident memory in the first tenth of the run and at its end.
#include "controls/korvalink/KorvaLink.h"
#include "document/DocumentList.h"
#include "document/PenDocument.h"
#include "document/content/PenReader.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/LinkContext.h"
#include "link/TestRun.h"
#include "program/ProgramState.h"
#include "shell/ui/StartUp.h"
#include "shell/ui/frmMain.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <pthread.h>
#include <thread>
#include <time.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kAnswerLimit = 50; // ms
constexpr int kPoints = 1024;

double processorMilliseconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

class Question : public QEvent
{
public:
    /// The clock is that of the processor time of the thread that is asked.
    explicit Question(clockid_t clock)
        : QEvent(User)
        , posted(Clock::now())
        , postedProcessor(processorMilliseconds(clock))
    {}
    const Clock::time_point posted;
    const double postedProcessor;
};

class Answerer : public QObject
{
public:
    /// Room for so many answers, so that writing them down costs no memory in the course of the run.
    explicit Answerer(std::size_t room)
    {
        pthread_getcpuclockid(pthread_self(), &clock);
        for (std::vector<double>* list : {&waited, &worked}) {
            list->assign(room, 0);
            list->clear();
        }
    }

    clockid_t clock{};
    std::vector<double> waited, worked; ///< milliseconds

protected:
    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        const auto& question = *static_cast<Question*>(event);
        waited.push_back(std::chrono::duration<double, std::milli>(Clock::now() - question.posted).count());
        worked.push_back(processorMilliseconds(clock) - question.postedProcessor);
        return true;
    }
};

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576.0;
}

bool writeSettings(const QString& folder)
{
    QDir().mkpath(folder);
    QFile file(folder + QStringLiteral("/MarrowickGraph.ini"));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray path = folder.toUtf8();
    file.write("[Prompts]\nSplashScreen=0\nOpenSettings=0\nPromptOverwrite=0\n[Paths]\nPlotFiles=" + path +
               "\nExportFiles=" + path + "\nScriptFiles=" + path + "\nUpdateFiles=" + path + "\n");
    return true;
}

template <typename Condition>
bool waitFor(Condition condition, int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition() && timer.elapsed() < milliseconds)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    return condition();
}

} // namespace

int main(int argc, char** argv)
{
    const int seconds = argc > 1 ? std::max(5, std::atoi(argv[1])) : 20;
    QTemporaryDir home;
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && !qEnvironmentVariableIsSet("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QProcess simulator;
    simulator.setStandardErrorFile(home.filePath(QStringLiteral("simulator.log")));
    simulator.start(QStringLiteral(MG_PROGRAM_DIR "/marrowick-sim"),
                    {QStringLiteral("--serial"), QStringLiteral("SOAK"), QStringLiteral("--no-memory"),
                     QStringLiteral("--rate"), QStringLiteral("18000")});
    const QString entry = home.filePath(QStringLiteral("marrowick/devices/SOAK"));
    if (!writeSettings(home.filePath(QStringLiteral("settings"))) ||
        !waitFor([&] { return QFile::exists(entry); }, 10000)) {
        std::fputs("bench_soak: no simulated instrument\n", stderr);
        return EXIT_FAILURE;
    }

    StartUp startUp(home.filePath(QStringLiteral("settings")));
    startUp.run({});
    frmMain& window = *startUp.mainWindow();
    const LinkContext& context = window.deviceModule().context();
    if (!waitFor([&] { return context.state.gbfDeviceReady; }, 10000)) {
        std::fputs("bench_soak: the instrument does not answer\n", stderr);
        return EXIT_FAILURE;
    }
    context.mirror.dblStartFrequency = 30000;
    context.mirror.dblEndFrequency = 50000;
    context.mirror.iNumPoints = kPoints;
    context.mirror.bfRepeat = true;
    context.state.giNewDocType = 2;
    PenDocument& document = *window.LoadNewDoc();
    document.graphSetDefaultView();
    window.showDocument(document);

    qint64 sweeps = 0;
    qint64 incomplete = 0;
    int pen = document.gCurrentPen();
    // Behind the program's own handler: a pass is shorter than a sweep, so no change of pen goes unseen.
    QObject::connect(&context.device, &KorvaLink::DataReceived, &window, [&] {
        if (document.gCurrentPen() == pen)
            return;
        ++sweeps;
        if (PenReader::pointCount(document.peGraph(), pen) != kPoints)
            ++incomplete;
        pen = document.gCurrentPen();
    });
    window.testRun().mnuTestStart_Click();

    Answerer answerer(static_cast<std::size_t>(seconds) * 210);
    std::atomic<bool> over = false;
    std::thread asking([&] {
        while (!over) {
            QCoreApplication::postEvent(&answerer, new Question(answerer.clock));
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    waitFor([] { return false; }, seconds * 100);
    const double memoryAtFirst = residentMegabytes();
    waitFor([] { return false; }, seconds * 900);
    const double memoryAtEnd = residentMegabytes();
    over = true;
    asking.join();
    window.testRun().mnuTestStopTest_Click();
    const bool viewing = waitFor([&] { return !context.state.gbfPlotting; }, 5000);
    simulator.terminate();
    simulator.waitForFinished(5000);

    std::vector<double>& answers = answerer.waited;
    std::vector<double>& worked = answerer.worked;
    std::sort(answers.begin(), answers.end());
    std::sort(worked.begin(), worked.end());
    if (answers.empty() || sweeps == 0) {
        std::fputs("bench_soak: no sweep ended\n", stderr);
        return EXIT_FAILURE;
    }
    const double p99 = answers[answers.size() * 99 / 100];
    std::printf("repeat sweeps for %d s: %lld sweeps of %d points (%.0f frames/s), %lld of them incomplete\n", seconds,
                static_cast<long long>(sweeps), kPoints, static_cast<double>(sweeps) * (kPoints + 3) / seconds,
                static_cast<long long>(incomplete));
    std::printf("answer of the window: median %.1f ms, 99th percentile %.1f ms, worst %.1f ms, limit %.0f ms\n",
                answers[answers.size() / 2], p99, answers.back(), kAnswerLimit);
    std::printf("of that work of its own: median %.1f ms, 99th percentile %.1f ms, worst %.1f ms\n",
                worked[worked.size() / 2], worked[worked.size() * 99 / 100], worked.back());
    std::printf("resident memory: %.1f MiB after a tenth of the run, %.1f MiB at its end\n", memoryAtFirst,
                memoryAtEnd);
    return incomplete == 0 && p99 <= kAnswerLimit && viewing ? EXIT_SUCCESS : EXIT_FAILURE;
}
