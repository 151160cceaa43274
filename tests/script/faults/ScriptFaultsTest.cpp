// SPDX-License-Identifier: GPL-3.0-or-later
// What a bad cable, a bad instrument and an impatient user do to a script: the run ends, nothing is answered that was
// not asked, every document can be closed, and the next script runs.
#include "tests/script/faults/ScriptBench.h"

#include <QtGlobal>

#include <string>

namespace {

/// Asks for everything that is answered and needs no window: graphs, questions, exports, sweeps, a level.
const QByteArray kScript = "export options stamp off, header on\n"
                           "set start 35 kHz\n"
                           "set end 45 kHz\n"
                           "set points 12\n"
                           "new impedance graph \"First\"\n"
                           "sweep impedance\n"
                           "label pen 1 \"swept\"\n"
                           "prompt \"Turn the part\"\n"
                           "sweep impedance\n"
                           "panel \"{round(smallest level)} Ohm\"\n"
                           "export all pens to \"first\"\n"
                           "close graph\n"
                           "ask \"Go on?\" stop on no\n"
                           "spot impedance 40 kHz for 1\n"
                           "new amplitude graph \"Second\"\n"
                           "start amplitude\n"
                           "wait for end\n"
                           "export pen 1 to \"second\"\n";
constexpr int kQuestions = 2;

/// Seeds to try of each kind of fault: as many as the suite has time for, more by MARROWICK_SCRIPT_FAULT_SEEDS=200.
int seeds()
{
    constexpr int kSeeds = 40;
    return std::max(kSeeds, qEnvironmentVariableIntValue("MARROWICK_SCRIPT_FAULT_SEEDS"));
}

void expectNothingLeft(ScriptBench& bench)
{
    EXPECT_FALSE(bench.state.gbfScriptRunning);
    EXPECT_FALSE(bench.state.gbfPlotting);
    EXPECT_EQ(bench.unasked, 0) << "answered what was not asked";
    EXPECT_LE(bench.wentOn + bench.stopped, bench.asked);
    if (bench.device.Connected()) {
        EXPECT_FALSE(bench.instrumentRuns());
    }
    bench.messages.replies.assign(2, UserMessages::ReplyNo); // not to be saved
    EXPECT_TRUE(bench.documents.CloseAll());
    bench.messages.replies.clear();
    EXPECT_EQ(bench.documents.count(), 0);
}

class ScriptFaultsTest : public ::testing::TestWithParam<const char*>
{
protected:
    struct Tally
    {
        int completed = 0, stopped = 0, lost = 0, notRun = 0;
    };

    /// The user cancels the question of that number, from 1; 0 for none.
    static void run(const QString& fault, int seed, int cancelled, Tally& tally)
    {
        ScriptBench bench(fault, static_cast<std::uint64_t>(seed));
        int asked = 0, refused = 0;
        bench.connect();
        if (cancelled > 0) {
            bench.messages.replies.assign(static_cast<std::size_t>(cancelled), UserMessages::ReplyOk);
            bench.messages.replies.back() = UserMessages::ReplyCancel;
        }
        bench.host.RunScriptFile(bench.file(kScript));
        const bool wasRun = bench.state.gbfScriptRunning;
        bench.restWithUser();
        for (const RecordingMessages::Shown& shown : bench.messages.shown) {
            if (shown.title != QLatin1String("User Prompt") && shown.title != QLatin1String("Abort MarrowickScript?"))
                continue;
            if (++asked == cancelled && shown.title == QLatin1String("User Prompt"))
                ++refused;
        }
        EXPECT_LE(bench.stopped, refused) << "a stop that nobody has wanted";
        EXPECT_LE(asked, kQuestions);
        const bool done = bench.hasText("first") && bench.hasText("second");
        if (!wasRun) {
            ASSERT_FALSE(bench.messages.shown.empty()) << "not run, and not told";
            EXPECT_TRUE(bench.messages.shown[0].text.startsWith(QLatin1String("The script is not run. ")));
            EXPECT_EQ(bench.runs, 0);
            ++tally.notRun;
        } else if (!bench.device.Connected()) {
            ++tally.lost;
        } else if (bench.userStops > 0 || bench.stopped > 0 || bench.gaveUp > 0) {
            ++tally.stopped;
        } else {
            EXPECT_TRUE(done || cancelled > 0) << "it has ended by itself, and a file is missing";
            ++tally.completed;
        }
        expectNothingLeft(bench);
    }
};

} // namespace

