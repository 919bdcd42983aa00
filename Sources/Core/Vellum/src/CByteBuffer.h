#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

#include "Platform/Compiler.h"

namespace Vellum
{

// CByteBuffer: bytes in one block that are appended, changed in place, and dropped all at once.
//
// Memory   Doubles from 64 bytes on, or becomes what one Write needs. New bytes aren't zeroed. Clear keeps a small
// block. Errors   std::bad_alloc; the buffer is as it was.
class CByteBuffer
{
public:
    std::size_t GetSize() const { return size; }
    unsigned char* GetData() { return bytes.get(); }
    const unsigned char* GetData() const { return bytes.get(); }

    // Appends `count` bytes, which don't lie in this buffer. `data` may be null if there are none.
    CByteBuffer& Write(const void* data, std::size_t count)
    {
        if (count > capacity - size) [[unlikely]]
            grow(count);
        if (count != 0)
            std::memcpy(bytes.get() + size, data, count);
        size += count;
        return *this;
    }

    // Takes back what was appended after the first `newSize` bytes. There must be as many.
    void Truncate(std::size_t newSize) { size = newSize; }

    void Clear()
    {
        size = 0;
        if (capacity > MaxKept)
            *this = CByteBuffer();
    }

private:
    static constexpr std::size_t MinCapacity = 0x40;
    static constexpr std::size_t MaxKept = 0x400;

    VELLUM_NOINLINE void grow(std::size_t count)
    {
        const std::size_t newCapacity = std::max({2 * capacity, size + count, MinCapacity});
        std::unique_ptr<unsigned char[]> larger(new unsigned char[newCapacity]);
        if (size != 0)
            std::memcpy(larger.get(), bytes.get(), size);
        bytes = std::move(larger);
        capacity = newCapacity;
    }

    std::unique_ptr<unsigned char[]> bytes;
    std::size_t size = 0;
    std::size_t capacity = 0;
};

} // namespace Vellum
