// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/UpGrade.h"

#include "tests/controls/tarnload/UpgradeBench.h"

#include <gmock/gmock.h>
#include <random>
#include <sys/stat.h>

using tarnload::UpgradeError;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// How many random places a sweep tries; more before a change to the protocol is delivered.
int seeds()
{
    const int asked = qEnvironmentVariableIntValue("MARROWICK_FIRMWARE_SEEDS");
    return asked > 0 ? asked : 100;
}

class UpGradeTest : public ::testing::Test
{
protected:
    bool info(const QString& fileName)
    {
        EXPECT_TRUE(bench.loader->OpenUpgradeFile(fileName));
        std::int32_t major = 0, minor = 0, build = 0;
        return bench.loader->GetUpgradeFileInfo(major, minor, build, notes);
    }
    /// Refused with that error, with nothing of the instrument touched.
    void expectRefused(const QString& fileName, UpgradeError error)
    {
        const sim::Flash before = bench.flash;
        EXPECT_EQ(bench.program(fileName), error);
        EXPECT_EQ(bench.flash, before);
        EXPECT_TRUE(bench.runsOld());
    }

    UpgradeBench bench;
    QString notes;
};

} // namespace

TEST_F(UpGradeTest, AFileIsOpenedOnlyIfItIsARegularFile)
{
    EXPECT_TRUE(bench.loader->OpenUpgradeFile(bench.file()));
    EXPECT_FALSE(bench.loader->OpenUpgradeFile(bench.maker.keyFolder()));
    EXPECT_FALSE(bench.loader->OpenUpgradeFile(QString()));
    EXPECT_FALSE(bench.loader->OpenUpgradeFile(bench.maker.path(QStringLiteral("none.mfw"))));
    const QByteArray pipe = QFile::encodeName(bench.maker.path(QStringLiteral("pipe.mfw")));
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    EXPECT_FALSE(bench.loader->OpenUpgradeFile(QFile::decodeName(pipe)));
}

TEST_F(UpGradeTest, TheInformationOfAValidFileIsFilledIn)
{
    ASSERT_TRUE(bench.loader->OpenUpgradeFile(bench.file()));
    std::int32_t major = 0, minor = 0, build = 0;
    ASSERT_TRUE(bench.loader->GetUpgradeFileInfo(major, minor, build, notes));
    EXPECT_EQ(major, 1);
    EXPECT_EQ(minor, 29);
    EXPECT_EQ(build, 7);
    EXPECT_EQ(notes, QStringLiteral("Sweeps begin sooner."));
    bench.loader->CloseUpgradeFile();
    EXPECT_FALSE(bench.loader->GetUpgradeFileInfo(major, minor, build, notes));
    EXPECT_EQ(bench.loader->fileError(), UpgradeError::NoFile);
}

TEST_F(UpGradeTest, AWholeUpgradeEndsWithTheNewImageRunning)
{
    EXPECT_EQ(bench.program(bench.file()), UpgradeError::None);
    EXPECT_TRUE(bench.runsNew());
    EXPECT_THAT(bench.ranges, ElementsAre(6, 0));
    EXPECT_THAT(bench.values, ElementsAre(0, 1, 2, 3, 4, 5, 6));
    EXPECT_FALSE(bench.loader->Busy());
}

TEST_F(UpGradeTest, TheLoaderIsBusyWhileItPrograms)
{
    bool busy = false;
    std::int16_t second = 0;
    QObject::connect(bench.loader.get(), &UpGrade::ProgressValue, [&] {
        busy = bench.loader->Busy();
        second = bench.loader->ProgramDevice(QStringLiteral("KorvaLink"), 0);
    });
    EXPECT_EQ(bench.program(bench.file()), UpgradeError::None);
    EXPECT_TRUE(busy);
    EXPECT_EQ(second, static_cast<std::int16_t>(UpgradeError::Busy));
}

