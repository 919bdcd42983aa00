#include "Groundwork/CbMapEx.h"

#include "Groundwork/CbExceptions.h"

#include "Model/Values.h"
#include "Support/Testing.h"

namespace
{

using Numbers = CbMapEx<unsigned int, int>;
using Texts = CbMapEx<std::string, int>;
using Strings = CbMapEx<ATL::CStringT<char>, unsigned int>;

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

std::uint64_t HashOf(unsigned int key)
{
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(key >> shift & 0xFF);
    return Model::HashOfBytes(bytes);
}
std::uint64_t HashOf(const std::string& key) { return Model::HashOfBytes(key); }
std::uint64_t HashOf(const ATL::CStringT<char>& key) { return Model::HashOfName(key.GetString()); }

// Puts the keys into a table, in which some may be already, and expects the order that the model tells, and each key
// with the value that it had first.
template <class Map, class Key>
void ExpectToldOrder(Map& map, const std::vector<Key>& keys)
{
    std::vector<Key> inserted;
    std::vector<std::uint64_t> hashes;
    for (const Key& key : keys)
    {
        const bool isNew = std::find(inserted.begin(), inserted.end(), key) == inserted.end();
        const auto [node, wasNew] =
            map.FindOrEmplace(key, static_cast<std::decay_t<decltype(map.GetFirst()->value)>>(inserted.size()));
        ASSERT_EQ(wasNew, isNew);
        ASSERT_EQ(map.FindOrInsert(key), node);
        if (isNew)
        {
            inserted.push_back(key);
            hashes.push_back(HashOf(key));
        }
    }
    std::vector<Key> order;
    for (const std::size_t place : Model::TableOrder(hashes))
        order.push_back(inserted[place]);
    ASSERT_EQ(Keys(map), order);
    ASSERT_EQ(map.GetCount(), inserted.size());
    for (std::size_t i = 0; i < inserted.size(); ++i)
        ASSERT_EQ(map.Find(inserted[i])->value, static_cast<int>(i));
}

// Keys of which up to all lie in two of 4096 buckets.
std::vector<unsigned int> SomeNumbers(CTape& tape)
{
    static const std::vector<unsigned int> chosen = []
    {
        std::vector<unsigned int> found;
        for (unsigned int key = 0; found.size() < 1000; ++key)
            if ((HashOf(key) & 0xFFF) % 0xFFE == 1)
                found.push_back(key);
        return found;
    }();
    const std::size_t kinds = tape.Below(4);
    std::vector<unsigned int> keys(tape.Below(tape.OneIn(4) ? 800 : 40));
    for (unsigned int& key : keys)
        key = tape.Below(4) < kinds ? tape.From(chosen) : static_cast<unsigned int>(tape.Bits() >> tape.Below(60));
    return keys;
}

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

TEST(CbMapEx, OrderIsThatOfTheModel)
{
    CheckProperty(
        [](CTape& tape)
        {
            const std::vector<unsigned int> numbers = SomeNumbers(tape);
            Numbers map;
            ExpectToldOrder(map, numbers);
            std::vector<std::string> texts;
            std::vector<ATL::CStringT<char>> strings;
            for (const unsigned int number : numbers)
            {
                texts.emplace_back(reinterpret_cast<const char*>(&number), number % (sizeof number + 1));
                strings.emplace_back(texts.back().c_str());
            }
            Texts textMap;
            ExpectToldOrder(textMap, texts);
            Strings stringMap;
            ExpectToldOrder(stringMap, strings);
        },
        60);
}

TEST(CbMapEx, ValuesGoWithTheirTable)
{
    for (const unsigned int count : {3u, 300u})
    {
        const auto value = std::make_shared<int>();
        {
            CbMapEx<unsigned int, std::shared_ptr<int>> map;
            for (unsigned int key = 0; key < count; ++key)
                map.FindOrInsert(key)->value = value;
            EXPECT_EQ(value.use_count(), count + 1);
        }
        EXPECT_EQ(value.use_count(), 1);
    }
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

} // namespace
