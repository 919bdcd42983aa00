#include "Support/PeakMemory.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <malloc.h>

// The program's malloc stands in front of the C library's for all that is linked, so that libraries which don't use
// operator new are counted too. These names are how the C library lets a program do that.
extern "C"
{
    void* __libc_malloc(std::size_t size);
    void* __libc_calloc(std::size_t count, std::size_t size);
    void* __libc_realloc(void* block, std::size_t size);
    void* __libc_memalign(std::size_t alignment, std::size_t size);
    void __libc_free(void* block);
}

namespace
{

bool counting = false;
std::int64_t live = 0; // below zero when blocks from before are given back
std::int64_t peak = 0;

void* Obtained(void* block)
{
    if (counting) [[unlikely]]
    {
        live += static_cast<std::int64_t>(::malloc_usable_size(block)); // of no block it is 0
        peak = std::max(peak, live);
    }
    return block;
}

void Released(void* block)
{
    if (counting) [[unlikely]]
        live -= static_cast<std::int64_t>(::malloc_usable_size(block));
}

} // namespace

extern "C"
{
    [[gnu::visibility("default")]] void* malloc(std::size_t size) { return Obtained(__libc_malloc(size)); }

    [[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size)
    {
        return Obtained(__libc_calloc(count, size));
    }

    [[gnu::visibility("default")]] void* realloc(void* block, std::size_t size)
    {
        Released(block);
        return Obtained(__libc_realloc(block, size));
    }

    [[gnu::visibility("default")]] void* memalign(std::size_t alignment, std::size_t size)
    {
        return Obtained(__libc_memalign(alignment, size));
    }

    [[gnu::visibility("default")]] void* aligned_alloc(std::size_t alignment, std::size_t size)
    {
        return Obtained(__libc_memalign(alignment, size));
    }

    [[gnu::visibility("default")]] int posix_memalign(void** result, std::size_t alignment, std::size_t size)
    {
        void* const block = Obtained(__libc_memalign(alignment, size));
        if (block == nullptr)
            return ENOMEM;
        *result = block;
        return 0;
    }

    [[gnu::visibility("default")]] void free(void* block)
    {
        Released(block);
        __libc_free(block);
    }
}

namespace Support
{

void StartPeakMemory()
{
    live = 0;
    peak = 0;
    counting = true;
}

std::int64_t StopPeakMemory()
{
    counting = false;
    return peak;
}

} // namespace Support
