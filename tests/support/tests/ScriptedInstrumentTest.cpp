// SPDX-License-Identifier: GPL-3.0-or-later
// The second player of the instrument, held against the protocol page: what judges must be right itself.
#include "support/instrument/ScriptedInstrument.h"

#include "support/Pty.h"

#include <QFileInfo>

#include <gmock/gmock.h>

using namespace played;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::StartsWith;

namespace {

constexpr auto kPatience = 20s;

/// A host that counts frames.
class Host : public PtyHost
{
public:
    using PtyHost::PtyHost;

    std::vector<std::string> frames() const
    {
        std::vector<std::string> frames;
        for (std::size_t at = 0; at + 67 <= bytes.size(); at += 67)
            frames.push_back(bytes.substr(at, 67));
        return frames;
    }
    std::string codes() const
    {
        std::string codes;
        for (const std::string& frame : frames())
            codes += frame.front();
        return codes;
    }
    bool readCodes(const std::string& wanted)
    {
        return readUntil([&] { return codes().size() >= wanted.size(); }) && codes() == wanted;
    }
    bool readPast(char code)
    {
        return readUntil([&] { return codes().find(code) != std::string::npos; });
    }
};

const std::string kAnswer = "OVlllllllLMNABCJKPQRSstX";

class ScriptedInstrumentTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        if (HasFailure())
            std::fprintf(stderr, "%s", instrument.logText().c_str());
    }
    /// A sweep of five points whose settings are all said.
    static std::string fivePoints(const char* start)
    {
        return std::string("startfreq 1000\rendfreq 2000\rpoints 5\rsweepmode 0\rrepeat 0\rlinear 1\rphase 1\r"
                           "setpin 23\r") +
               start;
    }

    ScriptedInstrument instrument{QStringLiteral("S-1")};
    Host host{instrument.devicePath()};
};

} // namespace

TEST_F(ScriptedInstrumentTest, ItStandsInTheRegistryUntilItIsUnplugged)
{
    EXPECT_EQ(instrument.problem().toStdString(), "");
    EXPECT_EQ(QFileInfo(instrument.entryPath()).symLinkTarget(), instrument.devicePath());
    instrument.hangUp();
    EXPECT_FALSE(QFileInfo(instrument.entryPath()).isSymLink());
    EXPECT_TRUE(host.readUntil([this] { return host.lost(); }));
}

TEST_F(ScriptedInstrumentTest, AnEnquiryIsAnsweredInTheOrderOfThePage)
{
    host.write("enquire 1.28\r");
    EXPECT_TRUE(host.readCodes(kAnswer)) << host.codes();
    for (const std::string& frame : host.frames()) {
        EXPECT_EQ(frame[1], ':') << frame;
        EXPECT_EQ(frame.substr(65), "\r\n") << frame;
    }
    EXPECT_THAT(host.frames()[1], StartsWith("V:0 S-1 "));
}

TEST_F(ScriptedInstrumentTest, EveryCommandOfThePageHasItsAnswer)
{
    const std::vector<std::pair<std::string, std::string>> answers = {
        {"startfreq 1000", "s"},
        {"endfreq 2000", "s"},
        {"idlefreq -1", "K"},
        {"spotfreq 1000", "B"},
        {"points 5", "P"},
        {"atten 1", "A"},
        {"repeat 0", "P"},
        {"sweepmode 0", "K"},
        {"period 0", "S"},
        {"phase 1", "C"},
        {"samples 2", "S"},
        {"linear 1", "S"},
        {"setpin 23", "J"},
        {"setpin23", "J"},
        {"amptest", "DHHHHHEY"},
        {"imptest", "DFFFFFEY"},
        {"y", "E"},
        {"x", "E"},
        {"enquire 1.28", kAnswer},
        {"run", "k"},
        {"setvref 3 0", "C"},
        {"setvdut 4 0", "C"},
        {"setfreqcomp 1000001", "t"},
        {"setserial S-2", "V"},
        {"setserial .x", "TV"},
        {"calon 1", "R"},
        {"loopback 0", "J"},
        {"zerocal", "B"},
        {"default", "ACKPQSsJ"},
        {"save", "r"},
        {"nonsense 3", ""},
    };
    for (const auto& [command, codes] : answers) {
        SCOPED_TRACE(command);
        host.bytes.clear();
        host.write(command + '\r');
        EXPECT_TRUE(host.readCodes(codes)) << host.codes();
        // The answer to a stop tells that nothing else is to come.
        host.write("y\r");
        EXPECT_TRUE(host.readCodes(codes + (command == "run" ? "kE" : "E"))) << host.codes();
    }
    EXPECT_EQ(instrument.commands().size(), 2 * answers.size());
}

