// SPDX-License-Identifier: GPL-3.0-or-later
// The program as it ships, on a real pseudo-terminal.
#include "controls/linklog/LinkLog.h"
#include "sim/Instrument.h"
#include "tests/sim/PtyClient.h"
#include "tests/sim/Simulator.h"

#include <QDir>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QTemporaryDir>

TEST(Program, AnswersAnEnquiryOverTheDeviceThatItsEntryPointsTo)
{
    Simulator simulator({"--idle-levels", "0"});
    EXPECT_TRUE(
        simulator.introduction.startsWith("T46 with serial number T46-1 measures: 40 kHz Langevin transducer."));
    const QString device = QFileInfo(QFile::decodeName(simulator.entry)).symLinkTarget();
    EXPECT_TRUE(device.startsWith("/dev/pts/")) << device.toStdString();
    PtyClient host(simulator.entry);
    host.write("enquire 1.28\r");
    ASSERT_TRUE(host.readUntilFrame('X'));
    EXPECT_EQ(host.codes(), "OVlllllllLMNABCJKPQRSstX");
    EXPECT_EQ(host.of('V')[0].text, "T46-1");
    EXPECT_EQ(host.dropped, 0);
}

TEST(Program, EveryCommandIsAnsweredOverTheDevice)
{
    Simulator simulator({"--fast", "--idle-levels", "0"});
    PtyClient host(simulator.entry);
    for (const QString& word : sim::Instrument::commandWords()) {
        host.clear();
        host.write((word == "loadscript" ? "loadscript 3\rabc" : word.toStdString()) + "\r");
        EXPECT_TRUE(host.readUntil([&host] { return !host.frames.empty(); })) << word.toStdString();
        // Ends whatever that began, and with it everything that belongs to this command.
        host.write("y\rsetfreqcomp x\r");
        EXPECT_TRUE(host.readUntilFrames('t', word == "setfreqcomp" || word == "enquire" ? 2 : 1))
            << word.toStdString();
    }
}

TEST(Program, ASweepOf1024PointsOfEachTypeArrivesWhole)
{
    Simulator simulator({"--fast", "--idle-levels", "0"});
    PtyClient host(simulator.entry);
    host.write("startfreq 39000\rendfreq 43000\rpoints 1024\rsweepmode 0\r");
    for (const char* test : {"imptest", "amptest"}) {
        const char code = test[0] == 'i' ? 'F' : 'H';
        host.clear();
        host.write("y\r" + std::string(test) + "\r");
        ASSERT_TRUE(host.readUntilFrame('Y'));
        const std::vector<ReadFrame> points = host.of(code);
        ASSERT_EQ(points.size(), 1024u);
        std::size_t extreme = 0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            ASSERT_EQ(points[i].i, static_cast<int>(i));
            const bool better = code == 'F' ? points[i].n2 < points[extreme].n2 : points[i].n2 > points[extreme].n2;
            if (better)
                extreme = i;
        }
        // Series resonance of the shipped transducer.
        EXPECT_NEAR(points[extreme].n1, 40000, 10);
    }
    EXPECT_EQ(host.dropped, 0);
}

TEST(Program, AStopEndsARepeatedSweepWithEAlone)
{
    Simulator simulator({"--fast", "--idle-levels", "0"});
    PtyClient host(simulator.entry);
    host.write("points 50\rrepeat 1\rimptest\r");
    ASSERT_TRUE(host.readUntilFrames('Y', 20));
    host.write("y\rsetfreqcomp x\r");
    ASSERT_TRUE(host.readUntilFrames('t', 1));
    EXPECT_EQ(host.of('E').size(), host.of('Y').size() + 1);
    EXPECT_EQ(host.of('E').back().n4, 0);
    EXPECT_EQ(host.frames[host.frames.size() - 2].code, 'E');
}

TEST(Program, TheEntryGoesWithTheProgramHoweverItIsAskedToEnd)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        Simulator simulator({});
        EXPECT_TRUE(entryExists(simulator.entry));
        EXPECT_EQ(simulator.end(signal), 0);
        EXPECT_FALSE(entryExists(simulator.entry));
    }
}

TEST(Program, TheEntryGoesInMidSweepAndWhileUnpluggedToo)
{
    for (const char* fault : {"split", "unplug:5"}) {
        Simulator simulator({"--fast", "--fault", fault});
        PtyClient host(simulator.entry);
        host.write("points 1024\rrepeat 1\rimptest\r");
        ASSERT_TRUE(host.readUntil([&] { return fault[0] == 'u' ? host.lost : !host.of('F').empty(); })) << fault;
        EXPECT_EQ(simulator.end(SIGHUP), 0);
        EXPECT_FALSE(entryExists(simulator.entry)) << fault;
    }
}

