#include <windows.h>

#include "Platform/SystemTime.h"

namespace Vellum::Platform
{

namespace
{

SYSTEMTIME ToSystem(const SSystemTime& time) noexcept
{
    return {time.year, time.month, time.dayOfWeek, time.day, time.hour, time.minute, time.second, time.milliseconds};
}

SSystemTime FromSystem(const SYSTEMTIME& time) noexcept
{
    return {time.wYear, time.wMonth,  time.wDayOfWeek, time.wDay,
            time.wHour, time.wMinute, time.wSecond,    time.wMilliseconds};
}

// By the rules of one year. Without rules the system would take those of the present year.
bool Convert(WORD year, const SYSTEMTIME& utc, SYSTEMTIME& local) noexcept
{
    TIME_ZONE_INFORMATION rules;
    return ::GetTimeZoneInformationForYear(year, nullptr, &rules) != 0 &&
           ::SystemTimeToTzSpecificLocalTime(&rules, &utc, &local) != 0;
}

} // namespace

bool UtcToLocal(const SSystemTime& utc, SSystemTime& local) noexcept
{
    std::uint64_t ticks = 0;
    if (!FieldsToTicks(utc, ticks))
        return false;
    const SYSTEMTIME from = ToSystem(utc);
    SYSTEMTIME to;
    if (!Convert(from.wYear, from, to))
        return false;
    if (to.wYear != from.wYear && !Convert(to.wYear, from, to)) // the rules are those of local years
        return false;
    const SSystemTime result = FromSystem(to);
    if (!FieldsToTicks(result, ticks) || !TicksToFields(ticks, local)) // the zone may lead out of the range of years
        return false;
    return true;
}

} // namespace Vellum::Platform
