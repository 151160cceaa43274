// SPDX-License-Identifier: GPL-3.0-or-later
// What a frame costs on its way from bytes to a pen. One line a figure: name, figure, peer or limit, verdict. The exit
// code tells whether all verdicts are good.
#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "controls/korvalink/MemoryTransport.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/InstrumentPlotSource.h"
#include "link/SweepRecorder.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "program/UserMessages.h"
#include "tests/support/SilentPorts.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <vector>

namespace {

std::atomic<std::size_t> g_allocations{0};

} // namespace

// Every allocation of the process is counted.
void* operator new(std::size_t size)
{
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* const memory = std::malloc(size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

constexpr int kPoints = 1024;
constexpr int kFrameLength = static_cast<int>(Frame::kLength);

class BenchWindow : public SilentMainWindow
{
public:
    std::array<char, 128> panel{};

    void processEvents() override { QCoreApplication::processEvents(); }
    void setPanel(int, std::string_view text) override
    {
        std::copy_n(text.data(), std::min(text.size(), panel.size()), panel.data());
    }
};

class StrictMessages : public UserMessages
{
public:
    int message(const QString& text, int, const QString&) override
    {
        std::fprintf(stderr, "unexpected message: %s\n", qPrintable(text));
        std::exit(EXIT_FAILURE);
    }
    int systemBox(const QString& text, int style, const QString& title) override { return message(text, style, title); }
};

/// A sweep of 1024 points with all digits that an instrument sends.
std::vector<char> makeSweep(char code)
{
    std::vector<char> bytes;
    bytes.reserve(static_cast<std::size_t>(kPoints) * kFrameLength + 1);
    for (int i = 0; i < kPoints; ++i) {
        const double frequency = 1000 * std::pow(10.0, 3.0 * i / (kPoints - 1));
        const double modulus = 40 + 1e5 / (1 + std::abs(frequency - 40000) / 100);
        char frame[kFrameLength + 1];
        std::snprintf(frame, sizeof frame, "%c:1 %13.3f %13.5f %13.4f %13d %5d\r\n", code, frequency, modulus,
                      90 * std::sin(i * 0.01), i % 2 == 0 ? 1 : -1, i);
        bytes.insert(bytes.end(), frame, frame + kFrameLength);
    }
    bytes.push_back('\0');
    return bytes;
}

using Clock = std::chrono::steady_clock;

/// Nanoseconds an item: the best of several runs, which is what the code costs when nothing else disturbs.
template <typename Work>
double nanosecondsPerItem(int runs, std::size_t items, Work work)
{
    double best = 1e30;
    for (int run = 0; run < runs; ++run) {
        const auto begin = Clock::now();
        work();
        const std::chrono::duration<double, std::nano> spent = Clock::now() - begin;
        best = std::min(best, spent.count() / static_cast<double>(items));
    }
    return best;
}

bool report(const char* name, const char* figure, const char* limit, bool good)
{
    std::printf("%-52s %-22s %-34s %s\n", name, figure, limit, good ? "ok" : "MISSED");
    return good;
}

template <typename... Values>
QByteArray textOf(const char* format, Values... values)
{
    return QString::asprintf(format, values...).toLatin1();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QTemporaryDir folder;
    SettingsStore store(folder.path());
    ProgramState state;
    Preferences preferences(store, state.gstrAppTitle);
    InstrumentMirror mirror;
    StrictMessages messages;
    BenchWindow window;
    DeviceList devices(std::vector<std::unique_ptr<DeviceSource>>{});
    KorvaLink device(devices);
    const InstrumentPlotSource source(device, mirror, state);
    DeviceModule module(LinkContext{device, mirror, state, preferences, messages, window, window.active});
    PenDocument document(DocumentContext{preferences, messages, source, window.active});
    document.gstrKey = QStringLiteral("Doc1");
    document.PrepareNew(PenDocument::Impedance, QStringLiteral("Document 1"));
    window.active = &document;
    auto [transport, peer] = MemoryTransport::makePair();
    if (!device.OpenTransport(std::move(transport)))
        return EXIT_FAILURE;

    const std::vector<char> sweep = makeSweep('F');
    const std::size_t sweepSize = sweep.size() - 1;
    module.recorder().GUISetPlotting(&document);
    mirror.iPointsInTest = kPoints;
    bool good = true;

    // Decoding alone, against strtod on the same six fields.
    constexpr int kRounds = 2; // short, so that many runs pass without the scheduler taking part
    constexpr int kRuns = 500;
    double sum = 0;
    const double decode = nanosecondsPerItem(kRuns, std::size_t{kPoints} * kRounds, [&] {
        for (int round = 0; round < kRounds; ++round) {
            for (std::size_t at = 0; at < sweepSize; at += kFrameLength) {
                const Frame frame(sweep.data() + at);
                std::int32_t f = 0, i = 0;
                if (!frame.ParseF(f) || !frame.ParseI(i))
                    std::exit(EXIT_FAILURE);
                sum += frame.number(1) + frame.number(2) + frame.number(3) + frame.number(4) + f + i;
            }
        }
    });
    double peerSum = 0;
    const double strtodTime = nanosecondsPerItem(kRuns, std::size_t{kPoints} * kRounds, [&] {
        for (int round = 0; round < kRounds; ++round) {
            for (std::size_t at = 0; at < sweepSize; at += kFrameLength) {
                const char* const frame = sweep.data() + at;
                for (const int column : {5, 19, 33, 47, 3, 61})
                    peerSum += std::strtod(frame + column - 1, nullptr);
            }
        }
    });
    if (std::abs(sum - peerSum) > 1e-9 * std::abs(sum)) {
        std::fprintf(stderr, "decoded values differ from those of strtod\n");
        return EXIT_FAILURE;
    }
    good &= report("decode the fields of one frame", textOf("%.1f ns", decode).constData(),
                   textOf("strtod %.1f ns, x%.2f, wanted x2.5", strtodTime, strtodTime / decode).constData(),
                   strtodTime >= 2.5 * decode);

    // Decode and dispatch: field checks, mirror, document, status panel, cursor.
    const auto dispatchAll = [&](int rounds) {
        for (int round = 0; round < rounds; ++round) {
            for (std::size_t at = 0; at < sweepSize; at += kFrameLength) {
                if (!module.DeviceFrameReceived(sweep.data() + at, Frame::kLength))
                    std::exit(EXIT_FAILURE);
            }
        }
    };
    dispatchAll(1);
    const std::size_t allocatedBefore = g_allocations.load();
    dispatchAll(kRounds);
    const std::size_t allocations = g_allocations.load() - allocatedBefore;
    const double dispatch = nanosecondsPerItem(kRuns, std::size_t{kPoints} * kRounds, [&] { dispatchAll(kRounds); });
    good &= report("decode and dispatch one frame", textOf("%.1f ns", dispatch).constData(), "limit 150 ns",
                   dispatch <= 150);
    good &= report("decode and dispatch against strtod on its fields", textOf("%.1f ns", dispatch).constData(),
                   textOf("strtod %.1f ns, x%.2f, wanted x2.5", strtodTime, strtodTime / dispatch).constData(),
                   strtodTime >= 2.5 * dispatch);
    good &= report("allocations per frame",
                   textOf("%.6f", static_cast<double>(allocations) / (double{kPoints} * kRounds)).constData(),
                   "limit 0", allocations == 0);

    // From bytes to pens through the event loop.
    constexpr int kMillion = 1'000'000;
    const int sweeps = (kMillion + kPoints - 1) / kPoints;
    const double bytesToPen = nanosecondsPerItem(5, static_cast<std::size_t>(sweeps) * kPoints, [&] {
        for (int i = 0; i < sweeps; ++i) {
            peer->send(QByteArrayView(sweep.data(), static_cast<qsizetype>(sweepSize)));
            while (device.BytesAvailable() > 0)
                QCoreApplication::processEvents();
        }
    });
    const double framesPerSecond = 1e9 / bytesToPen;
    good &=
        report("one million frames from bytes into pens", textOf("%.2f million/s", framesPerSecond / 1e6).constData(),
               "limit 2 million/s", framesPerSecond >= 2e6);

    const std::string_view shown(window.panel.data(), 13);
    if (document.peGraph().XData(0, kPoints - 1) != 1000000.0F || shown != "1024/1024 pts") {
        std::fprintf(stderr, "the points did not arrive\n");
        return EXIT_FAILURE;
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
