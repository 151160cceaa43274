// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/boot/BootLoader.h"

#include "support/FirmwareMaker.h"

#include <QtEndian>

#include <gmock/gmock.h>

using sim::BootLoader;
using sim::Flash;
using sim::Slot;
using ::testing::ElementsAre;
using ::testing::StartsWith;

namespace {

/// The boot loader with nothing around it. Commands are written as a host writes them.
class BootLoaderTest : public ::testing::Test, public sim::FrameSink
{
protected:
    BootLoaderTest() { powerUp(); }

    void powerUp()
    {
        m_flash.restorePower();
        BootLoader::Facts facts;
        facts.model = "T46";
        facts.hardware = 2;
        facts.keys = firmware::TrustedKeys::ofFolder(m_maker.keyFolder());
        facts.factoryMajor = 1;
        facts.factoryMinor = 28;
        facts.runOnTrial = [this] { return m_reportsIn; };
        m_loader = std::make_unique<BootLoader>(m_flash, facts, *this);
    }

    /// The columns of the one frame that answers.
    std::string ask(const std::string& word, const std::string& argument, const QByteArray& bytes = {})
    {
        m_answer.clear();
        m_loader->command(word, argument);
        if (!bytes.isEmpty())
            m_loader->take({bytes.constData(), std::size_t(bytes.size())});
        return m_answer;
    }
    static std::string number(qint64 value) { return std::to_string(value); }
    std::string begin(const firmware::FirmwareFile& file, bool older = false)
    {
        const QByteArray sealed = file.headerBytes + file.seal;
        return ask("bootbegin", number(sealed.size()) + ' ' + number(sim::checkOf(sealed)) + (older ? " 1" : " 0"),
                   sealed);
    }
    std::string block(const firmware::FirmwareFile& file, int index)
    {
        const QByteArray bytes = file.image.mid(index * Slot::kBlockSize, Slot::kBlockSize);
        return ask("bootblock",
                   number(index) + ' ' + number(bytes.size()) + ' ' + number(sim::blockCheck(index, bytes)), bytes);
    }
    void sendAll(const firmware::FirmwareFile& file)
    {
        ASSERT_THAT(begin(file, true), StartsWith("1"));
        for (int i = 0; i * Slot::kBlockSize < file.image.size(); ++i)
            ASSERT_THAT(block(file, i), StartsWith("2"));
    }
    /// A whole update as a host does it, restart included, or as much of it as there is power for.
    void update(const firmware::FirmwareFile& file)
    {
        if (begin(file)[0] != '1')
            return;
        for (int i = 0; i * Slot::kBlockSize < file.image.size(); ++i)
            block(file, i);
        ask("bootswitch", "0");
        if (m_loader->takeRestart())
            m_loader->start();
    }
    /// How many bytes of flash an update of the instrument as it is writes; it is made.
    qint64 bytesOfUpdate(const firmware::FirmwareFile& file)
    {
        constexpr qint64 kMore = 1'000'000;
        m_flash.losePowerAfter(kMore);
        update(file);
        const qint64 left = *m_flash.left();
        powerUp();
        EXPECT_EQ(*m_loader->runningHeader(), file.header);
        return kMore - left;
    }
    /// "3" with this reason.
    static std::string refusal(BootLoader::Refusal reason) { return "3 " + number(static_cast<int>(reason)); }

    void send(const sim::Frame& frame) override
    {
        const QByteArray bytes(frame.data(), qsizetype(frame.size()));
        EXPECT_EQ(bytes[0], 'w');
        m_answer = (QByteArray(1, bytes[2]) + ' ' + bytes.mid(4, 13).trimmed()).toStdString();
        m_second = bytes.mid(18, 13).trimmed().toInt();
    }
    void sendRaw(std::string_view) override {}

    FirmwareMaker m_maker;
    Flash m_flash;
    std::unique_ptr<BootLoader> m_loader;
    std::string m_answer;
    int m_second = 0; ///< N2 of the last answer
    bool m_reportsIn = true;
    const firmware::FirmwareFile m_file = m_maker.make(FirmwareMaker::header(), FirmwareMaker::image(2500));
};

using Refusal = BootLoader::Refusal;

} // namespace

TEST_F(BootLoaderTest, ANewInstrumentRunsTheImageOfTheFactory)
{
    EXPECT_FALSE(m_loader->runningHeader().has_value());
    EXPECT_TRUE(m_loader->runningIsWhole());
    EXPECT_EQ(ask("boot", ""), "0 0");
}

TEST_F(BootLoaderTest, AnImageRunsAfterTheRestartAndNotBefore)
{
    sendAll(m_file);
    EXPECT_EQ(m_loader->state(), BootLoader::State::Whole);
    EXPECT_THAT(ask("bootswitch", "0"), StartsWith("4"));
    EXPECT_FALSE(m_loader->runningHeader().has_value());
    EXPECT_TRUE(m_loader->takeRestart());
    EXPECT_FALSE(m_loader->takeRestart());
    m_loader->start();
    ASSERT_TRUE(m_loader->runningHeader().has_value());
    EXPECT_EQ(*m_loader->runningHeader(), m_file.header);
    EXPECT_EQ(ask("boot", ""), "0 0");
}

