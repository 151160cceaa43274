// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/SafeFile.h"

#include "files/SafeFileCalls.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
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

/// System calls of which one fails: the one whose number, counted from 0, is failingCall.
struct FailingCalls
{
    static inline int failingCall = -1;
    static inline int error = EIO;
    static inline int count = 0;
    static inline std::size_t longestWrite = 1000;

    static bool fails()
    {
        if (count++ != failingCall)
            return false;
        errno = error;
        return true;
    }

    /// Starts counting anew.
    static files::SafeFileCalls with(int call, int errorNumber)
    {
        failingCall = call;
        error = errorNumber;
        count = 0;
        files::SafeFileCalls calls;
        calls.openTemporary = [](int folder, int flags) {
            return fails() ? -1 : files::SafeFileCalls().openTemporary(folder, flags);
        };
        calls.write = [](int fd, const void* bytes, std::size_t size) {
            return fails() ? ssize_t(-1) : ::write(fd, bytes, std::min(size, longestWrite));
        };
        calls.fsync = [](int fd) { return fails() ? -1 : ::fsync(fd); };
        calls.fchmod = [](int fd, mode_t mode) { return fails() ? -1 : ::fchmod(fd, mode); };
        calls.linkat = [](int from, const char* name, int to, const char* newName, int flags) {
            return fails() ? -1 : ::linkat(from, name, to, newName, flags);
        };
        calls.renameat = [](int from, const char* name, int to, const char* newName) {
            return fails() ? -1 : ::renameat(from, name, to, newName);
        };
        calls.unlinkat = [](int folder, const char* name, int flags) {
            return fails() ? -1 : ::unlinkat(folder, name, flags);
        };
        return calls;
    }
};

} // namespace

TEST(SafeFile, WithAnyOfItsCallsFailingOnceTheOldFileOrTheNewOneIsThereWholeAndNoOther)
{
    const QByteArray oldBytes(5000, 'o');
    const QByteArray newBytes(4500, 'n');
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    for (const int error : {EIO, ENOSPC, EACCES, EDQUOT}) {
        int failures = 0;
        int replaced = 0;
        for (int call = 0;; ++call) {
            SCOPED_TRACE(testing::Message() << "call " << call << " with " << std::strerror(error));
            ASSERT_TRUE(files::writeFile(name, oldBytes).ok());
            const Outcome outcome = files::writeFile(name, newBytes, FailingCalls::with(call, error));
            const QByteArray content = contentOf(name);
            EXPECT_EQ(filesIn(folder), QStringList{QStringLiteral("plot")});
            if (FailingCalls::count <= call) { // all calls have had their turn
                EXPECT_TRUE(outcome.ok());
                EXPECT_EQ(content, newBytes);
                break;
            }
            ++failures;
            EXPECT_FALSE(outcome.ok());
            EXPECT_TRUE(outcome.sentence().contains(name));
            EXPECT_TRUE(outcome.sentence().contains(QString::fromLocal8Bit(std::strerror(error))));
            EXPECT_TRUE(content == oldBytes || content == newBytes);
            replaced += content == newBytes ? 1 : 0;
            EXPECT_EQ(outcome.sentence().contains(QStringLiteral("The file is as it was before.")),
                      content == oldBytes);
        }
        // Open, permissions, five writes, sync, link, rename and the sync of the folder: only behind the rename is the
        // new file there.
        EXPECT_EQ(failures, 11);
        EXPECT_EQ(replaced, 1);
    }
}

TEST(SafeFile, AFirstSaveThatFailsAtAnyCallLeavesTheWholeFileOrNone)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    for (int call = 0;; ++call) {
        SCOPED_TRACE(call);
        QFile::remove(name);
        const Outcome outcome = files::writeFile(name, QByteArray(2500, 'n'), FailingCalls::with(call, EIO));
        if (FailingCalls::count <= call) {
            EXPECT_TRUE(outcome.ok());
            EXPECT_EQ(call, 8);
            break;
        }
        EXPECT_FALSE(outcome.ok());
        EXPECT_TRUE(outcome.sentence().contains(name));
        if (QFileInfo::exists(name)) {
            EXPECT_EQ(contentOf(name), QByteArray(2500, 'n'));
            EXPECT_EQ(filesIn(folder).size(), 1);
        } else {
            EXPECT_EQ(filesIn(folder).size(), 0);
        }
    }
}

