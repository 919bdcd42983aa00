#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Vellum
{

// CXmlMemory: what the nodes of one tree and their texts are made of. It is obtained in blocks and given back as a
// whole, so that a document of many small elements costs few allocations and little beside what it holds.
//
// Blocks   double from 1 KiB to 256 KiB, or are as large as a single piece needs. Arrays and records are taken from the
//          front of a block, texts, which need no alignment, from its end.
// Errors   std::bad_alloc for arrays, null for texts.
// Threads  Belongs to one thread at a time, like its tree.
class CXmlMemory
{
public:
    CXmlMemory() noexcept = default;
    ~CXmlMemory();
    CXmlMemory(const CXmlMemory&) = delete;
    CXmlMemory& operator=(const CXmlMemory&) = delete;

    // Room for `count` entries, uninitialised.
    template <class Entry>
    Entry* Allocate(std::size_t count)
    {
        static_assert(alignof(Entry) <= Alignment);
        return static_cast<Entry*>(allocate(count * sizeof(Entry)));
    }

    // Takes an array of so many entries back, for others to use.
    template <class Entry>
    void Recycle(Entry* array, std::size_t count) noexcept
    {
        recycle(array, count * sizeof(Entry));
    }

    // Room for a text of so many bytes and its terminator, which is set. Null if it can't be had.
    char* AllocateText(std::size_t length) noexcept;

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

    void* allocate(std::size_t bytes);
    void recycle(void* array, std::size_t bytes) noexcept;
    bool addBlock(std::size_t neededSize) noexcept;

    SLink* blocks = nullptr;
    char* front = nullptr; // of the room that is left in the newest block
    char* back = nullptr;
    std::size_t nextBlockSize = FirstBlockSize;
    std::array<SLink*, 48> recycled{}; // by size: at least 2^i bytes
};

} // namespace Vellum