TEST(Program, StartedToOutliveItsTerminalItDoes)
{
    Simulator simulator({}, "T46-1", [] { std::signal(SIGHUP, SIG_IGN); });
    ::kill(static_cast<pid_t>(simulator.process.processId()), SIGHUP);
    PtyClient host(simulator.entry);
    host.write("enquire 1.28\r");
    EXPECT_TRUE(host.readUntilFrame('X'));
}

TEST(Program, AnEntryLeftByACrashIsReplacedAndALivingOneRefused)
{
    {
        Simulator crashed({});
        ::kill(static_cast<pid_t>(crashed.process.processId()), SIGKILL);
        crashed.process.waitForFinished(30000);
        EXPECT_TRUE(entryExists(crashed.entry)) << "nobody was there to remove it";
        Simulator next({});
        PtyClient host(next.entry);
        host.write("enquire 1.28\r");
        EXPECT_TRUE(host.readUntilFrame('X'));
        expectRefusal(
            {"--serial", "T46-1"}, 1,
            "An instrument with the serial number \"T46-1\" is already running. Choose another with --serial.");
        EXPECT_TRUE(entryExists(next.entry));
        crashed.process.start("true", QStringList());
        crashed.process.waitForFinished(30000);
    }
}

TEST(Program, SeveralRunSideBySide)
{
    Simulator first({"--part", "resistor1k", "--fast"}, "T46-1");
    Simulator second({"--part", "fork32k", "--model", "DT46", "--fast"}, "DT46-1");
    PtyClient firstHost(first.entry), secondHost(second.entry);
    for (PtyClient* host : {&firstHost, &secondHost})
        host->write("startfreq 32000\rendfreq 33000\rpoints 11\rimptest\r");
    ASSERT_TRUE(firstHost.readUntilFrame('Y'));
    ASSERT_TRUE(secondHost.readUntilFrame('Y'));
    EXPECT_NEAR(firstHost.of('F').at(5).n2, 1000, 2);
    EXPECT_GT(secondHost.of('F').at(0).n2, 100000);
}

TEST(Program, WithoutASerialNumberItTakesTheFirstFreeOne)
{
    Simulator taken({}, "T46-0001");
    QProcess process;
    process.start(kProgram, {"--no-memory"});
    QByteArray introduction;
    while (!introduction.contains('\n') && process.waitForReadyRead(30000))
        introduction += process.readAllStandardOutput();
    EXPECT_TRUE(introduction.startsWith("T46 with serial number T46-0002")) << introduction.constData();
    process.terminate();
    EXPECT_TRUE(process.waitForFinished(30000));
}

TEST(Program, AHostThatLeavesInMidSweepIsFollowedByAnother)
{
    Simulator simulator({"--rate", "2000", "--idle-levels", "0"});
    for (int i = 0; i < 20; ++i) {
        PtyClient host(simulator.entry);
        host.write("enquire 1.28\rpoints 1000\rimptest\r");
        ASSERT_TRUE(host.readUntilFrames('F', static_cast<std::size_t>(1 + 5 * i))) << i;
        EXPECT_EQ(host.frames.front().code, 'O') << "nothing of what the last host did not read";
        EXPECT_EQ(host.dropped, 0);
        host.close();
        simulator.waitForRounds(3);
    }
}

TEST(Program, ACommandOfAHostThatIsGoneIsNotAnsweredToTheNext)
{
    Simulator simulator({"--idle-levels", "0"});
    for (int i = 0; i < 10; ++i) {
        PtyClient(simulator.entry).write("amptest\r");
        simulator.waitForRounds(3);
        PtyClient host(simulator.entry);
        host.write("enquire 1.28\r");
        ASSERT_TRUE(host.readUntilFrame('X'));
        EXPECT_EQ(host.codes(), "OVlllllllLMNABCJKPQRSstX");
        EXPECT_EQ(host.dropped, 0);
    }
}

TEST(Program, WithoutAHostItDoesNotKeepTheProcessorBusy)
{
    Simulator simulator({"--fast"});
    {
        PtyClient host(simulator.entry);
        host.write("enquire 1.28\r");
        ASSERT_TRUE(host.readUntilFrame('X'));
    }
    const long before = simulator.ticks();
    ::poll(nullptr, 0, 1000);
    EXPECT_LT(simulator.ticks() - before, ::sysconf(_SC_CLK_TCK) / 4);
}

TEST(Program, AHostThatDoesNotReadStopsTheMeasuringNotTheMachine)
{
    Simulator simulator({"--fast", "--idle-levels", "0"});
    PtyClient host(simulator.entry);
    host.write("points 1024\rrepeat 1\rimptest\r");
    ASSERT_TRUE(host.readUntilFrames('F', 1));
    const long before = simulator.ticks();
    ::poll(nullptr, 0, 1000);
    EXPECT_LT(simulator.ticks() - before, ::sysconf(_SC_CLK_TCK) / 4);
    host.write("y\rsetfreqcomp x\r");
    ASSERT_TRUE(host.readUntilFrames('t', 1)) << "what waited comes, and then the answer";
    EXPECT_EQ(host.dropped, 0);
}

