// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/RuntimeFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// The environment as it was comes back at the end.
class RuntimeFolderTest : public ::testing::Test
{
protected:
    ~RuntimeFolderTest() override
    {
        qputenv("XDG_RUNTIME_DIR", m_runtime);
        if (m_temporary.isNull())
            qunsetenv("TMPDIR");
        else
            qputenv("TMPDIR", m_temporary);
    }
    void set(const char* name, const QString& value) { qputenv(name, QFile::encodeName(value)); }

    QTemporaryDir m_folder;

private:
    const QByteArray m_runtime = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray m_temporary = qgetenv("TMPDIR");
};

TEST_F(RuntimeFolderTest, TheUsersOwnFolderIsTaken)
{
    set("XDG_RUNTIME_DIR", m_folder.path());
    EXPECT_EQ(files::runtimeFolder(), m_folder.path());
}

TEST_F(RuntimeFolderTest, WithoutOneItIsMadeAmongTheTemporaryFilesForTheUserAlone)
{
    qunsetenv("XDG_RUNTIME_DIR");
    set("TMPDIR", m_folder.path());
    const QFileInfo made(files::runtimeFolder());
    ASSERT_TRUE(made.isDir());
    EXPECT_EQ(made.absolutePath(), m_folder.path());
    EXPECT_EQ(made.permissions() & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
              QFile::Permissions());
}

TEST_F(RuntimeFolderTest, WithoutAFolderForTemporaryFilesThereIsNoneAndTheRootIsLeftAlone)
{
    qunsetenv("XDG_RUNTIME_DIR");
    const QStringList before = QDir::root().entryList();
    for (const QString& temporary : {QStringLiteral("/"), m_folder.filePath(QStringLiteral("missing"))}) {
        set("TMPDIR", temporary);
        EXPECT_EQ(files::runtimeFolder(), QString()) << temporary.toStdString();
    }
    EXPECT_EQ(QDir::root().entryList(), before);
    EXPECT_FALSE(QFileInfo::exists(m_folder.filePath(QStringLiteral("missing"))));
}

TEST_F(RuntimeFolderTest, ARelativePathIsNone)
{
    set("XDG_RUNTIME_DIR", QStringLiteral("relative-run"));
    set("TMPDIR", m_folder.path());
    EXPECT_EQ(files::runtimeFolder(), QString());
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral("relative-run")));
}

} // namespace
