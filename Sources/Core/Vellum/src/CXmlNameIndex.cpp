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

// Below, above or equal to 0, by hash and by name.
int Compare(const SXmlNodeData& child, std::uint32_t hash, const char* name)
{
    if (child.name->hash != hash)
        return child.name->hash < hash ? -1 : 1;
    return child.name->text == name ? 0 : Platform::CompareWithoutCase(child.name->text, name);
}

} // namespace

const CXmlNameIndex* CXmlNameIndex::Make(const SXmlChildren& children, CXmlMemory& memory)
{
    return new (memory.Allocate<CXmlNameIndex>()) CXmlNameIndex(children, memory);
}

CXmlNameIndex::CXmlNameIndex(const SXmlChildren& children, CXmlMemory& memory)
    : mask(std::bit_ceil(children.count) - 1),
      sorted(memory.AllocateArray<SXmlNodeData*>(children.count)),
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
        ++starts[getBucket(*child) + 2];
    }
    std::partial_sum(starts, starts + std::size_t{mask} + 3, starts);
    for (std::uint32_t i = 0; i < children.count; ++i)
    {
        child = child->next;
        sorted[starts[getBucket(*child) + 1]++] = child;
    }
}

void CXmlNameIndex::finishBucket(SXmlNodeData** begin, SXmlNodeData** end)
{
    const auto hasHash = [](std::uint32_t hash)
    { return [=](const SXmlNodeData* child) { return child->name->hash == hash; }; };
    if (end - begin <= MaxUnsorted)
    {
        for (SXmlNodeData** child = begin; child != end; ++child)
            (*child)->mayRepeat = std::any_of(begin, child, hasHash((*child)->name->hash));
        return;
    }
    const auto isBefore = [](const SXmlNodeData* left, const SXmlNodeData* right)
    { return Compare(*left, right->name->hash, right->name->text) < 0; };
    std::stable_sort(begin, end, isBefore);
    for (SXmlNodeData** child = begin; child != end; ++child)
        (*child)->mayRepeat = child != begin && !isBefore(child[-1], *child);
}

SXmlNodeData* CXmlNameIndex::Find(const char* name) const
{
    const std::uint32_t hash = HashXmlName(name);
    SXmlNodeData* const* const begin = sorted + starts[hash & mask];
    SXmlNodeData* const* const end = sorted + starts[(hash & mask) + 1];
    const auto found =
        end - begin <= MaxUnsorted
            ? std::find_if(begin, end, [&](const SXmlNodeData* child) { return Compare(*child, hash, name) == 0; })
            : std::partition_point(begin, end,
                                   [&](const SXmlNodeData* child) { return Compare(*child, hash, name) < 0; });
    return found == end || Compare(**found, hash, name) != 0 ? nullptr : *found;
}

} // namespace Vellum
