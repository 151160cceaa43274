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

/// What a file system can do.
enum class Disk
{
    NamelessFiles,
    NamedFilesOnly, ///< as FAT and most shares
    NoHardLinks     ///< nameless files that cannot be given a name
};
constexpr Disk kDisks[] = {Disk::NamelessFiles, Disk::NamedFilesOnly, Disk::NoHardLinks};

/// System calls of which one fails, or all from there on: the one whose number, counted from 0, is failingCall.
struct FailingCalls
{
    static inline Disk disk = Disk::NamelessFiles;
    static inline int failingCall = -1;
    static inline bool fromThereOn = false;
    static inline int error = EIO;
    static inline int count = 0;
    static inline std::size_t longestWrite = 1000;

    static bool fails()
    {
        const int call = count++;
        if (fromThereOn ? call < failingCall || failingCall < 0 : call != failingCall)
            return false;
        errno = error;
        return true;
    }

    static int refuse(int errorNumber)
    {
        errno = errorNumber;
        return -1;
    }

    /// Starts counting anew.
    static files::SafeFileCalls with(int call, int errorNumber, bool allBehindIt = false,
                                     Disk where = Disk::NamelessFiles)
    {
        failingCall = call;
        fromThereOn = allBehindIt;
        error = errorNumber;
        count = 0;
        disk = where;
        files::SafeFileCalls calls;
        calls.openTemporary = [](int folder, int flags) {
            if (disk == Disk::NamedFilesOnly)
                return refuse(EOPNOTSUPP);
            return fails() ? -1 : files::SafeFileCalls().openTemporary(folder, flags);
        };
        calls.openNamed = [](int folder, const char* name, int flags) {
            return fails() ? -1 : files::SafeFileCalls().openNamed(folder, name, flags);
        };
        calls.write = [](int fd, const void* bytes, std::size_t size) {
            return fails() ? ssize_t(-1) : ::write(fd, bytes, std::min(size, longestWrite));
        };
        calls.fsync = [](int) { return fails() ? -1 : 0; }; // no test waits for a disk
        calls.fchmod = [](int fd, mode_t mode) { return fails() ? -1 : ::fchmod(fd, mode); };
        calls.close = [](int fd) {
            // A close that fails lets go of the file all the same.
            ::close(fd);
            return fails() ? -1 : 0;
        };
        calls.linkat = [](int from, const char* name, int to, const char* newName, int flags) {
            if (disk == Disk::NoHardLinks)
                return refuse(EPERM);
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

    static files::SafeFileCalls none(Disk where) { return with(-1, 0, false, where); }
};

/// Saves with one call more let through each time, until all had their turn, and hands each save to the judge.
/// Returns how many calls there were.
template <typename Prepare, typename Judge>
int letEachCallFail(const QString& name, const QByteArray& bytes, int error, bool fromThereOn, Disk disk,
                    Prepare prepare, Judge judge)
{
    for (int call = 0;; ++call) {
        SCOPED_TRACE(testing::Message() << "call " << call << (fromThereOn ? " and all behind it" : "") << " with "
                                        << std::strerror(error) << " on disk " << static_cast<int>(disk));
        prepare();
        const Outcome outcome = files::writeFile(name, bytes, FailingCalls::with(call, error, fromThereOn, disk));
        const bool allDone = FailingCalls::count <= call;
        judge(outcome, allDone);
        if (allDone || testing::Test::HasFatalFailure())
            return call;
    }
}

} // namespace

TEST(SafeFile, WithAnyOfItsCallsFailingTheOldFileOrTheNewOneIsThereAndTheNextSaveLeavesNoOther)
{
    const QByteArray oldBytes(5000, 'o');
    const QByteArray newBytes(4500, 'n');
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    for (const Disk disk : kDisks) {
        for (const int error : {EIO, ENOSPC, EACCES, EDQUOT}) {
            for (const bool fromThereOn : {false, true}) {
                const auto prepare = [&] {
                    ASSERT_TRUE(files::writeFile(name, oldBytes, FailingCalls::none(disk)).ok());
                    ASSERT_TRUE(QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner));
                };
                int replaced = 0;
                int ignored = 0;
                const auto judge = [&](const Outcome& outcome, bool allDone) {
                    const QByteArray content = contentOf(name);
                    if (allDone) {
                        EXPECT_TRUE(outcome.ok());
                        EXPECT_EQ(content, newBytes);
                    } else if (outcome.ok()) {
                        EXPECT_EQ(content, newBytes);
                        ++ignored;
                    } else {
                        EXPECT_TRUE(outcome.sentence().contains(name));
                        EXPECT_TRUE(outcome.sentence().contains(QString::fromLocal8Bit(std::strerror(error))));
                        EXPECT_TRUE(content == oldBytes || content == newBytes);
                        EXPECT_EQ(outcome.sentence().contains(QStringLiteral("The file is as it was before.")),
                                  content == oldBytes);
                        replaced += content == newBytes ? 1 : 0;
                    }
                    if (!fromThereOn) {
                        EXPECT_EQ(filesIn(folder), QStringList{QStringLiteral("plot")});
                    }
                    EXPECT_LE(filesIn(folder).size(), 2);
                    ASSERT_TRUE(files::writeFile(name, "next", FailingCalls::none(disk)).ok());
                    EXPECT_EQ(filesIn(folder), QStringList{QStringLiteral("plot")});
                    EXPECT_EQ(contentOf(name), "next");
                };
                const int calls = letEachCallFail(name, newBytes, error, fromThereOn, disk, prepare, judge);
                // Open, permissions, five writes, sync, close, link (with nameless files only), rename and the sync of
                // the folder. Where links are refused, all was written once before and closed.
                EXPECT_EQ(calls, disk == Disk::NamelessFiles ? 12 : disk == Disk::NamedFilesOnly ? 11 : 20);
                // Behind the rename alone the new file is there: close and sync of the folder, or that sync.
                EXPECT_EQ(replaced, disk == Disk::NamelessFiles ? 2 : 1);
                // A nameless file that is thrown away may close as it likes.
                EXPECT_EQ(ignored, disk == Disk::NoHardLinks && !fromThereOn ? 1 : 0);
            }
        }
    }
}

