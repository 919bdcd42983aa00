#include "Platform/SystemTime.h"

#include <chrono>
#include <limits>

namespace Vellum::Platform
{

namespace
{

using std::chrono::duration_cast;
using std::chrono::sys_days;

using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

constexpr sys_days Epoch = std::chrono::year{1601} / 1 / 1;

// Tested before <chrono> sees the fields: its types hold no more than they need and would cut larger values off.
constexpr bool IsInRange(const SSystemTime& fields)
{
    return fields.year >= 1601 && fields.year <= 30827 && fields.month >= 1 && fields.month <= 12 && fields.day >= 1 &&
           fields.day <= 31 && fields.hour <= 23 && fields.minute <= 59 && fields.second <= 59 &&
           fields.milliseconds <= 999;
}

template <class Value>
constexpr std::uint16_t Field(Value value)
{
    return static_cast<std::uint16_t>(value);
}

} // namespace

SSystemTime GetUtcTime() noexcept
{
    // In ticks before anything else: nanoseconds since 1601 don't fit into 64 bits.
    const Ticks sinceEpoch = std::chrono::floor<Ticks>(std::chrono::system_clock::now()) - Epoch;
    SSystemTime fields = {1601, 1, 1, 1, 0, 0, 0, 0}; // for a clock that is set to an earlier time
    TicksToFields(static_cast<std::uint64_t>(sinceEpoch.count()), fields);
    return fields;
}

bool TicksToFields(std::uint64_t ticks, SSystemTime& fields) noexcept
{
    if (ticks > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
        return false;
    const Ticks sinceEpoch(static_cast<std::int64_t>(ticks));
    const auto days = duration_cast<std::chrono::days>(sinceEpoch);
    const std::chrono::year_month_day date(Epoch + days);
    const std::chrono::hh_mm_ss time(duration_cast<std::chrono::milliseconds>(sinceEpoch - days));

    fields.year = Field(static_cast<int>(date.year()));
    fields.month = Field(static_cast<unsigned>(date.month()));
    fields.dayOfWeek = Field(std::chrono::weekday(Epoch + days).c_encoding());
    fields.day = Field(static_cast<unsigned>(date.day()));
    fields.hour = Field(time.hours().count());
    fields.minute = Field(time.minutes().count());
    fields.second = Field(time.seconds().count());
    fields.milliseconds = Field(time.subseconds().count());
    return true;
}

bool FieldsToTicks(const SSystemTime& fields, std::uint64_t& ticks) noexcept
{
    if (!IsInRange(fields))
        return false;
    const std::chrono::year_month_day date(std::chrono::year(fields.year), std::chrono::month(fields.month),
                                           std::chrono::day(fields.day));
    if (!date.ok())
        return false;
    const Ticks sinceEpoch = (sys_days(date) - Epoch) + std::chrono::hours(fields.hour) +
                             std::chrono::minutes(fields.minute) + std::chrono::seconds(fields.second) +
                             std::chrono::milliseconds(fields.milliseconds);
    ticks = static_cast<std::uint64_t>(sinceEpoch.count());
    return true;
}

bool GetDay(const SSystemTime& date, SSystemTime& day) noexcept
{
    std::uint64_t ticks = 0;
    return FieldsToTicks({date.year, date.month, 0, date.day, 0, 0, 0, 0}, ticks) && TicksToFields(ticks, day);
}

} // namespace Vellum::Platform
