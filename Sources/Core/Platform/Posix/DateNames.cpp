#include "Platform/DateNames.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <iconv.h>
#include <langinfo.h>
#include <locale.h>
#include <memory>
#include <string_view>

#include "Platform/Utf8.h"

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

const SNames& English()
{
    static const SNames names = {
        {L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday"},
        {L"January", L"February", L"March", L"April", L"May", L"June", L"July", L"August", L"September", L"October",
         L"November", L"December"},
        {L"Jan", L"Feb", L"Mar", L"Apr", L"May", L"Jun", L"Jul", L"Aug", L"Sep", L"Oct", L"Nov", L"Dec"}};
    return names;
}

// The names of one locale in its own character set, which is converted by iconv. Every operation gives false when the
// system fails, and then the names are worth nothing.
class CLocaleNames
{
public:
    explicit CLocaleNames(const char* localeName)
        : locale(::newlocale(LC_TIME_MASK | LC_CTYPE_MASK, localeName, nullptr))
    {
        if (locale != nullptr)
            converter = ::iconv_open("UTF-8", ::nl_langinfo_l(CODESET, locale));
    }
    ~CLocaleNames()
    {
        if (converter != NoConverter())
            ::iconv_close(converter);
        if (locale != nullptr)
            ::freelocale(locale);
    }
    CLocaleNames(const CLocaleNames&) = delete;
    CLocaleNames& operator=(const CLocaleNames&) = delete;

    bool Read(SNames& names) const
    {
        return converter != NoConverter() && Read(WeekdayItems, names.weekdays) && Read(MonthItems, names.months) &&
               Read(AbbreviatedItems, names.abbreviatedMonths);
    }

private:
    static iconv_t NoConverter() { return reinterpret_cast<iconv_t>(-1); }

    template <std::size_t Count>
    bool Read(const Items<Count>& items, std::array<std::wstring, Count>& names) const
    {
        for (std::size_t i = 0; i < Count; ++i)
            if (!Convert(::nl_langinfo_l(items[i], locale), names[i]))
                return false;
        return true;
    }

    bool Convert(std::string_view bytes, std::wstring& name) const
    {
        char utf8[1024];
        char* from = const_cast<char*>(bytes.data()); // iconv takes it so, and leaves it as it is
        char* to = utf8;
        std::size_t fromLeft = bytes.size();
        std::size_t toLeft = sizeof utf8;
        if (bytes.empty() || ::iconv(converter, &from, &fromLeft, &to, &toLeft) == static_cast<std::size_t>(-1))
            return false;
        name = Utf8ToUtf16({utf8, sizeof utf8 - toLeft});
        return true;
    }

    locale_t locale;
    iconv_t converter = NoConverter();
};

// The same precedence as setlocale, but of the environment alone.
const char* GetUserLocaleName()
{
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"})
        if (const char* name = std::getenv(variable); name != nullptr && *name != '\0')
            return name;
    return "C";
}

struct SLanguage
{
    std::string localeName;
    SNames names;
    const SLanguage* next = nullptr;
};

// Made once for each language and kept for the life of the process, in a list that only grows at its head: readers
// need no lock. Two threads that come first at the same time both add theirs, which does no harm.
const SNames& GetUserNames()
{
    static std::atomic<const SLanguage*> languages = nullptr;
    const char* const localeName = GetUserLocaleName();
    for (const SLanguage* each = languages.load(std::memory_order_acquire); each != nullptr; each = each->next)
        if (each->localeName == localeName)
            return each->names;

    auto language = std::make_unique<SLanguage>();
    language->localeName = localeName;
    if (!CLocaleNames(localeName).Read(language->names))
        language->names = English();
    language->next = languages.load(std::memory_order_relaxed);
    while (!languages.compare_exchange_weak(language->next, language.get(), std::memory_order_acq_rel))
        ;
    return language.release()->names;
}

} // namespace

EDateNameResult GetDateName(const SSystemTime& date, EDateName which, std::wstring& name)
{
    SSystemTime day = {date.year, date.month, 0, date.day, 0, 0, 0, 0};
    std::uint64_t ticks = 0;
    if (!FieldsToTicks(day, ticks) || !TicksToFields(ticks, day))
        return EDateNameResult::InvalidParameter;

    const SNames& names = GetUserNames();
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
