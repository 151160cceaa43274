// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/JournalBench.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <random>
#include <sys/mman.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace recovery;

namespace {

constexpr int kPens = 10;
constexpr int kMostPoints = 1000;
constexpr int kRuns = 60;
/// More runs than the suite has time for: MARROWICK_KILLS=1000 build/dev/bin/test_recovery
/// --gtest_filter='KilledProgram.*'.
constexpr const char* kRunsVariable = "MARROWICK_KILLS";

/// What a pen holds: that many points of the sweep of that number. No points: an empty pen.
struct Held
{
    int sweep = 0, points = 0;
    bool operator==(const Held& other) const { return points == other.points && (points == 0 || sweep == other.sweep); }
};
using Plot = std::array<Held, kPens>;

bool holdsData(const Plot& plot)
{
    return std::any_of(plot.begin(), plot.end(), [](const Held& pen) { return pen.points > 0; });
}

/// Where the writing process was when it was killed: between what it had seen kept and what it was doing.
struct Moment
{
    enum Doing
    {
        Sweeping, ///< the pen holds what it held before, or the first points of this sweep, at least those confirmed
        Editing,  ///< the pen holds one or the other
        Closing   ///< the document is open or closed, and kept either way
    } doing = Editing;
    int pen = 0;
    Held before;       ///< of that pen
    bool begun = true; ///< sweeping: nothing of before is left
    Held after;        ///< of that pen; sweeping: up to the last point
    int confirmed = 0; ///< points of the sweep
    Plot others{};     ///< all pens but that one; closing: all
    Plot closed{};     ///< of the last document that was closed
    Held gone;         ///< the last data that an edit took out of a pen
};

/// Two moments, written in turn, so that the one that counts is always whole.
struct Shared
{
    std::array<Moment, 2> moments;
    std::atomic<int> present{-1};

    void note(const Moment& moment)
    {
        const int next = present == 0 ? 1 : 0;
        moments[static_cast<std::size_t>(next)] = moment;
        present = next;
    }
};

struct KilledProgram : JournalBench
{
    Shared* shared =
        new (::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Shared;

    ~KilledProgram() override { ::munmap(shared, sizeof(Shared)); }

    static int runs() { return std::max(kRuns, qEnvironmentVariableIntValue(kRunsVariable)); }

    static float valueOf(int sweep, int point) { return static_cast<float>(50.125 + sweep * 100 + point); }

    /// What that data is; points of no sweep, or of two, count as a failure.
    static Held heldIn(const PenData& data)
    {
        Held held{0, data.points()};
        if (held.points == 0)
            return held;
        held.sweep = static_cast<int>((data.y[0][0] - 50.125F) / 100);
        for (int point = 0; point < held.points; ++point) {
            const auto index = static_cast<std::size_t>(point);
            EXPECT_EQ(data.x[index], static_cast<float>(1000.5 + point * 7.25)) << point;
            EXPECT_EQ(data.y[0][index], valueOf(held.sweep, point)) << point;
        }
        return held;
    }
    static Plot plotOf(const ValueOr<QByteArray>& bytes)
    {
        const auto graph = graphOf(bytes);
        Plot plot;
        for (int pen = 0; pen < kPens; ++pen)
            plot[static_cast<std::size_t>(pen)] = heldIn(PenData::of(*graph, pen));
        return plot;
    }

    void expectKept(const Moment& moment) const;
    [[noreturn]] void workForEver(unsigned seed);
};

/// The program that is killed: sweeps, edits and closings in any order, each noted before it is done and after it was
/// seen kept.
struct Worker
{
    KilledProgram& world;
    std::unique_ptr<RecoveryJournal> keeper;
    std::mt19937 random;
    Moment now;
    Plot plot{};
    std::unique_ptr<PenDocument> document = world.bench.document(PenDocument::Impedance);
    int sweeps = 0;

