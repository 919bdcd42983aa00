#include "Platform/DateNames.h"

#include <array>
#include <langinfo.h>
#include <locale.h>
#include <optional>

#include "Platform/Posix/Encoding.h"
#include "Platform/Posix/UserLocale.h"

namespace Vellum::Platform
{

namespace
{

template <std::size_t Count>
using Items = std::array<nl_item, Count>;

constexpr Items<7> WeekdayItems = {DAY_1, DAY_2, DAY_3, DAY_4, DAY_5, DAY_6, DAY_7}; // from Sunday

// Some languages inflect the month inside a date. The form for a month alone came to POSIX late (2024).
#ifdef ALTMON_1
constexpr Items<12> MonthItems = {ALTMON_1, ALTMON_2, ALTMON_3, ALTMON_4,  ALTMON_5,  ALTMON_6,
                                  ALTMON_7, ALTMON_8, ALTMON_9, ALTMON_10, ALTMON_11, ALTMON_12};
#else
constexpr Items<12> MonthItems = {MON_1, MON_2, MON_3, MON_4,  MON_5,  MON_6,
                                  MON_7, MON_8, MON_9, MON_10, MON_11, MON_12};
#endif
constexpr Items<12> AbbreviatedItems = {ABMON_1, ABMON_2, ABMON_3, ABMON_4,  ABMON_5,  ABMON_6,
                                        ABMON_7, ABMON_8, ABMON_9, ABMON_10, ABMON_11, ABMON_12};

struct SNames
{
    std::array<std::wstring, 7> weekdays; // from Sunday
    std::array<std::wstring, 12> months;
    std::array<std::wstring, 12> abbreviatedMonths;
};

SNames MakeEnglish()
{
    return {{L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday"},
            {L"January", L"February", L"March", L"April", L"May", L"June", L"July", L"August", L"September", L"October",
             L"November", L"December"},
            {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun", L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"}};
}

// False if the locale lacks one of them.
template <std::size_t Count>
bool Read(const CLocale& locale, const Items<Count>& items, std::array<std::wstring, Count>& names)
{
    for (std::size_t i = 0; i < Count; ++i)
        if (!AppendFromEncoding(names[i], locale.GetInfo(items[i]), locale.GetInfo(CODESET)) || names[i].empty())
            return false;
    return true;
}

std::optional<SNames> MakeNames(const char* localeName)
{
    const CLocale locale(LC_TIME_MASK | LC_CTYPE_MASK, localeName);
    if (locale.IsInDoubt())
        return std::nullopt;
    SNames names;
    const bool isComplete = locale.IsOpen() && Read(locale, WeekdayItems, names.weekdays) &&
                            Read(locale, MonthItems, names.months) &&
                            Read(locale, AbbreviatedItems, names.abbreviatedMonths);
    return isComplete ? names : MakeEnglish();
}

} // namespace

EDateNameResult GetDateName(const SSystemTime& date, EDateName which, std::wstring& name)
{
    SSystemTime day = {};
    if (!GetDay(date, day))
        return EDateNameResult::InvalidParameter;

    static constinit CByLocale<SNames> ofUsers;
    const SNames& names = ofUsers.Get(GetUserLocaleName("LC_TIME"), MakeNames);
    switch (which)
    {
    case EDateName::Weekday:
        name = names.weekdays[day.dayOfWeek];
        return EDateNameResult::Success;
    case EDateName::Month:
        name = names.months[day.month - 1u];
        return EDateNameResult::Success;
    case EDateName::AbbreviatedMonth:
        name = names.abbreviatedMonths[day.month - 1u];
        return EDateNameResult::Success;
    }
    return EDateNameResult::InvalidFlags;
}

} // namespace Vellum::Platform