TEST_F(UpGradeTest, EachUpgradeGoesIntoThePlaceThatDoesNotRun)
{
    for (int build = 7; build < 11; ++build) {
        EXPECT_EQ(bench.program(bench.file(FirmwareMaker::header(1, 29, build))), UpgradeError::None);
        EXPECT_EQ(bench.state.firmwareBuild, build);
        EXPECT_TRUE(bench.runsNew());
    }
}

TEST_F(UpGradeTest, ACheckOfTheInstrumentChangesNothing)
{
    const sim::Flash before = bench.flash;
    ASSERT_TRUE(bench.loader->OpenUpgradeFile(bench.file()));
    EXPECT_EQ(bench.loader->CheckDevice(QStringLiteral("KorvaLink"), 0), 0);
    EXPECT_EQ(bench.flash, before);
    EXPECT_THAT(bench.ranges, IsEmpty());
}

// Refusals
// -------------------------------------------------------------------------------------------------------------

TEST_F(UpGradeTest, AFileForAnotherModelIsRefused)
{
    firmware::Header header = FirmwareMaker::header();
    header.model = QStringLiteral("DT46");
    expectRefused(bench.file(header), UpgradeError::WrongModel);
}

TEST_F(UpGradeTest, AFileForOtherHardwareIsRefused)
{
    firmware::Header header = FirmwareMaker::header();
    header.hardware = {1, 3};
    expectRefused(bench.file(header), UpgradeError::WrongHardware);
}

TEST_F(UpGradeTest, AnOlderVersionIsRefusedWhereNobodyCanBeAsked)
{
    expectRefused(bench.file(FirmwareMaker::header(1, 28, 2)), UpgradeError::OlderVersion);
}

TEST_F(UpGradeTest, AnOlderVersionIsWrittenAfterAQuestionOnly)
{
    QStringList asked;
    bool wanted = false;
    bench.loader->askOlder([&](const QString& running, const QString& file) {
        asked << running << file;
        return wanted;
    });
    const QString older = bench.file(FirmwareMaker::header(1, 27, 9));
    expectRefused(older, UpgradeError::Declined);
    EXPECT_THAT(asked, ElementsAre(QStringLiteral("V1.28 Build 3"), QStringLiteral("V1.27 Build 9")));
    wanted = true;
    EXPECT_EQ(bench.program(older), UpgradeError::None);
    EXPECT_EQ(bench.state.firmwareMinor, 27);
}

TEST_F(UpGradeTest, AnUpgradeToTheSameVersionIsNoOlderOne)
{
    EXPECT_EQ(bench.program(bench.file(FirmwareMaker::header(1, 28, 3))), UpgradeError::None);
}

TEST_F(UpGradeTest, ACutFileIsRefused)
{
    const QByteArray bytes = bench.maker.make(FirmwareMaker::header(), FirmwareMaker::image(3000)).toBytes();
    expectRefused(bench.maker.write(QStringLiteral("cut.mfw"), bytes.chopped(1)), UpgradeError::Damaged);
    EXPECT_EQ(bench.bytesHeard, 0) << "the instrument was not spoken to";
}

TEST_F(UpGradeTest, AFlippedBitInEachByteOfHeaderAndSignatureIsRefusedBeforeTheInstrumentIsSpokenTo)
{
    const firmware::FirmwareFile file = bench.maker.make(FirmwareMaker::header(), FirmwareMaker::image(300));
    const QByteArray bytes = file.toBytes();
    const qsizetype head = bytes.indexOf(file.seal) + file.seal.size();
    ASSERT_GT(head, 200);
    for (qsizetype at = 0; at < head; ++at) {
        QByteArray spoilt = bytes;
        spoilt[at] = static_cast<char>(spoilt[at] ^ (1 << at % 8));
        const UpgradeError error = bench.program(bench.maker.write(QStringLiteral("spoilt.mfw"), spoilt));
        EXPECT_NE(error, UpgradeError::None) << at;
        EXPECT_LT(error, UpgradeError::Busy) << "the file is at fault, byte " << at;
        EXPECT_FALSE(tarnload::errorText(error).isEmpty()) << at;
    }
    EXPECT_EQ(bench.bytesHeard, 0);
}

