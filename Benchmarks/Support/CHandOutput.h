#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>

namespace Measured
{

// Bytes that grow by doubling and aren't zero-filled: what code by hand writes to.
class CHandOutput
{
public:
    std::size_t size() const { return used; }
    const char* data() const { return bytes.get(); }

    // Where `count` bytes can be written. They count when Commit is called with the end of those that were.
    char* Reserve(std::size_t count)
    {
        if (count > capacity - used)
            grow(count);
        return bytes.get() + used;
    }
    void Commit(const char* end) { used = static_cast<std::size_t>(end - bytes.get()); }

private:
    void grow(std::size_t count)
    {
        capacity = std::max(2 * capacity, used + count);
        auto larger = std::make_unique_for_overwrite<char[]>(capacity);
        if (used != 0)
            std::memcpy(larger.get(), bytes.get(), used);
        bytes = std::move(larger);
    }

    std::unique_ptr<char[]> bytes;
    std::size_t used = 0;
    std::size_t capacity = 0;
};

} // namespace Measured