TEST(SafeFile, AFirstSaveThatFailsAtAnyCallLeavesTheWholeFileOrNone)
{
    const QByteArray bytes(2500, 'n');
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    for (const Disk disk : kDisks) {
        int failures = 0;
        const auto judge = [&](const Outcome& outcome, bool allDone) {
            EXPECT_TRUE(outcome.ok() || !allDone);
            EXPECT_TRUE(!outcome.ok() || contentOf(name) == bytes);
            failures += outcome.ok() ? 0 : 1;
            EXPECT_TRUE(outcome.ok() || outcome.sentence().contains(name));
            if (QFileInfo::exists(name)) {
                EXPECT_EQ(contentOf(name), bytes);
                EXPECT_EQ(filesIn(folder).size(), 1);
            } else {
                EXPECT_EQ(filesIn(folder).size(), 0);
            }
        };
        const int calls = letEachCallFail(
            name, bytes, EIO, false, disk, [&] { QFile::remove(name); }, judge);
        EXPECT_EQ(calls, disk == Disk::NamelessFiles ? 9 : disk == Disk::NamedFilesOnly ? 8 : 14);
        EXPECT_EQ(failures, disk == Disk::NoHardLinks ? calls - 1 : calls);
    }
}

TEST(SafeFile, ASaveBehindAKilledOneFailsAtAnyCallOrTakesTheHiddenFilesAway)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    for (const Disk disk : kDisks) {
        for (const bool fromThereOn : {false, true}) {
            const auto prepare = [&] {
                ASSERT_TRUE(files::writeFile(name, "old").ok());
                QStringList left{QStringLiteral(".plot.saving")};
                if (disk != Disk::NamelessFiles)
                    left.append(QStringLiteral(".plot.0123456789abcdef.saving"));
                for (const QString& hidden : std::as_const(left)) {
                    QFile file(folder.filePath(hidden));
                    ASSERT_TRUE(file.open(QFile::WriteOnly));
                }
            };
            const auto judge = [&](const Outcome& outcome, bool allDone) {
                const QByteArray content = contentOf(name);
                EXPECT_TRUE(content == "old" || content == "new");
                EXPECT_TRUE(!outcome.ok() || content == "new");
                EXPECT_TRUE(!allDone || outcome.ok());
                ASSERT_TRUE(files::writeFile(name, "next", FailingCalls::none(disk)).ok());
                EXPECT_EQ(filesIn(folder), QStringList{QStringLiteral("plot")});
            };
            EXPECT_GT(letEachCallFail(name, "new", EIO, fromThereOn, disk, prepare, judge), 6);
        }
    }
}

