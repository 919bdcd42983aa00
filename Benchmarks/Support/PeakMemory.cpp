#include "Support/PeakMemory.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace
{

std::atomic<std::int64_t> live{0};
std::atomic<std::int64_t> peak{0};

void* Obtain(std::size_t size, std::size_t alignment)
{
    void* const block = alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__
                            ? std::malloc(size)
                            : std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
    if (block == nullptr)
        throw std::bad_alloc();
    const auto usable = static_cast<std::int64_t>(::malloc_usable_size(block));
    const std::int64_t now = live.fetch_add(usable, std::memory_order_relaxed) + usable;
    if (now > peak.load(std::memory_order_relaxed))
        peak.store(now, std::memory_order_relaxed);
    return block;
}

void Release(void* block)
{
    live.fetch_sub(static_cast<std::int64_t>(::malloc_usable_size(block)), std::memory_order_relaxed);
    std::free(block);
}

} // namespace

void* operator new(std::size_t size) { return Obtain(size, 1); }
void* operator new[](std::size_t size) { return Obtain(size, 1); }
void* operator new(std::size_t size, std::align_val_t a) { return Obtain(size, static_cast<std::size_t>(a)); }
void* operator new[](std::size_t size, std::align_val_t a) { return Obtain(size, static_cast<std::size_t>(a)); }
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, std::size_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t) noexcept { Release(block); }
void operator delete(void* block, std::align_val_t) noexcept { Release(block); }
void operator delete[](void* block, std::align_val_t) noexcept { Release(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { Release(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { Release(block); }

namespace Support
{

std::int64_t GetLiveMemory() { return live.load(); }
std::int64_t GetPeakMemory() { return peak.load(); }
void ResetPeakMemory() { peak.store(live.load()); }

} // namespace Support
