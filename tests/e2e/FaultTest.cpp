// SPDX-License-Identifier: GPL-3.0-or-later
// What a bad cable and a bad instrument can do to a sweep: it ends in viewing, and no point is stored that was not
// sent.
#include "cli/Console.h"
#include "cli/instrument/Session.h"
#include "e2e/EndToEnd.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cmath>
#include <map>

using namespace e2e;

namespace {

constexpr int kPoints = 256;
constexpr double kFrom = 35000, kTo = 45000;
constexpr int kSeeds = 6;
/// Nothing from the instrument for that long: it has nothing left to say. Longer than any stall it plays.
constexpr int kSilence = 2000;

class FaultTest : public EndToEndTest, public ::testing::WithParamInterface<const char*>
{
protected:
    static int seeds() { return faultSeeds(kSeeds); }

    /// Runs events until the condition holds or the instrument has been silent for a while.
    static bool waitWhileHeard(cli::Session& session, const std::function<bool()>& condition)
    {
        QElapsedTimer silence;
        silence.start();
        const auto heard = QObject::connect(&session.device(), &KorvaLink::DataReceived, [&] { silence.start(); });
        const bool held = waitFor([&] { return condition() || silence.elapsed() > kSilence; }) && condition();
        QObject::disconnect(heard);
        return held;
    }

    static void sweepThroughFault(const QString& fault, int seed, const QString& log)
    {
        const Simulator simulator(freshSerial(), faultOptions(fault, seed));
        ASSERT_TRUE(simulator.started());
        QString results, problems;
        cli::Console console(QStringLiteral("marrowick"), cli::Console::into(results), cli::Console::into(problems),
                             false);
        cli::Session session(console);
        ASSERT_TRUE(session.device().SetLogFile(log));
        ASSERT_TRUE(session.open(simulator.serial()));
        // The complete state may be lost on this line; the test can be started all the same.
        waitWhileHeard(session, [&] { return session.deviceModule().answers().complete(); });
        session.mirror().dblStartFrequency = kFrom;
        session.mirror().dblEndFrequency = kTo;
        session.mirror().iNumPoints = kPoints;
        session.mirror().iSweepMode = 0;
        session.mirror().bfRepeat = false;
        session.deviceModule().DeviceSendSettings();
        PenDocument& document = session.newDocument(PenDocument::Impedance);

        bool plotted = false;
        const auto listening = QObject::connect(&session.deviceModule().events(), &InstrumentEvents::plottingChanged,
                                                [&plotted](bool plotting) { plotted = plotted || plotting; });
        session.testRun().mnuTestStart_Click();
        const auto viewing = [&] { return plotted && !session.state().gbfPlotting; };
        waitWhileHeard(session, viewing);
        // The report of the end may be lost too; then it is for the user to stop, once or more often.
        for (int attempt = 0; attempt < 50 && session.state().gbfPlotting; ++attempt) {
            ASSERT_TRUE(session.device().Connected()) << "a lost link is the end of plotting";
            session.testRun().mnuTestStopTest_Click();
            waitFor([&] { return !session.state().gbfPlotting; }, 200);
        }
        EXPECT_FALSE(session.state().gbfPlotting) << problems.toStdString();
        QObject::disconnect(listening);
        session.device().Close();
        (void)session.device().SetLogFile({});

        expectOnlySentPoints(document, log);
        expectAskedFrequencies(log);
    }

    /// Whatever arrived of the sweep belongs to the one that was asked for: a point stands at its place in the range.
    static void expectAskedFrequencies(const QString& log)
    {
        for (const LoggedFrame& frame : pointsOfLastTest(log)) {
            SCOPED_TRACE(frame.point);
            if (!frame.whole)
                continue; // spoilt on the line, so it says nothing of what was swept
            const double asked = kFrom * std::pow(kTo / kFrom, double(frame.point) / (kPoints - 1));
            ASSERT_NEAR(frame.n1, asked, 1e-6 * asked);
        }
    }

    static void expectOnlySentPoints(const PenDocument& document, const QString& log)
    {
        std::map<int, LoggedFrame> sent;
        for (const LoggedFrame& frame : pointsOfLastTest(log))
            sent[frame.point] = frame;
        const GraphModel& graph = document.peGraph();
        for (int i = 0; i < graph.Points(); ++i) {
            if (graph.YData(0, i) == graph::kNullValue)
                continue;
            SCOPED_TRACE(i);
            const auto found = sent.find(i);
            ASSERT_NE(found, sent.end()) << "was never sent";
            const LoggedFrame& frame = found->second;
            ASSERT_EQ(graph.XData(0, i), static_cast<float>(frame.n1));
            ASSERT_EQ(graph.YData(0, i), static_cast<float>(frame.n2));
            ASSERT_EQ(graph.YData(20, i), static_cast<float>(-frame.n3));
            ASSERT_EQ(graph.YData(30, i), static_cast<float>(frame.n3 * frame.n4));
        }
    }
};

} // namespace

TEST_P(FaultTest, ASweepEndsInViewingAndStoresOnlyWhatWasSent)
{
    RecordProperty("seeds", seeds());
    for (int seed = 1; seed <= seeds(); ++seed) {
        SCOPED_TRACE(seed);
        sweepThroughFault(QLatin1String(GetParam()), seed, path(QStringLiteral("link-%1.log").arg(seed)));
        if (HasFailure())
            break;
    }
}

INSTANTIATE_TEST_SUITE_P(EachKind, FaultTest,
                         ::testing::Values("garbage", "lost", "split", "stall", "unplug", "flood", "wrong-length",
                                           "non-numeric", "garbage,lost,split,stall,flood,wrong-length,non-numeric"),
                         [](const auto& fault) {
                             std::string name = fault.param;
                             if (name.find(',') != std::string::npos)
                                 return std::string("AllTogether");
                             std::erase(name, '-');
                             return name;
                         });