TEST(Program, AnUnpluggedInstrumentLosesItsEntryAndComesBack)
{
    Simulator simulator({"--fast", "--fault", "unplug:10"});
    PtyClient host(simulator.entry);
    host.write("points 1000\rimptest\r");
    EXPECT_FALSE(host.readUntilFrame('Y'));
    EXPECT_TRUE(host.lost);
    EXPECT_LT(host.of('F').size(), 20u);
    host.close();
    ASSERT_TRUE(simulator.waitForEntry(true));
    PtyClient again(simulator.entry);
    again.write("enquire 1.28\r");
    EXPECT_TRUE(again.readUntilFrame('X'));
}

TEST(Program, EveryFaultKindLeavesAnInstrumentThatStillObeysTheStop)
{
    for (const char* fault : {"garbage", "lost", "split", "stall", "flood", "wrong-length", "non-numeric",
                              "garbage,lost,split,flood,wrong-length,non-numeric"}) {
        Simulator simulator({"--fast", "--idle-levels", "0", "--fault", fault});
        PtyClient host(simulator.entry);
        host.write("points 256\rimptest\r");
        EXPECT_TRUE(host.readUntilFrames('F', 100)) << fault;
        // The answer to one stop may be among the victims, the answers to ten are not.
        host.clear();
        for (int i = 0; i < 10; ++i)
            host.write("y\r");
        EXPECT_TRUE(host.readUntilFrames('E', 1)) << fault;
    }
}

TEST(Program, ATableIsMeasuredAsItStands)
{
    QTemporaryDir folder;
    writeFile(folder.filePath("part.csv"), "frequency;modulus;phase\n1000;50,5;-10\n100000;50,5;-10\n");
    Simulator simulator({"--replay", folder.filePath("part.csv"), "--fast"});
    EXPECT_TRUE(simulator.introduction.contains("measures: part.csv, from 1000 to 100000 Hz."));
    PtyClient host(simulator.entry);
    host.write("startfreq 1000\rendfreq 100000\rpoints 20\rimptest\r");
    ASSERT_TRUE(host.readUntilFrame('Y'));
    for (const ReadFrame& point : host.of('F')) {
        EXPECT_NEAR(point.n2, 50.5, 1e-9);
        EXPECT_NEAR(point.n3 * point.n4, -10, 1e-9);
    }
}

TEST(Program, ARangeBeyondTheTableIsToldOnStandardError)
{
    QTemporaryDir folder;
    writeFile(folder.filePath("part.csv"), "1000,50,-10\n100000,50,-10\n");
    Simulator simulator({"--replay", folder.filePath("part.csv"), "--fast", "--idle-levels", "0"});
    PtyClient host(simulator.entry);
    host.write("startfreq 1000\rendfreq 100001\rpoints 20\rimptest\r");
    ASSERT_TRUE(host.readUntilFrame('Y'));
    EXPECT_TRUE(simulator.hasSaid("marrowick-sim: The impedance sweep from 1000 to 100001 Hz leaves the table"))
        << simulator.said.constData();
    EXPECT_TRUE(host.of('T').empty());
}

TEST(Program, TheSameSeedAndCommandsGiveTheSameBytesWithAllFaultsTogether)
{
    const auto bytesOf = [](const char* seed) {
        Simulator simulator({"--seed", seed, "--fast", "--idle-levels", "0", "--fault",
                             "garbage:10,lost:20,split,stall:100,flood:200,wrong-length:20,non-numeric:20"});
        PtyClient host(simulator.entry);
        host.write("points 300\rstartfreq 20000\rendfreq 60000\rimptest\r");
        EXPECT_TRUE(host.readUntil([&host] { return host.received.size() >= 18000; }));
        return host.received.substr(0, 18000);
    };
    const std::string once = bytesOf("77");
    EXPECT_TRUE(once == bytesOf("77"));
    EXPECT_FALSE(once == bytesOf("78"));
}

TEST(Program, AnInstrumentInAnotherSocketHasItsSerialNumberOnAnotherTerminal)
{
    const auto terminal = [](const Simulator& simulator) {
        return QFileInfo(QFile::decodeName(simulator.entry)).symLinkTarget();
    };
    QString first;
    {
        Simulator simulator({});
        first = terminal(simulator);
    }
    Simulator simulator({"--not-on", first});
    EXPECT_NE(terminal(simulator), first);
    PtyClient host(simulator.entry);
    host.write("enquire 1.28\r");
    ASSERT_TRUE(host.readUntilFrame('X'));
    EXPECT_EQ(host.of('V')[0].text, "T46-1");
}

