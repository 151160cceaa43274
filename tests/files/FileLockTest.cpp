// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileLock.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

class FileLockTest : public testing::Test
{
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("it.lock"));
};

TEST_F(FileLockTest, IsHeldByOneAtATime)
{
    FileLock first(path), second(path);
    EXPECT_TRUE(first.tryLock());
    EXPECT_TRUE(first.tryLock()) << "what is held is not asked for again";
    EXPECT_FALSE(second.tryLock());
    EXPECT_TRUE(second.isUsable());
    EXPECT_EQ(second.error(), 0);
    first.unlock();
    EXPECT_FALSE(first.isHeld());
    EXPECT_TRUE(second.tryLock());
    EXPECT_TRUE(QFile::exists(path));
}

TEST_F(FileLockTest, WaitsForAnotherHolderNoLongerThanTold)
{
    FileLock first(path), second(path);
    ASSERT_TRUE(first.tryLock());
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(second.tryLock(std::chrono::milliseconds(50)));
    EXPECT_GE(timer.elapsed(), 50);
    std::thread release([&first] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        first.unlock();
    });
    EXPECT_TRUE(second.tryLock(std::chrono::minutes(1)));
    release.join();
}

TEST_F(FileLockTest, TellsWhyAFileCannotBeLocked)
{
    FileLock lock(folder.filePath(QStringLiteral("missing/it.lock")));
    EXPECT_FALSE(lock.tryLock(std::chrono::minutes(1)));
    EXPECT_FALSE(lock.isUsable());
    EXPECT_EQ(lock.error(), ENOENT);
}

TEST_F(FileLockTest, IsFreeWhenItsProgramIsKilled)
{
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        FileLock lock(path);
        const char held = lock.tryLock() ? 'y' : 'n';
        [[maybe_unused]] const auto told = ::write(ready[1], &held, 1);
        for (;;)
            ::pause();
    }
    char held = 0;
    ASSERT_EQ(::read(ready[0], &held, 1), 1);
    EXPECT_EQ(held, 'y');
    FileLock lock(path);
    EXPECT_FALSE(lock.tryLock());
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(lock.tryLock());
    ::close(ready[0]);
    ::close(ready[1]);
}

TEST_F(FileLockTest, CanTakeItsFileAway)
{
    FileLock first(path), second(path);
    ASSERT_TRUE(first.tryLock());
    first.removeAndUnlock();
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(second.tryLock());
    first.removeAndUnlock();
    EXPECT_TRUE(QFile::exists(path)) << "only the holder takes it away";
}

TEST_F(FileLockTest, IsNeverHeldTwiceWhileHoldersTakeTheFileAway)
{
    std::atomic<int> holders = 0, most = 0, turns = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int turn = 0; turn < 200; ++turn) {
                FileLock lock(path);
                if (!lock.tryLock(std::chrono::minutes(1)))
                    continue;
                const int now = ++holders;
                most = std::max(most.load(), now);
                ++turns;
                --holders;
                lock.removeAndUnlock();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(most, 1);
    EXPECT_EQ(turns, 800);
}

} // namespace