TEST_F(ScriptedInstrumentTest, ASweepIsTheClosedFormAtTheTextbookFrequenciesWithBothEndsMet)
{
    host.write(fivePoints("imptest\r"));
    ASSERT_TRUE(host.readPast('Y'));
    ASSERT_EQ(instrument.sweeps().size(), 1U);
    const Sweep sweep = instrument.sweeps().front();
    EXPECT_EQ(sweep.end, Sweep::End::Complete);
    EXPECT_FALSE(sweep.amplitude);
    EXPECT_EQ(sweep.settings.pin, 2);
    EXPECT_EQ(sweep.settings.penOfPin, 3);
    ASSERT_EQ(sweep.points.size(), 5U);
    const double frequencies[] = {1000, 1250, 1500, 1750, 2000};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_DOUBLE_EQ(sweep.points[i].hertz, frequencies[i]);
        const double reactance = 2 * 3.14159265358979323846 * frequencies[i] * 0.01 -
                                 1 / (2 * 3.14159265358979323846 * frequencies[i] * 1.5831e-9);
        EXPECT_NEAR(sweep.points[i].value.size, std::hypot(80, reactance), 1e-6);
    }
    // And the frame says so: columns 5 to 17 and 19 to 31, the number in 61 to 65.
    const auto frames = host.frames();
    const auto first = std::find_if(frames.begin(), frames.end(), [](const auto& frame) { return frame[0] == 'F'; });
    EXPECT_EQ(std::stod(first->substr(4, 13)), 1000);
    EXPECT_NEAR(std::stod(first->substr(18, 13)), sweep.points[0].value.size, 1e-3);
    EXPECT_EQ(first->substr(46, 13), "           -1") << "a capacitor below resonance";
    EXPECT_EQ(first->substr(60, 5), "    0");
}

TEST_F(ScriptedInstrumentTest, ModesTurnTheSweepAndRepeatGoesOnUntilItIsTakenBack)
{
    host.write(fivePoints("sweepmode 1\rimptest\r"));
    ASSERT_TRUE(host.readPast('Y'));
    EXPECT_EQ(instrument.sweeps().back().points.front().hertz, 2000);
    host.bytes.clear();
    host.write("sweepmode 2\rrepeat 1\rimptest\r");
    ASSERT_TRUE(host.readUntil([this] { return instrument.sweeps().size() > 4; }));
    host.write("repeat 0\r");
    ASSERT_TRUE(host.readUntil([this] { return instrument.sweeps().back().end == Sweep::End::Complete; }));
    const std::vector<Sweep> sweeps = instrument.sweeps();
    EXPECT_EQ(sweeps[1].points.front().hertz, 1000);
    EXPECT_EQ(sweeps[2].points.front().hertz, 2000);
    EXPECT_EQ(sweeps[3].points.front().hertz, 1000);
}

TEST_F(ScriptedInstrumentTest, AStopAndAnotherStartEndASweepWithEAlone)
{
    Manners slow;
    slow.pointTime = 20ms;
    instrument.setManners(slow);
    host.write(fivePoints("imptest\r"));
    ASSERT_TRUE(host.readPast('F'));
    host.write("amptest\r");
    ASSERT_TRUE(host.readPast('H'));
    host.write("y\r");
    ASSERT_TRUE(host.readUntil([this] { return instrument.sweeps().back().end == Sweep::End::Stopped; }));
    EXPECT_EQ(instrument.sweeps().front().end, Sweep::End::Stopped);
    EXPECT_EQ(instrument.framesSent('Y'), 0);
}

TEST_F(ScriptedInstrumentTest, CalibrationAndDiagnosisAreRunsOfTheirOwnLength)
{
    host.write("repeat 0\rcalibrate CAL-11223324122026\r");
    ASSERT_TRUE(host.readPast('R'));
    EXPECT_EQ(instrument.framesSent('H'), 512);
    host.write("phasecal\r");
    ASSERT_TRUE(host.readUntil([this] { return instrument.framesSent('Y') == 2; }));
    EXPECT_EQ(instrument.framesSent('H'), 512 + 256);
    host.write("diagnose\r");
    ASSERT_TRUE(host.readUntil([this] { return instrument.framesSent('Y') == 4; }));
    EXPECT_EQ(instrument.framesSent('H'), 512 + 256 + 2 * 1007);
    EXPECT_TRUE(instrument.sweeps().empty()) << "none of them is a test";
}

