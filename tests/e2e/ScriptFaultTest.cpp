// SPDX-License-Identifier: GPL-3.0-or-later
// What a bad cable and a bad instrument can do to a running script: the run ends, told or recovered, and nothing is
// answered that was not asked.
#include "cli/instrument/ScriptRun.h"
#include "e2e/EndToEnd.h"

#include <QDir>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <set>

using namespace e2e;

namespace {

constexpr int kSeeds = 2;
/// Where a reply or a frame is lost the script stands still until it is stopped.
constexpr double kLimit = 4;

class ScriptFaultTest : public EndToEndTest, public ::testing::WithParamInterface<const char*>
{
protected:
    static int seeds() { return faultSeeds(kSeeds); }

    QString script()
    {
        QFile file(path(QStringLiteral("job.mgs")));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write("export options stamp off header on\n");
        for (const char* name : {"a", "b", "c"})
            file.write(QByteArray("new impedance graph \"N\"\nset points 20\nsweep impedance\nsave \"N\"\n"
                                  "export all pens to \"N\"\nclose graph\n")
                           .replace("N", name));
        return file.fileName();
    }

    struct Talk
    {
        int asked = 0; ///< frames that are to be answered
        int wentOn = 0, stopped = 0;
    };
    static Talk talkOf(const QString& log)
    {
        Talk talk;
        QFile file(log);
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        for (const QByteArray& line : file.readAll().split('\n')) {
            talk.wentOn += line.endsWith(" > \\x20") ? 1 : 0;
            talk.stopped += line.endsWith(" >  y\\r") ? 1 : 0;
        }
        const std::set<char> answered{'U', 'b', 'g', 'j', 'i', 'o', 'x', 'n', 'f', 'p'};
        for (const LoggedFrame& frame : loggedFrames(log))
            talk.asked += answered.contains(frame.code) ? 1 : 0;
        return talk;
    }

    void runThroughFault(const QString& fault, int seed)
    {
        const Simulator simulator(freshSerial(), faultOptions(fault, seed));
        ASSERT_TRUE(simulator.started());
        cli::RunOptions options;
        options.script = script();
        options.device = simulator.devicePath();
        options.answers = QStringList{QStringLiteral("ok")};
        options.plots = options.exports = m_folder.path();
        options.linkLog = path(QStringLiteral("link-%1.log").arg(seed));
        options.timeout = kLimit;
        QString results, problems;
        cli::Console console(QStringLiteral("marrowick"), cli::Console::into(results), cli::Console::into(problems),
                             false);
        QElapsedTimer time;
        time.start();
        const cli::ExitCode code = cli::ScriptRun(options, console).run();
        EXPECT_LT(time.elapsed(), 20'000) << problems.toStdString();
        const std::set<cli::ExitCode> told{cli::ExitCode::Done,    cli::ExitCode::NoInstrument, cli::ExitCode::Lost,
                                           cli::ExitCode::Stopped, cli::ExitCode::Refused,      cli::ExitCode::Bad};
        EXPECT_TRUE(told.contains(code)) << static_cast<int>(code) << problems.toStdString();
        EXPECT_TRUE(code == cli::ExitCode::Done || !problems.isEmpty());
        if (code == cli::ExitCode::Done) {
            for (const char* name : {"a.gzd", "b.gzd", "c.gzd", "a.txt", "b.txt", "c.txt"})
                EXPECT_TRUE(QFile::exists(path(QLatin1String(name)))) << name;
        }
        const Talk talk = talkOf(options.linkLog);
        EXPECT_LE(talk.wentOn, talk.asked);
        EXPECT_EQ(talk.stopped, 0);
    }
};

} // namespace

TEST_P(ScriptFaultTest, AScriptEndsToldOrRecoveredAndNothingIsAnsweredThatWasNotAsked)
{
    RecordProperty("seeds", seeds());
    for (int seed = 1; seed <= seeds() && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        runThroughFault(QLatin1String(GetParam()), seed);
    }
}

INSTANTIATE_TEST_SUITE_P(EachKind, ScriptFaultTest,
                         ::testing::Values("garbage", "lost", "split", "stall", "unplug", "flood", "wrong-length",
                                           "non-numeric", "garbage,lost,split,stall,flood,wrong-length,non-numeric"),
                         [](const auto& fault) {
                             std::string name = fault.param;
                             if (name.find(',') != std::string::npos)
                                 return std::string("AllTogether");
                             std::erase(name, '-');
                             return name;
                         });
