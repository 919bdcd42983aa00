#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include "Groundwork/CbArray.h"

namespace Vellum
{

// CArena: memory that is obtained in small pieces and given back as a whole. Nothing in it is destroyed, so it holds
// plain data alone.
//
// Memory   Blocks double from 1 KiB to 256 KiB; a piece that is large for that has a block of its own. Pieces are
//          aligned to 8 bytes and never move.
// Errors   std::bad_alloc.
class CArena
{
public:
    CArena() = default;

    // The first pieces come from a block that stays the caller's, aligned as pieces are.
    CArena(unsigned char* firstBlock, std::size_t size) : free(firstBlock), left(size / 8 * 8) {}

    CArena(const CArena&) = delete;
    CArena& operator=(const CArena&) = delete;

    // Uninitialised memory.
    unsigned char* Allocate(std::size_t size)
    {
        const std::size_t needed = (size + 7) / 8 * 8;
        if (needed > left)
        {
            if (needed > nextBlockSize / 4)
                return addBlock(needed);
            free = addBlock(nextBlockSize);
            left = nextBlockSize;
            nextBlockSize = std::min(nextBlockSize * 2, MaxBlockSize);
        }
        unsigned char* const piece = free;
        free += needed;
        left -= needed;
        return piece;
    }

    // A copy of `count` elements.
    template <class T>
    T* Copy(const T* elements, std::size_t count)
    {
        static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= 8);
        T* const copy = reinterpret_cast<T*>(Allocate(count * sizeof(T)));
        if (count != 0)
            std::memcpy(copy, elements, count * sizeof(T));
        return copy;
    }

    // Keeps an array as long as the arena lives, and returns its bytes.
    unsigned char* Keep(CbArray<unsigned char>&& bytes)
    {
        kept.push_back(std::move(bytes));
        return kept.back().GetData();
    }

private:
    static constexpr std::size_t MaxBlockSize = 0x40000;

    unsigned char* addBlock(std::size_t size)
    {
        blocks.push_back(std::unique_ptr<unsigned char[]>(new unsigned char[size]));
        return blocks.back().get();
    }

    std::vector<std::unique_ptr<unsigned char[]>> blocks;
    std::vector<CbArray<unsigned char>> kept;
    unsigned char* free = nullptr; // what the newest common block has left
    std::size_t left = 0;
    std::size_t nextBlockSize = 0x400;
};

} // namespace Vellum
