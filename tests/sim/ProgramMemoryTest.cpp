// SPDX-License-Identifier: GPL-3.0-or-later
// The memory file of the program as it ships.
#include "tests/sim/PtyClient.h"
#include "tests/sim/Simulator.h"
#include "tests/sim/SmallDisk.h"

#include <QDir>

#include <sys/resource.h>

namespace {

QByteArray contentOf(const QString& name)
{
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

/// Asks for the settings to be saved and waits for the answer, which must be that it failed.
void expectSaveToFail(Simulator& simulator, PtyClient& host)
{
    host.clear();
    host.write("points 222\rsave\rsetfreqcomp x\r");
    ASSERT_TRUE(host.readUntilFrame('t'));
    EXPECT_TRUE(host.of('r').empty()) << "nothing was saved";
    ASSERT_FALSE(host.of('T').empty());
    EXPECT_EQ(host.of('T')[0].field, '1');
    EXPECT_EQ(host.of('T')[0].text, "The instrument could not write its memory.");
    EXPECT_TRUE(simulator.hasSaid("marrowick-sim: Cannot save ")) << simulator.said.constData();
}

} // namespace

TEST(ProgramMemory, OnAFullDiskTheOldMemoryStaysAndTheFailureIsTold)
{
    SmallDisk disk;
    const QString memory = disk.filePath("memory.json");
    // Where no disk of that size can be had, a limit on the size of files is what is full.
    const bool limited = !disk.isMounted();
    bool full = false;
    for (const bool again : {false, true}) {
        full = limited && again;
        Simulator simulator({"--memory", memory, "--idle-levels", "0"}, "T46-1", [full] {
            const rlimit limit{100, 100};
            if (full)
                ::setrlimit(RLIMIT_FSIZE, &limit);
        });
        PtyClient host(simulator.entry);
        if (!again) {
            host.write("points 111\rsave\r");
            ASSERT_TRUE(host.readUntilFrame('r'));
            EXPECT_EQ(host.of('r')[0].text, "Settings saved");
            continue;
        }
        const QByteArray before = contentOf(memory);
        if (!limited)
            disk.fill();
        expectSaveToFail(simulator, host);
        EXPECT_EQ(contentOf(memory), before);
        if (limited)
            continue;
        disk.empty();
        host.clear();
        host.write("save\r");
        ASSERT_TRUE(host.readUntilFrame('r')) << "with room it works again";
        EXPECT_TRUE(contentOf(memory).contains("\"points\": 222"));
        EXPECT_EQ(QFileInfo(memory).dir().entryList(QDir::Files | QDir::Hidden), QStringList("memory.json"));
    }
}

TEST(ProgramMemory, InAReadOnlyFolderTheOldMemoryStaysAndTheFailureIsTold)
{
    SmallDisk disk;
    const QString memory = disk.filePath("memory.json");
    {
        Simulator simulator({"--memory", memory});
        PtyClient host(simulator.entry);
        host.write("save\r");
        ASSERT_TRUE(host.readUntilFrame('r'));
    }
    const QByteArray before = contentOf(memory);
    disk.makeReadOnly();
    Simulator simulator({"--memory", memory, "--idle-levels", "0"});
    PtyClient host(simulator.entry);
    expectSaveToFail(simulator, host);
    EXPECT_EQ(contentOf(memory), before);
}

TEST(ProgramMemory, ADamagedOneIsToldAndSetAsideAndTheInstrumentRuns)
{
    const QString memory = qEnvironmentVariable("XDG_STATE_HOME") + "/marrowick/instruments/T46-hurt.json";
    ASSERT_TRUE(QDir().mkpath(QFileInfo(memory).path()));
    writeFile(memory, "{\"format\": \"marrowick-sim mem");
    QProcess process;
    process.start(kProgram, {"--serial", "T46-hurt"});
    ASSERT_TRUE(process.waitForReadyRead(30000));
    EXPECT_TRUE(process.readAllStandardError().contains("is damaged and was set aside as"));
    {
        PtyClient host(entryOf("T46-hurt"));
        host.write("save\r");
        ASSERT_TRUE(host.readUntilFrame('r'));
    }
    process.terminate();
    ASSERT_TRUE(process.waitForFinished(30000));
    EXPECT_EQ(contentOf(memory + ".damaged-1"), "{\"format\": \"marrowick-sim mem");
    EXPECT_TRUE(contentOf(memory).contains("T46-hurt"));
}

TEST(ProgramMemory, ASetSerialNumberMovesTheEntryAndTheMemory)
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

TEST(ProgramMemory, AMemoryFileTellsTheSerialNumberAndTheModel)
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
