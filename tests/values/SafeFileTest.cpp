#include "values/SafeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QByteArray contentOf(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

QStringList filesIn(const QTemporaryDir& folder)
{
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

} // namespace

TEST(SafeFile, MakesAndReplacesAFileAndLeavesNoOther)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("\u00fcber plot.gzd"));
    ASSERT_TRUE(values::writeFile(name, "one").ok());
    EXPECT_EQ(contentOf(name), "one");
    ASSERT_TRUE(values::writeFile(name, QByteArray(1 << 20, 'x')).ok());
    EXPECT_EQ(contentOf(name), QByteArray(1 << 20, 'x'));
    ASSERT_TRUE(values::writeFile(name, "").ok());
    EXPECT_EQ(contentOf(name), "");
    EXPECT_EQ(filesIn(folder).size(), 1);
}

TEST(SafeFile, KeepsPermissionsAndSymbolicLinks)
{
    QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("target"));
    const QString link = folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(values::writeFile(target, "old").ok());
    ASSERT_TRUE(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(QFile::link(target, link));
    ASSERT_TRUE(values::writeFile(link, "new").ok());
    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(contentOf(target), "new");
    struct Permissions
    {
        static int of(const QString& name) { return int(QFileInfo(name).permissions()) & 0x7077; }
    };
    EXPECT_EQ(Permissions::of(target), int(QFile::ReadOwner | QFile::WriteOwner));
}

TEST(SafeFile, RefusesFoldersDevicesAndMissingFolders)
{
    QTemporaryDir folder;
    EXPECT_FALSE(values::writeFile(folder.path(), "x").ok());
    EXPECT_FALSE(values::writeFile(QStringLiteral("/dev/null"), "x").ok());
    EXPECT_FALSE(values::writeFile(QString(), "x").ok());
    const QString nowhere = folder.filePath(QStringLiteral("missing/file"));
    EXPECT_TRUE(values::writeFile(nowhere, "x").sentence().contains(nowhere));
}

TEST(SafeFile, AWriteThatFailsAtAnyByteKeepsTheOldFileAndLeavesNoOther)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    ASSERT_TRUE(values::writeFile(name, "old").ok());
    // A limit on the size of files fails a write as a full disk does.
    rlimit unlimited{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    std::vector<Outcome> outcomes;
    for (rlim_t bytes = 0; bytes < 200; ++bytes) {
        rlimit limit = unlimited;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
        outcomes.push_back(values::writeFile(name, QByteArray(200, 'n')));
    }
    setrlimit(RLIMIT_FSIZE, &unlimited);
    std::signal(SIGXFSZ, handler);
    for (const Outcome& outcome : outcomes) {
        EXPECT_FALSE(outcome.ok());
        EXPECT_TRUE(outcome.sentence().contains(name));
    }
    EXPECT_EQ(contentOf(name), "old");
    EXPECT_EQ(filesIn(folder).size(), 1);
}

TEST(SafeFile, ASaveKilledAtAThousandRandomMomentsLeavesTheOldFileOrTheNewOne)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    ASSERT_TRUE(values::writeFile(name, QByteArray(300000, 'a')).ok());
    std::mt19937 random(7);
    for (int round = 0; round < 1000; ++round) {
        const char letter = static_cast<char>('a' + round % 26);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;)
                (void)values::writeFile(name, QByteArray(300000, letter));
        }
        ::usleep(std::uniform_int_distribution<useconds_t>(0, 3000)(random));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        const QByteArray content = contentOf(name);
        ASSERT_EQ(content.size(), 300000) << round;
        ASSERT_EQ(content, QByteArray(300000, content[0])) << round;
        ASSERT_LE(filesIn(folder).size(), 2) << round;
    }
    ASSERT_TRUE(values::writeFile(name, "last").ok());
    EXPECT_EQ(filesIn(folder), QStringList{QStringLiteral("plot")});
}
