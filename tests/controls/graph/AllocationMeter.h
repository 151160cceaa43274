// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

/// What this process allocates while a meter lives, in the libraries too. One at a time.
class AllocationMeter
{
public:
    AllocationMeter();
    ~AllocationMeter();
    AllocationMeter(const AllocationMeter&) = delete;
    AllocationMeter& operator=(const AllocationMeter&) = delete;

    std::uint64_t count() const;    ///< allocations so far
    std::int64_t peakBytes() const; ///< the most that was held at once, beyond what was held at the start
};