TEST(Program, WithoutARuntimeFolderItRefusesAndMakesNoneInTheRoot)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_RUNTIME_DIR", "/nonexistent/run");
    environment.insert("TMPDIR", "/nonexistent/tmp");
    process.setProcessEnvironment(environment);
    process.start(kProgram, {"--no-memory"});
    ASSERT_TRUE(process.waitForFinished(30000));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardError().contains("marrowick-sim: There is no runtime folder"));
    EXPECT_EQ(QDir::root().entryList({"marrowick", "runtime-*"}, QDir::AllEntries), QStringList());
}

TEST(Program, ALinkLogIsPlayedUnderTheRecordedSerialNumber)
{
    QTemporaryDir folder;
    const sim::Frame serial = sim::textFrame('V', 0, "T46-log");
    const std::vector<linklog::Entry> entries{
        {10, linklog::Entry::ToInstrument, "enquire 1.28\r"},
        {20, linklog::Entry::FromInstrument, QByteArray(serial.data(), static_cast<qsizetype>(serial.size()))},
        {30, linklog::Entry::FromInstrument, "X:too short\r\n"},
    };
    QByteArray text = QByteArray(linklog::kHeader) + "\n";
    for (const linklog::Entry& entry : entries)
        text += linklog::lineOf(entry) + "\n";
    writeFile(folder.filePath("link.log"), text);
    QProcess process;
    process.start(kProgram, {"--replay", folder.filePath("link.log"), "--fast"});
    ASSERT_TRUE(process.waitForReadyRead(30000));
    {
        PtyClient host(entryOf("T46-log"));
        host.write("enquire 1.28\r");
        EXPECT_TRUE(host.readUntil([&host] { return host.dropped == 1; }));
        EXPECT_EQ(host.codes(), "V");
    }
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(30000));
}

TEST(Program, AScriptActsOutItsFrames)
{
    QTemporaryDir folder;
    writeFile(folder.filePath("demo.txt"), "U 1 Transducer\n> points 16\nsweep impedance\nb 0 plot\n");
    Simulator simulator({"--script-frames", folder.filePath("demo.txt"), "--fast", "--idle-levels", "0"});
    PtyClient host(simulator.entry);
    host.write("loadscript 4\rtextrun\r");
    ASSERT_TRUE(host.readUntilFrame('U'));
    host.write(" ");
    ASSERT_TRUE(host.readUntilFrame('b'));
    EXPECT_EQ(host.of('F').size(), 16u);
    host.write(" ");
    ASSERT_TRUE(host.readUntilFrames('k', 2));
    EXPECT_EQ(host.of('k')[1].field, '0');
}

TEST(Program, TheStatusTellsWhoIsThere)
{
    Simulator simulator({"--status"});
    EXPECT_TRUE(simulator.hasSaid("T46-1: waiting for a host\n"));
    PtyClient host(simulator.entry);
    EXPECT_TRUE(simulator.hasSaid("T46-1: host connected\n")) << simulator.said.constData();
}

TEST(Program, MistakesAreToldAndEndIt)
{
    QTemporaryDir folder;
    writeFile(folder.filePath("bad.json"), "{\"name\": \"x\", \"colour\": \"red\"}");
    writeFile(folder.filePath("bad.csv"), "1,2,3\nx\n");
    writeFile(folder.filePath("bad.txt"), "dance\n");
    expectRefusal({"--model", "T47"}, 2, "The model is T46 or DT46, not \"T47\".");
    expectRefusal({"--part", folder.filePath("bad.json")}, 2,
                  "Part file \"" + folder.filePath("bad.json") + "\": The entry \"colour\" of the part is not known.");
    expectRefusal({"--replay", folder.filePath("bad.csv")}, 2,
                  "\"" + folder.filePath("bad.csv") +
                      "\" cannot be replayed: Line 2 of the table lacks one of three numbers: frequency, "
                      "modulus and phase.");
    expectRefusal({"--script-frames", folder.filePath("bad.txt")}, 2,
                  "\"" + folder.filePath("bad.txt") +
                      "\": Line 1 of the script frames is neither a frame, a command (> ...), a sweep nor a wait.");
}

TEST(Program, HelpVersionAndPartsNeedNoInstrument)
{
    for (const auto& [option, text] : {std::pair{"--help", "Usage: marrowick-sim"},
                                       {"--version", "marrowick-sim "},
                                       {"--list-parts", "langevin40k   40 kHz Langevin transducer"}}) {
        QProcess process;
        process.start(kProgram, {QLatin1String(option)});
        ASSERT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitCode(), 0);
        EXPECT_TRUE(process.readAllStandardOutput().contains(text)) << option;
    }
}
