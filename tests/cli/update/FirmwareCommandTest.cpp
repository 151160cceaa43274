// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/update/FirmwareCommand.h"

#include "cli/update/FirmwareInstall.h"
#include "support/FirmwareMaker.h"
#include "support/Pty.h"
#include "tests/controls/tarnload/UpgradeBench.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

using namespace cli;
using tarnload::UpgradeError;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

using namespace Qt::StringLiterals;

class FirmwareCommandTest : public ::testing::Test
{
protected:
    ExitCode run(const QStringList& words)
    {
        CommandTable table;
        table.push_back(std::make_unique<FirmwareCommand>());
        m_results.clear();
        m_problems.clear();
        return runCommandLine(table, QStringList{QCoreApplication::arguments().constFirst(), u"firmware"_s} + words,
                              m_console);
    }
    QStringList packed(const QString& output) const
    {
        return {u"pack"_s,    m_image, u"--hardware"_s, u"3,2"_s,     u"--firmware-version"_s, u"1.29"_s,
                u"--build"_s, u"7"_s,  u"--notes"_s,    u"Sooner."_s, u"--output"_s,           output};
    }
    static FirmwareInstall wanted(const QString& file, const QString& device = {})
    {
        FirmwareInstall result;
        result.file = file;
        result.device = device;
        return result;
    }
    ExitCode install(UpgradeBench& bench, FirmwareInstall all)
    {
        m_results.clear();
        m_problems.clear();
        all.keyFolder = bench.maker.keyFolder();
        all.patience = bench.patience;
        return installFirmware(*bench.devices, all, m_console);
    }
    std::string results() const { return m_results.toStdString(); }
    std::string problems() const { return m_problems.toStdString(); }

    FirmwareMaker m_maker;
    const QString m_image = m_maker.write(u"image.bin"_s, FirmwareMaker::image(3000));
    const QString m_file = m_maker.path(u"new.mfw"_s);
    QString m_results, m_problems;
    Console m_console{u"marrowick"_s, Console::into(m_results), Console::into(m_problems), false};
};

} // namespace

TEST_F(FirmwareCommandTest, AnImageIsPackedSignedCheckedAndShown)
{
    ASSERT_EQ(run(packed(m_file)), ExitCode::Done) << problems();
    EXPECT_EQ(run({u"check"_s, m_file, u"--trusted-keys"_s, m_maker.keyFolder()}), ExitCode::Refused);
    EXPECT_THAT(problems(), HasSubstr("is not signed"));
    m_maker.write(u"maker.key"_s, m_maker.key.toText());
    ASSERT_EQ(run({u"sign"_s, m_file, u"--key"_s, m_maker.path(u"maker.key"_s)}), ExitCode::Done) << problems();
    EXPECT_EQ(run({u"check"_s, m_file, u"--trusted-keys"_s, m_maker.keyFolder()}), ExitCode::Done) << problems();
    EXPECT_EQ(results(), m_file.toStdString() + ": V1.29 Build 7 for T46, whole and signed by a trusted key.\n");
    EXPECT_EQ(run({u"show"_s, m_file, u"--trusted-keys"_s, m_maker.keyFolder()}), ExitCode::Done);
    EXPECT_THAT(results(), HasSubstr("  model      T46, board revision 2, 3\n"));
    EXPECT_THAT(results(), HasSubstr("  signature  of a trusted key\n"));
    EXPECT_EQ(run({u"show"_s, u"--json"_s, m_file}), ExitCode::Done);
    const QJsonObject shown = QJsonDocument::fromJson(m_results.toUtf8()).object();
    EXPECT_EQ(shown.value(u"notes"_s), u"Sooner."_s);
    EXPECT_EQ(shown.value(u"size"_s), 3000);
}

TEST_F(FirmwareCommandTest, PackSignsAtOnceWhenItIsGivenAKey)
{
    m_maker.write(u"maker.key"_s, m_maker.key.toText());
    ASSERT_EQ(run(packed(m_file) + QStringList{u"--key"_s, m_maker.path(u"maker.key"_s)}), ExitCode::Done);
    EXPECT_EQ(run({u"check"_s, m_file, u"--trusted-keys"_s, m_maker.keyFolder()}), ExitCode::Done) << problems();
}