TEST(SafeFile, ASaveBehindAKilledOneFailsAtAnyCallOrTakesTheHiddenFileAway)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    for (int call = 0;; ++call) {
        SCOPED_TRACE(call);
        ASSERT_TRUE(files::writeFile(name, "old").ok());
        QFile left(folder.filePath(QStringLiteral(".plot.saving")));
        ASSERT_TRUE(left.open(QFile::WriteOnly));
        const Outcome outcome = files::writeFile(name, "new", FailingCalls::with(call, EIO));
        const bool allDone = FailingCalls::count <= call;
        const QByteArray content = contentOf(name);
        EXPECT_TRUE(content == "old" || content == "new");
        EXPECT_TRUE(!outcome.ok() || content == "new");
        ASSERT_TRUE(files::writeFile(name, "next").ok());
        EXPECT_EQ(filesIn(folder), QStringList{QStringLiteral("plot")});
        if (allDone) {
            EXPECT_TRUE(outcome.ok());
            break;
        }
    }
}

TEST(SafeFile, AnInterruptedCallIsTriedAgain)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    const QByteArray bytes(2500, 'n');
    for (int call = 1; call <= 4; ++call) { // three writes and a sync
        ASSERT_TRUE(files::writeFile(name, bytes, FailingCalls::with(call, EINTR)).ok()) << call;
        EXPECT_EQ(contentOf(name), bytes);
        QFile::remove(name);
    }
}

TEST(SafeFile, AFolderThatCannotBeSyncedIsNoFailure)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    EXPECT_TRUE(files::writeFile(name, "new", FailingCalls::with(5, EINVAL)).ok());
    EXPECT_EQ(FailingCalls::count, 6); // it was the last call
    EXPECT_EQ(contentOf(name), "new");
}

TEST(SafeFile, AFileSystemWithoutNamelessFilesIsServedToo)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    ASSERT_TRUE(files::writeFile(name, "old").ok());
    EXPECT_TRUE(files::writeFile(name, "new", FailingCalls::with(0, EOPNOTSUPP)).ok());
    EXPECT_EQ(FailingCalls::count, 1);
    EXPECT_EQ(contentOf(name), "new");
    EXPECT_EQ(filesIn(folder).size(), 1);
}

TEST(SafeFile, MakesAndReplacesAFileAndLeavesNoOther)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("\u00fcber plot.gzd"));
    ASSERT_TRUE(files::writeFile(name, "one").ok());
    EXPECT_EQ(contentOf(name), "one");
    ASSERT_TRUE(files::writeFile(name, QByteArray(1 << 20, 'x')).ok());
    EXPECT_EQ(contentOf(name), QByteArray(1 << 20, 'x'));
    ASSERT_TRUE(files::writeFile(name, "").ok());
    EXPECT_EQ(contentOf(name), "");
    EXPECT_EQ(filesIn(folder).size(), 1);
}

TEST(SafeFile, KeepsPermissionsAndSymbolicLinks)
{
    QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("target"));
    const QString link = folder.filePath(QStringLiteral("link"));
    ASSERT_TRUE(files::writeFile(target, "old").ok());
    ASSERT_TRUE(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner));
    ASSERT_TRUE(QFile::link(target, link));
    ASSERT_TRUE(files::writeFile(link, "new").ok());
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
    EXPECT_FALSE(files::writeFile(folder.path(), "x").ok());
    EXPECT_FALSE(files::writeFile(QStringLiteral("/dev/null"), "x").ok());
    EXPECT_FALSE(files::writeFile(QString(), "x").ok());
    const QString nowhere = folder.filePath(QStringLiteral("missing/file"));
    EXPECT_TRUE(files::writeFile(nowhere, "x").sentence().contains(nowhere));
}

TEST(SafeFile, AWriteThatFailsAtAnyByteKeepsTheOldFileAndLeavesNoOther)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    ASSERT_TRUE(files::writeFile(name, "old").ok());
    // A limit on the size of files fails a write as a full disk does.
    rlimit unlimited{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    std::vector<Outcome> outcomes;
    for (rlim_t bytes = 0; bytes < 200; ++bytes) {
        rlimit limit = unlimited;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
        outcomes.push_back(files::writeFile(name, QByteArray(200, 'n')));
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
    ASSERT_TRUE(files::writeFile(name, QByteArray(300000, 'a')).ok());
    std::mt19937 random(7);
    for (int round = 0; round < 1000; ++round) {
        const char letter = static_cast<char>('a' + round % 26);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;)
                (void)files::writeFile(name, QByteArray(300000, letter));
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
    ASSERT_TRUE(files::writeFile(name, "last").ok());
    EXPECT_EQ(filesIn(folder), QStringList{QStringLiteral("plot")});
}
