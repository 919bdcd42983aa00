#include "Groundwork/CbPlexManager.h"

#include <set>

#include "Groundwork/CbExceptions.h"
#include "Groundwork/CbMapTypes.h"

#include "Support/Testing.h"

namespace
{

using Element = CbMapTypes::SAssociation<unsigned int, std::string>;
using Pool = CbPlexManager<Element, 0, unsigned int>;

TEST(CbPlexManager, BlocksGrowByHalfAndAreTruncatedAtEachStep)
{
    Pool pool;
    std::vector<unsigned int> sizes;
    for (unsigned int handedOut = 0, available = 0; sizes.size() < 12; ++handedOut)
    {
        if (handedOut == available)
        {
            sizes.push_back(pool.GetNextBlockSize());
            available += sizes.back();
        }
        pool.getFreeElement();
        ASSERT_EQ(pool.GetBlockCount(), sizes.size());
    }
    EXPECT_EQ(sizes, (std::vector<unsigned int>{128, 192, 288, 432, 648, 972, 1458, 2187, 3280, 4920, 7380, 11070}));
}

TEST(CbPlexManager, HandsOutTheLastElementOfABlockFirstAndNoneTwice)
{
    Pool pool(1024);
    std::set<Element*> elements;
    Element* const last = pool.getFreeElement();
    elements.insert(last);
    constexpr std::size_t stride = (sizeof(Element) + 7) / 8 * 8;
    for (std::size_t i = 1; i < 3000; ++i)
    {
        Element* const element = pool.getFreeElement();
        EXPECT_TRUE(i >= 1024 ||
                    reinterpret_cast<std::byte*>(element) + i * stride == reinterpret_cast<std::byte*>(last));
        EXPECT_TRUE(elements.insert(element).second);
    }
    pool.recycleElement(last);
    EXPECT_EQ(pool.getFreeElement(), last);
}

TEST(CbPlexManager, RaisesItsFullNameAndAsksForTheNextSizeAfterwards)
{
    Pool pool;
    const char* const name =
        "CbPlexManager<struct CbMapTypes::SAssociation<unsigned int,class std::basic_string<char,struct "
        "std::char_traits<char>,class std::allocator<char> > >,0,unsigned int>::getFreeElement";
    const CLogObserver log;
    const auto take = [&] { GetsThrough([&] { pool.getFreeElement(); }); };
    EXPECT_EQ(FailEachAllocation(take), 2u); // the record and the storage
    EXPECT_EQ(log.GetFunctions(), (std::vector<std::string>{name, name}));
    EXPECT_EQ(log.GetEntries()[0].file, "Sources/Core/Groundwork/CbPlexManager.cpp");
    EXPECT_EQ(pool.GetBlockCount(), 3u);
    EXPECT_EQ(pool.GetNextBlockSize(), 432u);
}

} // namespace
