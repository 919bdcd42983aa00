#include "Vellum/src/CXmlNameIndex.h"

#include <algorithm>
#include <bit>
#include <new>
#include <numeric>

#include "Platform/TextCompare.h"

namespace Vellum
{

namespace
{

bool IsBefore(const SXmlNodeData* child, std::uint32_t childHash, std::uint32_t hash, const char* name)
{
    if (childHash != hash)
        return childHash < hash;
    return child->name->text != name && Platform::CompareWithoutCase(child->name->text, name) < 0;
}

} // namespace

const CXmlNameIndex* CXmlNameIndex::Make(const SXmlChildren& children, CXmlMemory& memory)
{
    return new (memory.Allocate<CXmlNameIndex>()) CXmlNameIndex(children, memory);
}

CXmlNameIndex::CXmlNameIndex(const SXmlChildren& children, CXmlMemory& memory)
    : mask(std::bit_ceil(children.count) - 1),
      sorted(memory.AllocateArray<SEntry>(children.count)),
      starts(memory.AllocateArray<std::uint32_t>(std::size_t{mask} + 3))
{
    fillBuckets(children);
    for (std::uint32_t bucket = 0; bucket <= mask; ++bucket)
        finishBucket(sorted + starts[bucket], sorted + starts[bucket + 1]);
}

// Sizes of buckets are counted two places behind where their start belongs. Summed up, they are the starts one place
// behind, and each child that goes into its bucket moves that on, to where the next bucket starts.
void CXmlNameIndex::fillBuckets(const SXmlChildren& children)
{
    std::fill_n(starts, std::size_t{mask} + 3, 0u);
    SXmlNodeData* child = children.last;
    for (std::uint32_t i = 0; i < children.count; ++i)
    {
        child = child->next;
        ++starts[(child->name->hash & mask) + 2];
    }
    std::partial_sum(starts, starts + std::size_t{mask} + 3, starts);
    for (std::uint32_t i = 0; i < children.count; ++i)
    {
        child = child->next;
        const std::uint32_t hash = child->name->hash;
        sorted[starts[(hash & mask) + 1]++] = {child, hash};
    }
}

// Names of one hash stand in the order of CompareWithoutCase.
void CXmlNameIndex::finishBucket(SEntry* begin, SEntry* end)
{
    if (static_cast<std::size_t>(end - begin) <= MaxUnsorted)
    {
        for (SEntry* entry = begin; entry != end; ++entry)
            entry->child->mayRepeat =
                std::any_of(begin, entry, [&](const SEntry& front) { return front.hash == entry->hash; });
        return;
    }
    const auto isBefore = [](const SEntry& left, const SEntry& right)
    { return IsBefore(left.child, left.hash, right.hash, right.child->name->text); };
    std::stable_sort(begin, end, isBefore);
    for (SEntry* entry = begin; entry != end; ++entry)
        entry->child->mayRepeat = entry != begin && !isBefore(entry[-1], *entry);
}

SXmlNodeData* CXmlNameIndex::Find(std::string_view name) const
{
    const std::uint32_t hash = HashXmlName(name);
    const SEntry* const begin = sorted + starts[hash & mask];
    const SEntry* const end = sorted + starts[(hash & mask) + 1];
    const auto hasName = [&](const SEntry& entry) { return entry.hash == hash && HasName(*entry.child->name, name); };
    const auto isBefore = [&](const SEntry& entry) { return IsBefore(entry.child, entry.hash, hash, name.data()); };
    if (static_cast<std::size_t>(end - begin) <= MaxUnsorted)
    {
        const SEntry* const found = std::find_if(begin, end, hasName);
        return found == end ? nullptr : found->child;
    }
    const SEntry* const found = std::partition_point(begin, end, isBefore);
    return found == end || !hasName(*found) ? nullptr : found->child;
}

} // namespace Vellum
