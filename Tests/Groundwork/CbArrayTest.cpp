#include "Groundwork/CbArray.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Support/FailEachAllocation.h"

namespace
{

using Support::CAllocationCounter;
using Support::FailEachAllocation;

template <class T>
std::vector<T> Elements(const CbArray<T>& array)
{
    return {array.begin(), array.end()};
}

// An element whose constructors fail when told to, and that counts how many live.
struct SFragile
{
    static inline int living = 0;
    static inline int untilFailure = -1; // constructions that succeed; below 0 all do

    int value = 7;

    SFragile() { construct(); }
    explicit SFragile(int value) : value(value) { construct(); }
    SFragile(const SFragile& other) : value(other.value) { construct(); }
    SFragile& operator=(const SFragile&) = default;
    ~SFragile() { --living; }

    static void construct()
    {
        if (untilFailure == 0)
            throw std::string("construct");
        --untilFailure;
        ++living;
    }
};

TEST(CbArray, EmptyOneHasNoMemory)
{
    const CAllocationCounter counter;
    const CbArray<unsigned char> array;
    const CbArray<unsigned char> sized(0);
    for (const auto* empty : {&array, &sized})
    {
        EXPECT_EQ(empty->GetData(), nullptr);
        EXPECT_EQ(empty->GetEnd(), nullptr);
        EXPECT_EQ(empty->GetSize(), 0u);
        EXPECT_EQ(empty->GetCapacity(), 0u);
    }
    EXPECT_EQ(counter.GetCount(), 0u);
}

TEST(CbArray, AddDoublesFromOne)
{
    CbArray<std::string> array;
    std::vector<std::uint32_t> capacities;
    for (int i = 0; i < 9; ++i)
    {
        EXPECT_EQ(array.Add(std::to_string(i)), std::to_string(i));
        capacities.push_back(array.GetCapacity());
        EXPECT_EQ(array.GetEnd(), array.GetData() + i + 1);
    }
    EXPECT_EQ(capacities, (std::vector<std::uint32_t>{1, 2, 4, 4, 8, 8, 8, 8, 16}));
    EXPECT_EQ(Elements(array), (std::vector<std::string>{"0", "1", "2", "3", "4", "5", "6", "7", "8"}));

    CbArray<int> steps;
    steps.SetGrowBy(3);
    steps.Add(1);
    EXPECT_EQ(steps.GetCapacity(), 3u);
    steps.Append(std::array{2, 3, 4, 5, 6, 7}.data(), 6);
    EXPECT_EQ(steps.GetCapacity(), 9u);
    EXPECT_EQ(Elements(steps), (std::vector{1, 2, 3, 4, 5, 6, 7}));
}

TEST(CbArray, SetSizeGrowsToExactlyThatAndAddDoublesIt)
{
    CbArray<unsigned char> array;
    array.SetSize(5);
    EXPECT_EQ(array.GetCapacity(), 5u);
    EXPECT_EQ(Elements(array), (std::vector<unsigned char>(5, 0)));
    array.Add(9);
    EXPECT_EQ(array.GetCapacity(), 10u);
    array.SetSize(12);
    EXPECT_EQ(array.GetCapacity(), 12u);
    EXPECT_EQ(Elements(array), (std::vector<unsigned char>{0, 0, 0, 0, 0, 9, 0, 0, 0, 0, 0, 0}));
}

TEST(CbArray, SizeZeroKeepsTheMemoryAndWhatItHeld)
{
    CbArray<unsigned char> array;
    array.Append(reinterpret_cast<const unsigned char*>("abc"), 3);
    const unsigned char* const data = array.GetData();
    array.SetSize(0);
    EXPECT_EQ(array.GetData(), data);
    EXPECT_EQ(array.GetEnd(), nullptr);
    EXPECT_EQ(array.GetCapacity(), 4u);
    EXPECT_TRUE(Elements(array).empty());
    array.SetSize(4);
    EXPECT_EQ(Elements(array), (std::vector<unsigned char>{'a', 'b', 'c', 0}));

    CbArray<std::string> texts(2); // elements that are constructed come back new
    texts[1] = "x";
    texts.SetSize(1);
    texts.SetSize(2);
    EXPECT_EQ(texts[1], "");
}

TEST(CbArray, AppendGrowsAsIfElementsWereAddedOneByOne)
{
    for (const std::uint32_t start : {0u, 1u, 3u, 4u})
        for (std::uint32_t count = 0; count < 40; ++count)
        {
            const std::vector<std::uint16_t> source(count, 7);
            CbArray<std::uint16_t> appended(start);
            CbArray<std::uint16_t> added(start);
            appended.Append(source.data(), count);
            for (const std::uint16_t element : source)
                added.Add(element);
            ASSERT_EQ(appended.GetCapacity(), added.GetCapacity()) << start << ' ' << count;
            ASSERT_EQ(Elements(appended), Elements(added));
        }
    CbArray<char> array;
    array.Append(nullptr, 0);
    EXPECT_EQ(array.GetCapacity(), 0u);
}

TEST(CbArray, ArgumentsMayBeElementsOfTheArrayItself)
{
    CbArray<std::string> texts;
    texts.Add(std::string(40, 'a'));
    for (int i = 0; i < 5; ++i)
        texts.Add(texts[0]);
    texts.Append(texts.GetData(), texts.GetSize());
    EXPECT_EQ(Elements(texts), std::vector<std::string>(12, std::string(40, 'a')));

    CbArray<int> numbers;
    numbers.Add(3);
    numbers.Append(numbers.GetData(), 1);
    numbers.Append(numbers.GetData(), 2);
    for (const int number : numbers)
        EXPECT_EQ(number, 3);
    EXPECT_EQ(numbers.GetSize(), 4u);
}

TEST(CbArray, SizesBeyond32BitsAreRefusedAndNothingChanges)
{
    constexpr std::uint64_t beyond = 0x100000000;
    EXPECT_THROW(CbArray<unsigned char>{beyond}, std::bad_array_new_length);
    CbArray<unsigned char> array(3);
    EXPECT_THROW(array.SetSize(beyond), std::bad_array_new_length);
    EXPECT_THROW(array.Reserve(beyond + 1), std::bad_array_new_length);
    EXPECT_THROW(array.Append(array.GetData(), beyond - 3), std::bad_array_new_length);
    EXPECT_THROW(array.Append(array.GetData(), ~std::uint64_t{0}), std::bad_array_new_length);
    EXPECT_THROW(array.Append(array.GetData(), 0xE0000000), std::bad_array_new_length); // would fit, doubling doesn't
    EXPECT_EQ(array.GetGrownCapacity(0xC0000001), 0x180000000u);
    EXPECT_EQ(Elements(array), std::vector<unsigned char>(3, 0));
    EXPECT_EQ(array.GetCapacity(), 3u);
}

TEST(CbArray, CopiesAndMovesItsElements)
{
    CbArray<CbArray<unsigned char>> array;
    array.Add(CbArray<unsigned char>(3));
    array.Add(CbArray<unsigned char>(5));
    array.Add({});
    CbArray<CbArray<unsigned char>> copy(array);
    EXPECT_EQ(copy.GetCapacity(), 3u);
    copy[0][0] = 1;
    EXPECT_EQ(array[0][0], 0);
    const auto* const data = copy.GetData();
    array = std::move(copy);
    EXPECT_EQ(array.GetData(), data);
    const auto& same = array;
    array = same;
    EXPECT_EQ(array.GetSize(), 3u);
    EXPECT_EQ(array[0][0], 1);

    CbArray<std::unique_ptr<int>> owners; // can only be moved
    for (int i = 0; i < 5; ++i)
        owners.Add(std::make_unique<int>(i));
    const CbArray<std::unique_ptr<int>> moved(std::move(owners));
    EXPECT_EQ(*moved[4], 4);
}

TEST(CbArray, SpeciallyAlignedElementsLieWhereTheyMust)
{
    struct alignas(64) SWide
    {
        double values[3];
    };
    CbArray<SWide> array;
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&array.Add({})) % 64, 0u);
    CbArray<long double> numbers(3);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(numbers.GetData()) % alignof(long double), 0u);
    CbArray<bool> flags(2);
    flags.Add(true);
    EXPECT_EQ(std::memcmp(flags.GetData(), "\0\0\1", 3), 0);
}

