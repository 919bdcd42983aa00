#include "../SystemTimes.h"
#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

SSystemTime ToLocal(SSystemTime fields)
{
    EXPECT_TRUE(UtcToLocal(fields, fields));
    return fields;
}

TEST(SystemTime, LocalTimeFollowsTheZoneOfTheProcessAndItsSummerTime)
{
    {
        const CEnvironment zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
        ExpectFields(ToLocal({2024, 1, 0, 1, 23, 30, 15, 250}), {2024, 1, 2, 2, 0, 30, 15, 250});
        ExpectFields(ToLocal({2024, 7, 0, 1, 12, 0, 0, 0}), {2024, 7, 1, 1, 14, 0, 0, 0});
        ExpectFields(ToLocal({1601, 1, 0, 1, 0, 0, 0, 0}), {1601, 1, 1, 1, 1, 0, 0, 0});
    }
    const CEnvironment zone("TZ", "ABC5");
    ExpectFields(ToLocal({30827, 12, 0, 31, 23, 59, 59, 999}), {30827, 12, 5, 31, 18, 59, 59, 999});
    SSystemTime first = {1601, 1, 1, 1, 4, 59, 59, 0}; // still 1600 there
    EXPECT_FALSE(UtcToLocal(first, first));
    ExpectFields(first, {1601, 1, 1, 1, 4, 59, 59, 0});
}

} // namespace
