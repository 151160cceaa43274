// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/Installer.h"

#include "update/web/SigningKey.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

using ::testing::EndsWith;
using ::testing::StartsWith;

namespace {

const QByteArray kContent = "#!/bin/sh\nprintf started > \"$(dirname \"$0\")/started\"\n";

class InstallerTest : public ::testing::Test
{
protected:
    InstallerTest()
    {
        QDir(m_folder.path()).mkdir(QStringLiteral("keys"));
        QDir(m_folder.path()).mkdir(QStringLiteral("files"));
        write("keys/ours.pub", m_key.publicKeyText());
        write("files/Setup.exe", kContent);
        write("files/Setup.exe.minisig", m_key.sign(kContent));
        mode("files/Setup.exe", 0644);
    }

    QString path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    void write(const char* name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    void mode(const char* name, mode_t mode) const
    {
        ASSERT_EQ(::chmod(QFile::encodeName(path(name)).constData(), mode), 0);
    }
    std::string refusal(const char* name = "files/Setup.exe") const
    {
        return installer::mayStart(path(name), path("keys")).sentence().toStdString();
    }

    const SigningKey m_key;
    const QTemporaryDir m_folder;
};

} // namespace

TEST_F(InstallerTest, AFileOfTheUsersWithASignatureOfATrustedKeyMayStart)
{
    EXPECT_EQ(refusal(), "");
    write("files/Setup.exe.minisig", m_key.sign(kContent, false));
    EXPECT_EQ(refusal(), "");
}

TEST_F(InstallerTest, AFileThatOthersMayWriteIsNotStarted)
{
    for (const mode_t wrong : {0664u, 0646u, 0666u, 0777u}) {
        mode("files/Setup.exe", wrong);
        EXPECT_EQ(refusal(),
                  "Setup.exe was not started. Other users may write it. Take that right away and check where "
                  "it came from.")
            << wrong;
    }
    mode("files/Setup.exe", 0755);
    EXPECT_EQ(refusal(), "");
}

TEST_F(InstallerTest, AFolderInWhichOthersMayExchangeItIsRefused)
{
    const std::string words =
        "Setup.exe was not started. Other users may change the folder that it lies in. Move it to "
        "a folder of yours.";
    for (const mode_t wrong : {0775u, 0757u, 0777u}) {
        mode("files", wrong);
        EXPECT_EQ(refusal(), words) << wrong;
    }
    mode("files", 01777);
    EXPECT_EQ(refusal(), "") << "as in the system's folder for temporary files";
    mode("files", 0755);
    ASSERT_EQ(::chmod(QFile::encodeName(m_folder.path()).constData(), 0777), 0);
    EXPECT_EQ(refusal(), words) << "a folder above";
}

TEST_F(InstallerTest, AFileOfAnotherUserIsNotStarted)
{
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(QFile::encodeName(path("files/Setup.exe")).constData(), 1, 1), 0);
        EXPECT_EQ(refusal(), "Setup.exe was not started. It belongs to another user.");
    } else {
        EXPECT_EQ(installer::mayStart(QStringLiteral("/etc/passwd"), path("keys")).sentence().toStdString(),
                  "passwd was not started. It belongs to another user.");
    }
}

TEST_F(InstallerTest, OnlyARegularFileIsStarted)
{
    ASSERT_TRUE(QFile::link(path("files/Setup.exe"), path("files/link")));
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("files/pipe")).constData(), 0600), 0);
    for (const char* name : {"files/link", "files/pipe", "files", "files/none"})
        EXPECT_THAT(refusal(name), EndsWith(" was not started. It is no regular file.")) << name;
}

TEST_F(InstallerTest, WithoutASignatureBesideItNothingIsStarted)
{
    ASSERT_TRUE(QFile::remove(path("files/Setup.exe.minisig")));
    const std::string words = "Setup.exe was not started. Its signature Setup.exe.minisig is not beside it.";
    EXPECT_EQ(refusal(), words);
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("files/Setup.exe.minisig")));
    EXPECT_EQ(refusal(), words);
}

TEST_F(InstallerTest, WhatIsNoSignatureIsTold)
{
    write("files/Setup.exe.minisig", "nothing of the kind");
    EXPECT_EQ(refusal(), "Setup.exe was not started. Setup.exe.minisig is no signature of the minisign program.");
    write("files/Setup.exe.minisig", QByteArray(1024 * 1024, 'x'));
    EXPECT_EQ(refusal(), "Setup.exe was not started. Setup.exe.minisig is no signature of the minisign program.");
}

TEST_F(InstallerTest, AFileThatWasChangedIsNotStarted)
{
    write("files/Setup.exe", kContent + ' ');
    EXPECT_EQ(refusal(),
              "Setup.exe was not started. It does not fit its signature: one of the two was changed or damaged. "
              "Fetch both again.");
}

TEST_F(InstallerTest, AKeyThatIsNotTrustedIsTold)
{
    write("files/Setup.exe.minisig", SigningKey().sign(kContent));
    EXPECT_THAT(refusal(), StartsWith("Setup.exe was not started. It was signed with the key "));
    EXPECT_THAT(refusal(), EndsWith(", which is not trusted here."));
}

TEST_F(InstallerTest, AnEmptyFolderOfKeysTrustsNobody)
{
    ASSERT_TRUE(QFile::remove(path("keys/ours.pub")));
    EXPECT_EQ(refusal(), "Setup.exe was not started. No key for program updates is trusted here: " +
                             path("keys").toStdString() + " has none.");
}

TEST_F(InstallerTest, TheFolderOfKeysIsTheSystemsUnlessTheUserNamesAnother)
{
    EXPECT_EQ(installer::trustedKeyFolder(), "/etc/marrowick/trusted-keys");
    qputenv("MARROWICK_TRUSTED_KEYS", "/some/where");
    EXPECT_EQ(installer::trustedKeyFolder(), "/some/where");
    qunsetenv("MARROWICK_TRUSTED_KEYS");
}

TEST_F(InstallerTest, AProgramIsRunAndAPackageIsOneByItsName)
{
    EXPECT_TRUE(installer::isPackage("/a/marrowick_1.29_amd64.deb"));
    EXPECT_TRUE(installer::isPackage("A.DEB"));
    for (const char* name : {"Setup.exe", "deb", "a.deb.sh", ""})
        EXPECT_FALSE(installer::isPackage(QLatin1String(name))) << name;
    EXPECT_TRUE(installer::run(path("files/Setup.exe")));
    EXPECT_TRUE(QTest::qWaitFor([this] { return QFile::exists(path("files/started")); }, 20000));
}

TEST_F(InstallerTest, WhatTheSystemCannotRunIsTold)
{
    write("files/Setup.exe", "\x7f"
                             "ELF and nothing else");
    EXPECT_EQ(installer::run(path("files/Setup.exe")).sentence().toStdString(),
              "Setup.exe was not started. The system could not run it.");
}