TEST(SafeFile, HiddenFilesOfOtherNamesAreLeftAlone)
{
    QTemporaryDir folder;
    const QStringList others{QStringLiteral(".plot.0123456789abcdeg.saving"), QStringLiteral(".plot.b.saving"),
                             QStringLiteral(".plot2.0123456789abcdef.saving"), QStringLiteral("plot.saving")};
    for (const QString& other : others) {
        QFile file(folder.filePath(other));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
    }
    ASSERT_TRUE(
        files::writeFile(folder.filePath(QStringLiteral("plot")), "x", FailingCalls::none(Disk::NamedFilesOnly)).ok());
    EXPECT_EQ(filesIn(folder).size(), others.size() + 1);
}

TEST(SafeFile, AnInterruptedCallIsTriedAgain)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    const QByteArray bytes(2500, 'n');
    // Three writes, the sync, the close and the sync of the folder.
    const std::pair<Disk, std::vector<int>> interruptible[] = {{Disk::NamelessFiles, {1, 2, 3, 4, 7, 8}},
                                                               {Disk::NamedFilesOnly, {1, 2, 3, 4, 5, 7}}};
    for (const auto& [disk, calls] : interruptible) {
        for (const int call : calls) {
            ASSERT_TRUE(files::writeFile(name, bytes, FailingCalls::with(call, EINTR, false, disk)).ok()) << call;
            EXPECT_EQ(contentOf(name), bytes);
            QFile::remove(name);
        }
    }
}

TEST(SafeFile, AFolderThatCannotBeSyncedIsNoFailure)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    EXPECT_TRUE(files::writeFile(name, "new", FailingCalls::with(6, EINVAL)).ok());
    EXPECT_EQ(FailingCalls::count, 7); // it was the last call
    EXPECT_EQ(contentOf(name), "new");
}

TEST(SafeFile, AHiddenFileThatAnotherSaveTookAwayIsWrittenAnew)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    static int renames;
    renames = 0;
    files::SafeFileCalls calls = FailingCalls::none(Disk::NamedFilesOnly);
    calls.renameat = [](int from, const char* hidden, int to, const char* newName) {
        if (++renames < 3)
            ::unlinkat(from, hidden, 0);
        return ::renameat(from, hidden, to, newName);
    };
    EXPECT_TRUE(files::writeFile(name, "new", calls).ok());
    EXPECT_EQ(renames, 3);
    EXPECT_EQ(contentOf(name), "new");
    // One that is taken away each time is told in the end.
    calls.renameat = [](int from, const char* hidden, int to, const char* newName) {
        ::unlinkat(from, hidden, 0);
        return ::renameat(from, hidden, to, newName);
    };
    EXPECT_FALSE(files::writeFile(name, "newer", calls).ok());
    EXPECT_EQ(contentOf(name), "new");
    EXPECT_EQ(filesIn(folder), QStringList{QStringLiteral("plot")});
}

