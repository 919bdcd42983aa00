#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

#include "../Platform/Export.h"

#include "Groundwork/CbTypeName.h"

/// Raises CbExceptionContainer, with that function name, for a block of elements that can't be had.
[[noreturn]] VELLUM_API void CbRaiseOutOfElements(const char* functionName);

/// CbPlexManager: a pool of fixed-size elements, obtained in blocks of growing size. It constructs and destroys no
/// element; that is the task of the table that draws on it.
///
/// - **Blocks** hold 128, 192, 288, 432, 648, 972, 1458, 2187, 3280 elements and so on: from the first size on, as
///   often as there are blocks already, times 1.5 in single precision and truncated. One block's storage never exceeds
///   0xFFFFFFFF bytes; a larger one is cut into several. A new pool has allocated nothing. Elements are aligned to 8
///   bytes at least.
/// - **Order** Within a block the last element is handed out first. Nothing depends on that, nor on addresses.
/// - **Errors** CbExceptionContainer with the full name of getFreeElement when a block can't be had. The block stays
///   counted, so that the next attempt asks for the next size.
/// - **Memory** Given back as a whole by the destructor, newest block first.
/// - **Threads** A pool, and all tables that draw on it, belong to one thread at a time.
template <class Element, int Reserved = 0, class Size = unsigned int>
class CbPlexManager
{
public:
    /// The number of elements in the first block.
    explicit CbPlexManager(Size firstSize = 128) noexcept : firstBlockSize(firstSize) {}

    /// Frees all blocks. Elements that live in them are not destroyed.
    ~CbPlexManager() { freeBlocks(nullptr); }

    CbPlexManager(const CbPlexManager&) = delete;
    CbPlexManager& operator=(const CbPlexManager&) = delete;

    /// Uninitialised storage for one element, good for the life of the pool. Raises CbExceptionContainer.
    Element* getFreeElement()
    {
        if (freeList != nullptr)
        {
            SSlot* const slot = freeList;
            freeList = slot->next;
            return reinterpret_cast<Element*>(slot->storage);
        }
        while (unused != nullptr && unused->unusedCount == 0)
            unused = unused->next;
        if (unused == nullptr)
            addBlock();
        return reinterpret_cast<Element*>(unused->slots[--unused->unusedCount].storage);
    }

    /// Takes back storage of this pool, whose element its owner has destroyed: it is the next to be handed out.
    void recycleElement(Element* element) noexcept
    {
        SSlot* const slot = reinterpret_cast<SSlot*>(element);
        slot->next = freeList;
        freeList = slot;
    }

    /// The function name that getFreeElement raises with.
    static constexpr const char* GetFunctionName() { return FunctionName.GetString(); }

    /// @name GetBlockCount, GetNextBlockSize
    /// Blocks counted so far, and the number of elements that the next one will hold.
    /// @{
    Size GetBlockCount() const { return blockCount; }
    Size GetNextBlockSize() const
    {
        if (fixedBlockSize != 0)
            return fixedBlockSize;
        Size size = firstBlockSize;
        for (Size i = 0; i < blockCount; ++i)
        {
            const float next = static_cast<float>(size) * growthFactor;
            size = next < 4294967296.0f ? static_cast<Size>(next) : std::numeric_limits<Size>::max();
        }
        return size == 0 ? 1 : size;
    }
    /// @}

private:
    // A free element holds the address of the next one.
    union SSlot
    {
        SSlot* next;
        alignas(Element) alignas(8) std::byte storage[sizeof(Element)];
    };
    static_assert(sizeof(SSlot) <= 0xFFFFFFFFu);

    struct SBlock
    {
        SSlot* slots;
        SBlock* next;
        Size unusedCount; // slots from the first one on that were never handed out
    };

    static constexpr auto FunctionName =
        CbSpellTemplate<CbTypeName<Element>, CbZeroName, CbTypeName<Size>>(CbText("CbPlexManager")) +
        "::getFreeElement";
    static constexpr Size MaxBlockSize = static_cast<Size>(0xFFFFFFFFu / sizeof(SSlot));

    void addBlock()
    {
        const Size size = GetNextBlockSize();
        ++blockCount; // before the allocation: when that fails, the next attempt asks for the next size
        SBlock* const before = blocks;
        try
        {
            for (Size left = size; left != 0;)
            {
                const Size part = left < MaxBlockSize ? left : MaxBlockSize;
                addStorage(part);
                left -= part;
            }
        }
        catch (const std::bad_alloc&)
        {
            freeBlocks(before);
            CbRaiseOutOfElements(GetFunctionName());
        }
        unused = blocks;
    }

    void addStorage(Size size)
    {
        auto* const block = new SBlock{nullptr, blocks, size};
        blocks = block; // found there by freeBlocks if the storage fails
        block->slots = static_cast<SSlot*>(::operator new(size * sizeof(SSlot), std::align_val_t(alignof(SSlot))));
    }

    // Frees the newest blocks down to the given one, which stays.
    void freeBlocks(SBlock* last) noexcept
    {
        while (blocks != last)
        {
            SBlock* const block = blocks;
            blocks = block->next;
            ::operator delete(block->slots, std::align_val_t(alignof(SSlot)));
            delete block;
        }
    }

    SBlock* blocks = nullptr;  // newest first
    SSlot* freeList = nullptr; // elements that came back
    SBlock* unused = nullptr;  // newest block that may have elements that were never handed out
    Size firstBlockSize;       // elements in the first block
    Size fixedBlockSize = 0;   // when not 0, every block has this many elements
    Size blockCount = 0;
    float growthFactor = 1.5f; // from one block's size to the next
};