TEST_F(BootLoaderTest, AnImageThatDoesNotReportInIsRolledBack)
{
    sendAll(m_file);
    ASSERT_THAT(ask("bootswitch", "0"), StartsWith("4"));
    m_reportsIn = false;
    m_loader->start();
    EXPECT_FALSE(m_loader->runningHeader().has_value());
    EXPECT_EQ(ask("boot", ""), "0 3");
    m_loader->start();
    EXPECT_EQ(ask("boot", ""), "0 3") << "it is not tried again";
}

TEST_F(BootLoaderTest, AnImageThatTakesThePowerDownWithItIsTriedOnce)
{
    sendAll(m_file);
    ASSERT_THAT(ask("bootswitch", "0"), StartsWith("4"));
    // The note that it is being tried is twelve bytes; its report is never written.
    m_flash.losePowerAfter(12);
    m_loader->start();
    powerUp();
    EXPECT_FALSE(m_loader->runningHeader().has_value());
    EXPECT_EQ(m_loader->state(), BootLoader::State::RolledBack);
}

TEST_F(BootLoaderTest, ThePlaceThatRunsIsNeverTouched)
{
    sendAll(m_file);
    ASSERT_THAT(ask("bootswitch", "0"), StartsWith("4"));
    m_loader->start();
    const QByteArray running = m_flash.bytes(Flash::Slot1);
    sendAll(m_maker.make(FirmwareMaker::header(1, 30, 0), FirmwareMaker::image(2000, 9)));
    EXPECT_EQ(m_flash.bytes(Flash::Slot1), running);
    EXPECT_EQ(m_loader->runningSlot(), 1);
}

TEST_F(BootLoaderTest, WhatIsRefusedErasesNothing)
{
    ASSERT_THAT(begin(m_file), StartsWith("1"));
    ASSERT_THAT(block(m_file, 0), StartsWith("2"));
    const Flash before = m_flash;
    firmware::FirmwareFile foreign = m_file;
    firmware::sign(foreign, firmware::SigningKey::generate());
    EXPECT_EQ(begin(foreign), refusal(Refusal::NotTrusted));
    firmware::Header header = FirmwareMaker::header();
    header.model = QStringLiteral("DT46");
    EXPECT_EQ(begin(m_maker.make(header, m_file.image)), refusal(Refusal::OtherModel));
    header = FirmwareMaker::header();
    header.hardware = {7};
    EXPECT_EQ(begin(m_maker.make(header, m_file.image)), refusal(Refusal::OtherHardware));
    EXPECT_EQ(begin(m_maker.make(FirmwareMaker::header(1, 27), m_file.image)), refusal(Refusal::Older));
    EXPECT_EQ(begin(m_maker.make(FirmwareMaker::header(), FirmwareMaker::image(Slot::kLargestImage + 1))),
              refusal(Refusal::TooLarge));
    EXPECT_EQ(m_flash, before);
}

TEST_F(BootLoaderTest, AnOlderImageMustBeWantedAgainWhenImagesAreChanged)
{
    const firmware::FirmwareFile older = m_maker.make(FirmwareMaker::header(1, 27), m_file.image);
    sendAll(older);
    EXPECT_EQ(ask("bootswitch", "0"), refusal(Refusal::Older));
    EXPECT_THAT(ask("bootswitch", "1"), StartsWith("4"));
}

TEST_F(BootLoaderTest, ASpoiltHeaderOrBlockIsAskedForAgain)
{
    const QByteArray sealed = m_file.headerBytes + m_file.seal;
    EXPECT_EQ(ask("bootbegin", number(sealed.size()) + " 1 0", sealed), refusal(Refusal::Damaged));
    ASSERT_THAT(begin(m_file), StartsWith("1"));
    EXPECT_EQ(ask("bootblock", "0 1024 1", m_file.image.first(1024)), refusal(Refusal::Damaged));
    EXPECT_EQ(ask("bootblock", "0 1000 1", m_file.image.first(1000)), refusal(Refusal::Damaged));
    EXPECT_EQ(ask("bootblock", "nonsense"), refusal(Refusal::Damaged));
    EXPECT_EQ(ask("bootblock", "0 99999 1"), refusal(Refusal::Damaged));
    EXPECT_THAT(block(m_file, 0), StartsWith("2"));
}

TEST_F(BootLoaderTest, BlocksComeInTurnAndOneThatIsHeldIsAnsweredAgain)
{
    EXPECT_EQ(block(m_file, 0), refusal(Refusal::NothingBegun));
    ASSERT_THAT(begin(m_file), StartsWith("1"));
    EXPECT_EQ(block(m_file, 1), refusal(Refusal::OutOfTurn));
    EXPECT_EQ(block(m_file, 0), "2 0");
    EXPECT_EQ(block(m_file, 0), "2 0");
    EXPECT_EQ(block(m_file, 1), "2 1");
    EXPECT_EQ(ask("bootswitch", "0"), refusal(Refusal::OutOfTurn));
    EXPECT_EQ(m_second, 2) << "the block to go on with";
}

