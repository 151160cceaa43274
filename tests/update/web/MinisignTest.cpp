// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/Minisign.h"

#include "update/web/SigningKey.h"

#include <QBuffer>
#include <QDir>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace minisign;
using ::testing::HasSubstr;

namespace {

// Made with Debian's minisign 0.11 over "hello update\n".
const QByteArray kContent = "hello update\n";
const QByteArray kPublicKey = "untrusted comment: minisign public key B65828CFCF6D263\n"
                              "RWRj0vb8jIJlCwuNJmDAlsXVAOcHRlhG/L4lprNScHK37b6hWogmoBvi\n";
const QByteArray kPrehashed =
    "untrusted comment: signature from minisign secret key\n"
    "RURj0vb8jIJlC4P+MlcBqBDU50Gxpu8Xaf2qk1MDJSkdSdCIWFt2iV0uvN9UZ+XhnTIgrfCNV9VuhCPsJjlUs0ct0HA68TMY9Qw=\n"
    "trusted comment: timestamp:1 file:a.deb\n"
    "Zl6++SFkSlNJFIOtS4a8iVrGgGrOTjxZfs6jH92CeX0wih8+PsN4j6Tm8Wl+A3MDnKe2tgeS0hQvAiynSiLLDQ==\n";
const QByteArray kOlder =
    "untrusted comment: signature from minisign secret key\n"
    "RWRj0vb8jIJlCzuIDfptUd0MtkpTGZwAqSoBjxDazrc/jpPvG91D8/EJjnX7P/kWWHcqU2hIIIQIeSxbbBvouqikkl2QNFFUTAo=\n"
    "trusted comment: timestamp:1795301684\tfile:a.deb\n"
    "0CaTq+mG3p26G01P8m2k5cBalQO4baaWhvyYMXurssH2MauR4Yo3o/MZe8MdR0cvex8Peh6Cu+Bt/bpQzEVSCw==\n";

Outcome verified(QByteArray content, const QByteArray& signature, const QByteArray& publicKey)
{
    const auto key = readPublicKey(publicKey);
    const auto read = readSignature(signature);
    EXPECT_TRUE(key) << key.sentence().toStdString();
    if (!key || !read)
        return Outcome::failure(read.sentence());
    QBuffer device(&content);
    EXPECT_TRUE(device.open(QBuffer::ReadOnly));
    return verify(device, read.value(), {key.value()});
}

} // namespace

TEST(Minisign, SignaturesOfTheMinisignProgramFit)
{
    EXPECT_TRUE(verified(kContent, kPrehashed, kPublicKey));
    EXPECT_TRUE(verified(kContent, kOlder, kPublicKey));
    EXPECT_TRUE(readSignature(kPrehashed).value().prehashed);
    EXPECT_FALSE(readSignature(kOlder).value().prehashed);
    EXPECT_EQ(idText(readPublicKey(kPublicKey).value().id).toStdString(), "0B65828CFCF6D263");
}

TEST(Minisign, LineEndsOfOtherSystemsAreUnderstood)
{
    EXPECT_TRUE(
        verified(kContent, QByteArray(kPrehashed).replace("\n", "\r\n"), QByteArray(kPublicKey).replace("\n", "\r\n")));
}

TEST(Minisign, AContentThatDiffersInOneBitDoesNotFit)
{
    for (const QByteArray& signature : {kPrehashed, kOlder}) {
        for (qsizetype bit = 0; bit < kContent.size() * 8; ++bit) {
            QByteArray changed = kContent;
            changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << (bit % 8)));
            ASSERT_FALSE(verified(changed, signature, kPublicKey)) << bit;
        }
        EXPECT_FALSE(verified({}, signature, kPublicKey));
        EXPECT_FALSE(verified(kContent + '\n', signature, kPublicKey));
    }
    EXPECT_EQ(verified("x", kPrehashed, kPublicKey).sentence().toStdString(),
              "It does not fit its signature: one of the two was changed or damaged. Fetch both again.");
}

TEST(Minisign, ASignatureThatDiffersInOneBitBehindTheFirstCommentIsRefused)
{
    const qsizetype begin = kPrehashed.indexOf('\n') + 1;
    for (qsizetype place = begin; place < kPrehashed.size() - 1; ++place) {
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray changed = kPrehashed;
            changed[place] = static_cast<char>(changed[place] ^ (1 << bit));
            ASSERT_FALSE(verified(kContent, changed, kPublicKey)) << place << ' ' << bit;
        }
    }
}

