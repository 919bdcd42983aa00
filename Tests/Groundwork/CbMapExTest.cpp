#include "Groundwork/CbMapEx.h"

#include <list>

#include "Groundwork/CbExceptions.h"

#include "Support/Testing.h"

namespace
{

using Numbers = CbMapEx<unsigned int, int>;
using Texts = CbMapEx<std::string, int>;
using Strings = CbMapEx<ATL::CStringT<char>, unsigned int>;
using Borrowing =
    CbMapEx<unsigned int, int, 0, std::hash<unsigned int>, std::equal_to<unsigned int>, CbMapPolicyBorrowed>;
using BorrowedPool = CbPlexManager<CbMapTypes::SAssociation<unsigned int, int>, 0, unsigned int>;

template <class Map>
auto Keys(const Map& map)
{
    std::vector<decltype(map.GetFirst()->key)> keys;
    for (const auto* node = map.GetFirst(); node != nullptr; node = node->next)
        keys.push_back(node->key);
    return keys;
}

template <class Map>
std::uint32_t Bucket(const Map& map, const auto& key)
{
    return static_cast<std::uint32_t>(map.Find(key)->hash) & (map.GetBucketCount() - 1);
}

// The order as it is told: chains of newest first, all chains turned round when the buckets double.
class COrderModel
{
public:
    void Insert(unsigned int key)
    {
        bucket(key).push_front(key);
        if (++count * 4 < chains.size() * 3)
            return;
        const std::vector<unsigned int> old = Keys();
        chains.assign(chains.size() * 2, {});
        for (const unsigned int each : old)
            bucket(each).push_front(each);
    }
    std::vector<unsigned int> Keys() const
    {
        std::vector<unsigned int> keys;
        for (const auto& chain : chains)
            keys.insert(keys.end(), chain.begin(), chain.end());
        return keys;
    }

private:
    std::list<unsigned int>& bucket(unsigned int key)
    {
        std::uint64_t hash = 0xCBF29CE484222325u;
        for (int i = 0; i < 4; ++i)
            hash = (hash ^ ((key >> (8 * i)) & 0xFF)) * 0x100000001B3u;
        return chains[static_cast<std::uint32_t>(hash) % chains.size()];
    }

