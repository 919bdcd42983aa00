#include "Groundwork/CbArray.h"

#include <span>

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
    operator int() const { return value; }

    static void construct()
    {
        if (untilFailure == 0)
            throw std::string("construct");
        --untilFailure;
        ++living;
    }
};

TEST(CbArray, EmptyOnesHaveNoMemory)
{
    const CAllocationCounter counter;
    CbArray<unsigned char> array;
    CbArray<unsigned char>(0).Append(nullptr, 0);
    EXPECT_TRUE(array.GetData() == nullptr && array.GetEnd() == nullptr && array.GetCapacity() == 0);
    EXPECT_EQ(counter.GetCount(), 0u);
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

// An operation that raises changes nothing. Those that don't do to the array what they do to a vector.
TEST(CbArray, IsAVectorWithToldCapacitiesThatSurvivesFailures)
{
    const auto property = [](CTape& tape)
    {
        CbArray<SFragile> array;
        std::vector<int> elements;
        std::uint64_t capacity = 0;
        std::uint32_t growBy = 0;
        for (int step = 0; step < 30; ++step)
        {
            std::vector<int> next = elements;
            std::uint64_t nextCapacity = capacity;
            const auto append = [&](std::span<const int> added)
            {
                next.insert(next.end(), added.begin(), added.end());
                while (nextCapacity < next.size())
                    nextCapacity = growBy != 0 ? nextCapacity + growBy : std::max<std::uint64_t>(nextCapacity * 2, 1);
            };
            const std::size_t at = tape.Below(elements.size() + 1);
            const std::size_t number = tape.Below(30);
            SFragile::untilFailure = tape.OneIn(3) ? static_cast<int>(tape.Below(12)) : -1;
            const auto operate = [&]
            {
                switch (tape.Below(8))
                {
                case 0:
                    append(std::array{static_cast<int>(number)});
                    EXPECT_EQ(array.Add(SFragile(static_cast<int>(number))), static_cast<int>(number));
                    break;
                case 1: // arguments may be elements of the array itself
                    if (at == elements.size())
                        break;
                    append(std::span(elements).subspan(at, 1));
                    EXPECT_EQ(array.Add(array[at]), elements[at]);
                    break;
                case 2:
                    append(std::span(elements).subspan(at));
                    array.Append(array.GetData() + at, elements.size() - at);
                    break;
                case 3:
                    next.resize(number, 7);
                    nextCapacity = std::max<std::uint64_t>(capacity, number);
                    array.SetSize(number);
                    break;
                case 4:
                    nextCapacity = std::max<std::uint64_t>(capacity, number);
                    number % 2 == 0 ? array.Reserve(number) : array.ReserveUnfilled(number);
                    break;
                case 5:
                    nextCapacity = elements.size();
                    array = static_cast<const CbArray<SFragile>&>(array);
                    break;
                case 6:
                {
                    const SFragile* const data = array.GetData();
                    CbArray<SFragile> moved(std::move(array));
                    EXPECT_TRUE(array.GetData() == nullptr && array.GetSize() + array.GetCapacity() == 0);
                    array = std::move(moved);
                    EXPECT_EQ(array.GetData(), data);
                    break;
                }
                default:
                    array.SetGrowBy(growBy = static_cast<std::uint32_t>(number % 4));
                }
                elements = next;
                capacity = nextCapacity;
            };
            try
            {
                FailAllocation(tape.OneIn(4) ? 0 : 1000, operate);
            }
            catch (const std::string&)
            {
            }
            catch (const std::bad_alloc&)
            {
            }
            ASSERT_EQ(std::vector<int>(array.begin(), array.end()), elements);
            ASSERT_EQ(array.GetCapacity(), capacity);
            ASSERT_EQ(array.GetEnd(), elements.empty() ? nullptr : array.GetData() + elements.size());
            ASSERT_EQ(SFragile::living, static_cast<int>(elements.size()));
        }
    };
    CheckProperty(property);
    EXPECT_EQ(SFragile::living, 0);
}

// Bytes are 0 in new memory, and in old memory what they were.
TEST(CbArray, BytesBehindTheSizeAreKept)
{
    const auto property = [](CTape& tape)
    {
        CbArray<unsigned char> array(tape.Below(3));
        std::vector<unsigned char> memory(array.GetSize());
        for (int step = 0; step < 20; ++step)
        {
            const std::size_t before = array.GetSize();
            const std::size_t size = tape.Below(40);
            if (size > memory.size()) // it grows: what lay behind the size is gone
                std::fill(memory.begin() + static_cast<std::ptrdiff_t>(before), memory.end(), 0), memory.resize(size);
            array.SetSize(size);
            ASSERT_TRUE(std::equal(array.begin(), array.end(), memory.begin()));
            for (std::size_t at = 0; at < size; ++at)
                array[at] = memory[at] = static_cast<unsigned char>(tape.Next());
        }
    };
    CheckProperty(property, 50);
}

TEST(CbArray, TakesElementsThatCanOnlyBeMoved)
{
    CbArray<std::unique_ptr<int>> owners;
    for (int i = 0; i < 5; ++i)
        owners.Add(std::make_unique<int>(i));
    const CbArray<std::unique_ptr<int>> moved(std::move(owners));
    EXPECT_EQ(*moved[4], 4);
}

} // namespace
