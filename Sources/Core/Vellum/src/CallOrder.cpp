#include "Vellum/src/CallOrder.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "Groundwork/CbMapEx.h"

#include "Vellum/src/FieldOrder.h"

// A section stands in the order of a CbMapEx: bucket by bucket, in each the last inserted first; see
// Docs/BinaryFormat.md for how buckets are doubled.
namespace Vellum
{
namespace
{

using FieldOrder::BucketOf;
using FieldOrder::FirstBuckets;
using FieldOrder::Positions;
using Table = CbMapEx<unsigned int, std::uint32_t>;

// Whether a table that takes the keys in this order has them as they stand.
bool Gives(const Positions& order, const std::vector<std::uint32_t>& keys)
{
    Table table;
    for (const std::uint32_t position : order)
        table.FindOrInsert(keys[position])->value = position;
    std::uint32_t expected = 0;
    for (const auto* node = table.GetFirst(); node != nullptr; node = node->next)
        if (node->value != expected++)
            return false;
    return true;
}

// Undoes the insertions into a table with that many buckets. Those behind the last doubling can be any that stand at
// the heads of their chains, so they are those in front; that doubling has turned round the chains of the others.
Positions Undo(Positions standing, const std::vector<std::uint32_t>& keys, std::uint32_t bucketCount)
{
    std::reverse(standing.begin(), standing.end());
    if (bucketCount == FirstBuckets)
        return standing;
    const auto late = standing.begin() + static_cast<std::ptrdiff_t>(bucketCount / 8 * 3);
    Positions order(standing.begin(), late);
    std::ranges::stable_sort(order, {}, [&](std::uint32_t at) { return BucketOf(keys[at], bucketCount / 2); });
    order = Undo(std::move(order), keys, bucketCount / 2);
    order.insert(order.end(), late, standing.end());
    return order;
}

} // namespace

std::vector<std::uint32_t> FindCallOrder(const std::vector<std::uint32_t>& keys)
{
    Positions standing(keys.size());
    std::iota(standing.begin(), standing.end(), 0u);
    Positions natural = standing;
    std::ranges::sort(natural, {}, [&](std::uint32_t at) { return keys[at]; });
    if (keys.size() < 2 || Gives(natural, keys))
        return natural;
    const std::uint32_t bucketCount = FirstBuckets << FieldOrder::CountDoublings(keys.size());
    if (std::ranges::is_sorted(keys, {}, [&](std::uint32_t key) { return BucketOf(key, bucketCount); }))
        return Undo(std::move(standing), keys, bucketCount);
    return standing;
}

} // namespace Vellum
