#include "Platform/DateNames.h"

#include <windows.h>

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

std::wstring NameFrom(LCTYPE first, int index)
{
    std::array<wchar_t, 100> name{};
    ::GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, first + static_cast<LCTYPE>(index), name.data(),
                      static_cast<int>(name.size()));
    return name.data();
}

TEST(DateNames, AreThoseOfTheUsersLanguage)
{
    const auto nameOf = [](int month, int day, EDateName which)
    {
        const SSystemTime date = {
            2024, static_cast<std::uint16_t>(month), 9, static_cast<std::uint16_t>(day), 99, 99, 99, 9999};
        std::wstring name;
        EXPECT_EQ(GetDateName(date, which, name), EDateNameResult::Success);
        return name;
    };
    for (int day = 0; day < 7; ++day) // from a Monday
        EXPECT_EQ(nameOf(3, 4 + day, EDateName::Weekday), NameFrom(LOCALE_SDAYNAME1, day));
    for (int month = 0; month < 12; ++month)
    {
        EXPECT_EQ(nameOf(month + 1, 1, EDateName::Month), NameFrom(LOCALE_SMONTHNAME1, month));
        EXPECT_EQ(nameOf(month + 1, 1, EDateName::AbbreviatedMonth), NameFrom(LOCALE_SABBREVMONTHNAME1, month));
    }
    const bool isGerman = NameFrom(LOCALE_SLANGUAGE, 0).starts_with(L"German") || NameFrom(LOCALE_SNAME, 0) == L"de-DE";
    if (isGerman)
    {
        EXPECT_EQ(nameOf(10, 1, EDateName::Month), L"Oktober");
    }
    std::wstring name = L"kept";
    EXPECT_EQ(GetDateName({2024, 13, 0, 1, 0, 0, 0, 0}, EDateName::Month, name), EDateNameResult::InvalidParameter);
    EXPECT_EQ(name, L"kept");
}

} // namespace