TEST_F(UpGradeTest, AFileOfAnUnknownKeyIsRefused)
{
    firmware::FirmwareFile file = firmware::pack(FirmwareMaker::header(), FirmwareMaker::image(3000));
    firmware::sign(file, firmware::SigningKey::generate());
    expectRefused(bench.maker.write(QStringLiteral("foreign.mfw"), file.toBytes()), UpgradeError::UnknownKey);
    EXPECT_EQ(bench.bytesHeard, 0);
}

TEST_F(UpGradeTest, AnUnsignedFileIsRefused)
{
    const firmware::FirmwareFile file = firmware::pack(FirmwareMaker::header(), FirmwareMaker::image(3000));
    expectRefused(bench.maker.write(QStringLiteral("unsigned.mfw"), file.toBytes()), UpgradeError::Unsigned);
}

TEST_F(UpGradeTest, AnEmptyFolderOfKeysRefusesEveryFile)
{
    ASSERT_TRUE(QFile::remove(bench.maker.path(QStringLiteral("keys/maker.pub"))));
    expectRefused(bench.file(), UpgradeError::NoTrustedKeys);
}

TEST_F(UpGradeTest, AFileThatTurnsInvalidAfterTheCheckIsRefusedByTheLoader)
{
    const QString name = bench.file();
    ASSERT_TRUE(info(name));
    bench.maker.write(QStringLiteral("new.mfw"), "something else");
    expectRefused(name, UpgradeError::NotFirmware);
}

TEST_F(UpGradeTest, WithoutAnOpenFileThereIsNothingToProgram)
{
    EXPECT_EQ(bench.loader->ProgramDevice(QStringLiteral("KorvaLink"), 0), 1);
}

TEST_F(UpGradeTest, AnUnknownClassOfDeviceIsRefused)
{
    ASSERT_TRUE(bench.loader->OpenUpgradeFile(bench.file()));
    EXPECT_EQ(bench.loader->ProgramDevice(QStringLiteral("Toaster"), 0),
              static_cast<std::int16_t>(UpgradeError::UnknownClass));
}

TEST_F(UpGradeTest, AnIndexWithoutADeviceIsRefused)
{
    ASSERT_TRUE(bench.loader->OpenUpgradeFile(bench.file()));
    EXPECT_EQ(bench.loader->ProgramDevice(QStringLiteral("KorvaLink"), 1),
              static_cast<std::int16_t>(UpgradeError::NoDevice));
}

TEST_F(UpGradeTest, AnotherInstrumentAtTheIndexIsRefused)
{
    bench.loader->expectSerial(QStringLiteral("T46-0007"));
    expectRefused(bench.file(), UpgradeError::OtherInstrument);
}

TEST_F(UpGradeTest, AnInstrumentWhoseIndexHasChangedSinceItWasChosenIsFoundByItsNumber)
{
    bench.loader->expectSerial(QStringLiteral("T46-0042"));
    bench.anotherInFront = true;
    EXPECT_EQ(bench.program(bench.file()), UpgradeError::None);
    EXPECT_TRUE(bench.runsNew());
}

TEST_F(UpGradeTest, TheNameInTheListIsComparedWhereNoSerialNumberWasTold)
{
    bench.listedAs = QStringLiteral("T46-0007");
    expectRefused(bench.file(), UpgradeError::OtherInstrument);
}

TEST_F(UpGradeTest, ASilentInstrumentIsTold)
{
    bench.silent = true;
    expectRefused(bench.file(), UpgradeError::NoAnswer);
}

TEST_F(UpGradeTest, ABusyInstrumentIsLeftAlone)
{
    bench.busy = true;
    expectRefused(bench.file(), UpgradeError::InstrumentBusy);
}