TEST_F(FirmwareCommandTest, AKeyPairIsMadeOnceAndTheSecretIsTheOwnersAlone)
{
    const QString name = m_maker.path(u"fresh"_s);
    ASSERT_EQ(run({u"key"_s, name}), ExitCode::Done) << problems();
    EXPECT_EQ(QFile::permissions(name + u".key"_s) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    EXPECT_EQ(run({u"key"_s, name}), ExitCode::FileError);
    EXPECT_THAT(problems(), HasSubstr("is there already"));
}

TEST_F(FirmwareCommandTest, WhatCannotBePackedIsToldInOneSentence)
{
    QStringList words = packed(m_file);
    words[3] = u"two"_s;
    EXPECT_EQ(run(words), ExitCode::Usage);
    EXPECT_THAT(problems(), HasSubstr("numbers from 0, divided by commas"));
    words = packed(m_file);
    words[5] = u"1"_s;
    EXPECT_EQ(run(words), ExitCode::Usage);
    words = packed(m_file);
    words[9] = QString(129, u'n');
    EXPECT_EQ(run(words), ExitCode::Usage);
    EXPECT_THAT(problems(), HasSubstr("at most 128 characters"));
    words = packed(m_file);
    words[1] = m_maker.write(u"empty.bin"_s, {});
    EXPECT_EQ(run(words), ExitCode::Usage);
    words[1] = m_maker.keyFolder();
    EXPECT_EQ(run(words), ExitCode::FileError);
    EXPECT_FALSE(QFileInfo::exists(m_file));
}

TEST_F(FirmwareCommandTest, WordsThatHaveNoPlaceAreRefused)
{
    EXPECT_EQ(run({}), ExitCode::Usage);
    EXPECT_THAT(problems(), HasSubstr("show, check, install, pack, sign, key"));
    EXPECT_EQ(run({u"flash"_s, m_file}), ExitCode::Usage);
    EXPECT_EQ(run({u"show"_s}), ExitCode::Usage);
    EXPECT_EQ(run({u"show"_s, m_file, m_file}), ExitCode::Usage);
    EXPECT_EQ(run({u"sign"_s, m_file}), ExitCode::Usage);
    EXPECT_EQ(run({u"check"_s, m_maker.path(u"none.mfw"_s)}), ExitCode::FileError);
    EXPECT_EQ(run({u"show"_s, m_image}), ExitCode::FileError);
    EXPECT_THAT(problems(), HasSubstr("This is no firmware file."));
}

TEST_F(FirmwareCommandTest, InstallWritesTheFileAndSaysWhatRuns)
{
    UpgradeBench bench;
    EXPECT_EQ(install(bench, wanted(bench.file(), u"T46-0042"_s)), ExitCode::Done) << problems();
    EXPECT_EQ(results(), "T46-0042 runs V1.29 Build 7.\n");
    EXPECT_TRUE(bench.runsNew());
}

TEST_F(FirmwareCommandTest, ADryRunChangesNothing)
{
    UpgradeBench bench;
    const sim::Flash before = bench.flash;
    FirmwareInstall dry = wanted(bench.file());
    dry.dryRun = true;
    EXPECT_EQ(install(bench, dry), ExitCode::Done) << problems();
    EXPECT_EQ(results(), "T46-0042 would take V1.29 Build 7.\n");
    EXPECT_EQ(bench.flash, before);
}

TEST_F(FirmwareCommandTest, AnOlderVersionNeedsItsOption)
{
    UpgradeBench bench;
    FirmwareInstall older = wanted(bench.file(FirmwareMaker::header(1, 27, 1)));
    EXPECT_EQ(install(bench, older), ExitCode::Refused);
    EXPECT_THAT(problems(), HasSubstr("The firmware is older than the instrument's own."));
    older.allowOlder = true;
    EXPECT_EQ(install(bench, older), ExitCode::Done) << problems();
}

TEST_F(FirmwareCommandTest, ATerminalDeviceIsTakenByItsPathWhoeverSitsBehindIt)
{
    UpgradeBench bench;
    bench.listedAs = u"/memory/one"_s;
    EXPECT_EQ(install(bench, wanted(bench.file(), u"/memory/one"_s)), ExitCode::Done) << problems();
    EXPECT_EQ(results(), "T46-0042 runs V1.29 Build 7.\n");
    EXPECT_TRUE(bench.runsNew());
    EXPECT_EQ(install(bench, wanted(bench.file(), u"/memory/two"_s)), ExitCode::NoInstrument);
    EXPECT_EQ(problems(), "marrowick: There is no terminal device /memory/two.\n");
}

TEST_F(FirmwareCommandTest, AnInstrumentThatRestartsAtAnotherPortIsFoundByItsNumber)
{
    UpgradeBench bench;
    bench.listedAs = u"/memory/one"_s;
    bench.onUnplug = [&bench] { bench.listedAs = u"T46-0042"_s; };
    EXPECT_EQ(install(bench, wanted(bench.file(), u"/memory/one"_s)), ExitCode::Done) << problems();
    EXPECT_TRUE(bench.runsNew());
}

TEST_F(FirmwareCommandTest, ThePathOfATerminalStandsFirstAmongTheDevices)
{
    const Pty pty;
    ASSERT_TRUE(pty.isValid());
    const std::unique_ptr<DeviceList> devices = devicesFor(pty.slavePath());
    devices->refresh();
    EXPECT_EQ(devices->device(0), (DeviceEntry{pty.slavePath(), pty.slavePath(), {}}));
    const std::unique_ptr<DeviceList> none = devicesFor(u"/dev/none"_s);
    none->refresh();
    EXPECT_NE(none->device(0).name, u"/dev/none"_s);
}

TEST_F(FirmwareCommandTest, AnInstrumentThatIsNotThereIsTold)
{
    UpgradeBench bench;
    EXPECT_EQ(install(bench, wanted(bench.file(), u"T46-0001"_s)), ExitCode::NoInstrument);
    EXPECT_EQ(problems(), "marrowick: There is no instrument T46-0001; found: T46-0042.\n");
    bench.plugged = false;
    EXPECT_EQ(install(bench, wanted(bench.file())), ExitCode::NoInstrument);
    EXPECT_EQ(problems(), "marrowick: No instrument was found.\n");
}

TEST_F(FirmwareCommandTest, EveryErrorHasItsExitCode)
{
    EXPECT_EQ(exitCodeOf(UpgradeError::None), ExitCode::Done);
    EXPECT_EQ(exitCodeOf(UpgradeError::Unreadable), ExitCode::FileError);
    EXPECT_EQ(exitCodeOf(UpgradeError::NoAnswer), ExitCode::NoInstrument);
    EXPECT_EQ(exitCodeOf(UpgradeError::Interrupted), ExitCode::Lost);
    EXPECT_EQ(exitCodeOf(UpgradeError::RolledBack), ExitCode::Refused);
}
