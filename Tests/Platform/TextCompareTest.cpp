#include "Platform/TextCompare.h"

#include <gtest/gtest.h>

using namespace Vellum::Platform;

namespace
{

TEST(TextCompare, FoldsTheLettersOfAsciiAlone)
{
    EXPECT_EQ(CompareWithoutCase("Key[", "kEY["), 0);
    EXPECT_NE(CompareWithoutCase("@[", "`{"), 0); // the neighbours of the letters
    EXPECT_NE(CompareWithoutCase("\xC4", "\xE4"), 0);
    EXPECT_LT(CompareWithoutCase("a", "\xE4"), 0); // bytes count as unsigned
    EXPECT_GT(CompareWithoutCase("B", "a"), 0);
    EXPECT_LT(CompareWithoutCase("ab", "ABC"), 0);
}

TEST(TextCompare, StopsAtTheCountAndAtTheTerminator)
{
    EXPECT_EQ(CompareWithoutCase("abX", "ABY", 2), 0);
    EXPECT_NE(CompareWithoutCase("abX", "ABY", 3), 0);
    EXPECT_EQ(CompareWithoutCase("ab", "AB", 100), 0);
    EXPECT_GT(CompareWithoutCase("abc", "AB", 100), 0);
    EXPECT_EQ(CompareWithoutCase("a", "b", 0), 0);
}

} // namespace
