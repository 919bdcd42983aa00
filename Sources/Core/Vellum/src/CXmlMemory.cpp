#include "Vellum/src/CXmlMemory.h"

#include <algorithm>
#include <bit>

namespace Vellum
{

CXmlMemory::~CXmlMemory()
{
    while (blocks != nullptr)
    {
        SLink* const block = blocks;
        blocks = block->next;
        ::operator delete(block);
    }
}

// Null if it can't be had.
char* CXmlMemory::addBlock(std::size_t size) noexcept
{
    void* const storage = ::operator new(sizeof(SLink) + size, std::nothrow);
    if (storage == nullptr)
        return nullptr;
    blocks = new (storage) SLink{blocks};
    return static_cast<char*>(storage) + sizeof(SLink);
}

void* CXmlMemory::takeFromNewBlock(std::size_t bytes) noexcept
{
    if (bytes > nextBlockSize / 4)
        return addBlock(bytes);
    char* const block = addBlock(nextBlockSize);
    if (block == nullptr)
        return nullptr;
    free = block + bytes;
    blockEnd = block + nextBlockSize;
    nextBlockSize = std::min(nextBlockSize * 2, LargestBlockSize);
    return block;
}

void* CXmlMemory::takeArray(std::size_t bytes) noexcept
{
    SLink*& same = recycled[static_cast<std::size_t>(std::bit_width(bytes - 1))]; // all that are there are large enough
    if (same == nullptr)
        return take(bytes);
    SLink* const array = same;
    same = array->next;
    return array;
}

void CXmlMemory::recycle(void* array, std::size_t bytes) noexcept
{
    SLink*& same = recycled[static_cast<std::size_t>(std::bit_width(bytes) - 1)];
    same = new (array) SLink{same};
}

} // namespace Vellum
