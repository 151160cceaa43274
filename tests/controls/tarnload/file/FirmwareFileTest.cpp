// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/file/FirmwareFile.h"

#include "support/FirmwareMaker.h"

#include <QBuffer>
#include <QCborArray>
#include <QCborMap>
#include <QCborValue>

#include <gmock/gmock.h>

using firmware::FirmwareFile;
using firmware::Header;
using firmware::Problem;
using firmware::ReadResult;

namespace {

class FirmwareFileTest : public ::testing::Test
{
protected:
    ReadResult readBack(QByteArray bytes) const
    {
        QBuffer buffer(&bytes);
        EXPECT_TRUE(buffer.open(QBuffer::ReadOnly));
        return firmware::read(buffer, firmware::TrustedKeys::ofFolder(m_maker.keyFolder()));
    }
    Problem problemOf(const QByteArray& bytes) const { return readBack(bytes).problem; }

    FirmwareMaker m_maker;
    const QByteArray m_image = FirmwareMaker::image(3000);
    const FirmwareFile m_file = m_maker.make(FirmwareMaker::header(), m_image);
    const QByteArray m_bytes = m_file.toBytes();
    /// Everything but the image.
    const qsizetype m_head = m_bytes.size() - m_image.size();
};

} // namespace

TEST_F(FirmwareFileTest, WhatWasPackedAndSignedIsReadBack)
{
    const ReadResult result = readBack(m_bytes);
    EXPECT_EQ(result.problem, Problem::None);
    EXPECT_EQ(result.file.header, m_file.header);
    EXPECT_EQ(result.file.image, m_image);
}

TEST_F(FirmwareFileTest, AnyCborLibraryReadsIt)
{
    const QCborArray parts = QCborValue::fromCbor(m_bytes).taggedValue().toArray();
    ASSERT_EQ(parts.size(), 3);
    const QCborMap header = QCborValue::fromCbor(parts[0].toByteArray()).toMap();
    EXPECT_EQ(header.value(QStringLiteral("format")).toString(), QStringLiteral("marrowick firmware"));
    EXPECT_EQ(header.value(QStringLiteral("version")).toInteger(), 1);
    EXPECT_EQ(header.value(QStringLiteral("model")).toString(), QStringLiteral("T46"));
    EXPECT_EQ(header.value(QStringLiteral("hardware")).toArray(), QCborArray({2, 3}));
    EXPECT_EQ(header.value(QStringLiteral("major")).toInteger(), 1);
    EXPECT_EQ(header.value(QStringLiteral("minor")).toInteger(), 29);
    EXPECT_EQ(header.value(QStringLiteral("build")).toInteger(), 7);
    EXPECT_EQ(header.value(QStringLiteral("notes")).toString(), QStringLiteral("Sweeps begin sooner."));
    EXPECT_EQ(header.value(QStringLiteral("size")).toInteger(), 3000);
    EXPECT_EQ(header.value(QStringLiteral("sha256")).toByteArray().size(), 32);
    EXPECT_EQ(parts[1].toByteArray().size(), 72);
    EXPECT_EQ(parts[2].toByteArray(), m_image);
}

TEST_F(FirmwareFileTest, AFlippedBitAnywhereInHeaderOrSignatureIsRefused)
{
    for (qsizetype at = 0; at < m_head; ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray spoilt = m_bytes;
            spoilt[at] = static_cast<char>(spoilt[at] ^ (1 << bit));
            EXPECT_NE(problemOf(spoilt), Problem::None) << "byte " << at << ", bit " << bit;
        }
    }
}

TEST_F(FirmwareFileTest, AFlippedBitInTheImageIsDamage)
{
    for (const qsizetype at : {m_head, m_head + 1500, m_bytes.size() - 1}) {
        QByteArray spoilt = m_bytes;
        spoilt[at] = static_cast<char>(spoilt[at] ^ 1);
        EXPECT_EQ(problemOf(spoilt), Problem::Damaged) << at;
    }
}

TEST_F(FirmwareFileTest, AFileCutAnywhereIsRefused)
{
    for (qsizetype length = 0; length < m_bytes.size(); length += length < m_head ? 1 : 97)
        EXPECT_NE(problemOf(m_bytes.left(length)), Problem::None) << length;
    EXPECT_EQ(problemOf(m_bytes.chopped(1)), Problem::Damaged);
}

TEST_F(FirmwareFileTest, BytesBehindTheImageAreDamage)
{
    EXPECT_EQ(problemOf(m_bytes + 'x'), Problem::Damaged);
}

TEST_F(FirmwareFileTest, SomethingElseIsNoFirmware)
{
    EXPECT_EQ(problemOf({}), Problem::NotFirmware);
    EXPECT_EQ(problemOf("#!/bin/sh\n"), Problem::NotFirmware);
    EXPECT_EQ(problemOf(QByteArray("\xd9\xd9\xf7\xa0", 4)), Problem::NotFirmware);
    EXPECT_EQ(problemOf(QByteArray("\xd9\xd9\xf7\x83\x43", 5) + "abc"), Problem::NotFirmware);
}

