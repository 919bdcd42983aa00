#include "Platform/ThreadLocale.h"

#include <clocale>
#include <cstdlib>
#include <locale.h>
#include <string>

#include <gtest/gtest.h>

#include "Vellum/src/CLocaleScope.h"

namespace
{

double ReadsAs(const char* text) { return std::strtod(text, nullptr); }

TEST(ThreadLocale, ScopeGivesTheThreadExactlyItsOwnLocaleBack)
{
    const locale_t german = ::newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
    ASSERT_NE(german, nullptr) << "the German locale of the tests is missing";
    const locale_t before = ::uselocale(german);
    EXPECT_EQ(ReadsAs("1,5"), 1.5);
    {
        const Vellum::CLocaleScope outer;
        const Vellum::CLocaleScope inner;
        EXPECT_EQ(ReadsAs("1.5"), 1.5);
    }
    EXPECT_EQ(::uselocale(nullptr), german);
    EXPECT_EQ(ReadsAs("1,5"), 1.5);
    ::uselocale(before);
    ::freelocale(german);
}

TEST(ThreadLocale, ScopeHidesTheLocaleOfTheProcessAndLeavesItInForce)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    {
        const Vellum::CLocaleScope scope;
        EXPECT_EQ(ReadsAs("1.5"), 1.5);
    }
    EXPECT_EQ(ReadsAs("1,5"), 1.5);
    EXPECT_EQ(::uselocale(nullptr), LC_GLOBAL_LOCALE);
    std::setlocale(LC_ALL, before.c_str());
}

} // namespace
