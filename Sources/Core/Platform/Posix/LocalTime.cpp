#define _FILE_OFFSET_BITS 64 // which the next line asks for
#define _TIME_BITS 64        // years beyond 1901 and 2038, on 32-bit systems too

#include <ctime>
#include <time.h>
#include <utility>

#include "Platform/SystemTime.h"

namespace Vellum::Platform
{

namespace
{

constexpr std::int64_t TicksPerSecond = 10'000'000;
constexpr std::int64_t SecondsToPosixEpoch = 11'644'473'600;

} // namespace

bool UtcToLocal(const SSystemTime& utc, SSystemTime& local) noexcept
{
    std::uint64_t ticks = 0;
    if (!FieldsToTicks(utc, ticks))
        return false;
    const std::int64_t seconds = static_cast<std::int64_t>(ticks) / TicksPerSecond - SecondsToPosixEpoch;
    if (!std::in_range<std::time_t>(seconds))
        return false;

    const auto posixTime = static_cast<std::time_t>(seconds);
    std::tm parts = {};
    ::tzset(); // localtime_r alone needn't notice that the zone of the process has changed
    if (::localtime_r(&posixTime, &parts) == nullptr)
        return false;

    const auto field = [](int value) { return static_cast<std::uint16_t>(value); };
    const SSystemTime result = {field(parts.tm_year + 1900), field(parts.tm_mon + 1), field(parts.tm_wday),
                                field(parts.tm_mday),        field(parts.tm_hour),    field(parts.tm_min),
                                field(parts.tm_sec),         utc.milliseconds};
    if (!FieldsToTicks(result, ticks)) // the zone may lead out of the range of years
        return false;
    local = result;
    return true;
}

} // namespace Vellum::Platform
