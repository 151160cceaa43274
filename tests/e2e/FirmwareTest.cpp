// SPDX-License-Identifier: GPL-3.0-or-later
// marrowick writes firmware into a simulated instrument, with power and cable going in between.
#include "e2e/EndToEnd.h"
#include "support/Pty.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <random>

using namespace e2e;
using ::testing::HasSubstr;

namespace {

class FirmwareTest : public EndToEndTest
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(marrowick({QStringLiteral("key"), path(QStringLiteral("maker"))}).exitCode, 0);
        ASSERT_TRUE(QDir().mkpath(path(QStringLiteral("keys"))));
        ASSERT_TRUE(QFile::rename(path(QStringLiteral("maker.pub")), path(QStringLiteral("keys/maker.pub"))));
        pack((kBlocks - 1) * 1024 + 77);
    }

    /// The file holds an image of that many bytes.
    void pack(int bytes) const
    {
        QFile image(path(QStringLiteral("image.bin")));
        ASSERT_TRUE(image.open(QFile::WriteOnly));
        for (int i = 0; i < bytes; ++i)
            image.putChar(static_cast<char>((static_cast<unsigned>(i) * 2654435761U) >> 13));
        image.close();
        const Ended packed =
            marrowick({QStringLiteral("pack"), path(QStringLiteral("image.bin")), QStringLiteral("--hardware"),
                       QStringLiteral("2"), QStringLiteral("--firmware-version"), QStringLiteral("1.28"),
                       QStringLiteral("--build"), QStringLiteral("99"), QStringLiteral("--key"),
                       path(QStringLiteral("maker.key")), QStringLiteral("--output"), file()});
        ASSERT_EQ(packed.exitCode, 0) << packed.errors.toStdString();
    }

    QString file() const { return path(QStringLiteral("new.mfw")); }
    static Ended marrowick(const QStringList& words)
    {
        return runProgram(QStringLiteral("marrowick"), QStringList{QStringLiteral("firmware")} + words);
    }
    QStringList installWords(const QString& device) const
    {
        return {QStringLiteral("install"),        file(),
                QStringLiteral("--device"),       device,
                QStringLiteral("--trusted-keys"), path(QStringLiteral("keys"))};
    }
    Ended install(const Simulator& simulator) const { return marrowick(installWords(simulator.serial())); }
    std::unique_ptr<QProcess> startInstall(const QString& serial) const
    {
        auto process = std::make_unique<QProcess>();
        process->start(programPath(QStringLiteral("marrowick")),
                       QStringList{QStringLiteral("firmware")} + installWords(serial));
        return process;
    }
    /// At once where it has ended already.
    static bool hasEnded(QProcess& process)
    {
        return process.state() == QProcess::NotRunning || process.waitForFinished(kPatience);
    }
    static void kill(QProcess& process)
    {
        process.kill();
        EXPECT_TRUE(hasEnded(process));
    }
    QString memory(const QString& name = QStringLiteral("memory")) const
    {
        return path(name + QStringLiteral(".json"));
    }
    QStringList options(const QString& fault = {}, const QString& memoryName = QStringLiteral("memory")) const
    {
        QStringList all{QStringLiteral("--trusted-keys"), path(QStringLiteral("keys")), QStringLiteral("--memory"),
                        memory(memoryName)};
        if (!fault.isEmpty())
            all += {QStringLiteral("--fault"), fault};
        return all;
    }

    /// What the instrument itself says that it runs; it is the image of the factory, or the new one.
    static bool runsNew(const Simulator& simulator)
    {
        PtyHost host(simulator.devicePath());
        EXPECT_TRUE(host.write("boot\r"));
        const auto frame = [&host](char code) {
            const std::size_t begin = host.bytes.find(std::string{code, ':'});
            return begin == std::string::npos || host.bytes.size() < begin + 67 ? std::string()
                                                                                : host.bytes.substr(begin, 67);
        };
        EXPECT_TRUE(host.readUntil([&frame] { return !frame('w').empty(); })) << host.bytes;
        const bool isNew = std::stod(frame('O').substr(32, 13)) == 99;
        EXPECT_EQ(isNew, std::stod(frame('w').substr(46, 13)) != 0) << "the check of what runs, 0 for the factory's";
        return isNew;
    }

    static constexpr int kBlocks = 21; ///< of the image
};

} // namespace

