#include "Describe/Aggregates.h"

#include <array>
#include <bit>
#include <cstddef>

#include <gtest/gtest.h>

#include "Describe/Members.h"

using namespace Vellum::Describing;

namespace shop
{

struct SLineOfAnOrder
{
};
template <class T>
struct SListOf
{
    T elements;
};

} // namespace shop

namespace
{

struct SHidden
{
};

template <std::size_t Count, class T>
void ExpectAllVisited(T object)
{
    int last = 0;
    VisitMembers<Count>(object, [&](auto&... member) { ((member = ++last), ...); });
    const auto numbers = std::bit_cast<std::array<int, Count>>(object);
    for (std::size_t at = 0; at < Count; ++at)
        EXPECT_EQ(numbers[at], static_cast<int>(at + 1)) << "of " << Count;
}

} // namespace

#define VISIT(count)                                                                                                   \
    {                                                                                                                  \
        struct SMembers                                                                                                \
        {                                                                                                              \
            int VELLUM_MEMBERS_##count;                                                                                \
        };                                                                                                             \
        ExpectAllVisited<count>(SMembers{});                                                                           \
    }                                                                                                                  \
    static_cast<void>(0)
#define VISIT_FOUR(tens, a, b, c, d)                                                                                   \
    VISIT(tens##a);                                                                                                    \
    VISIT(tens##b);                                                                                                    \
    VISIT(tens##c);                                                                                                    \
    VISIT(tens##d)
#define VISIT_TEN(tens)                                                                                                \
    VISIT_FOUR(tens, 0, 1, 2, 3);                                                                                      \
    VISIT_FOUR(tens, 4, 5, 6, 7);                                                                                      \
    VISIT(tens##8);                                                                                                    \
    VISIT(tens##9)

TEST(Aggregates, OfAnySizeAreVisited)
{
    VISIT(1);
    VISIT_FOUR(, 2, 3, 4, 5);
    VISIT_FOUR(, 6, 7, 8, 9);
    VISIT_TEN(1);
    VISIT_TEN(2);
    VISIT_TEN(3);
    VISIT_TEN(4);
    VISIT_TEN(5);
    VISIT_FOUR(6, 0, 1, 2, 3);
    VISIT(64);
}

TEST(Aggregates, HaveUpTo256ElementsOfArrays)
{
    EXPECT_EQ(MemberCount<shop::SListOf<int[256]>>, 1u);
    EXPECT_GT(MemberCount<shop::SListOf<int[257]>>, MostMembers);
}

TEST(Aggregates, AreCalledAsInTheSource)
{
    EXPECT_STREQ(STypeName<shop::SLineOfAnOrder>::Literal.text, "shop::SLineOfAnOrder");
    EXPECT_STREQ(STypeName<SHidden>::Literal.text, "SHidden");
    EXPECT_STREQ(STypeName<shop::SListOf<int>>::Literal.text, "shop::SListOf_int_");
}
