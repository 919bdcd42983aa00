#include "Groundwork/CbDateTime.h"

#include "Support/Testing.h"

namespace
{

TEST(CbDateTime, NamesAreInTheUsersLanguageAndErrorsStandInTheirPlace)
{
    {
        const CEnvironment polish("LC_ALL", "pl_PL.ISO-8859-2");
        EXPECT_EQ(CbDateTime("2024-03-06 00:00:00").ToString("D"), "\u015Bro"); // three letters, four bytes
    }
    const CEnvironment english("LC_ALL", "C");
    EXPECT_EQ(CbDateTime("2024-03-01 99:99:99").ToString("l D F M"), "Friday Fri March Mar");
    EXPECT_EQ(CbDateTime("2024-13-01 00:00:00").ToString("D F"), "ERR ERROR_INVALID_PARAMETER");
}

TEST(CbDateTime, LocalTimeIsShownOnRequestOnly)
{
    const CEnvironment zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    CbDateTime date("2024-07-31 22:20:30");
    date.SetMilliseconds(7);
    EXPECT_EQ(date.ToString("Y-m-dTH:i:s.v"), "2024-07-31T22:20:30.007");
    EXPECT_EQ(date.ToString("Y-m-dTH:i:s.v", true), "2024-08-01T00:20:30.007");
    EXPECT_EQ(date.ToString(L"H", true), L"00");
    EXPECT_EQ(CbDateTime("2024-13-45T99:99:99").ToString("Y-m-dTH:i:s", true), "2024-13-45T99:99:99");
}

} // namespace
