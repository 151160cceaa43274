// SPDX-License-Identifier: GPL-3.0-or-later
// Loaded ahead of the C library: the wall clock of a program under test stands at 2026-03-04 05:06:07 UTC, so that what
// two programs stamp can be compared. Clocks that only measure spans go on.
#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr time_t kPinned = 1772600767;

} // namespace

extern "C" int gettimeofday(timeval* now, void*) noexcept
{
    *now = {kPinned, 0};
    return 0;
}

extern "C" time_t time(time_t* now) noexcept
{
    if (now != nullptr)
        *now = kPinned;
    return kPinned;
}

extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept
{
    if (clock != CLOCK_REALTIME && clock != CLOCK_REALTIME_COARSE)
        return static_cast<int>(::syscall(SYS_clock_gettime, clock, now));
    *now = {kPinned, 0};
    return 0;
}
