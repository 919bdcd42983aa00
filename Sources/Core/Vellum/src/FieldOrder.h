#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "Groundwork/CbMapEx.h"

#include "Vellum/src/ValueKinds.h"

// The fields of a record that is being written, and the order in which they are stored: section after section, and in
// each as a CbMapEx of their kind iterates over the indices of their keys. That order is a function of the keys and of
// the order in which they came, so it takes no table to know it:
//
// A table starts with 128 buckets and doubles them with the 96th, 192nd, 384th ... key. Buckets go upwards. Within one,
// keys are put in front of those that are there, and doubling turns them round. So those that came before an even
// number of doublings, none among them, stand in front, newest first, and behind them those that came before an odd
// number, oldest first.
namespace Vellum
{

// A field as it lies in memory until the record is complete.
struct SRecordField
{
    const char* text;  // the key, in the string table
    std::size_t at;    // of its stored bytes, or the number of the nested writer
    std::size_t size;  // in bytes; 0 for nested writers
    std::uint32_t key; // index of the text
    std::uint8_t rank; // of the kind
};

// Kinds are counted by rank here, the place of their sections in a record.
template <class Kinds>
struct SRanks;

template <class... Kind>
struct SRanks<SKindList<Kind...>>
{
    template <class T>
    static constexpr std::uint8_t rank()
    {
        constexpr bool isThat[] = {std::is_same_v<T, typename Kind::Type>...};
        return static_cast<std::uint8_t>(std::find(isThat, isThat + sizeof...(Kind), true) - isThat);
    }
    static constexpr std::array<std::uint8_t, sizeof...(Kind)> Tags{Kind::Tag...};
    static constexpr std::array<std::uint8_t, sizeof...(Kind)> Sizes{Kind::Tag == TagDate ? std::uint8_t{12}
                                                                                          : NumberWidths[Kind::Tag]...};
};

template <class T>
inline constexpr std::uint8_t RankOf = SRanks<ValueKinds>::rank<T>();

inline constexpr std::size_t Ranks = ValueKinds::Count;

// By rank: the tag, and how many bytes a value is stored in, 0 where they vary.
inline constexpr auto TagsByRank = SRanks<ValueKinds>::Tags;
inline constexpr auto SizesByRank = SRanks<ValueKinds>::Sizes;

// Which values are kept together: objects and sequences each have writers of their own, all others are bytes.
constexpr std::uint8_t StorageOf(std::uint8_t rank) { return TagsByRank[rank] < TagObject ? 0 : TagsByRank[rank]; }

// What a record holds of each kind.
struct SSectionCounts
{
    std::array<std::uint32_t, Ranks> fields{}; // by rank
    std::uint8_t sections = 0;
};

// Of anything that has a rank each.
template <class Fields>
SSectionCounts CountSections(const Fields& fields)
{
    SSectionCounts counts;
    for (const auto& field : fields)
        counts.sections = static_cast<std::uint8_t>(counts.sections + (counts.fields[field.rank]++ == 0 ? 1 : 0));
    return counts;
}

namespace FieldOrder
{

using Positions = std::vector<std::uint32_t>;

inline constexpr std::uint32_t FirstBuckets = 128;
inline constexpr std::uint32_t FirstDoubling = FirstBuckets / 4 * 3;

// How often a table has doubled its buckets when it has that many keys.
constexpr std::uint32_t CountDoublings(std::size_t keys)
{
    return static_cast<std::uint32_t>(std::bit_width(keys / FirstDoubling));
}

inline std::size_t BucketOf(std::uint32_t key, std::size_t buckets)
{
    return static_cast<std::size_t>(CbMapTypes::SKeyTraits<unsigned int>::Hash(key)) & (buckets - 1);
}

// The order of so few fields that no table of theirs has doubled: all that counts of each is one number.
inline void ArrangeFew(const std::vector<SRecordField>& fields, Positions& order)
{
    static_assert(FirstDoubling <= 0x100 && FirstBuckets <= 0x100);
    for (std::uint32_t at = 0; at < fields.size(); ++at)
        order.push_back(std::uint32_t{fields[at].rank} << 16 |
                        static_cast<std::uint32_t>(BucketOf(fields[at].key, FirstBuckets)) << 8 | (0xFF - at));
    std::sort(order.begin(), order.end());
    for (std::uint32_t& position : order)
        position = 0xFF - (position & 0xFF);
}

// Puts the fields of one kind into order: `from` to `to`, which come as they were written.
inline void ArrangeKind(const std::vector<SRecordField>& fields, std::uint32_t* from, std::uint32_t* to)
{
    const Positions written(from, to);
    const std::uint32_t doublings = CountDoublings(written.size());
    const std::size_t buckets = std::size_t{FirstBuckets} << doublings;
    std::vector<std::uint32_t> ends(buckets + 1); // of what is there in each bucket
    for (const std::uint32_t position : written)
        ++ends[BucketOf(fields[position].key, buckets) + 1];
    for (std::size_t bucket = 0; bucket < buckets; ++bucket)
        ends[bucket + 1] += ends[bucket];

    const auto isInFront = [&](std::size_t at) { return (doublings - CountDoublings(at)) % 2 == 0; };
    const auto put = [&](std::size_t at) { from[ends[BucketOf(fields[written[at]].key, buckets)]++] = written[at]; };
    for (std::size_t at = written.size(); at-- != 0;)
        if (isInFront(at))
            put(at);
    for (std::size_t at = 0; at < written.size(); ++at)
        if (!isInFront(at))
            put(at);
}

inline void ArrangeMany(const std::vector<SRecordField>& fields, Positions& order)
{
    std::array<std::uint32_t, Ranks + 1> ends{};
    for (const SRecordField& field : fields)
        ++ends[field.rank + 1u];
    for (std::size_t rank = 0; rank < Ranks; ++rank)
        ends[rank + 1] += ends[rank];
    const auto starts = ends;
    order.resize(fields.size());
    for (std::uint32_t at = 0; at < fields.size(); ++at)
        order[ends[fields[at].rank]++] = at;
    for (std::size_t rank = 0; rank < Ranks; ++rank)
        ArrangeKind(fields, order.data() + starts[rank], order.data() + starts[rank + 1]);
}

// Puts the positions of the fields, which stand as they were written, into the order in which they are stored.
inline void Arrange(const std::vector<SRecordField>& fields, Positions& order)
{
    order.clear();
    if (fields.size() < FirstDoubling)
        ArrangeFew(fields, order);
    else
        ArrangeMany(fields, order);
}

} // namespace FieldOrder

} // namespace Vellum
