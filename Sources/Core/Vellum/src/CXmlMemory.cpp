#include "Vellum/src/CXmlMemory.h"

#include <algorithm>
#include <bit>
#include <new>

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

// What is left of the block before is given up.
bool CXmlMemory::addBlock(std::size_t neededSize) noexcept
{
    const std::size_t size = sizeof(SLink) + std::max(neededSize, nextBlockSize);
    void* const storage = ::operator new(size, std::nothrow);
    if (storage == nullptr)
        return false;
    blocks = new (storage) SLink{blocks};
    front = static_cast<char*>(storage) + sizeof(SLink);
    back = static_cast<char*>(storage) + size;
    nextBlockSize = std::min(nextBlockSize * 2, LargestBlockSize);
    return true;
}

void* CXmlMemory::allocate(std::size_t bytes)
{
    bytes = (bytes + Alignment - 1) / Alignment * Alignment;
    SLink*& same = recycled[static_cast<std::size_t>(std::bit_width(bytes - 1))]; // all that are there are large enough
    if (same != nullptr)
    {
        SLink* const array = same;
        same = array->next;
        return array;
    }
    if (static_cast<std::size_t>(back - front) < bytes && !addBlock(bytes))
        throw std::bad_alloc();
    char* const taken = front;
    front += bytes;
    return taken;
}

void CXmlMemory::recycle(void* array, std::size_t bytes) noexcept
{
    bytes = (bytes + Alignment - 1) / Alignment * Alignment;
    SLink*& same = recycled[static_cast<std::size_t>(std::bit_width(bytes) - 1)];
    same = new (array) SLink{same};
}

char* CXmlMemory::AllocateText(std::size_t length) noexcept
{
    if (static_cast<std::size_t>(back - front) <= length && !addBlock(length + 1))
        return nullptr;
    back -= length + 1;
    back[length] = 0;
    return back;
}

} // namespace Vellum
