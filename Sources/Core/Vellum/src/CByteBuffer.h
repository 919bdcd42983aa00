#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

#include "Platform/Compiler.h"

namespace Vellum
{

// CByteBuffer: bytes in one block that are appended, changed in place, and dropped all at once. A few lie in the object
// itself.
//
// Memory   Doubles behind the first 64 bytes, or becomes what one Write needs. New bytes aren't zeroed. Clear keeps a
//          small block.
// Errors   std::bad_alloc; the buffer is as it was.
class CByteBuffer
{
public:
    CByteBuffer() = default;
    CByteBuffer(const CByteBuffer&) = delete;
    CByteBuffer& operator=(const CByteBuffer&) = delete;
    CByteBuffer& operator=(CByteBuffer&& other) noexcept
    {
        size = other.size;
        capacity = other.capacity;
        many = std::move(other.many);
        bytes = many == nullptr ? few.data() : many.get();
        if (many == nullptr)
            std::memcpy(few.data(), other.few.data(), size);
        other.reset();
        return *this;
    }

    std::size_t GetSize() const { return size; }
    unsigned char* GetData() { return bytes; }
    const unsigned char* GetData() const { return bytes; }

    // Appends `count` bytes, which don't lie in this buffer. `data` may be null if there are none.
    CByteBuffer& Write(const void* data, std::size_t count)
    {
        if (count > capacity - size) [[unlikely]]
            grow(count);
        if (count != 0)
            std::memcpy(bytes + size, data, count);
        size += count;
        return *this;
    }

    // Takes back what was appended after the first `newSize` bytes. There must be as many.
    void Truncate(std::size_t newSize) { size = newSize; }

    void Clear()
    {
        size = 0;
        if (capacity > MaxKept)
            reset();
    }

private:
    static constexpr std::size_t FewBytes = 0x40;
    static constexpr std::size_t MaxKept = 0x400;

    void reset() noexcept
    {
        many.reset();
        bytes = few.data();
        size = 0;
        capacity = FewBytes;
    }

    VELLUM_NOINLINE void grow(std::size_t count)
    {
        const std::size_t larger = std::max(2 * capacity, size + count);
        std::unique_ptr<unsigned char[]> block(new unsigned char[larger]);
        std::memcpy(block.get(), bytes, size);
        many = std::move(block);
        bytes = many.get();
        capacity = larger;
    }

    std::array<unsigned char, FewBytes> few; // before what points to it
    unsigned char* bytes = few.data();
    std::size_t size = 0;
    std::size_t capacity = FewBytes;
    std::unique_ptr<unsigned char[]> many;
};

} // namespace Vellum
