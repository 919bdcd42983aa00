#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Groundwork/CbKeyedHash.h"

/// CbMapIndex: finds the nodes of a CbMapEx whose keys were chosen to share buckets. It is a second hash table over the
/// same nodes, without an order of its own, and its hash is drawn anew for each index.
///
/// - **Memory** Two to four slots of two words for each node. The nodes stay the table's.
/// - **Errors** std::bad_alloc, from the constructor and from Reserve; what was there before stays in use.
/// - **Threads** Those of the table.
template <class Traits, class Association>
class CbMapIndex
{
public:
    /// An empty index with room for `count` nodes.
    explicit CbMapIndex(std::uint32_t count) : slots(getSlotCount(count)) {}

    /// Makes room for `count` nodes in all.
    void Reserve(std::uint32_t count)
    {
        if (getSlotCount(count) <= slots.size())
            return;
        std::vector<SSlot> old(2 * slots.size());
        old.swap(slots);
        for (const SSlot& slot : old)
            if (slot.node != nullptr)
                enter(slot);
    }

    /// Adds a node whose key isn't there yet. There must be room for it.
    void Enter(Association& node) noexcept { enter({hashOf(node.key), &node}); }

    /// The node of a key, whose hash in the table is `hash`; null when it isn't there.
    Association* Find(const typename Traits::View& key, std::uint64_t hash) const
    {
        const std::uint64_t own = hashOf(key);
        for (std::size_t at = static_cast<std::size_t>(own) & mask();; at = (at + 1) & mask())
            if (Association* const node = slots[at].node;
                node == nullptr || (slots[at].hash == own && Traits::Equal(node->hash, node->key, hash, key)))
                return node;
    }

private:
    struct SSlot
    {
        std::uint64_t hash;
        Association* node; // null: the slot is free
    };

    // A power of two, of which at most half is used: chains of used slots stay short.
    static std::size_t getSlotCount(std::uint32_t count) { return 2 * std::bit_ceil(std::size_t{count} | 8); }

    std::size_t mask() const { return slots.size() - 1; }

    std::uint64_t hashOf(const typename Traits::View& key) const noexcept
    {
        if constexpr (Traits::IsText)
            return hasher(key.data(), key.size());
        else
            return hasher(&key, sizeof key);
    }

    void enter(const SSlot& slot) noexcept
    {
        std::size_t at = static_cast<std::size_t>(slot.hash) & mask();
        while (slots[at].node != nullptr)
            at = (at + 1) & mask();
        slots[at] = slot;
    }

    CbKeyedHash hasher;
    std::vector<SSlot> slots;
};