TEST(Minisign, ASignatureThatIsCutIsRefusedAtEveryLength)
{
    for (qsizetype length = 0; length < kPrehashed.size() - 1; ++length)
        ASSERT_FALSE(verified(kContent, kPrehashed.first(length), kPublicKey)) << length;
    EXPECT_EQ(readSignature("").sentence().toStdString(), "This is no signature of the minisign program.");
    EXPECT_FALSE(readSignature(kPrehashed + "more\n"));
    EXPECT_FALSE(readSignature("untrusted comment: " + QByteArray(kLongestSignatureFile, 'x') + '\n' + kPrehashed));
}

TEST(Minisign, AnotherKeyIsNotTrusted)
{
    const SigningKey other;
    EXPECT_EQ(verified(kContent, kPrehashed, other.publicKeyText()).sentence().toStdString(),
              "It was signed with the key 0B65828CFCF6D263, which is not trusted here.");
    const auto none = readSignature(kPrehashed);
    QBuffer device;
    ASSERT_TRUE(device.open(QBuffer::ReadOnly));
    EXPECT_THAT(verify(device, none.value(), {}).sentence().toStdString(), HasSubstr("is not trusted here."));
}

TEST(Minisign, AKeyThatBorrowsTheNumberOfATrustedOneDoesNotFit)
{
    const SigningKey other;
    PublicKey borrowed = readPublicKey(other.publicKeyText()).value();
    borrowed.id = readPublicKey(kPublicKey).value().id;
    QByteArray content = kContent;
    QBuffer device(&content);
    ASSERT_TRUE(device.open(QBuffer::ReadOnly));
    EXPECT_THAT(verify(device, readSignature(kPrehashed).value(), {borrowed}).sentence().toStdString(),
                HasSubstr("does not fit its signature"));
}

TEST(Minisign, WhatTheTestsSignFitsForEverySize)
{
    const SigningKey key;
    for (const qsizetype size : {0, 1, 65535, 65536, 65537, 1000000}) {
        const QByteArray content(size, 'x');
        EXPECT_TRUE(verified(content, key.sign(content), key.publicKeyText())) << size;
        EXPECT_TRUE(verified(content, key.sign(content, false), key.publicKeyText())) << size;
    }
}

TEST(Minisign, WhatIsNoKeyIsRefused)
{
    const QByteArray line = kPublicKey.mid(kPublicKey.indexOf('\n') + 1);
    for (const QByteArray& text : {QByteArray(), QByteArray("RWRj"), line, "comment: \n" + line,
                                   "untrusted comment: \n" + line.chopped(3), "untrusted comment: \n!" + line,
                                   "untrusted comment: \n" + QByteArray(line).replace("RWR", "RUR"), kPrehashed})
        EXPECT_EQ(readPublicKey(text).sentence().toStdString(), "This is no public key of the minisign program.")
            << text.constData();
}

TEST(Minisign, AFolderGivesTheKeysThatNobodyElseCanHaveWritten)
{
    const QTemporaryDir folder;
    const auto write = [&folder](const char* name, const QByteArray& text) {
        QFile file(folder.filePath(QLatin1String(name)));
        return file.open(QFile::WriteOnly) && file.write(text) == text.size();
    };
    EXPECT_TRUE(keysOfFolder(folder.path()).empty());
    EXPECT_TRUE(keysOfFolder(folder.filePath("none")).empty());
    EXPECT_TRUE(keysOfFolder("").empty());
    ASSERT_TRUE(QDir(folder.path()).mkdir("folder.pub"));
    ASSERT_TRUE(write("b.pub", kPublicKey) && write("a.pub", SigningKey().publicKeyText()) &&
                write("c.pub", "no key") && write("d.txt", kPublicKey));
    const auto keys = keysOfFolder(folder.path());
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_EQ(idText(keys[1].id).toStdString(), "0B65828CFCF6D263");
    ASSERT_EQ(::chmod(QFile::encodeName(folder.filePath("a.pub")).constData(), 0664), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(folder.filePath("b.pub")).constData(), 0646), 0);
    EXPECT_TRUE(keysOfFolder(folder.path()).empty()) << "others could have written them";
}