    int number(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
    Held& pen(int number) { return plot[static_cast<std::size_t>(number)]; }
    void settle()
    {
        if (!keeper->settle(std::chrono::seconds(60)))
            ::_exit(2);
    }
    void note() { world.shared->note(now); }

    void turnTo(Moment::Doing doing, int which)
    {
        now.doing = doing;
        now.pen = which;
        now.before = pen(which);
        now.begun = false;
        now.confirmed = 0;
        now.others = plot;
        document->setCurrentPen(which);
    }

    void sweep()
    {
        const int which = number(0, kPens - 1), points = number(1, kMostPoints);
        turnTo(Moment::Sweeping, which);
        now.after = {++sweeps, points};
        note();
        if (!document->SetPlotting({}))
            ::_exit(3);
        Q_EMIT world.events.sweepStarted(document.get());
        settle();
        if (now.before.points > 0)
            now.gone = now.before;
        now.begun = true;
        note();
        for (int point = 0; point < points; ++point) {
            world.measure(*document, point, sweeps);
            // Most blocks leave by themselves; some are waited for, to know what must be there.
            if (number(1, 97) == 1) {
                settle();
                now.confirmed = point + 1;
                note();
            }
        }
        document->SetViewing();
        Q_EMIT world.events.sweepEnded(document.get());
        settle();
        pen(which) = now.after;
        now.confirmed = points;
        note();
    }

    void edit()
    {
        const int which = number(0, kPens - 1);
        turnTo(Moment::Editing, which);
        const bool pastes = number(0, 1) == 1;
        now.after = pastes ? Held{++sweeps, 1} : Held{};
        note();
        if (pastes)
            document->PasteLineData(which, QStringLiteral("Frequency - Hz\tpasted\t2\r\n1000.5\t%1\t0.02\t-12\t12\r\n")
                                               .arg(double(KilledProgram::valueOf(sweeps, 0)), 0, 'g', 12));
        else
            document->graphEraseLine(which);
        document->SetModified();
        settle();
        if (now.before.points > 0)
            now.gone = now.before;
        pen(which) = now.after;
        now.before = now.after;
        now.others = plot;
        note();
    }

    void close()
    {
        turnTo(Moment::Closing, 0);
        note();
        world.bench.messages.replies = {UserMessages::ReplyNo};
        if (!document->QueryClose())
            ::_exit(4);
        settle();
        document = world.bench.document(PenDocument::Impedance);
        keeper->follow(*document);
        if (holdsData(plot))
            now.closed = plot;
        plot = {};
        turnTo(Moment::Editing, 0);
        now.after = {};
        note();
    }
};

[[noreturn]] void KilledProgram::workForEver(unsigned seed)
{
    Worker worker{*this, journal({.fileBytes = 200'000}), std::mt19937(seed), {}};
    worker.keeper->follow(*worker.document);
    for (;;) {
        const int dice = worker.number(1, 10);
        if (dice <= 6)
            worker.sweep();
        else if (dice <= 9)
            worker.edit();
        else
            worker.close();
    }
}

void KilledProgram::expectKept(const Moment& moment) const
{
    std::vector<Plot> open, closed;
    for (const RecoveryStore::Plot& plot : store().plots())
        (plot.crashed ? open : closed).push_back(plotOf(store().read(plot)));
    ASSERT_LE(open.size(), 1U);
    if (holdsData(moment.closed)) {
        EXPECT_NE(std::find(closed.begin(), closed.end(), moment.closed), closed.end()) << "the one closed last";
    }
    if (moment.gone.points > 0) {
        bool found = false;
        for (const RecoveryStore::Pen& pen : store().pens()) {
            const auto record = store().read(pen);
            found = found || (record.ok() && heldIn(record.value().data) == moment.gone);
        }
        EXPECT_TRUE(found) << "what an edit took out of a pen";
    }
    if (moment.doing == Moment::Closing) {
        if (!holdsData(moment.others))
            return;
        const bool isOpen = !open.empty() && open.front() == moment.others;
        const bool isClosed = std::find(closed.begin(), closed.end(), moment.others) != closed.end();
        EXPECT_TRUE(isOpen || isClosed);
        return;
    }
    const Plot found = open.empty() ? Plot{} : open.front();
    for (int number = 0; number < kPens; ++number) {
        SCOPED_TRACE("pen " + std::to_string(number));
        const auto index = static_cast<std::size_t>(number);
        if (number != moment.pen) {
            EXPECT_EQ(found[index], moment.others[index]);
            continue;
        }
        const Held held = found[index];
        const bool isBefore = !moment.begun && held == moment.before;
        if (moment.doing == Moment::Editing) {
            EXPECT_TRUE(isBefore || held == moment.after) << held.points;
        } else {
            const bool isOfSweep = held.points == 0 || held.sweep == moment.after.sweep;
            EXPECT_TRUE(isBefore ||
                        (isOfSweep && held.points >= moment.confirmed && held.points <= moment.after.points))
                << held.points << " points of sweep " << held.sweep << ", confirmed " << moment.confirmed;
        }
    }
}

TEST_F(KilledProgram, EverythingUpToTheLastBlockComesBackFromRandomMomentsOfSweepsEditsAndClosings)
{
    std::mt19937 random(4711);
    std::uniform_int_distribution<int> microseconds(200, 150'000);
    std::array<int, 3> met{};
    for (int run = 0; run < runs() && !HasFailure(); ++run) {
        SCOPED_TRACE("run " + std::to_string(run));
        ASSERT_TRUE(QDir(folder).removeRecursively());
        new (shared) Shared;
        const auto seed = static_cast<unsigned>(random());
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            workForEver(seed);
        while (shared->present < 0)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        ASSERT_EQ(::kill(child, SIGKILL), 0);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the writer ended by itself: " << status;
        const Moment& moment = shared->moments[static_cast<std::size_t>(shared->present.load())];
        expectKept(moment);
        ++met[moment.doing];
    }
    std::printf("%d kills: %d in sweeps, %d in edits, %d in closings\n", runs(), met[0], met[1], met[2]);
    EXPECT_GT(met[Moment::Sweeping], runs() / 4);
}

} // namespace
