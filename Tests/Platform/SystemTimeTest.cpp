#include "Platform/SystemTime.h"

#include <ctime>

#include "Support/Testing.h"
#include "SystemTimes.h"

using namespace Vellum::Platform;

namespace
{

constexpr std::uint64_t TicksPerMillisecond = 10'000;
constexpr std::uint64_t TicksPerSecond = 10'000'000;
constexpr std::uint64_t TicksPerDay = 86'400 * TicksPerSecond;
constexpr std::uint64_t LastTick = 0x7FFFFFFFFFFFFFFF;

std::uint64_t ToTicks(const SSystemTime& fields)
{
    std::uint64_t ticks = LastTick; // no fields have it
    FieldsToTicks(fields, ticks);
    return ticks;
}

SSystemTime ToFields(std::uint64_t ticks)
{
    SSystemTime fields = {};
    EXPECT_TRUE(TicksToFields(ticks, fields));
    return fields;
}

// A calendar that only knows the lengths of the months walks through all years, and looks at each day of the first
// eight centuries, later at every 97th, each at another time of day.
TEST(SystemTime, EveryDayOfTheCalendarIsConvertedThereAndBack)
{
    constexpr int DaysOfMonth[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const auto field = [](auto value) { return static_cast<std::uint16_t>(value); };
    std::uint64_t day = 0;
    for (int year = 1601; year <= 30827; ++year)
        for (int month = 1; month <= 12; ++month)
        {
            const bool leapDay = month == 2 && (year % 400 == 0 || (year % 4 == 0 && year % 100 != 0));
            for (int date = 1; date <= DaysOfMonth[month - 1] + leapDay; ++date, ++day)
            {
                if (year > 2400 && day % 97 != 0)
                    continue;
                const std::uint64_t time = day * 7'919 % 86'400'000; // milliseconds
                const std::uint64_t ticks = day * TicksPerDay + time * TicksPerMillisecond;
                SSystemTime expected = {field(year), field(month), field((day + 1) % 7), field(date), 0, 0, 0, 0};
                expected.hour = field(time / 3'600'000);
                expected.minute = field(time / 60'000 % 60);
                expected.second = field(time / 1'000 % 60);
                expected.milliseconds = field(time % 1'000);
                ASSERT_EQ(AsTuple(ToFields(ticks + 9'999)), AsTuple(expected)) << ticks;
                ASSERT_EQ(ToTicks(expected), ticks);
            }
        }
    EXPECT_EQ(day * TicksPerDay, ToTicks({30827, 12, 0, 31, 0, 0, 0, 0}) + TicksPerDay);
}

TEST(SystemTime, KnownMomentsHaveTheirTickCounts)
{
    ExpectFields(ToFields(133'537'620'300'070'000), {2024, 3, 5, 1, 10, 20, 30, 7});
    ExpectFields(ToFields(LastTick), {30828, 9, 4, 14, 2, 48, 5, 477});
}

TEST(SystemTime, RefusesWhatIsOutOfRangeAndLeavesTheResultAlone)
{
    SSystemTime fields = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_FALSE(TicksToFields(LastTick + 1, fields) || TicksToFields(~std::uint64_t{0}, fields));
    const SSystemTime refused[] = {
        {1600, 12, 0, 31, 0, 0, 0, 0}, {30828, 1, 0, 1, 0, 0, 0, 0},   {65535, 1, 0, 1, 0, 0, 0, 0},
        {2024, 0, 0, 1, 0, 0, 0, 0},   {2024, 13, 0, 1, 0, 0, 0, 0},   {2024, 257, 0, 1, 0, 0, 0, 0},
        {2024, 1, 0, 0, 0, 0, 0, 0},   {2024, 1, 0, 32, 0, 0, 0, 0},   {2024, 1, 0, 257, 0, 0, 0, 0},
        {2024, 4, 0, 31, 0, 0, 0, 0},  {2024, 2, 0, 30, 0, 0, 0, 0},   {2023, 2, 0, 29, 0, 0, 0, 0},
        {1900, 2, 0, 29, 0, 0, 0, 0},  {2024, 1, 0, 1, 24, 0, 0, 0},   {2024, 1, 0, 1, 0, 60, 0, 0},
        {2024, 1, 0, 1, 0, 0, 60, 0},  {2024, 1, 0, 1, 0, 0, 0, 1000},
    };
    for (const SSystemTime& each : refused)
    {
        EXPECT_EQ(ToTicks(each), LastTick) << testing::PrintToString(AsTuple(each));
        EXPECT_FALSE(UtcToLocal(each, fields));
    }
    ExpectFields(fields, {1, 2, 3, 4, 5, 6, 7, 8});
}

TEST(SystemTime, ClockGivesThePresentTimeInUtc)
{
    const CEnvironment zone("TZ", "ABC-11:30");
    const auto toTicks = [](std::time_t time)
    { return (static_cast<std::uint64_t>(time) + 11'644'473'600) * TicksPerSecond; };
    const std::uint64_t earliest = toTicks(std::time(nullptr) - 1); // std::time may lag behind by some milliseconds
    const SSystemTime now = GetUtcTime();
    const std::uint64_t latest = toTicks(std::time(nullptr) + 1);
    EXPECT_GE(ToTicks(now), earliest);
    EXPECT_LE(ToTicks(now), latest);
    EXPECT_EQ(ToFields(ToTicks(now)).dayOfWeek, now.dayOfWeek);
}

} // namespace
