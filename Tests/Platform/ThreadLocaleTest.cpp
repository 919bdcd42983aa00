#include "Platform/ThreadLocale.h"

#include "Vellum/src/CLocaleScope.h"

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

double ReadsAs(const char* text) { return std::strtod(text, nullptr); }

TEST(ThreadLocale, ScopeGivesTheThreadExactlyItsOwnLocaleBack)
{
    const CGermanThread german;
    EXPECT_EQ(ReadsAs("1,5"), 1.5);
    {
        const Vellum::CLocaleScope outer;
        const Vellum::CLocaleScope inner;
        EXPECT_EQ(ReadsAs("1.5"), 1.5);
    }
    EXPECT_TRUE(german.IsInForce());
}

} // namespace
