#pragma once

#include <cstdint>
#include <string_view>

#include "Vellum/src/CXmlElement.h"

namespace Vellum
{

// CXmlNameIndex: finds the first of many children that has a name, without regard to case.
//
// Order    The children stand by the low bits of their names' hashes, in as many buckets as there are children, half as
//          many or up to twice as many. In a bucket they keep the order of the document. One of more than MaxUnsorted
//          is sorted by hash and name, children of one name still in that order: no choice of names makes a search
//          slow.
// Memory   that of the tree.
class CXmlNameIndex
{
public:
    // At least one child. Of each child it is noted whether its name may repeat that of one in front. Raises
    // std::bad_alloc.
    static const CXmlNameIndex* Make(const SXmlChildren& children, CXmlMemory& memory);

    // The name is zero-terminated. Null if there is none.
    SXmlNodeData* Find(std::string_view name) const;

private:
    static constexpr std::uint32_t MaxUnsorted = 8;

    CXmlNameIndex(const SXmlChildren& children, CXmlMemory& memory);

    struct SEntry
    {
        SXmlNodeData* child;
        std::uint32_t hash; // of its name
    };

    void fillBuckets(const SXmlChildren& children);
    static void finishBucket(SEntry* begin, SEntry* end);

    std::uint32_t mask;
    SEntry* sorted;        // all children
    std::uint32_t* starts; // of each bucket, and behind the last one
};

} // namespace Vellum
