#include <windows.h>

#include "Platform/SystemTime.h"

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

std::int64_t ToTicks(const SSystemTime& fields)
{
    std::uint64_t ticks = 0;
    EXPECT_TRUE(FieldsToTicks(fields, ticks));
    return static_cast<std::int64_t>(ticks);
}

// In the middle of a month far from its changes a zone differs from UTC by what the rules of the year tell.
TEST(SystemTime, LocalTimeFollowsTheRulesOfItsYear)
{
    constexpr std::int64_t TicksPerMinute = 600'000'000;
    for (std::uint16_t year = 1950; year < 2050; ++year)
    {
        TIME_ZONE_INFORMATION rules;
        ASSERT_TRUE(::GetTimeZoneInformationForYear(year, nullptr, &rules));
        const auto offset = [&](std::uint16_t month)
        {
            const SSystemTime utc = {year, month, 0, 15, 12, 30, 15, 250};
            SSystemTime local = {};
            EXPECT_TRUE(UtcToLocal(utc, local));
            EXPECT_EQ(local.milliseconds, 250);
            return (ToTicks(local) - ToTicks(utc)) / TicksPerMinute;
        };
        const bool hasSummer = rules.DaylightDate.wMonth != 0;
        const bool isNorthern = rules.DaylightDate.wMonth < rules.StandardDate.wMonth;
        const LONG winter = -rules.Bias - (hasSummer ? rules.StandardBias : 0);
        const LONG summer = -rules.Bias - (hasSummer ? rules.DaylightBias : 0);
        EXPECT_EQ(offset(1), !hasSummer || isNorthern ? winter : summer) << year;
        EXPECT_EQ(offset(7), !hasSummer || isNorthern ? summer : winter) << year;
    }
}

TEST(SystemTime, LocalTimeBeyondTheYearsIsRefused)
{
    for (const SSystemTime& edge :
         {SSystemTime{1601, 1, 1, 1, 0, 0, 0, 0}, SSystemTime{30827, 12, 5, 31, 23, 59, 59, 0}})
    {
        SSystemTime local = {1, 2, 3, 4, 5, 6, 7, 8};
        if (UtcToLocal(edge, local))
        {
            EXPECT_LT(std::abs(ToTicks(local) - ToTicks(edge)), 864'000'000'000);
        }
        else
        {
            EXPECT_EQ(local.year + local.milliseconds, 9);
        }
    }
}

} // namespace