TEST_F(FirmwareTest, PowerAndCableLostInBetweenAreGotOver)
{
    for (const char* fault : {"power:7", "cable:12", "power:21"}) {
        QFile::remove(memory());
        const Simulator simulator(freshSerial(), options(QLatin1String(fault)));
        const Ended ended = install(simulator);
        EXPECT_EQ(ended.exitCode, 0) << fault << ended.errors.toStdString();
        EXPECT_THAT(ended.output.toStdString(), HasSubstr(" runs V1.28 Build 99.\n")) << fault;
    }
}

TEST_F(FirmwareTest, PowerAndCableLostAtEachBlockAreGotOver)
{
    constexpr int kAtOnce = 7;
    for (int first = 1; first <= kBlocks; first += kAtOnce) {
        std::vector<std::unique_ptr<Simulator>> simulators;
        std::vector<std::unique_ptr<QProcess>> installs;
        for (int block = first; block < first + kAtOnce && block <= kBlocks; ++block) {
            const QString fault = QStringLiteral("power:%1,cable:%2").arg(block).arg(kBlocks + 1 - block);
            simulators.push_back(
                std::make_unique<Simulator>(freshSerial(), options(fault, QStringLiteral("block%1").arg(block))));
            installs.push_back(startInstall(simulators.back()->serial()));
        }
        for (std::size_t i = 0; i < installs.size(); ++i) {
            ASSERT_TRUE(hasEnded(*installs[i])) << first + int(i);
            EXPECT_EQ(installs[i]->exitCode(), 0) << installs[i]->readAllStandardError().toStdString();
            EXPECT_TRUE(runsNew(*simulators[i]));
        }
    }
}

TEST_F(FirmwareTest, AnInstrumentKilledAtAnyMomentStartsWithTheOldOrTheNewFirmwareAndTheUpdateFinishes)
{
    pack(300 * 1024);
    std::mt19937 random(13);
    int interrupted = 0;
    for (int seed = 0; seed < faultSeeds(24); ++seed) {
        const QString serial = freshSerial(), name = QStringLiteral("killed%1").arg(seed);
        auto simulator = std::make_unique<Simulator>(serial, options({}, name));
        ASSERT_TRUE(waitFor([&] { return QFileInfo::exists(memory(name)) || simulator->started(); }));
        const auto lastKept = [&] { return QFileInfo(memory(name)).lastModified(); };
        const QDateTime before = lastKept();
        const auto installing = startInstall(serial);
        // From the header on, when it is first kept, to some time behind the restart.
        EXPECT_TRUE(waitFor([&] { return lastKept() != before || installing->state() == QProcess::NotRunning; }));
        waitFor([] { return false; }, int(random() % 1200));
        kill(simulator->process());
        QFile::remove(simulator->devicePath());
        // The host dies with it every other time.
        const bool hostDies = seed % 2 == 1;
        if (hostDies)
            kill(*installing);
        simulator = std::make_unique<Simulator>(serial, options({}, name));
        ASSERT_TRUE(simulator->started());
        if (hostDies) {
            interrupted += runsNew(*simulator) ? 0 : 1;
        } else {
            ASSERT_TRUE(hasEnded(*installing));
            EXPECT_THAT(installing->exitCode(), ::testing::AnyOf(0, 2, 3))
                << installing->readAllStandardError().toStdString();
        }
        const Ended next = install(*simulator);
        EXPECT_EQ(next.exitCode, 0) << "seed " << seed << next.errors.toStdString();
        EXPECT_TRUE(runsNew(*simulator)) << "seed " << seed;
    }
    EXPECT_GT(interrupted, 0) << "some were killed in mid-transfer";
}

