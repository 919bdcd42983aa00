#include "Platform/DateNames.h"

#include <clocale>

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

std::wstring NameOf(int month, int day, EDateName which)
{
    const SSystemTime date = {2024, static_cast<std::uint16_t>(month), 6, static_cast<std::uint16_t>(day), 99, 99, 99,
                              9999};
    std::wstring name;
    EXPECT_EQ(GetDateName(date, which, name), EDateNameResult::Success);
    return name;
}

std::wstring AllNames()
{
    std::wstring names;
    for (int day = 4; day <= 10; ++day) // from a Monday
        names += NameOf(3, day, EDateName::Weekday) + L' ';
    for (int month = 1; month <= 12; ++month)
        names += NameOf(month, 1, EDateName::Month) + L' ' + NameOf(month, 1, EDateName::AbbreviatedMonth) + L' ';
    return names;
}

const wchar_t* const EnglishNames =
    L"Monday Tuesday Wednesday Thursday Friday Saturday Sunday January Jan February Feb March Mar April Apr May May "
    L"June Jun July Jul August Aug September Sep October Oct November Nov December Dec ";

TEST(DateNames, FirstVariableThatIsSetDecidesTheLanguageWhateverLocaleTheProgramHas)
{
    const CEnvironment language("LANG", "de_DE.UTF-8");
    const CEnvironment time("LC_TIME", nullptr);
    const CEnvironment all("LC_ALL", ""); // empty is not set
    const std::string before = std::setlocale(LC_ALL, nullptr);
    EXPECT_EQ(AllNames(),
              L"Montag Dienstag Mittwoch Donnerstag Freitag Samstag Sonntag Januar Jan Februar Feb M\u00E4rz "
              L"M\u00E4r April Apr Mai Mai Juni Jun Juli Jul August Aug September Sep Oktober Okt "
              L"November Nov Dezember Dez ");
    std::thread([] { EXPECT_EQ(NameOf(3, 1, EDateName::Weekday), L"Freitag"); }).join();
    {
        const CEnvironment polishTime("LC_TIME", "pl_PL.ISO-8859-2");
        EXPECT_EQ(NameOf(3, 1, EDateName::Weekday), L"pi\u0105tek");
        const CEnvironment english("LC_ALL", "C");
        EXPECT_EQ(AllNames(), EnglishNames);
    }
    EXPECT_EQ(NameOf(3, 1, EDateName::Weekday), L"Freitag");
    {
        const CEnvironment polish("LC_ALL", "pl_PL.ISO-8859-2");
        EXPECT_EQ(NameOf(1, 1, EDateName::Month), L"stycze\u0144"); // stands alone, not inflected as in a date
    }
    const CEnvironment missing("LC_ALL", "xx_YY.UTF-8");
    EXPECT_EQ(AllNames(), EnglishNames);
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

} // namespace
