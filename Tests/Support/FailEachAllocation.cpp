#include "Support/FailEachAllocation.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>

#include "Support/System.h"

namespace
{

constexpr std::uint64_t Never = std::numeric_limits<std::uint64_t>::max();

thread_local std::uint64_t allocationsLeft = Never; // how many succeed until one fails
thread_local bool hasFailed = false;
thread_local std::uint64_t countedCalls = 0;
thread_local std::uint64_t countedBytes = 0;
thread_local std::int64_t bytesInUse = 0; // below 0 where what is freed was there before
thread_local std::int64_t mostInUse = 0;

bool FailsNow()
{
    if (allocationsLeft == Never || allocationsLeft-- != 0)
        return false;
    allocationsLeft = Never; // one failure each run: what the body does afterwards works again
    hasFailed = true;
    return true;
}

void* Allocate(std::size_t size, std::size_t alignment)
{
    ++countedCalls;
    countedBytes += size;
    if (FailsNow())
        return nullptr;
    void* const block = Support::AllocateBlock(size, alignment);
    bytesInUse += static_cast<std::int64_t>(Support::GetSizeOfBlock(block));
    mostInUse = std::max(mostInUse, bytesInUse);
    return block;
}

void Free(void* block)
{
    bytesInUse -= static_cast<std::int64_t>(Support::GetSizeOfBlock(block));
    Support::FreeBlock(block);
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment)
{
    void* const block = Allocate(size, alignment);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

} // namespace

void* operator new(std::size_t size) { return AllocateOrThrow(size, 1); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size, 1); }
void* operator new(std::size_t size, std::align_val_t a) { return AllocateOrThrow(size, static_cast<std::size_t>(a)); }
void* operator new[](std::size_t size, std::align_val_t a)
{
    return AllocateOrThrow(size, static_cast<std::size_t>(a));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size, 1); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size, 1); }
void operator delete(void* block) noexcept { Free(block); }
void operator delete[](void* block) noexcept { Free(block); }
void operator delete(void* block, std::size_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t) noexcept { Free(block); }
void operator delete(void* block, std::align_val_t) noexcept { Free(block); }
void operator delete[](void* block, std::align_val_t) noexcept { Free(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { Free(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { Free(block); }

namespace Support
{

bool FailAllocation(std::uint64_t which, const std::function<void()>& body)
{
    const struct SReset
    {
        ~SReset() { allocationsLeft = Never; }
    } reset;
    hasFailed = false;
    allocationsLeft = which;
    body();
    return hasFailed;
}

std::uint32_t FailEachAllocation(const std::function<void()>& body)
{
    std::uint32_t failures = 0;
    while (FailAllocation(failures, body))
        ++failures;
    return failures;
}

CAllocationCounter::CAllocationCounter()
{
    countedCalls = 0;
    countedBytes = 0;
    bytesInUse = 0;
    mostInUse = 0;
}

std::uint64_t CAllocationCounter::GetCount() const { return countedCalls; }
std::uint64_t CAllocationCounter::GetBytes() const { return countedBytes; }
std::uint64_t CAllocationCounter::GetPeak() const { return static_cast<std::uint64_t>(mostInUse); }
std::uint64_t CAllocationCounter::GetFreed() const
{
    return static_cast<std::uint64_t>(std::max<std::int64_t>(-bytesInUse, 0));
}

} // namespace Support
