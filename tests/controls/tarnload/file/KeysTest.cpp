// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/file/Keys.h"

#include "support/FirmwareMaker.h"

#include <gmock/gmock.h>

using firmware::PublicKey;
using firmware::SigningKey;
using firmware::TrustedKeys;
using ::testing::HasSubstr;

TEST(Keys, ASecretKeySurvivesItsText)
{
    const SigningKey key = SigningKey::generate();
    const ValueOr<SigningKey> read = SigningKey::fromText(key.toText());
    ASSERT_TRUE(read.ok()) << read.sentence().toStdString();
    const QByteArray seal = read.value().seal("message");
    EXPECT_TRUE(key.publicKey().verifies("message", seal.mid(firmware::kKeyIdSize)));
    EXPECT_FALSE(key.publicKey().verifies("massage", seal.mid(firmware::kKeyIdSize)));
}

TEST(Keys, APublicKeySurvivesItsText)
{
    const PublicKey key = SigningKey::generate().publicKey();
    const std::optional<PublicKey> read = PublicKey::fromText(key.toText());
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->id, key.id);
    EXPECT_EQ(read->bytes, key.bytes);
}

TEST(Keys, ATextThatIsNoKeyIsRefused)
{
    const QByteArray good = SigningKey::generate().publicKey().toText();
    for (const QByteArray& text : {QByteArray(), QByteArray("untrusted comment: x"), good.mid(1), good.chopped(8),
                                   QByteArray("untrusted comment: x\n!!!!\n")})
        EXPECT_FALSE(PublicKey::fromText(text).has_value()) << text.constData();
    EXPECT_THAT(SigningKey::fromText(good).sentence().toStdString(), HasSubstr("no secret key"));
}

TEST(Keys, ADamagedSecretKeyIsRefused)
{
    const QByteArray text = SigningKey::generate().toText();
    QByteArray bytes = QByteArray::fromBase64(text.split('\n')[1]);
    bytes[100] = static_cast<char>(bytes[100] ^ 1);
    EXPECT_THAT(SigningKey::fromText("untrusted comment: x\n" + bytes.toBase64() + '\n').sentence().toStdString(),
                HasSubstr("damaged"));
}

TEST(Keys, ASecretKeyWithAPasswordIsRefusedWithTheReason)
{
    QByteArray bytes = QByteArray::fromBase64(SigningKey::generate().toText().split('\n')[1]);
    bytes.replace(2, 2, "Sc");
    EXPECT_THAT(SigningKey::fromText("untrusted comment: x\n" + bytes.toBase64() + '\n').sentence().toStdString(),
                HasSubstr("password"));
}

TEST(TrustedKeys, TheFolderHoldsWhatIsTrusted)
{
    FirmwareMaker maker;
    const TrustedKeys keys = TrustedKeys::ofFolder(maker.keyFolder());
    EXPECT_FALSE(keys.isEmpty());
    EXPECT_TRUE(keys.find(maker.key.publicKey().id).has_value());
    EXPECT_FALSE(keys.find(SigningKey::generate().publicKey().id).has_value());
}

TEST(TrustedKeys, AFolderThatIsMissingOrEmptyTrustsNobody)
{
    const QTemporaryDir empty;
    EXPECT_TRUE(TrustedKeys::ofFolder(empty.path()).isEmpty());
    EXPECT_TRUE(TrustedKeys::ofFolder(empty.filePath(QStringLiteral("none"))).isEmpty());
    EXPECT_TRUE(TrustedKeys::ofFolder(QString()).isEmpty());
}

TEST(TrustedKeys, AFileThatOthersCouldHaveWrittenIsPassedOver)
{
    FirmwareMaker maker;
    QFile file(maker.path(QStringLiteral("keys/maker.pub")));
    ASSERT_TRUE(file.setPermissions(file.permissions() | QFile::WriteOther));
    EXPECT_TRUE(TrustedKeys::ofFolder(maker.keyFolder()).isEmpty());
}

TEST(TrustedKeys, OnlyFilesNamedAsKeysCount)
{
    FirmwareMaker maker;
    ASSERT_TRUE(QFile::rename(maker.path(QStringLiteral("keys/maker.pub")), maker.path(QStringLiteral("keys/maker"))));
    maker.write(QStringLiteral("keys/readme.pub"), "no key\n");
    EXPECT_TRUE(TrustedKeys::ofFolder(maker.keyFolder()).isEmpty());
}
