// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/files/ui/FileOpener.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class FileOpenerTest : public ::testing::Test
{
protected:
    FileOpenerTest()
    {
        add("plots", "PLOT", ".gad");
        add("scripts", "SCRIPT", ".mgs");
    }
    void add(const char* reader, const char* head, const char* extension)
    {
        opener.add({[head](const QByteArray& bytes) { return bytes.startsWith(head); },
                    [extension](const QString& name) { return name.contains(QLatin1String(extension)); },
                    [this, reader](const QString& file) {
                        opened << QLatin1String(reader) + QLatin1Char(' ') + QFileInfo(file).fileName();
                        return true;
                    }});
    }
    QString file(const char* name, const QByteArray& content)
    {
        QFile file(folder.filePath(QLatin1String(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return file.fileName();
    }

    QTemporaryDir folder;
    FileOpener opener;
    QStringList opened;
};

TEST_F(FileOpenerTest, contentDecidesWhateverTheNameSays)
{
    opener.OpenFromCommand(file("a.mgs", "PLOT and more"));
    opener.OpenFromCommand(file("b.gad", "SCRIPT"));
    opener.OpenFromCommand(file("bare", "SCRIPT"));
    EXPECT_EQ(opened, QStringList({QStringLiteral("plots a.mgs"), QStringLiteral("scripts b.gad"),
                                   QStringLiteral("scripts bare")}));
}

TEST_F(FileOpenerTest, theNameDecidesWhereTheContentLeavesItOpen)
{
    opener.OpenFromCommand(file("a.mgs", "?"));
    opener.OpenFromCommand(file("b.gad.bak", ""));
    opener.OpenFromCommand(folder.filePath(QStringLiteral("missing.gad")));
    EXPECT_EQ(opened, QStringList({QStringLiteral("scripts a.mgs"), QStringLiteral("plots b.gad.bak"),
                                   QStringLiteral("plots missing.gad")}));
}

TEST_F(FileOpenerTest, theFirstReaderRefusesWhatNobodyKnows)
{
    EXPECT_TRUE(opener.isKnown(file("notes.txt", "Dear diary")));
    opener.OpenFromCommand(folder.filePath(QStringLiteral("notes.txt")));
    EXPECT_EQ(opened, QStringList{QStringLiteral("plots notes.txt")});
}

TEST_F(FileOpenerTest, aWordThatIsNoFileAndLooksLikeNoneIsIgnored)
{
    EXPECT_FALSE(opener.isKnown(QStringLiteral("hello")));
    EXPECT_FALSE(opener.OpenFromCommand(QStringLiteral("hello")));
    EXPECT_FALSE(opener.OpenFromCommand(folder.path())) << "a folder is no file";
    EXPECT_TRUE(opened.isEmpty());
}

} // namespace
