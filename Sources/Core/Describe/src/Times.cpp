#include "Describe/Times.h"

namespace Vellum::Describing
{
namespace
{

constexpr std::int64_t MillisecondsOfDay = 86'400'000;

// Days since 1970.
constexpr std::int64_t FirstDay = -134'774;       // 1601-01-01
constexpr std::int64_t LastDay = 10'540'167;      // 30827-12-31
constexpr std::int64_t LastDayOfText = 2'932'896; // 9999-12-31: a text has four digits for a year

constexpr std::int64_t TicksOfMillisecond = 10'000;

} // namespace

CbDateTime MakeDate(std::int64_t milliseconds, const SPlace& place)
{
    const std::int64_t lastDay = place.document->format == EFormat::Binary ? LastDay : LastDayOfText;
    if (milliseconds < FirstDay * MillisecondsOfDay || milliseconds >= (lastDay + 1) * MillisecondsOfDay)
        RaiseTimeOutOfRange(place);
    return CbDateTime(static_cast<std::uint64_t>((milliseconds - FirstDay * MillisecondsOfDay) * TicksOfMillisecond));
}

std::int64_t GetMilliseconds(const CbDateTime& date, const SPlace& place)
{
    CheckDate(date, place);
    return static_cast<std::int64_t>(date.ToFileTime()) / TicksOfMillisecond + FirstDay * MillisecondsOfDay;
}

void RaiseTimeOutOfRange(const SPlace& place) { RaiseAt(place, "The time is out of range."); }

} // namespace Vellum::Describing