TEST_F(UpGradeTest, AnInstrumentThatTrustsOtherKeysRefusesByItself)
{
    const firmware::SigningKey other = firmware::SigningKey::generate();
    bench.maker.trust(other, QStringLiteral("other"));
    firmware::FirmwareFile file = firmware::pack(FirmwareMaker::header(), FirmwareMaker::image(3000));
    firmware::sign(file, other);
    expectRefused(bench.maker.write(QStringLiteral("other.mfw"), file.toBytes()), UpgradeError::NotTrustedThere);
}

TEST_F(UpGradeTest, AnImageThatDoesNotFitIsRefused)
{
    expectRefused(bench.file(FirmwareMaker::header(), sim::Slot::kLargestImage + 1), UpgradeError::TooLarge);
}

// Faults
// ---------------------------------------------------------------------------------------------------------------

TEST_F(UpGradeTest, AnImageThatDoesNotReportInIsRolledBackAndTold)
{
    sim::FaultPlan plan;
    ASSERT_TRUE(plan.add(QStringLiteral("dead-image")).ok());
    UpgradeBench dead(plan);
    EXPECT_EQ(dead.program(dead.file()), UpgradeError::RolledBack);
    EXPECT_TRUE(dead.runsOld());
    EXPECT_EQ(dead.program(dead.file()), UpgradeError::None);
    EXPECT_TRUE(dead.runsNew());
}

TEST_F(UpGradeTest, LostAnswersAreAskedForAgain)
{
    QObject::connect(bench.loader.get(), &UpGrade::ProgressValue, [this](std::int16_t value) {
        if (value == 2)
            bench.framesToLose = 2;
    });
    EXPECT_EQ(bench.program(bench.file()), UpgradeError::None);
    EXPECT_TRUE(bench.runsNew());
}

TEST_F(UpGradeTest, APoorLinkIsTold)
{
    QObject::connect(bench.loader.get(), &UpGrade::ProgressValue, [this](std::int16_t) { bench.silent = true; });
    EXPECT_EQ(bench.program(bench.file()), UpgradeError::NotTaken);
    EXPECT_TRUE(bench.runsOld());
}

TEST_F(UpGradeTest, AnInstrumentThatStaysAwayAfterItsRestartIsTold)
{
    QObject::connect(bench.loader.get(), &UpGrade::ProgressValue, [this](std::int16_t value) {
        if (value == 6)
            bench.listedAs = QStringLiteral("somebody else");
    });
    bench.patience.comeBack = 50;
    bench.loader->setPatience(bench.patience);
    EXPECT_EQ(bench.program(bench.file()), UpgradeError::NotBack);
}

TEST_F(UpGradeTest, CableOrPowerLostAtEveryBlockIsResumedWhereItStopped)
{
    for (const char* fault : {"cable", "power"}) {
        for (int block = 1; block <= 6; ++block) {
            sim::FaultPlan plan;
            ASSERT_TRUE(plan.add(QStringLiteral("%1:%2").arg(QLatin1String(fault)).arg(block)).ok());
            UpgradeBench faulty(plan);
            EXPECT_EQ(faulty.program(faulty.file()), UpgradeError::None) << fault << block;
            EXPECT_TRUE(faulty.runsNew());
            EXPECT_EQ(faulty.unplugs, 2) << "the fault and the restart";
            // What was held before the break is not sent again.
            EXPECT_LT(faulty.bytesHeard, 8 * 1024) << fault << block;
        }
    }
}