TEST(SafeFile, EveryNameThatTheFileSystemTakesIsSaved)
{
    QTemporaryDir folder;
    for (const Disk disk : kDisks) {
        for (const int length : {1, 64, 65, 240, 247, 248, 249, 255}) {
            const QString name = QString(length, u'n');
            const QString path = folder.filePath(name);
            ASSERT_TRUE(files::writeFile(path, "old", FailingCalls::none(disk)).ok()) << length;
            ASSERT_TRUE(files::writeFile(path, "new", FailingCalls::none(disk)).ok()) << length;
            EXPECT_EQ(contentOf(path), "new");
            EXPECT_EQ(filesIn(folder), QStringList{name});
            ASSERT_TRUE(QFile::remove(path));
        }
        const QString tooLong = folder.filePath(QString(256, u'n'));
        EXPECT_TRUE(files::writeFile(tooLong, "x", FailingCalls::none(disk)).sentence().contains(tooLong));
        EXPECT_EQ(filesIn(folder).size(), 0);
    }
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

TEST(SafeFile, AChainOfSymbolicLinksKeepsEveryLink)
{
    QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("a/b")));
    const QByteArray base = QFile::encodeName(folder.path());
    ASSERT_EQ(::symlink("a/middle", (base + "/link").constData()), 0);
    ASSERT_EQ(::symlink("b/last", (base + "/a/middle").constData()), 0);
    ASSERT_EQ(::symlink((base + "/target").constData(), (base + "/a/b/last").constData()), 0);
    for (const Disk disk : kDisks) {
        for (const char* const bytes : {"first", "second"}) { // the first makes the file that all links lead to
            ASSERT_TRUE(
                files::writeFile(folder.filePath(QStringLiteral("link")), bytes, FailingCalls::none(disk)).ok());
            for (const char* const link : {"link", "a/middle", "a/b/last"})
                EXPECT_TRUE(QFileInfo(folder.filePath(QLatin1String(link))).isSymLink()) << link;
            EXPECT_FALSE(QFileInfo(folder.filePath(QStringLiteral("target"))).isSymLink());
            EXPECT_EQ(contentOf(folder.filePath(QStringLiteral("target"))), bytes);
        }
        ASSERT_TRUE(QFile::remove(folder.filePath(QStringLiteral("target"))));
    }
    ASSERT_EQ(::symlink("round", (base + "/round").constData()), 0);
    EXPECT_FALSE(files::writeFile(folder.filePath(QStringLiteral("round")), "x").ok());
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

namespace {

/// Kills a program that saves again and again at so many random moments.
void killSaves(Disk disk, int rounds)
{
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("plot"));
    ASSERT_TRUE(files::writeFile(name, QByteArray(300000, 'a')).ok());
    const auto calls = [disk] {
        files::SafeFileCalls result;
        if (disk == Disk::NamedFilesOnly)
            result.openTemporary = [](int, int) { return FailingCalls::refuse(EOPNOTSUPP); };
        return result;
    };
    std::mt19937 random(7);
    for (int round = 0; round < rounds; ++round) {
        const char letter = static_cast<char>('a' + round % 26);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;)
                (void)files::writeFile(name, QByteArray(300000, letter), calls());
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
    ASSERT_TRUE(files::writeFile(name, "last", calls()).ok());
    EXPECT_EQ(filesIn(folder), QStringList{QStringLiteral("plot")});
}

} // namespace

TEST(SafeFile, ASaveKilledAtAThousandRandomMomentsLeavesTheOldFileOrTheNewOne)
{
    killSaves(Disk::NamelessFiles, 1000);
}

TEST(SafeFile, SoDoesOneWithoutNamelessFiles)
{
    killSaves(Disk::NamedFilesOnly, 1000);
}
