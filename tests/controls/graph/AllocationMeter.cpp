// SPDX-License-Identifier: GPL-3.0-or-later
#include "AllocationMeter.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <malloc.h>

namespace {

std::atomic<bool> isMetering{false};
std::atomic<std::uint64_t> allocations{0};
std::atomic<std::int64_t> held{0};
std::atomic<std::int64_t> peak{0};

void took(std::size_t size)
{
    if (!isMetering)
        return;
    ++allocations;
    const std::int64_t now = held += static_cast<std::int64_t>(size);
    std::int64_t before = peak;
    while (now > before && !peak.compare_exchange_weak(before, now)) {
    }
}

void gave(std::size_t size)
{
    if (isMetering)
        held -= static_cast<std::int64_t>(size);
}

} // namespace

#ifdef __has_feature
#define MG_HAS_FEATURE(name) __has_feature(name)
#else
#define MG_HAS_FEATURE(name) 0
#endif

// The sanitizer has an allocator of its own.
#if defined(__SANITIZE_ADDRESS__) || MG_HAS_FEATURE(address_sanitizer)

// As in its header, which not every compiler brings.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*took)(const volatile void*, std::size_t),
                                                         void (*gave)(const volatile void*));
extern "C" std::size_t __sanitizer_get_allocated_size(const volatile void* block);

namespace {

const bool isHooked = __sanitizer_install_malloc_and_free_hooks(
                          [](const volatile void*, std::size_t size) { took(size); },
                          [](const volatile void* block) { gave(__sanitizer_get_allocated_size(block)); }) != 0;

} // namespace

#else

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

// Blocks that come from elsewhere (aligned ones) are counted when they go and not when they come: too few to matter.
void* malloc(std::size_t size)
{
    void* block = __libc_malloc(size);
    took(malloc_usable_size(block));
    return block;
}

void* calloc(std::size_t count, std::size_t size)
{
    void* block = __libc_calloc(count, size);
    took(malloc_usable_size(block));
    return block;
}

// While it grows elsewhere, the old block and the new one are both there.
void* realloc(void* block, std::size_t size)
{
    const std::size_t before = malloc_usable_size(block);
    void* grown = __libc_realloc(block, size);
    took(malloc_usable_size(grown));
    if (grown != nullptr || size == 0)
        gave(before);
    return grown;
}

void free(void* block)
{
    gave(malloc_usable_size(block));
    __libc_free(block);
}
}

#endif

AllocationMeter::AllocationMeter()
{
    allocations = 0;
    held = 0;
    peak = 0;
    isMetering = true;
}

AllocationMeter::~AllocationMeter()
{
    isMetering = false;
}

std::uint64_t AllocationMeter::count() const
{
    return allocations;
}

std::int64_t AllocationMeter::peakBytes() const
{
    return peak;
}
