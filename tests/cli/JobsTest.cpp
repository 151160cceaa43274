// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Jobs.h"

#include <atomic>
#include <chrono>
#include <gmock/gmock.h>
#include <numeric>

using ::testing::ElementsAreArray;

TEST(Jobs, ResultsComeInOrderFromTheThreadThatAsked)
{
    for (const int jobs : {0, 1, 2, 7, 64}) {
        std::vector<std::size_t> expected(200), seen;
        std::iota(expected.begin(), expected.end(), 0);
        const std::thread::id asked = std::this_thread::get_id();
        const auto work = [](std::size_t index) {
            // Later ones are done sooner.
            std::this_thread::sleep_for(std::chrono::microseconds(index % 7 == 0 ? 900 : 10));
            return index * 3;
        };
        cli::runJobs(jobs, expected.size(), work, [&](std::size_t index, std::size_t result) {
            EXPECT_EQ(result, index * 3);
            EXPECT_EQ(std::this_thread::get_id(), asked);
            seen.push_back(index);
        });
        EXPECT_THAT(seen, ElementsAreArray(expected)) << jobs;
    }
}

TEST(Jobs, AsManyRunAtOnceAsWereAskedForAndNoMore)
{
    std::atomic<int> running = 0, most = 0, started = 0;
    const auto work = [&](std::size_t) {
        most = std::max(most.load(), ++running);
        ++started;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (started < 3 && std::chrono::steady_clock::now() < deadline)
            std::this_thread::yield();
        --running;
        return 0;
    };
    cli::runJobs(3, 30, work, [](std::size_t, int) {});
    EXPECT_EQ(started, 30);
    EXPECT_EQ(most, 3);
}

TEST(Jobs, WorkDoesNotRunFarAheadOfASlowReader)
{
    std::atomic<std::size_t> begun = 0;
    cli::runJobs(
        2, 100,
        [&](std::size_t) {
            ++begun;
            return 0;
        },
        [&](std::size_t index, int) {
            if (index == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            EXPECT_LE(begun, index + 1 + 8);
        });
    EXPECT_EQ(begun, 100U);
}

TEST(Jobs, NothingToDoIsDone)
{
    cli::runJobs(
        4, 0, [](std::size_t) { return 1; }, [](std::size_t, int) { FAIL(); });
}