TEST_F(FirmwareFileTest, AnUnsignedFileIsRefusedAndReadByItsMaker)
{
    QByteArray bytes = firmware::pack(FirmwareMaker::header(), m_image).toBytes();
    EXPECT_EQ(problemOf(bytes), Problem::Unsigned);
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QBuffer::ReadOnly));
    const ReadResult read = firmware::readUnjudged(buffer);
    EXPECT_EQ(read.problem, Problem::None);
    EXPECT_EQ(read.file.image, m_image);
}

TEST_F(FirmwareFileTest, AKeyThatIsNotTrustedVouchesForNothing)
{
    FirmwareFile foreign = m_file;
    firmware::sign(foreign, firmware::SigningKey::generate());
    EXPECT_EQ(problemOf(foreign.toBytes()), Problem::UnknownKey);
}

TEST_F(FirmwareFileTest, TheNumberOfATrustedKeyIsNoSignature)
{
    FirmwareFile forged = m_file;
    const firmware::SigningKey other = firmware::SigningKey::generate();
    firmware::sign(forged, other);
    forged.seal.replace(0, firmware::kKeyIdSize, m_file.seal.first(firmware::kKeyIdSize));
    EXPECT_EQ(problemOf(forged.toBytes()), Problem::BadSignature);
}

TEST_F(FirmwareFileTest, WithoutAnyTrustedKeyNothingIsTrusted)
{
    QByteArray bytes = m_bytes;
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QBuffer::ReadOnly));
    EXPECT_EQ(firmware::read(buffer, firmware::TrustedKeys()).problem, Problem::NoTrustedKeys);
}

TEST_F(FirmwareFileTest, TheImageIsNotReadBeforeTheSignatureFits)
{
    FirmwareFile foreign = m_file;
    firmware::sign(foreign, firmware::SigningKey::generate());
    QByteArray bytes = foreign.toBytes();
    QBuffer buffer(&bytes);
    ASSERT_TRUE(buffer.open(QBuffer::ReadOnly));
    EXPECT_EQ(firmware::read(buffer, firmware::TrustedKeys::ofFolder(m_maker.keyFolder())).problem,
              Problem::UnknownKey);
    EXPECT_LE(buffer.pos(), m_head);
}

TEST_F(FirmwareFileTest, ALaterFormatIsTold)
{
    QCborMap header = QCborValue::fromCbor(m_file.headerBytes).toMap();
    header[QStringLiteral("version")] = 2;
    FirmwareFile later = m_file;
    later.headerBytes = header.toCborValue().toCbor();
    firmware::sign(later, m_maker.key);
    EXPECT_EQ(problemOf(later.toBytes()), Problem::LaterVersion);
    header[QStringLiteral("version")] = 3.8e180;
    later.headerBytes = header.toCborValue().toCbor();
    EXPECT_EQ(problemOf(later.toBytes()), Problem::Damaged) << "a version is a whole number";
}

TEST_F(FirmwareFileTest, ValuesBeyondTheLimitsAreRefusedThoughTheyAreSigned)
{
    const auto problemWith = [this](const std::function<void(Header&)>& change) {
        Header header = m_file.header;
        change(header);
        FirmwareFile file = m_file;
        file.headerBytes = header.toBytes();
        firmware::sign(file, m_maker.key);
        return problemOf(file.toBytes());
    };
    EXPECT_EQ(problemWith([](Header&) {}), Problem::None);
    EXPECT_EQ(problemWith([](Header& header) { header.notes = QString(128, u'n'); }), Problem::None);
    EXPECT_EQ(problemWith([](Header& header) { header.notes = QString(129, u'n'); }), Problem::Damaged);
    EXPECT_EQ(problemWith([](Header& header) { header.model.clear(); }), Problem::Damaged);
    EXPECT_EQ(problemWith([](Header& header) { header.hardware.clear(); }), Problem::Damaged);
    EXPECT_EQ(problemWith([](Header& header) { header.hardware = {3, 2}; }), Problem::Damaged);
    EXPECT_EQ(problemWith([](Header& header) { header.hardware = {2, 2}; }), Problem::Damaged);
    EXPECT_EQ(problemWith([](Header& header) { header.minor = -1; }), Problem::Damaged);
    EXPECT_EQ(problemWith([](Header& header) { header.imageSize = 0; }), Problem::Damaged);
    EXPECT_EQ(problemWith([](Header& header) { header.imageSize = firmware::kLargestImage + 1; }), Problem::Damaged);
    EXPECT_EQ(problemWith([](Header& header) { header.imageSize += 1; }), Problem::Damaged);
    EXPECT_EQ(problemWith([](Header& header) { header.imageHash.chop(1); }), Problem::Damaged);
}

TEST(FirmwareHeader, VersionsAreComparedByMajorThenMinorThenBuild)
{
    const Header header = FirmwareMaker::header(1, 29, 7);
    EXPECT_FALSE(header.isOlderThan(1, 29, 7));
    EXPECT_TRUE(header.isOlderThan(1, 29, 8));
    EXPECT_TRUE(header.isOlderThan(1, 30, 0));
    EXPECT_TRUE(header.isOlderThan(2, 0, 0));
    EXPECT_FALSE(header.isOlderThan(1, 4, 90));
    EXPECT_EQ(header.versionText(), QStringLiteral("V1.29 Build 7"));
}