TEST_F(ScriptedInstrumentTest, AScriptIsTakenByteByByteAndItsBlanksAreAcknowledgements)
{
    host.write("loadscript 9\ra\rb y\rc\r\nrun\r");
    ASSERT_TRUE(host.readPast('k'));
    EXPECT_EQ(instrument.script(), "a\rb y\rc\r\n");
    instrument.send(textFrame('f', '0', "Go on?"));
    ASSERT_TRUE(host.readPast('f'));
    host.write(" ");
    ASSERT_TRUE(host.readUntil([this] { return instrument.count(" ") == 1; }));
    host.write(" y\r");
    ASSERT_TRUE(host.readPast('E'));
    EXPECT_THAT(instrument.commands(), ElementsAre("loadscript 9", "run", " ", " y"));
}

TEST_F(ScriptedInstrumentTest, ACancelledTransferIsGivenUp)
{
    host.write("loadscript 100\rabc");
    ASSERT_TRUE(host.readPast('k'));
    host.write("y\r");
    EXPECT_TRUE(host.readPast('E'));
}

TEST_F(ScriptedInstrumentTest, AHostThatGoesEndsTheSweepAndLeavesTheSettings)
{
    Manners slow;
    slow.pointTime = 50ms;
    instrument.setManners(slow);
    host.write(fivePoints("imptest\r"));
    ASSERT_TRUE(host.readPast('F'));
    host.close();
    Host next(instrument.devicePath());
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (instrument.sweeps().back().end == Sweep::End::Running && std::chrono::steady_clock::now() < end) {
        next.close();
        std::this_thread::sleep_for(5ms);
    }
    EXPECT_EQ(instrument.sweeps().back().end, Sweep::End::HostGone);
    EXPECT_EQ(instrument.settings().points, 5);
}

TEST_F(ScriptedInstrumentTest, ALateAnswerHoldsBackWhatComesBehindIt)
{
    Manners late;
    late.enquiryDelays = {0ms, 150ms};
    instrument.setManners(late);
    host.write("enquire 1.28\renquire 1.28\rpoints 77\r");
    ASSERT_TRUE(host.readCodes(kAnswer + kAnswer + 'P'));
    const std::vector<LogEntry> log = instrument.log();
    std::vector<std::chrono::microseconds> complete;
    for (const LogEntry& entry : log) {
        if (!entry.received && entry.text.front() == 'X')
            complete.push_back(entry.at);
    }
    ASSERT_EQ(complete.size(), 2U);
    EXPECT_GE(complete[1] - complete[0], 140ms);
    EXPECT_EQ(instrument.settings().points, 77);
}

TEST_F(ScriptedInstrumentTest, AnswersComeTwiceBackwardWithoutSomeFramesOrNotAtAll)
{
    Manners manners;
    manners.copies = 2;
    instrument.setManners(manners);
    host.write("enquire 1.28\r");
    EXPECT_TRUE(host.readCodes(kAnswer + kAnswer));

    host.bytes.clear();
    manners = {};
    manners.order = Manners::Order::Backward;
    manners.leftOut = "lV";
    instrument.setManners(manners);
    host.write("enquire 1.28\r");
    EXPECT_TRUE(host.readCodes("XtsSRQPKJCBANMLO")) << host.codes();

    host.bytes.clear();
    manners = {};
    manners.silent = true;
    instrument.setManners(manners);
    host.write("enquire 1.28\rpoints 12\r");
    ASSERT_TRUE(host.readUntil([this] { return instrument.settings().points == 12; }));
    instrument.send("hello");
    EXPECT_TRUE(host.readUntil([this] { return host.bytes == "hello"; })) << host.bytes;
}

TEST_F(ScriptedInstrumentTest, PiecesCutTheStreamWhereverFramesEnd)
{
    for (const std::size_t piece : {1, 7, 64}) {
        SCOPED_TRACE(piece);
        host.bytes.clear();
        host.reads.clear();
        Manners manners;
        manners.piece = piece;
        manners.pause = 300us;
        instrument.setManners(manners);
        host.write("enquire 1.28\r");
        ASSERT_TRUE(host.readCodes(kAnswer));
        EXPECT_GT(std::count(host.reads.begin(), host.reads.end(), piece), 5) << "some reads get one piece alone";
    }
}

TEST_F(ScriptedInstrumentTest, FramesOfTheTestsChoiceAndAHangUpComeAtTheMomentItNames)
{
    instrument.afterFrame('F', 2, [this] { instrument.send(textFrame('r', '0', "now")); });
    instrument.afterFrame('F', 4, [this] { instrument.hangUp(); });
    host.write(fivePoints("imptest\r"));
    EXPECT_TRUE(host.readUntil([this] { return host.lost(); }));
    // What the host had not read yet is lost with the cable, so the instrument's own log is asked.
    std::string sent;
    for (const LogEntry& entry : instrument.log())
        sent += entry.received ? "" : entry.text.substr(0, 1);
    EXPECT_THAT(sent, ::testing::EndsWith("DFFrFF"));
}