TEST_F(UpGradeTest, PowerLostAtAnyByteLeavesAWholeImageAndTheNextAttemptFinishes)
{
    const QString name = bench.file();
    ASSERT_EQ(bench.program(name), UpgradeError::None);
    std::mt19937 random(46);
    for (int seed = 0; seed < seeds(); ++seed) {
        UpgradeBench faulty;
        const QString file = faulty.file();
        faulty.staysAway();
        // Once, or again and again at shorter distances.
        const int losses = 1 + seed % 3;
        for (int i = 0; i < losses; ++i) {
            faulty.flash.losePowerAfter(1 + qint64(random() % (6200 / unsigned(losses))));
            static_cast<void>(faulty.program(file));
            faulty.plugIn();
            EXPECT_TRUE(faulty.runsOld() || faulty.runsNew()) << "seed " << seed;
        }
        faulty.staysNoMore();
        EXPECT_EQ(faulty.program(file), UpgradeError::None) << "seed " << seed;
        EXPECT_TRUE(faulty.runsNew()) << "seed " << seed;
    }
}

TEST_F(UpGradeTest, CableLostAtAnyByteLeavesAWholeImageAndTheNextAttemptFinishes)
{
    ASSERT_EQ(bench.program(bench.file()), UpgradeError::None);
    const qint64 all = bench.bytesHeard;
    std::mt19937 random(28);
    for (int seed = 0; seed < seeds(); ++seed) {
        UpgradeBench faulty;
        const QString file = faulty.file();
        faulty.staysAway();
        const int losses = 1 + seed % 3;
        for (int i = 0; i < losses; ++i) {
            faulty.bytesToCut = qint64(random() % std::mt19937::result_type(all / losses));
            static_cast<void>(faulty.program(file));
            faulty.plugIn();
            EXPECT_TRUE(faulty.runsOld() || faulty.runsNew()) << "seed " << seed;
        }
        faulty.staysNoMore();
        EXPECT_EQ(faulty.program(file), UpgradeError::None) << "seed " << seed;
        EXPECT_TRUE(faulty.runsNew()) << "seed " << seed;
    }
}

TEST_F(UpGradeTest, CableLostInPlaceOfEachAnswerIsGotOver)
{
    ASSERT_EQ(bench.program(bench.file()), UpgradeError::None);
    const int all = bench.framesSent;
    // Five answers to each of two questions for the state, the header, six blocks, the change of images.
    EXPECT_GE(all, 16);
    for (int frame = 0; frame < all; ++frame) {
        UpgradeBench faulty;
        const QString file = faulty.file();
        faulty.framesToCut = frame;
        const UpgradeError error = faulty.program(file);
        // Before anything is sent there is nothing to go on with.
        if (error != UpgradeError::None) {
            EXPECT_EQ(error, UpgradeError::NoAnswer) << frame;
            EXPECT_TRUE(faulty.runsOld()) << frame;
            faulty.plugIn();
            EXPECT_EQ(faulty.program(file), UpgradeError::None) << frame;
        }
        EXPECT_TRUE(faulty.runsNew()) << frame;
    }
}

TEST_F(UpGradeTest, ALostLinkIsToldWhileItLastsAndARestartIsNone)
{
    sim::FaultPlan plan;
    ASSERT_TRUE(plan.add(QStringLiteral("cable:3")).ok());
    UpgradeBench faulty(plan);
    QList<bool> told;
    QObject::connect(faulty.loader.get(), &UpGrade::LinkLost, [&told](bool lost) { told.append(lost); });
    EXPECT_EQ(faulty.program(faulty.file()), UpgradeError::None);
    EXPECT_THAT(told, ElementsAre(true, false));
    told.clear();
    EXPECT_EQ(faulty.program(faulty.file(FirmwareMaker::header(1, 29, 8))), UpgradeError::None);
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(UpGradeTest, AnInterruptionThatLastsIsTold)
{
    sim::FaultPlan plan;
    ASSERT_TRUE(plan.add(QStringLiteral("cable:3")).ok());
    UpgradeBench faulty(plan);
    faulty.staysAway();
    EXPECT_EQ(faulty.program(faulty.file()), UpgradeError::Interrupted);
    EXPECT_TRUE(faulty.runsOld());
}