TEST_F(BootLoaderTest, ATransferGoesOnWhereItStopped)
{
    ASSERT_THAT(begin(m_file), StartsWith("1"));
    ASSERT_EQ(block(m_file, 0), "2 0");
    ASSERT_EQ(block(m_file, 1), "2 1");
    m_loader->hostLeft();
    powerUp();
    EXPECT_EQ(ask("boot", ""), "0 1");
    EXPECT_EQ(begin(m_file), "1 2");
}

TEST_F(BootLoaderTest, ABlockThatWasHalfWrittenDoesNotCount)
{
    ASSERT_THAT(begin(m_file), StartsWith("1"));
    ASSERT_EQ(block(m_file, 0), "2 0");
    m_flash.losePowerAfter(700);
    EXPECT_EQ(block(m_file, 1), "") << "an instrument without power says nothing";
    powerUp();
    EXPECT_EQ(begin(m_file), "1 1");
}

TEST_F(BootLoaderTest, PowerLostAtEveryByteOfHeaderBlocksAndRecordsLeavesAWholeImageAndTheNextAttemptFinishes)
{
    const firmware::FirmwareFile file = m_maker.make(FirmwareMaker::header(), FirmwareMaker::image(1300));
    const qint64 all = bytesOfUpdate(file);
    EXPECT_GT(all, 1300 + firmware::kSealSize + 3 * 12) << "header, blocks and three records are written";
    for (qint64 first = 1; first <= all; ++first) {
        m_flash = Flash();
        powerUp();
        // Power goes again at another byte of what is left, and once more while the instrument starts.
        for (const qint64 lost : {first, 1 + first * 7919 % all, 1 + first % 13}) {
            m_flash.losePowerAfter(lost);
            update(file);
            // What a simulated instrument keeps between two runs is this text.
            m_flash = Flash::fromJson(m_flash.toJson());
            powerUp();
            ASSERT_TRUE(m_loader->runningIsWhole()) << first;
            ASSERT_TRUE(!m_loader->runningHeader() || *m_loader->runningHeader() == file.header) << first;
        }
        if (!m_loader->runningHeader())
            update(file);
        ASSERT_TRUE(m_loader->runningHeader().has_value()) << first;
        ASSERT_TRUE(m_loader->runningIsWhole()) << first;
    }
}

TEST_F(BootLoaderTest, AnUpdateOfAnUpdateSurvivesTheLossOfPowerAtEveryByteOfItsRecords)
{
    const firmware::FirmwareFile first = m_maker.make(FirmwareMaker::header(), FirmwareMaker::image(600)),
                                 second = m_maker.make(FirmwareMaker::header(1, 30, 0), FirmwareMaker::image(700, 5));
    update(first);
    const Flash before = m_flash;
    const qint64 all = bytesOfUpdate(second);
    m_flash = before;
    for (qint64 lost = all - 40; lost <= all; ++lost) {
        m_flash = before;
        powerUp();
        m_flash.losePowerAfter(lost);
        update(second);
        powerUp();
        ASSERT_TRUE(m_loader->runningHeader().has_value()) << "the image of the factory is gone by now";
        ASSERT_TRUE(m_loader->runningIsWhole());
        const firmware::Header running = *m_loader->runningHeader();
        ASSERT_TRUE(running == first.header || running == second.header);
        if (running == first.header)
            update(second);
        ASSERT_EQ(*m_loader->runningHeader(), second.header) << lost;
    }
}

TEST_F(BootLoaderTest, AnImageThatIsNotTheOneOfItsHeaderNeverRuns)
{
    firmware::FirmwareFile other = m_file;
    other.image[5] = static_cast<char>(other.image[5] ^ 1);
    sendAll(other);
    EXPECT_EQ(ask("bootswitch", "0"), refusal(Refusal::OtherImage));
    EXPECT_FALSE(m_loader->takeRestart());
    EXPECT_EQ(begin(m_file), "1 0") << "it is begun from the first block";
}

TEST_F(BootLoaderTest, BytesThatDoNotComeAreGivenUp)
{
    m_loader->command("bootbegin", "200 1 0");
    EXPECT_TRUE(m_loader->isReceiving());
    m_answer.clear();
    m_loader->giveUpBytes();
    EXPECT_FALSE(m_loader->isReceiving());
    EXPECT_EQ(m_answer, refusal(Refusal::Damaged));
}

TEST_F(BootLoaderTest, TheFlashSurvivesItsText)
{
    sendAll(m_file);
    EXPECT_EQ(Flash::fromJson(m_flash.toJson()), m_flash);
    EXPECT_EQ(Flash::fromJson({}), Flash());
}
