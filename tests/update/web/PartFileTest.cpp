// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/PartFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace {

class PartFileTest : public ::testing::Test
{
protected:
    QString path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    std::string content(const char* name) const
    {
        QFile file(path(name));
        return file.open(QFile::ReadOnly) ? file.readAll().toStdString() : "(none)";
    }
    void write(const char* name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    const QTemporaryDir m_folder;
};

} // namespace

TEST_F(PartFileTest, TheTargetIsAsItWasUntilTheNewOneIsWhole)
{
    write("a", "old");
    PartFile file(path("a"));
    ASSERT_TRUE(file.open());
    ASSERT_TRUE(file.write(QByteArrayView("ne")));
    ASSERT_TRUE(file.write(QByteArrayView("w")));
    EXPECT_EQ(content("a"), "old");
    EXPECT_EQ(content("a.part"), "new");
    ASSERT_TRUE(file.finish());
    EXPECT_EQ(content("a"), "new");
    EXPECT_EQ(content("a.part"), "(none)");
}

TEST_F(PartFileTest, WhatIsBrokenOffStaysAsThePart)
{
    {
        PartFile file(path("a"));
        ASSERT_TRUE(file.open());
        ASSERT_TRUE(file.write(QByteArrayView("half")));
    }
    EXPECT_EQ(content("a"), "(none)");
    EXPECT_EQ(content("a.part"), "half");
    PartFile again(path("a"));
    ASSERT_TRUE(again.open());
    EXPECT_EQ(content("a.part"), "") << "each begins anew";
}

TEST_F(PartFileTest, LinksAreReplacedAndNeverWrittenThrough)
{
    write("elsewhere", "kept");
    ASSERT_TRUE(QFile::link(path("elsewhere"), path("a.part")));
    ASSERT_TRUE(QFile::link(path("elsewhere"), path("a")));
    PartFile file(path("a"));
    ASSERT_TRUE(file.open() && file.write(QByteArrayView("new")) && file.finish());
    EXPECT_EQ(content("elsewhere"), "kept");
    EXPECT_EQ(content("a"), "new");
    EXPECT_FALSE(QFileInfo(path("a")).isSymLink());
}

TEST_F(PartFileTest, NobodyElseMayWriteItWhateverTheMask)
{
    const mode_t before = ::umask(0);
    PartFile file(path("a"));
    const bool made = file.open() && file.finish();
    ::umask(before);
    ASSERT_TRUE(made);
    EXPECT_FALSE(QFile::permissions(path("a")) & (QFile::WriteGroup | QFile::WriteOther));
}

TEST_F(PartFileTest, AFailureNamesTheFileAndTheReason)
{
    EXPECT_EQ(PartFile(path("none/a")).open().sentence(),
              QStringLiteral("Cannot write %1: No such file or directory.").arg(path("none/a.part")));
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("a")));
    PartFile file(path("a"));
    ASSERT_TRUE(file.open());
    EXPECT_EQ(file.finish().sentence(), QStringLiteral("Cannot write %1: Is a directory.").arg(path("a.part")));
    EXPECT_TRUE(QFileInfo(path("a")).isDir());
    EXPECT_EQ(content("a.part"), "");
}
