#pragma once

#include <cstdint>
#include <functional>

namespace Support
{

// Runs the body again and again, with its first allocation by operator new failing, then its second, and so on, until
// the body gets through with none failing. The body catches what it expects and checks what must hold then. Returns
// how many allocations failed. Allocations of other threads are not touched.
std::uint32_t FailEachAllocation(const std::function<void()>& body);

// Counts what the calling thread obtains by operator new while it lives. One at a time for each thread.
class CAllocationCounter
{
public:
    CAllocationCounter();
    ~CAllocationCounter();
    CAllocationCounter(const CAllocationCounter&) = delete;
    CAllocationCounter& operator=(const CAllocationCounter&) = delete;

    std::uint64_t GetCount() const; // calls
    std::uint64_t GetBytes() const; // sum of their sizes, whether freed since or not
};

} // namespace Support
