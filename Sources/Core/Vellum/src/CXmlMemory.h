#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace Vellum
{

// CXmlMemory: what the nodes of one tree and their texts are made of. It is obtained in blocks and given back as a
// whole, so that a document of many small elements costs few allocations and little beside what it holds.
//
// Order    Pieces follow one another as they are asked for, each at a multiple of eight bytes: a node and its text are
//          neighbours.
// Blocks   double from 1 KiB to 256 KiB. A piece that is large for that has a block of its own.
// Errors   std::bad_alloc for arrays and records, null for texts.
// Threads  Belongs to one thread at a time, like its tree.
class CXmlMemory
{
public:
    CXmlMemory() noexcept = default;
    ~CXmlMemory();
    CXmlMemory(const CXmlMemory&) = delete;
    CXmlMemory& operator=(const CXmlMemory&) = delete;

    // Room for one record, uninitialised.
    template <class Record>
    void* Allocate()
    {
        static_assert(alignof(Record) <= Alignment);
        return raiseIfNull(take(roundUp(sizeof(Record))));
    }

    // Room for an array of `count` entries, at least one, uninitialised. It may be one that has come back.
    template <class Entry>
    Entry* AllocateArray(std::size_t count)
    {
        static_assert(alignof(Entry) <= Alignment);
        return static_cast<Entry*>(raiseIfNull(takeArray(roundUp(count * sizeof(Entry)))));
    }

    // Takes an array of so many entries back, for others to use.
    template <class Entry>
    void Recycle(Entry* array, std::size_t count) noexcept
    {
        recycle(array, roundUp(count * sizeof(Entry)));
    }

    // Room for a text of so many bytes and its terminator, which is set. Null if it can't be had.
    char* AllocateText(std::size_t length) noexcept
    {
        char* const text = static_cast<char*>(take(roundUp(length + 1)));
        if (text != nullptr)
            text[length] = 0;
        return text;
    }

    // A zero-terminated copy. Null if it can't be had. Of a text behind which more may be read, `readable` bytes in
    // all, it is made eight bytes at a time: most texts are short, and their room is a multiple of that.
    char* CopyText(const char* text, std::size_t length, std::size_t readable) noexcept
    {
        char* const copy = static_cast<char*>(take(roundUp(length + 1)));
        if (copy == nullptr)
            return nullptr;
        if (roundUp(length) <= readable)
            for (std::size_t at = 0; at < length; at += Alignment)
                std::memcpy(copy + at, text + at, Alignment);
        else if (length != 0)
            std::memcpy(copy, text, length);
        copy[length] = 0;
        return copy;
    }

    std::uint32_t handleCount = 0; // handles to nodes of the tree; the last one takes the memory with it

private:
    static constexpr std::size_t Alignment = 8;
    static constexpr std::size_t FirstBlockSize = 1024;
    static constexpr std::size_t LargestBlockSize = 256 * 1024;

    // Stands in front of a block, or in place of an array that has come back.
    struct SLink
    {
        SLink* next;
    };

    static constexpr std::size_t roundUp(std::size_t bytes) { return (bytes + Alignment - 1) / Alignment * Alignment; }
    static void* raiseIfNull(void* piece)
    {
        if (piece == nullptr)
            throw std::bad_alloc();
        return piece;
    }

    void* take(std::size_t bytes) noexcept
    {
        if (static_cast<std::size_t>(blockEnd - free) < bytes)
            return takeFromNewBlock(bytes);
        char* const piece = free;
        free += bytes;
        return piece;
    }

    void* takeFromNewBlock(std::size_t bytes) noexcept;
    void* takeArray(std::size_t bytes) noexcept;
    void recycle(void* array, std::size_t bytes) noexcept;
    char* addBlock(std::size_t size) noexcept;

    SLink* blocks = nullptr;
    char* free = nullptr; // of the newest common block
    char* blockEnd = nullptr;
    std::size_t nextBlockSize = FirstBlockSize;
    std::array<SLink*, 48> recycled{}; // by size: at least 2^i bytes
};

} // namespace Vellum
