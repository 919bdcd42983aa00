#include "Vellum/src/JsonShapes.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <memory>
#include <new>
#include <string>

#include "Groundwork/CbMapEx.h"
#include "Groundwork/CbPlexManager.h"

#include "Vellum/src/SJsonElement.h"
#include "Vellum/src/TypeNames.h"

namespace Vellum
{
namespace
{

// The table of members whose order keys are told in. Memory that can't be had for members is told by its nodes' pool.
using JsonMembers = CbMapEx<std::string, std::unique_ptr<SJsonElement>>;

template <class Obtain>
decltype(auto) ObtainForMembers(const Obtain& obtain)
{
    using Pool = CbPlexManager<JsonMembers::SAssociation>;
    try
    {
        return obtain();
    }
    catch (const std::bad_alloc&)
    {
        CbRaiseOutOfElements(Pool::GetFunctionName());
    }
}

} // namespace

SJsonShape& CJsonShapes::Lengthen(SJsonShape& shape, std::string_view key)
{
    constexpr int MostTried = 16;
    SJsonShape** link = &shape.longer;
    for (int tried = 0; tried < MostTried && *link != nullptr; ++tried, link = &(*link)->sibling)
    {
        SJsonShape* const found = *link;
        if (found->key != key)
            continue;
        *link = found->sibling; // to the front
        found->sibling = shape.longer;
        shape.longer = found;
        return *found;
    }
    if (shape.count == CJsonKeys::NoPlace)
        throw std::bad_array_new_length();
    return ObtainForMembers(
        [&]() -> SJsonShape&
        {
            void* const memory = arena->Allocate(sizeof(SJsonShape));
            shape.longer = new (memory) SJsonShape{&shape, key, shape.count + 1, nullptr, shape.longer, nullptr};
            return *shape.longer;
        });
}

CJsonKeys& CJsonShapes::makeKeys(SJsonShape& shape)
{
    shape.keys = ObtainForMembers([&] { return new (arena->Allocate(sizeof(CJsonKeys))) CJsonKeys(shape, *arena); });
    return *shape.keys;
}

CJsonKeys::CJsonKeys(const SJsonShape& shape, CArena& arena)
    : arena(&arena), keys(reinterpret_cast<SKey*>(arena.Allocate(shape.count * sizeof(SKey))))
{
    if (shape.count > FewKeys)
        makeSlots(shape.count);
    std::uint32_t place = shape.count;
    for (const SJsonShape* written = &shape; written->shorter != nullptr; written = written->shorter)
    {
        --place;
        keys[place] = {written->key, place};
    }
    for (; place < shape.count; ++place) // those entered before take no more room than they had
        enter(SKey(keys[place]));
}

const char* CJsonKeys::GetName(std::uint32_t index)
{
    if (names == nullptr)
        gatherNames();
    return names[index];
}

std::uint32_t CJsonKeys::findElsewhere(const char* key, std::uint32_t& expected) const
{
    const std::uint32_t index = findIndex(key);
    if (index == count)
        return NoPlace;
    expected = index + 1;
    return keys[index].place;
}

// The index of a key, or else the number of keys.
std::uint32_t CJsonKeys::findIndex(std::string_view key) const
{
    if (slots == nullptr)
        return findAmongFew(key);
    const SSlot& slot = findSlot(key, (*hasher)(key));
    return slot.ordinal == 0 ? count : slot.ordinal - 1;
}

std::uint32_t CJsonKeys::findAmongFew(std::string_view key) const
{
    const auto isIt = [&](const SKey& known) { return known.text == key; };
    return static_cast<std::uint32_t>(std::find_if(keys, keys + count, isIt) - keys);
}

// Where a key stands, or the free slot in which it belongs.
CJsonKeys::SSlot& CJsonKeys::findSlot(std::string_view key, std::uint64_t hash) const
{
    const std::size_t mask = (std::size_t{1} << (64 - slotShift)) - 1;
    std::size_t at = static_cast<std::size_t>(hash >> slotShift);
    for (std::size_t step = 1;; at = (at + step++) & mask) // in steps that get longer, all slots are met
    {
        SSlot& slot = slots[at];
        if (slot.ordinal == 0 || (slot.mark == hash >> 32 && keys[slot.ordinal - 1].text == key))
            return slot;
    }
}

void CJsonKeys::makeSlots(std::uint32_t keyCount)
{
    hasher = new (arena->Allocate(sizeof(CKeyHash))) CKeyHash;
    slotShift = std::countl_zero(std::uint64_t{keyCount} * 2 - 1);
    const std::size_t slotCount = std::size_t{1} << (64 - slotShift);
    slots = reinterpret_cast<SSlot*>(arena->Allocate(slotCount * sizeof(SSlot)));
    std::fill_n(slots, slotCount, SSlot());
}

// A key that was there before only gets another place.
void CJsonKeys::enter(const SKey& key)
{
    const std::uint64_t hash = slots == nullptr ? 0 : (*hasher)(key.text);
    SSlot* const slot = slots == nullptr ? nullptr : &findSlot(key.text, hash);
    const std::uint32_t index = slot == nullptr      ? findAmongFew(key.text)
                                : slot->ordinal == 0 ? count
                                                     : slot->ordinal - 1;
    keys[index] = key;
    if (index < count)
        return;
    ++count;
    if (slot != nullptr)
        *slot = {static_cast<std::uint32_t>(hash >> 32), count};
}

// The order is that of a table, so a table is asked.
void CJsonKeys::gatherNames()
{
    JsonMembers members(JsonMembers::DefaultBucketCount, count);
    for (std::uint32_t index = 0; index < count; ++index)
        members.FindOrInsert(keys[index].text);
    auto* const gathered = reinterpret_cast<const char**>(arena->Allocate(count * sizeof(const char*)));
    std::uint32_t index = 0;
    for (const auto* node = members.GetFirst(); node != nullptr; node = node->next)
        gathered[index++] = reinterpret_cast<const char*>(arena->Copy(node->key.c_str(), node->key.size() + 1));
    names = gathered;
}

} // namespace Vellum
