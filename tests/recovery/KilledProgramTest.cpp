// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/JournalBench.h"

#include <atomic>
#include <csignal>
#include <random>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace recovery;

namespace {

constexpr int kPointsOfSweep = 1000;

/// What the writing process had confirmed when it was killed.
struct Shared
{
    std::atomic<int> sweep{-1};
    std::atomic<int> points{0};  ///< of that sweep, handed to the system
    std::atomic<int> started{0}; ///< sweeps begun, whether confirmed or not
};

struct KilledProgram : JournalBench
{
    Shared* shared =
        new (::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Shared;
    std::unique_ptr<PenDocument> document = bench.document(PenDocument::Impedance);

    ~KilledProgram() override { ::munmap(shared, sizeof(Shared)); }

    /// Measures sweep after sweep into pens 0 to 9 in turn until it is killed.
    [[noreturn]] void measureForEver()
    {
        const auto keeper = journal({.fileBytes = 100'000});
        std::mt19937 random(static_cast<unsigned>(::getpid()));
        for (int sweep = 0;; ++sweep) {
            document->setCurrentPen(sweep % 10);
            shared->started = sweep + 1;
            if (!document->SetPlotting({}))
                ::_exit(1);
            Q_EMIT events.sweepStarted(document.get());
            if (!keeper->settle())
                ::_exit(2);
            shared->points = 0;
            shared->sweep = sweep;
            for (int point = 0; point < kPointsOfSweep; ++point) {
                measure(*document, point, sweep);
                // Most blocks leave by themselves; some are waited for, to know what must be there.
                if (random() % 97 == 0) {
                    if (!keeper->settle())
                        ::_exit(3);
                    shared->points = point + 1;
                }
            }
            Q_EMIT events.sweepEnded(document.get());
        }
    }
};

TEST_F(KilledProgram, EverythingUpToTheLastBlockComesBackFrom200RandomMoments)
{
    std::mt19937 random(4711);
    std::uniform_int_distribution<int> microseconds(200, 60'000);
    int withPoints = 0;
    for (int run = 0; run < 200; ++run) {
        ASSERT_TRUE(QDir(folder).removeRecursively());
        new (shared) Shared;
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            measureForEver();
        while (shared->started == 0)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself: " << status;

        const int sweep = shared->sweep;
        if (sweep < 0 || (sweep == 0 && shared->points == 0))
            continue; // killed before any point was confirmed
        const auto plots = store().plots();
        ASSERT_EQ(plots.size(), 1U) << run;
        const auto graph = graphOf(store().read(plots.front()));
        // A sweep may have been begun behind the one that was confirmed last; that one is complete then.
        const int last = shared->started - 1;
        int found = 0;
        for (int number = std::max(0, last - 9); number <= last; ++number) {
            const int pen = number % 10;
            const PenData data = PenData::of(*graph, pen);
            const bool isOlder = data.points() > 0 && data.y[0][0] == 50.125F + static_cast<float>(number - 10) * 100;
            if (number == last && last > sweep && isOlder)
                continue; // its begin was not written yet
            const int confirmed = number < sweep ? kPointsOfSweep : number == sweep ? shared->points.load() : 0;
            ASSERT_GE(data.points(), confirmed) << run << ", sweep " << number;
            for (int point = 0; point < data.points(); ++point) {
                const auto index = static_cast<std::size_t>(point);
                ASSERT_EQ(data.x[index], static_cast<float>(1000.5 + point * 7.25)) << run;
                ASSERT_EQ(data.y[0][index], static_cast<float>(50.125 + number * 100 + point)) << run;
            }
            found += data.points();
        }
        withPoints += found > 0 ? 1 : 0;
    }
    EXPECT_GT(withPoints, 150) << "the moments hardly ever met a sweep";
}

} // namespace
