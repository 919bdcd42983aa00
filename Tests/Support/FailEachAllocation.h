#pragma once

#include <cstdint>
#include <functional>
#include <new>

#include "Groundwork/IException.h"

namespace Support
{

// Runs the body with one of its allocations by operator new failing, counted from 0. False if it has fewer.
bool FailAllocation(std::uint64_t which, const std::function<void()>& body);

// Runs the body again and again, with its first allocation by operator new failing, then its second, and so on, until
// the body gets through with none failing. The body catches what it expects and checks what must hold then. Returns
// how many allocations failed. Allocations of other threads are not touched.
std::uint32_t FailEachAllocation(const std::function<void()>& body);

// False if the body raises std::bad_alloc or an exception of the library, the outcomes of a failed allocation.
template <class Body>
bool GetsThrough(const Body& body)
{
    try
    {
        body();
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
    catch (const IException&)
    {
        return false;
    }
}

// Counts what the calling thread obtains by operator new while it lives. One at a time for each thread.
class CAllocationCounter
{
public:
    CAllocationCounter();
    CAllocationCounter(const CAllocationCounter&) = delete;
    CAllocationCounter& operator=(const CAllocationCounter&) = delete;

    std::uint64_t GetCount() const; // calls
    std::uint64_t GetBytes() const; // sum of their sizes, whether freed since or not
    std::uint64_t GetPeak() const;  // most bytes in use at once, beside those in use before
    std::uint64_t GetFreed() const; // bytes given back in excess of those obtained
};

} // namespace Support
