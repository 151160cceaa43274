// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace cli {

/// Does work(0) to work(count - 1), up to that many at once, and hands each result to deliver(index, result) in the
/// order of the indices, in the calling thread. work is called from several threads unless jobs or count is 1; it may
/// make objects of Qt that it keeps to itself. At most a few results for each job wait to be delivered.
template <typename Work, typename Deliver>
void runJobs(int jobs, std::size_t count, const Work& work, const Deliver& deliver)
{
    using Result = decltype(work(std::size_t()));
    const std::size_t threads = std::min(static_cast<std::size_t>(std::max(jobs, 1)), count);
    if (threads <= 1) {
        for (std::size_t index = 0; index < count; ++index)
            deliver(index, work(index));
        return;
    }
    constexpr std::size_t kWaitingForEachJob = 4;
    const std::size_t mostWaiting = threads * kWaitingForEachJob;
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::optional<Result>> results(count);
    std::size_t next = 0, delivered = 0;
    const auto takeTurns = [&] {
        std::unique_lock lock(mutex);
        for (;;) {
            changed.wait(lock, [&] { return next == count || next < delivered + mostWaiting; });
            if (next == count)
                return;
            const std::size_t index = next++;
            lock.unlock();
            Result result = work(index);
            lock.lock();
            results[index] = std::move(result);
            changed.notify_all();
        }
    };
    std::vector<std::jthread> pool;
    for (std::size_t i = 0; i < threads; ++i)
        pool.emplace_back(takeTurns);
    std::unique_lock lock(mutex);
    while (delivered < count) {
        changed.wait(lock, [&] { return results[delivered].has_value(); });
        Result result = std::move(*results[delivered]);
        results[delivered].reset();
        lock.unlock();
        deliver(delivered, std::move(result));
        lock.lock();
        ++delivered;
        changed.notify_all();
    }
}

} // namespace cli
