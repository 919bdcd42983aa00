#pragma once

#include <cstdint>

namespace Vellum::Platform
{

// The clock, and calendar time as fields and as a count of ticks. The calendar is the Gregorian one throughout, also
// for years in which nobody used it; there are no leap seconds.
//
// A tick is 100 nanoseconds, counted from 1601-01-01 00:00 UTC: the time stamp of the NT file system. Seconds from
// there to the epoch of POSIX, 1970-01-01: 11,644,473,600.

// Eight 16-bit fields without a time zone. January is month 1, Sunday is day of week 0.
struct SSystemTime
{
    std::uint16_t year;         // in full
    std::uint16_t month;        // 1 to 12
    std::uint16_t dayOfWeek;    // 0 to 6
    std::uint16_t day;          // of the month, from 1
    std::uint16_t hour;         // 0 to 23
    std::uint16_t minute;       // 0 to 59
    std::uint16_t second;       // 0 to 59
    std::uint16_t milliseconds; // 0 to 999
};

// The present UTC time, all eight fields.
SSystemTime GetUtcTime() noexcept;

// All eight fields of a tick count; what is below a millisecond is dropped. False, with the fields untouched, for a
// count with the top bit set. The last count that passes lies in September 30828.
bool TicksToFields(std::uint64_t ticks, SSystemTime& fields) noexcept;

// The tick count of the fields; the day of week is ignored. False, with the count untouched, if a field is out of
// range: year 1601 to 30827, month 1 to 12, day valid in that month, hour 0 to 23, minute and second 0 to 59,
// milliseconds 0 to 999.
bool FieldsToTicks(const SSystemTime& fields, std::uint64_t& ticks) noexcept;

// The day of a date, with its day of week and at midnight; of the fields only year, month and day count. False, with
// `day` untouched, if FieldsToTicks refuses them.
bool GetDay(const SSystemTime& date, SSystemTime& day) noexcept;

// All eight fields of a UTC time in the time zone of the process, which is looked up at each call, with the rules that
// the zone had at that time. `local` may be the same object as `utc`. False, with `local` untouched, if FieldsToTicks
// refuses either time or the system can't convert it.
bool UtcToLocal(const SSystemTime& utc, SSystemTime& local) noexcept;

} // namespace Vellum::Platform
