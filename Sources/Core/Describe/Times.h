#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <ratio>

#include "Groundwork/CbDateTime.h"

#include "Describe/Values.h"

/// @file
/// std::chrono: times of the system's clock as dates, durations as numbers of their own unit.
///
/// - **Dates** are UTC, to the millisecond in binary documents and to the second in texts; what is finer is dropped.
///   They reach from 1601 to the end of 30827, in texts of 9999. A time outside, or a date that the type of a time
///   can't hold, raises CDocumentException.
namespace Vellum::Describing
{

/// @name MakeDate, GetMilliseconds, RaiseTimeOutOfRange
/// Milliseconds since 1970 to a date and back. Both raise for a place.
/// @{
VELLUM_API CbDateTime MakeDate(std::int64_t milliseconds, const SPlace& place);
VELLUM_API std::int64_t GetMilliseconds(const CbDateTime& date, const SPlace& place);
[[noreturn]] VELLUM_API void RaiseTimeOutOfRange(const SPlace& place);
/// @}

template <class T>
struct SStored<T, EStorage::Duration>
{
    using Count = typename T::rep;

    static constexpr EElement Element = SStored<Count>::Element;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        WriteValue(value.count(), out);
    }
    template <class In>
    static bool Read(T& value, const In& in)
    {
        Count count{};
        if (!ReadValue(count, in))
            return false;
        value = T(count);
        return true;
    }
};

/// Durations of the unit of T, with 64 bits; the template is found through T, since `<chrono>` isn't included.
template <class T>
struct SUnits;

template <template <class, class> class Duration, class Count, class Period>
struct SUnits<Duration<Count, Period>>
{
    using Own = Duration<std::int64_t, Period>;
    using Milliseconds = Duration<std::int64_t, std::milli>;
    using Days = Duration<std::int64_t, std::ratio<86400>>;

    static constexpr bool IsFiner = std::ratio_less<Period, std::milli>::value;
};

template <class T>
struct SStored<T, EStorage::TimePoint>
{
    using Duration = typename T::duration;
    using Units = SUnits<Duration>;
    using Milliseconds = typename Units::Milliseconds;
    using Days = typename Units::Days;

    static constexpr EElement Element = EElement::Date;

    template <class Out>
    static void Write(const T& value, const Out& out)
    {
        // Whole days first: they can't be too many for 64 bits, as milliseconds can.
        constexpr std::int64_t MostDays = 20'000'000;
        const auto since = value.time_since_epoch();
        const Days days = duration_cast<Days>(since);
        if (days.count() > MostDays || days.count() < -MostDays)
            RaiseTimeOutOfRange(out.GetPlace());
        const Milliseconds rest = floor<Milliseconds>(since - days);
        const CbDateTime date = MakeDate((Milliseconds(days) + rest).count(), out.GetPlace());
        out.Put(static_cast<const IDateTime&>(date));
    }

    template <class In>
    static bool Read(T& value, const In& in)
    {
        CbDateTime date(std::uint64_t{0});
        if (!in.Get(static_cast<IDateTime&>(date)))
            return false;
        const Milliseconds since(GetMilliseconds(date, in.GetPlace()));
        if (!fits(since))
            RaiseTimeOutOfRange(in.GetPlace());
        value = T(floor<Duration>(since));
        return true;
    }

private:
    static bool fits(Milliseconds since)
    {
        if constexpr (!std::integral<typename Duration::rep>)
            return true;
        else if constexpr (Units::IsFiner)
            return since <= duration_cast<Milliseconds>(Duration::max()) &&
                   since >= duration_cast<Milliseconds>(Duration::min());
        else
        {
            const auto count = floor<typename Units::Own>(since).count();
            return count <= std::numeric_limits<typename Duration::rep>::max() &&
                   count >= std::numeric_limits<typename Duration::rep>::min();
        }
    }
};

} // namespace Vellum::Describing
