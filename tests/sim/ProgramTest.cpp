// SPDX-License-Identifier: GPL-3.0-or-later
// The program as it ships, on a real pseudo-terminal.
#include "controls/linklog/LinkLog.h"
#include "tests/sim/PtyClient.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <sys/stat.h>

namespace {

const QString kProgram = QStringLiteral(MG_PROGRAM_DIR "/marrowick-sim");

QString devicesFolder()
{
    return qEnvironmentVariable("XDG_RUNTIME_DIR") + "/marrowick/devices";
}

QByteArray entryOf(const char* serial)
{
    return QFile::encodeName(devicesFolder()) + '/' + serial;
}

bool entryExists(const QByteArray& path)
{
    struct stat link
    {};
    return ::lstat(path.constData(), &link) == 0;
}

/// A running simulator; ended and waited for when it goes out of scope.
class Simulator
{
public:
    explicit Simulator(QStringList arguments, const QByteArray& serial = "T46-1")
        : entry(entryOf(serial.constData()))
    {
        if (!arguments.contains("--memory"))
            arguments.append("--no-memory");
        process.start(kProgram, QStringList{"--serial", QString::fromLatin1(serial)} + arguments);
        while (!introduction.contains("Ctrl+C ends it.") && process.waitForReadyRead(30000))
            introduction += process.readAllStandardOutput();
        EXPECT_TRUE(introduction.contains("Ctrl+C ends it.")) << process.readAllStandardError().constData();
    }
    ~Simulator()
    {
        if (process.state() != QProcess::NotRunning) {
            EXPECT_EQ(end(SIGTERM), 0);
        }
    }

    int end(int signal)
    {
        ::kill(static_cast<pid_t>(process.processId()), signal);
        EXPECT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return process.exitCode();
    }
    /// Waits until the entry stands or is gone.
    bool waitForEntry(bool present) const
    {
        for (int i = 0; i < 3000 && entryExists(entry) != present; ++i)
            ::poll(nullptr, 0, 10);
        return entryExists(entry) == present;
    }
    /// Waits until it has gone to sleep that many times, having looked at its port in between.
    void waitForRounds(long rounds) const
    {
        const auto sleeps = [this] {
            QFile file(QString("/proc/%1/status").arg(process.processId()));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            const QByteArray text = file.readAll();
            const QByteArray key = "\nvoluntary_ctxt_switches:";
            const qsizetype at = text.indexOf(key) + key.size();
            return text.mid(at, text.indexOf('\n', at) - at).trimmed().toLong();
        };
        const long before = sleeps();
        for (int i = 0; i < 3000 && sleeps() < before + rounds; ++i)
            ::poll(nullptr, 0, 10);
        EXPECT_GE(sleeps(), before + rounds);
    }
    /// Processor time used so far, in clock ticks.
    long ticks() const
    {
        QFile file(QString("/proc/%1/stat").arg(process.processId()));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray line = file.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        return fields.at(11).toLong() + fields.at(12).toLong();
    }

    QProcess process;
    QByteArray entry;
    QByteArray introduction;
};

/// Ends at once with that message and exit code.
void expectRefusal(const QStringList& arguments, int code, const QString& message)
{
    QProcess process;
    process.start(kProgram, arguments);
    ASSERT_TRUE(process.waitForFinished(30000));
    EXPECT_EQ(process.exitCode(), code);
    EXPECT_EQ(QString::fromUtf8(process.readAllStandardError()).trimmed(), "marrowick-sim: " + message);
    EXPECT_TRUE(process.readAllStandardOutput().isEmpty());
}

void writeFile(const QString& name, const QByteArray& text)
{
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(text), text.size());
}

} // namespace

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
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Simulator simulator({});
        EXPECT_TRUE(entryExists(simulator.entry));
        EXPECT_EQ(simulator.end(signal), 0);
        EXPECT_FALSE(entryExists(simulator.entry));
    }
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

TEST(Program, ASetSerialNumberMovesTheEntryAndTheMemory)
{
    const QString state = qEnvironmentVariable("XDG_STATE_HOME") + "/marrowick/instruments/";
    QProcess process;
    process.start(kProgram, {"--serial", "T46-old"});
    ASSERT_TRUE(process.waitForReadyRead(30000));
    {
        PtyClient host(entryOf("T46-old"));
        host.write("points 321\rsave\rsetserial T46-new\r");
        ASSERT_TRUE(host.readUntilFrame('V'));
        EXPECT_EQ(host.of('V').at(0).text, "T46-new");
        EXPECT_FALSE(entryExists(entryOf("T46-old")));
        EXPECT_TRUE(entryExists(entryOf("T46-new")));
        host.write("enquire 1.28\r");
        EXPECT_TRUE(host.readUntilFrame('X')) << "the link goes on";
    }
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(30000));
    EXPECT_FALSE(entryExists(entryOf("T46-new")));
    EXPECT_TRUE(QFile::exists(state + "T46-new.json"));

    process.start(kProgram, {"--serial", "T46-new"});
    ASSERT_TRUE(process.waitForReadyRead(30000));
    {
        PtyClient host(entryOf("T46-new"));
        host.write("enquire 1.28\r");
        ASSERT_TRUE(host.readUntilFrame('X'));
        EXPECT_EQ(host.of('P').at(0).n1, 321) << "kept over the switching off";
    }
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(30000));
}

TEST(Program, AMemoryFileTellsTheSerialNumberAndTheModel)
{
    QTemporaryDir folder;
    const QString memory = folder.filePath("memory.json");
    {
        Simulator simulator({"--memory", memory, "--model", "DT46"}, "DT46-77");
        PtyClient host(simulator.entry);
        host.write("save\r");
        ASSERT_TRUE(host.readUntilFrame('r'));
    }
    QProcess process;
    process.start(kProgram, {"--memory", memory, "--model", "DT46"});
    ASSERT_TRUE(process.waitForReadyRead(30000));
    EXPECT_TRUE(process.readAllStandardOutput().contains("DT46-77"));
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(30000));
    expectRefusal({"--memory", memory}, 1,
                  "\"" + memory + "\" is the memory of a DT46. Choose --model DT46, or another serial number.");
}

TEST(Program, ATableIsMeasuredAsItStands)
{
    QTemporaryDir folder;
    writeFile(folder.filePath("part.csv"), "frequency;modulus;phase\n1000;50,5;-10\n100000;50,5;-10\n");
    Simulator simulator({"--replay", folder.filePath("part.csv"), "--fast"});
    EXPECT_TRUE(simulator.introduction.contains("measures: part.csv."));
    PtyClient host(simulator.entry);
    host.write("startfreq 1000\rendfreq 100000\rpoints 20\rimptest\r");
    ASSERT_TRUE(host.readUntilFrame('Y'));
    for (const ReadFrame& point : host.of('F')) {
        EXPECT_NEAR(point.n2, 50.5, 1e-9);
        EXPECT_NEAR(point.n3 * point.n4, -10, 1e-9);
    }
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
    simulator.process.setReadChannel(QProcess::StandardError);
    QByteArray said;
    const auto reads = [&](const char* text) {
        // What has come before the channel was chosen is read without waiting.
        do
            said += simulator.process.readAllStandardError();
        while (!said.contains(text) && simulator.process.waitForReadyRead(30000));
        return said.contains(text);
    };
    EXPECT_TRUE(reads("T46-1: waiting for a host\n"));
    PtyClient host(simulator.entry);
    EXPECT_TRUE(reads("T46-1: host connected\n")) << said.constData();
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