    std::vector<std::list<unsigned int>> chains = std::vector<std::list<unsigned int>>(128);
    std::size_t count = 0;
};

TEST(CbMapEx, EmptyTableFindsNothingAndHasNoMemory)
{
    const CAllocationCounter counter;
    const Numbers numbers;
    EXPECT_EQ(numbers.Find(0), nullptr);
    EXPECT_EQ(Texts().Find(""), nullptr);
    EXPECT_EQ(numbers.GetFirst(), nullptr);
    EXPECT_EQ(counter.GetCount(), 0u);
}

TEST(CbMapEx, KeysFallIntoTheirBuckets)
{
    Numbers numbers;
    std::vector<std::uint32_t> buckets;
    for (unsigned int key = 0; key < 8; ++key)
    {
        numbers.FindOrInsert(key);
        buckets.push_back(Bucket(numbers, key));
    }
    EXPECT_EQ(buckets, (std::vector<std::uint32_t>{117, 100, 23, 6, 49, 32, 83, 66}));

    Texts texts;
    for (const auto& [key, bucket] : {std::pair("id", 64u), {"name", 6u}, {"", 37u}})
    {
        auto* const node = texts.FindOrInsert(key);
        EXPECT_EQ(Bucket(texts, key), bucket) << key;
        EXPECT_EQ(texts.FindOrInsert(std::string(key)), node); // by text and by object alike
    }
    EXPECT_EQ(texts.GetCount(), 3u);
    EXPECT_EQ(texts.Find(std::string("id\0", 3)), nullptr); // the object's text doesn't end at a NUL

    Strings strings;
    for (const auto& [key, bucket] : {std::pair("id", 109u), {"name", 65u}, {"", 0u}, {"\x80", 0u}})
    {
        auto* const node = strings.FindOrInsert(key);
        EXPECT_EQ(Bucket(strings, key), bucket) << key;
        EXPECT_EQ(strings.FindOrInsert(ATL::CStringT<char>(key)), node);
    }
    EXPECT_EQ(strings.Find("\x80")->hash, static_cast<std::uint64_t>(-128)); // bytes from 0x80 up are negative
}

// After each of a thousand insertions, through four rehashes and across the length where a list gets its buckets.
TEST(CbMapEx, OrderIsThatOfTheModelAfterEachInsertion)
{
    std::mt19937 random(1);
    for (const bool dense : {true, false})
    {
        Numbers numbers;
        COrderModel model;
        std::vector<unsigned int> keys;
        for (unsigned int i = 0; i < 1000; ++i)
        {
            keys.push_back(dense ? i : static_cast<unsigned int>(random()));
            auto* const node = numbers.FindOrInsert(keys.back());
            model.Insert(keys.back());
            ASSERT_EQ(Keys(numbers), model.Keys()) << i;
            ASSERT_NE(numbers.Find(keys[random() % keys.size()]), nullptr);
            ASSERT_EQ(numbers.Find(keys.back()), node);
        }
    }
}

// Keys that were chosen to share buckets, and one in a bucket far below: the order is the same, and an index spares the
// long walks. With buckets of thousands of nodes this test would take minutes if it didn't.
TEST(CbMapEx, KeysThatShareABucketKeepTheirOrderAndCostNoLongWalks)
{
    Numbers numbers;
    COrderModel model;
    std::vector<unsigned int> keys;
    for (unsigned int key = 0; keys.size() < 3000; ++key)
        if ((CbMapTypes::SKeyTraits<unsigned int>::Hash(key) & 0xFFF) % 0xFFE == 1 || key == 5) // two buckets of 4096
            keys.push_back(key);
    for (const unsigned int key : keys)
    {
        numbers.FindOrInsert(key)->value = static_cast<int>(key);
        model.Insert(key);
    }
    EXPECT_EQ(Keys(numbers), model.Keys());
    for (const unsigned int key : keys)
        ASSERT_EQ(numbers.Find(key)->value, static_cast<int>(key));
    EXPECT_EQ(numbers.Find(keys.back() + 1), nullptr);
    EXPECT_EQ(numbers.FindOrInsert(keys.front())->value, static_cast<int>(keys.front()));
    EXPECT_EQ(numbers.GetCount(), 3000u);
}

TEST(CbMapEx, DoublesOnThe96thAndThe192ndInsertion)
{
    Numbers numbers;
    auto* const node = numbers.FindOrInsert(0);
    for (const auto& [count, buckets] : {std::pair(95u, 128u), {96u, 256u}, {191u, 256u}, {192u, 512u}})
    {
        while (numbers.GetCount() < count)
            numbers.FindOrInsert(numbers.GetCount());
        EXPECT_EQ(numbers.GetBucketCount(), buckets) << count;
        EXPECT_EQ(numbers.Find(0), node); // nodes never move
    }
    for (const auto& [given, buckets] : {std::pair(0u, 1u), {1u, 1u}, {7u, 4u}, {200u, 128u}}) // rounded down
        EXPECT_EQ(Numbers(given).GetBucketCount(), buckets);
    Numbers small(4u);
    for (unsigned int key = 0; key < 200; ++key)
        small.FindOrInsert(key);
    EXPECT_EQ(small.GetBucketCount(), 512u);
    EXPECT_NE(small.Find(199), nullptr);
}

TEST(CbMapEx, ClearedTableIsAsNewAndItsNodesServeAgain)
{
    BorrowedPool pool;
    Borrowing map(128u, pool);
    COrderModel model;
    for (unsigned int key = 0; key < 300; ++key)
        map.FindOrInsert(key);
    map.Clear();
    const auto blocks = pool.GetBlockCount();
    for (unsigned int key = 300; key > 0; --key)
    {
        map.FindOrInsert(key)->value = 1;
        model.Insert(key);
    }
    EXPECT_EQ(Keys(map), model.Keys());
    EXPECT_EQ(pool.GetBlockCount(), blocks);
}

TEST(CbMapEx, SurvivesEveryFailedAllocation)
{
    const CLogObserver quiet;
    const std::string stem(100, 'k');
    std::vector<std::string> keys;
    for (unsigned int i = 0; i < 200; ++i)
        keys.push_back(stem + std::to_string(i));
    const auto fill = [&]
    {
        Texts texts;
        for (const std::string& key : keys)
        {
            const std::uint32_t before = texts.GetCount();
            if (!GetsThrough([&] { texts.FindOrInsert(key); }))
            {
                // A table that couldn't double has the new node; any other failure changes nothing.
                EXPECT_TRUE(texts.GetCount() == before || texts.GetCount() * 4 >= texts.GetBucketCount() * 3);
            }
            std::uint32_t nodes = 0;
            for (const auto* node = texts.GetFirst(); node != nullptr; node = node->next)
                ++nodes;
            EXPECT_EQ(nodes, texts.GetCount());
        }
    };
    EXPECT_GT(FailEachAllocation(fill), 200u); // keys, blocks and buckets
}

TEST(CbMapPolicyPlexManager, RefusesAnotherPoolOnceTheTableIsInUse)
{
    using Shared = CbMapEx<std::string, std::unique_ptr<std::string>, 0, std::hash<std::string>,
                           std::equal_to<std::string>, CbMapPolicyPlexManager>;
    const auto pool = std::make_shared<Shared::Pool>(1024);
    Shared first;
    Shared second;
    first.SetPlexManager(pool);
    second.SetPlexManager(pool);
    first.FindOrInsert("a");
    second.FindOrInsert("b");
    EXPECT_EQ(pool->GetBlockCount(), 1u);
    const CLogObserver quiet;
    EXPECT_THROW(first.SetPlexManager(std::make_shared<Shared::Pool>()), CbExceptionContainer);
    EXPECT_NE(first.Find("a"), nullptr);
}

} // namespace
