#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

#include "Vellum/src/CArena.h"
#include "Vellum/src/CBinaryKeys.h"

// A binary document that was read: plain data in an arena. A record is an array of values in the order of the document;
// which fields they are stands in a layout, which it shares with others. A sequence is an array of numbers or of
// values.
namespace Vellum
{

struct SRecord;
struct SSequence;

// Bytes of a blob, bytes of a text, or UTF-16 units of a wide text.
template <class Unit>
struct SUnits
{
    std::size_t count;
    const Unit* units;
};

// One value. Which member counts is told by the tag that stands beside it.
union UValue
{
    std::array<unsigned char, 8> number; // of any width, from the first byte on
    std::uint64_t ticks;
    const SUnits<char>* text;
    const SUnits<char16_t>* wideText;
    const SUnits<unsigned char>* blob;
    const SRecord* record;
    const SSequence* sequence;
};

// The key of a field, by its number in CBinaryKeys, and its kind.
struct SFieldName
{
    std::uint32_t key;
    std::uint32_t tag;

    bool operator==(const SFieldName&) const = default;
};

// The fields of records that have the same ones in the same order.
//
// Fields of a small layout are walked through, last to first, but most of the time the one that a client asks for is
// the one that it asked for after the same field of another record. `following` tells it: a guess, which is compared
// before it is believed, so that any thread may change it at any time. A large layout has a hash table.
struct SLayout
{
    static constexpr std::uint32_t MaxWalked = 16;
    static constexpr std::uint32_t NotFound = 0xFFFFFFFF;

    const SFieldName* names;
    std::uint32_t count;
    std::uint32_t slotCount;              // a power of two, more than twice the fields; 0 in a small layout
    const std::uint32_t* slots;           // positions + 1
    std::atomic<std::uint8_t>* following; // by position + 1, 0 at the start; null in a large layout

    // Fields is anything with a name.
    template <class Field>
    static const SLayout* Make(CArena& arena, const Field* fields, std::size_t count)
    {
        auto* const names = reinterpret_cast<SFieldName*>(arena.Allocate(count * sizeof(SFieldName)));
        std::transform(fields, fields + count, names, [](const Field& field) { return field.name; });
        auto* const layout = new (arena.Allocate(sizeof(SLayout)))
            SLayout{names, static_cast<std::uint32_t>(count), 0, nullptr, nullptr};
        if (count <= MaxWalked)
            layout->makeFollowing(arena);
        else
            layout->makeSlots(arena);
        return layout;
    }

    // The position of a field. Where a document has several of one name the last counts.
    std::uint32_t Find(const SFieldName& name) const
    {
        if (slotCount != 0)
            return slots[findSlot(slots, name)] - 1;
        for (std::uint32_t at = count; at-- != 0;)
            if (names[at] == name)
                return at;
        return NotFound;
    }

private:
    void makeFollowing(CArena& arena)
    {
        following = reinterpret_cast<std::atomic<std::uint8_t>*>(arena.Allocate(count + 1));
        for (std::uint32_t at = 0; at <= count; ++at)
        {
            const bool isLast = at != count && Find(names[at]) == at; // of that name
            new (following + at) std::atomic<std::uint8_t>(static_cast<std::uint8_t>(isLast ? at : count));
        }
    }

    void makeSlots(CArena& arena)
    {
        slotCount = std::bit_ceil(2 * count + 1);
        auto* const made = reinterpret_cast<std::uint32_t*>(arena.Allocate(std::size_t{slotCount} * sizeof *slots));
        std::memset(made, 0, std::size_t{slotCount} * sizeof *slots);
        for (std::uint32_t at = 0; at < count; ++at)
            made[findSlot(made, names[at])] = at + 1;
        slots = made;
    }

    // Keys are numbers that no document chooses. What shares a slot goes to the next one.
    std::size_t findSlot(const std::uint32_t* table, const SFieldName& name) const
    {
        const std::uint64_t mixed = (std::uint64_t{name.tag} << 32 | name.key) * 0x9E3779B97F4A7C15u;
        std::size_t at = static_cast<std::size_t>(mixed >> 32) & (slotCount - 1);
        while (table[at] != 0 && names[table[at] - 1] != name)
            at = (at + 1) & (slotCount - 1);
        return at;
    }
};

// The values follow.
struct SRecord
{
    const SLayout* layout;

    const UValue* GetValues() const { return reinterpret_cast<const UValue*>(this + 1); }
};

struct SSequence
{
    const void* elements; // numbers of the kind's own width, otherwise UValue
    std::uint32_t count;
    std::uint8_t tag;
};

// A parsed document.
class CBinaryTree
{
public:
    CArena arena;
    CBinaryKeys keys;
    std::uint8_t rootTag = 0;
    UValue root{};
};

} // namespace Vellum