TEST_F(FirmwareTest, AnInstrumentThatStaysAwayIsToldWithWhatToDoAndTheNextAttemptFinishes)
{
    const QString serial = freshSerial();
    {
        // The cable is pulled, and the instrument is switched off before it is back.
        Simulator simulator(serial, options(QStringLiteral("cable:9")));
        const auto installing = startInstall(serial);
        ASSERT_TRUE(waitFor([&] {
            return installing->state() == QProcess::Running && !QFileInfo(simulator.devicePath()).isSymLink();
        }));
        kill(simulator.process());
        ASSERT_TRUE(hasEnded(*installing));
        EXPECT_EQ(installing->exitCode(), 3);
        EXPECT_THAT(installing->readAllStandardError().toStdString(),
                    HasSubstr("The link was lost. The old firmware still runs: plug in and start again; it goes on "
                              "where it stopped."));
    }
    const Simulator simulator(serial, options());
    EXPECT_FALSE(runsNew(simulator));
    EXPECT_EQ(install(simulator).exitCode, 0);
    EXPECT_TRUE(runsNew(simulator));
}

TEST_F(FirmwareTest, ATerminalDeviceIsTakenByItsPath)
{
    const Simulator simulator(freshSerial(), options());
    const Ended ended = marrowick(installWords(simulator.devicePath()));
    EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    EXPECT_EQ(ended.output.toStdString(), simulator.serial().toStdString() + " runs V1.28 Build 99.\n");
    const QString port = QFileInfo(simulator.devicePath()).canonicalFilePath();
    const Ended again = marrowick(installWords(port) + QStringList{QStringLiteral("--dry-run")});
    EXPECT_EQ(again.exitCode, 0) << again.errors.toStdString();
}

TEST_F(FirmwareTest, FirmwareThatDoesNotStartIsRolledBackAndTheNextAttemptSucceeds)
{
    const Simulator simulator(freshSerial(), options(QStringLiteral("dead-image")));
    const Ended dead = install(simulator);
    EXPECT_EQ(dead.exitCode, 4);
    EXPECT_THAT(dead.errors.toStdString(), HasSubstr("The new firmware did not start, so the old one runs again."));
    EXPECT_EQ(install(simulator).exitCode, 0);
}

TEST_F(FirmwareTest, TheInstrumentKeepsItsFirmwareWhenItIsSwitchedOff)
{
    const QString serial = freshSerial();
    {
        Simulator simulator(serial, options());
        ASSERT_EQ(install(simulator).exitCode, 0);
        EXPECT_TRUE(simulator.end());
    }
    const Simulator simulator(serial, options());
    const Ended older = marrowick(
        {QStringLiteral("pack"), path(QStringLiteral("image.bin")), QStringLiteral("--hardware"), QStringLiteral("2"),
         QStringLiteral("--firmware-version"), QStringLiteral("1.28"), QStringLiteral("--build"), QStringLiteral("98"),
         QStringLiteral("--key"), path(QStringLiteral("maker.key")), QStringLiteral("--output"), file()});
    ASSERT_EQ(older.exitCode, 0);
    const Ended refused = install(simulator);
    EXPECT_EQ(refused.exitCode, 4);
    EXPECT_THAT(refused.errors.toStdString(), HasSubstr("The firmware is older than the instrument's own."));
}

TEST_F(FirmwareTest, ADryRunTouchesNothing)
{
    const Simulator simulator(freshSerial(), options(QStringLiteral("power:1")));
    const Ended ended =
        marrowick({QStringLiteral("install"), file(), QStringLiteral("--dry-run"), QStringLiteral("--trusted-keys"),
                   path(QStringLiteral("keys")), QStringLiteral("--device"), simulator.serial()});
    EXPECT_EQ(ended.exitCode, 0) << ended.errors.toStdString();
    EXPECT_THAT(ended.output.toStdString(), HasSubstr(" would take V1.28 Build 99.\n"));
}