TEST_P(ScriptFaultsTest, AScriptEndsToldOrRecoveredAndNothingIsAnsweredThatWasNotAsked)
{
    Tally tally;
    for (int seed = 1; seed <= seeds() && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        run(QLatin1String(GetParam()), seed, seed % 8 == 0 ? 1 : 0, tally);
    }
    RecordProperty("seeds", seeds());
    RecordProperty("completed", tally.completed);
    RecordProperty("stopped", tally.stopped);
    RecordProperty("lost", tally.lost);
    RecordProperty("notRun", tally.notRun);
    if (qEnvironmentVariableIsSet("MARROWICK_SCRIPT_FAULT_SEEDS"))
        std::printf("%s: %d completed, %d stopped, %d with the link, %d not run\n", GetParam(), tally.completed,
                    tally.stopped, tally.lost, tally.notRun);
}

INSTANTIATE_TEST_SUITE_P(EachKind, ScriptFaultsTest,
                         ::testing::Values("garbage", "lost", "split", "stall", "unplug:8", "flood", "wrong-length",
                                           "non-numeric",
                                           "garbage,lost,split,stall,flood,wrong-length,non-numeric,unplug"),
                         [](const auto& fault) {
                             std::string name = fault.param;
                             if (name.find(',') != std::string::npos)
                                 return std::string("AllTogether");
                             name = name.substr(0, name.find(':'));
                             std::erase(name, '-');
                             return name;
                         });

TEST(ScriptRuns, WithoutFaultsTheScriptCompletesByItself)
{
    ScriptBench bench;
    bench.connect();
    bench.host.RunScriptFile(bench.file(kScript));
    bench.restWithUser();
    EXPECT_EQ(bench.userStops, 0);
    EXPECT_EQ(bench.wentOn, bench.asked);
    EXPECT_EQ(bench.wentOn, 7);
    EXPECT_EQ(bench.stopped, 0);
    EXPECT_TRUE(bench.hasText("first") && bench.hasText("second"));
    expectNothingLeft(bench);
}

TEST(ScriptRuns, AnUnpluggingAtEachFrameEndsTheRunAndTheNextScriptRunsOnANewLink)
{
    int most = 0;
    {
        ScriptBench bench;
        bench.connect();
        bench.frames = 0;
        bench.host.RunScriptFile(bench.file(kScript));
        bench.restWithUser();
        most = bench.frames;
    }
    ASSERT_GT(most, 40);
    for (const bool handled : {false, true}) {
        for (int frame = 1; frame <= most && !::testing::Test::HasFailure(); ++frame) {
            SCOPED_TRACE(frame);
            ScriptBench bench;
            bench.connect();
            bench.frames = 0;
            bench.onFrame = [&] {
                if (bench.frames != frame)
                    return;
                bench.onFrame = {};
                if (handled)
                    QCoreApplication::processEvents();
                bench.unplug();
            };
            bench.host.RunScriptFile(bench.file(kScript));
            bench.restWithUser();
            EXPECT_FALSE(bench.device.Connected());
            EXPECT_EQ(bench.stopped, 0);
            expectNothingLeft(bench);
            const int before = bench.wentOn;
            bench.asked = bench.wentOn = 0;
            bench.connect();
            EXPECT_EQ(bench.wentOn, 0) << "a reply of the old link came over the new one, behind " << before;
            bench.host.RunScriptFile(bench.file(kScript));
            bench.restWithUser();
            EXPECT_EQ(bench.wentOn, 7);
            EXPECT_TRUE(bench.hasText("first") && bench.hasText("second"));
            expectNothingLeft(bench);
        }
    }
}

