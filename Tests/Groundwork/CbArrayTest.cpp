#include "Groundwork/CbArray.h"

#include "Support/Testing.h"

namespace
{

template <class T>
std::vector<T> Elements(const CbArray<T>& array)
{
    return std::vector<T>(array.begin(), array.end());
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

TEST(CbArray, GrowsByDoublingFromOneAndSetSizeToExactlyThat)
{
    const CAllocationCounter counter;
    CbArray<unsigned char> array;
    CbArray<unsigned char>(0).Append(nullptr, 0);
    EXPECT_TRUE(array.GetData() == nullptr && array.GetEnd() == nullptr && array.GetCapacity() == 0);
    EXPECT_EQ(counter.GetCount(), 0u);

    std::vector<std::uint32_t> capacities;
    for (unsigned char i = 0; i < 9; ++i)
    {
        EXPECT_EQ(array.Add(i), i);
        EXPECT_EQ(array.GetEnd(), array.GetData() + i + 1);
        capacities.push_back(array.GetCapacity());
    }
    EXPECT_EQ(capacities, (std::vector<std::uint32_t>{1, 2, 4, 4, 8, 8, 8, 8, 16}));
    array.SetSize(17);
    EXPECT_EQ(array.GetCapacity(), 17u);
    array.Add(9);
    EXPECT_EQ(array.GetCapacity(), 34u);
    EXPECT_EQ(Elements(array), (std::vector<unsigned char>{0, 1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0, 0, 0, 0, 0, 0, 9}));

    CbArray<int> steps;
    steps.SetGrowBy(3);
    steps.Add(1);
    EXPECT_EQ(steps.GetCapacity(), 3u);
    steps.Append(std::array{2, 3, 4, 5, 6, 7}.data(), 6);
    EXPECT_EQ(steps.GetCapacity(), 9u);
    EXPECT_EQ(Elements(steps), (std::vector{1, 2, 3, 4, 5, 6, 7}));
}

TEST(CbArray, SizeZeroKeepsTheMemoryAndWhatItHeld)
{
    CbArray<unsigned char> array;
    array.Append(reinterpret_cast<const unsigned char*>("abc"), 3);
    const unsigned char* const data = array.GetData();
    array.SetSize(0);
    EXPECT_TRUE(array.GetData() == data && array.GetEnd() == nullptr && array.GetCapacity() == 4);
    array.SetSize(4);
    EXPECT_EQ(Elements(array), (std::vector<unsigned char>{'a', 'b', 'c', 0}));

    CbArray<std::string> texts(2); // elements that are constructed come back new
    texts[1] = "x";
    texts.SetSize(1);
    texts.SetSize(2);
    EXPECT_EQ(texts[1], "");
}

TEST(CbArray, ArgumentsMayBeElementsOfTheArrayItself)
{
    CbArray<std::string> texts;
    texts.Add(std::string(40, 'a'));
    for (int i = 0; i < 5; ++i)
        texts.Add(texts[0]);
    texts.Append(texts.GetData(), texts.GetSize());
    EXPECT_EQ(Elements(texts), std::vector<std::string>(12, std::string(40, 'a')));
}

TEST(CbArray, SizesBeyond32BitsAreRefusedAndNothingChanges)
{
    constexpr std::uint64_t beyond = 0x100000000;
    EXPECT_THROW(CbArray<unsigned char>{beyond}, std::bad_array_new_length);
    CbArray<unsigned char> array(3);
    EXPECT_THROW(array.SetSize(beyond), std::bad_array_new_length);
    EXPECT_THROW(array.Reserve(beyond + 1), std::bad_array_new_length);
    for (const std::uint64_t count : {beyond - 3, ~std::uint64_t{0}, std::uint64_t{0xE0000000}})
        EXPECT_THROW(array.Append(array.GetData(), count), std::bad_array_new_length); // the last would fit undoubled
    EXPECT_EQ(array.GetGrownCapacity(0xC0000001), 0x180000000u);
    EXPECT_EQ(Elements(array), std::vector<unsigned char>(3, 0));
    EXPECT_EQ(array.GetCapacity(), 3u);
}

TEST(CbArray, CopiesAndMovesItsElements)
{
    CbArray<CbArray<unsigned char>> array;
    for (const std::uint32_t size : {3u, 5u, 0u})
        array.Add(CbArray<unsigned char>(size));
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
}

TEST(CbArray, FailedGrowthLeavesItAsItWas)
{
    const std::string source[3] = {std::string(50, 'x'), "y", "z"};
    const std::function<void(CbArray<std::string>&)> operations[] = {
        [&](auto& array) { array.Add(source[0]); }, [&](auto& array) { array.Append(source, 3); },
        [&](auto& array) { array.SetSize(100); }, [&](auto& array) { CbArray<std::string> copy(array); }};
    for (const auto& operation : operations)
    {
        CbArray<std::string> array;
        array.Append(source, 3);
        array.Add(source[0]); // full
        const std::vector<std::string> before = Elements(array);
        const auto attempt = [&]
        {
            if (!GetsThrough([&] { operation(array); }))
            {
                EXPECT_EQ(array.GetCapacity(), 4u);
                EXPECT_TRUE(std::equal(array.begin(), array.end(), before.begin(), before.end()));
            }
        };
        EXPECT_GE(FailEachAllocation(attempt), 1u);
    }
}

TEST(CbArray, ThrowingConstructorsLeaveItValid)
{
    const std::function<void(CbArray<SFragile>&)> operations[] = {
        [](auto& array) { array.Add(array[0]); }, // grows
        [](auto& array) { array.SetSize(4); },    // within the capacity
        [](auto& array) { array.SetSize(6); },    // grows
        [](auto& array) { array.Append(array.GetData(), 2); },
        [](auto& array) { CbArray<SFragile>(array).SetSize(1); }};
    for (int failing = 0; failing < 25; ++failing)
    {
        CbArray<SFragile> array;
        array.Add(SFragile(1));
        array.Add(SFragile(2));
        SFragile::untilFailure = failing;
        for (const auto& operation : operations)
        {
            const std::uint32_t before = array.GetSize();
            try
            {
                operation(array);
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
