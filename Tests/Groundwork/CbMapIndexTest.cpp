#include "Groundwork/CbMapEx.h"

#include "Support/Testing.h"

namespace
{

// A number whose hash is itself, so that a test can choose buckets. Comparisons are counted.
struct SChosen
{
    std::uint64_t number;
};
std::uint64_t comparisons = 0;

} // namespace

template <>
struct CbMapTypes::SKeyTraits<SChosen>
{
    using View = SChosen;
    static constexpr bool IsText = false;
    static std::uint64_t Hash(View key) { return key.number & 0xFFFFFFFFFFFF; } // the rest makes equal hashes
    static bool Equal(std::uint64_t, SChosen stored, std::uint64_t, View key)
    {
        ++comparisons;
        return stored.number == key.number;
    }
};

namespace
{

using Chosen = CbMapEx<SChosen, int>;

// Whatever buckets the keys were chosen for, an operation compares a few keys on the average.
TEST(CbMapIndex, ChosenKeysGainNothing)
{
    constexpr std::uint64_t Count = 20000;
    const std::function<std::uint64_t(std::uint64_t)> families[] = {
        [](std::uint64_t i) { return i << 24; },                       // one bucket
        [](std::uint64_t i) { return (i % 160) | (i / 160) << 20; },   // chains of 125 in neighbouring buckets
        [](std::uint64_t i) { return (i / 125) | (i % 125) << 20; },   // ... one after the other
        [](std::uint64_t i) { return (i % 1300) | (i / 1300) << 20; }, // chains of 16
        [](std::uint64_t i) { return i << 48; },                       // one hash
        [](std::uint64_t i) { return i == 0 ? 0 : 0x7FFF | i << 32; }, // far from the only other one
        [](std::uint64_t i) { return (i * 0x9E3779B97F4A7C15u) & 0xFFFFFFFFFFFF; }};
    for (const auto& family : families)
    {
        Chosen map;
        comparisons = 0;
        for (std::uint64_t i = 0; i < Count; ++i)
            map.FindOrInsert({family(i)})->value = static_cast<int>(i);
        EXPECT_LT(comparisons, 3 * Count + 2000) << &family - families;
        for (std::uint64_t i = 0; i < Count; ++i)
            ASSERT_EQ(map.Find({family(i)})->value, static_cast<int>(i));
        EXPECT_LT(comparisons, 12 * Count) << &family - families;
        EXPECT_EQ(map.Find({family(Count) | std::uint64_t{1} << 47}), nullptr);

        std::uint32_t nodes = 0;
        std::uint64_t lowest = 0;
        for (const auto* node = map.GetFirst(); node != nullptr; node = node->next, ++nodes)
        {
            const std::uint64_t bucket = static_cast<std::uint32_t>(node->hash) & (map.GetBucketCount() - 1);
            ASSERT_GE(bucket, lowest);
            lowest = bucket;
        }
        EXPECT_EQ(nodes, Count);
    }
}

TEST(CbMapIndex, SurvivesEveryFailedAllocation)
{
    const CLogObserver quiet;
    std::vector<std::uint64_t> there;
    there.reserve(200);
    const auto fill = [&]
    {
        Chosen map;
        there.clear();
        for (std::uint64_t i = 0; i < 200; ++i)
        {
            const SChosen key{i % 2 == 0 ? i << 32 : i}; // of one bucket, and of many
            const std::uint32_t before = map.GetCount();
            GetsThrough([&] { map.FindOrInsert(key); });
            if (map.GetCount() != before)
                there.push_back(key.number);
            EXPECT_EQ(map.Find(key) != nullptr, map.GetCount() != before);
        }
        std::uint32_t nodes = 0;
        for (const auto* node = map.GetFirst(); node != nullptr; node = node->next)
            ++nodes;
        EXPECT_EQ(nodes, there.size());
        for (const std::uint64_t number : there)
            EXPECT_NE(map.Find({number}), nullptr);
    };
    EXPECT_GT(FailEachAllocation(fill), 4u); // two blocks, buckets, the index and its slots
}

} // namespace