TEST(ScriptRuns, AnUnpluggingWhileTheUserIsAskedIsNotAnsweredLater)
{
    for (int question = 1; question <= kQuestions; ++question) {
        ScriptBench bench;
        bench.connect();
        int shown = 0;
        bench.messages.whileShowing = [&] {
            if (++shown != question)
                return;
            bench.unplug();
            bench.connect();
        };
        bench.host.RunScriptFile(bench.file(kScript));
        const int before = bench.wentOn;
        bench.restWithUser();
        EXPECT_EQ(shown, question);
        EXPECT_EQ(bench.asked - bench.wentOn, 1) << "the question of the link that is gone, " << before;
        EXPECT_TRUE(bench.device.Connected());
        expectNothingLeft(bench);
    }
}

TEST(ScriptRuns, ACancelAtEachPieceOfTheTransferNeverRunsTheOlderScript)
{
    const QByteArray older = "panel \"older\"\n";
    const QByteArray newer = "panel \"newer\"\n" + QByteArray(4000, '#') + '\n';
    const int pieces = static_cast<int>((newer.size() + ScriptTransfer::kPieceSize - 1) / ScriptTransfer::kPieceSize);
    ASSERT_EQ(pieces, 4);
    for (int piece = 0; piece <= pieces; ++piece) {
        SCOPED_TRACE(piece);
        ScriptBench bench;
        bench.connect();
        bench.host.RunScriptFile(bench.file(older));
        bench.restWithUser();
        EXPECT_EQ(bench.panel(1), QStringLiteral("older"));
        EXPECT_EQ(bench.runs, 1);
        bench.window.panels[1].clear();
        bench.messages.shown.clear();
        int sent = 0;
        ScriptTransfer& transfer = bench.host.transfer();
        QObject::connect(&transfer, &ScriptTransfer::begun, [&] {
            if (piece == 0)
                transfer.cancel();
        });
        QObject::connect(&transfer, &ScriptTransfer::sent, [&] {
            if (++sent == piece)
                transfer.cancel();
        });
        bench.host.RunScriptFile(bench.file(newer));
        bench.restWithUser();
        EXPECT_EQ(bench.runs, 1);
        EXPECT_NE(bench.panel(1), QStringLiteral("older"));
        EXPECT_NE(bench.panel(1), QStringLiteral("newer"));
        ASSERT_EQ(bench.messages.shown.size(), 1U);
        EXPECT_EQ(bench.messages.shown[0].text,
                  QStringLiteral("The script is not run. The sending of the script was cancelled."));
        expectNothingLeft(bench);
    }
}

TEST(ScriptRuns, RunGoesOutOnlyBehindEveryByteOfTheScript)
{
    // The link takes so many bytes and is gone.
    const QByteArray older = "panel \"older\"\n";
    const QByteArray newer = "panel \"newer\"\n" + QByteArray(2500, '#') + '\n';
    for (const qint64 room : {0, 1, 15, 16, 17, 1000, 1040, 1041, 2000, 2064, 2500, 2530}) {
        SCOPED_TRACE(room);
        ScriptBench bench;
        bench.connect();
        bench.host.RunScriptFile(bench.file(older));
        bench.restWithUser();
        ASSERT_EQ(bench.runs, 1);
        bench.window.panels[1].clear();
        bench.messages.shown.clear();
        bench.peer().setRoom(room);
        int rounds = 0;
        bench.window.onProcessEvents = [&] {
            bench.pump();
            if (++rounds == 8)
                bench.unplug();
        };
        bench.host.RunScriptFile(bench.file(newer));
        bench.restWithUser();
        EXPECT_EQ(bench.runs, 1);
        EXPECT_EQ(bench.panel(1), QStringLiteral("Disconnected"));
        expectNothingLeft(bench);
        bench.peer().setRoom(-1);
        bench.window.onProcessEvents = [&] { bench.pump(); };
        bench.connect();
        EXPECT_EQ(bench.runs, 1) << "what waited went over another link";
        EXPECT_FALSE(bench.instrumentRuns());
    }
}