TEST(CbArray, FailedGrowthLeavesItAsItWas)
{
    const std::string source[3] = {std::string(50, 'x'), "y", "z"};
    const std::string expected = source[0];
    const std::uint32_t failures = FailEachAllocation(
        [&]
        {
            CbArray<std::string> array;
            const auto attempt = [&](auto operation)
            {
                const std::vector<std::string> before = Elements(array);
                const std::uint32_t capacity = array.GetCapacity();
                try
                {
                    operation();
                }
                catch (const std::bad_alloc&)
                {
                    EXPECT_EQ(Elements(array), before);
                    EXPECT_EQ(array.GetCapacity(), capacity);
                    operation();
                }
            };
            try
            {
                attempt([&] { array.Add(expected); });
                attempt([&] { array.Append(source, 3); });
                attempt([&] { array.SetSize(100); });
                attempt([&] { CbArray<std::string> copy(array); });
            }
            catch (const std::bad_alloc&)
            {
                return; // the test's own copies
            }
            EXPECT_EQ(array[1], expected);
        });
    EXPECT_GE(failures, 8u);
}

TEST(CbArray, ThrowingConstructorsLeaveItValid)
{
    for (int failing = 0; failing < 25; ++failing)
    {
        CbArray<SFragile> array;
        array.Add(SFragile(1));
        array.Add(SFragile(2));
        SFragile::untilFailure = failing;
        for (int operation = 0; operation < 5; ++operation)
        {
            const std::uint32_t before = array.GetSize();
            try
            {
                if (operation == 0)
                    array.Add(array[0]); // grows
                else if (operation == 1)
                    array.SetSize(4); // within the capacity
                else if (operation == 2)
                    array.SetSize(6); // grows
                else if (operation == 3)
                    array.Append(array.GetData(), 2);
                else
                    CbArray<SFragile>(array).SetSize(1);
            }
            catch (const std::string&)
            {
                EXPECT_EQ(array.GetSize(), before);
            }
        }
        SFragile::untilFailure = -1;
        EXPECT_EQ(SFragile::living, static_cast<int>(array.GetSize()));
        EXPECT_EQ(array[0].value, 1);
        EXPECT_EQ(array[1].value, 2);
    }
    EXPECT_EQ(SFragile::living, 0);
}

} // namespace
