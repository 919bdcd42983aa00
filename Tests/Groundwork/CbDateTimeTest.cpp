#include "Groundwork/CbDateTime.h"

#include "Platform/Utf8.h"

#include "Groundwork/CbExceptions.h"

#include "Support/Testing.h"

namespace
{

auto AsTuple(const IDateTime& date)
{
    return std::tuple(date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(), date.GetMinute(),
                      date.GetSecond(), date.GetMilliseconds());
}

using Fields = decltype(AsTuple(std::declval<const IDateTime&>()));

CbDateTime DateOf(const Fields& fields)
{
    constexpr void (CbDateTime::*setters[])(unsigned short) = {
        &CbDateTime::SetYear,   &CbDateTime::SetMonth,  &CbDateTime::SetDay,         &CbDateTime::SetHour,
        &CbDateTime::SetMinute, &CbDateTime::SetSecond, &CbDateTime::SetMilliseconds};
    CbDateTime date(std::uint64_t{0});
    const auto* setter = setters;
    std::apply([&](auto... values) { ((date.*(*setter++))(values), ...); }, fields);
    return date;
}

std::string Format(const Fields& fields, const char* format) { return DateOf(fields).ToString(format); }

constexpr Fields Sample = {2024, 3, 1, 10, 20, 30, 7};

TEST(CbDateTime, RefusesOtherTextsInTheNameOfWhoeverParses)
{
    for (const char* text : {"2024-03-01 10:20:3", "2024/03-01 10:20:30", static_cast<const char*>(nullptr)})
    {
        const auto exact = text != nullptr ? ExactText(text) : nullptr;
        CbDateTime date;
        EXPECT_RAISES(CbExceptionConversion, "CbDateTime::CbDateTime", CbDateTime(exact.get()));
        EXPECT_RAISES(CbExceptionConversion, "CbDateTime::operator =", date = exact.get());
    }
    EXPECT_RAISES(CbExceptionConversion, "CbDateTime::ToString",
                  CbDateTime().ToString(static_cast<const char*>(nullptr)));
}

// Texts with changes in them and digits behind, against the C library's own scan, which keeps what it had reached.
TEST(CbDateTime, ScansAsTheCLibraryDoesAndTestsNoRanges)
{
    const CLogObserver silence;
    CheckProperty(
        [](CTape& tape)
        {
            std::string text = tape.OneIn(2) ? "2024-13-45 99:99:99" : "2024-03-01T10:20:30";
            for (std::size_t changes = tape.Below(4); changes > 0; --changes)
                text[tape.Below(text.size())] = tape.From(std::string_view("0123456789 +-\t:Tt/."));
            constexpr std::size_t MostDigits = sizeof(long) > 4 ? 25 : 7; // C libraries scan short numbers as long ones
            for (std::size_t more = tape.OneIn(2) ? tape.Below(MostDigits) : 0; more > 0; --more) // also beyond 64 bits
                text += static_cast<char>('0' + tape.Below(10));
            text.resize(text.size() - (tape.OneIn(10) ? 1 : 0));

            unsigned long long f[7] = {2024, 3, 1, 10, 20, 30, 7}; // "%hu" goes through a long, of 64 bits or of 32
            int count = 0;
            if (text.size() >= 19 && text[4] == '-' && text[7] == '-' && text[13] == ':' && text[16] == ':')
            {
                f[6] = 0;
                const char* const format =
                    text[10] == 'T' ? "%llu-%llu-%lluT%llu:%llu:%llu" : "%llu-%llu-%llu %llu:%llu:%llu";
                if (text[10] == ' ' || text[10] == 'T')
                    count = std::sscanf(text.c_str(), format, &f[0], &f[1], &f[2], &f[3], &f[4], &f[5]);
            }
            CbDateTime date = DateOf(Sample);
            EXPECT_EQ(GetsThrough([&] { date = ExactText(text).get(); }), count == 6) << text;
            EXPECT_EQ(
                AsTuple(date),
                std::apply([](auto... each) { return Fields(static_cast<unsigned short>(each)...); }, std::to_array(f)))
                << text;
        },
        10'000);
}

TEST(CbDateTime, EachSpecifierAppendsItsForm)
{
    const std::tuple<Fields, const char*, const char*> cases[] = {
        {{5, 3, 1, 4, 5, 6, 7}, "Y y m n d j H G i s v", "0005 05 03 3 01 1 04 4 05 06 007"},
        {{65535, 65535, 65535, 65535, 65535, 65535, 65535},
         "Y y m n d j H G i s v",
         "65535 35 65535 65535 65535 65535 65535 65535 65535 65535 535"},
        {{2024, 1, 1, 0, 0, 0, 0}, "h g A a", "00 0 AM am"},
        {{2024, 1, 1, 12, 30, 0, 0}, "h g A a", "00 0 AM am"},
        {{2024, 1, 1, 13, 0, 0, 0}, "h g A a", "01 1 PM pm"},
        {Sample, "y \\Y\\m Y", "24 Ym 2024"},
        {Sample, "Q\\\\\\", "Q\\"}, // a backslash at the end adds nothing
        {Sample, "\u00E4\\\u20AC", "\u00E4\u20AC"},
        {{2024, 2, 1, 0, 0, 0, 0}, "t", "29"},
        {{2000, 2, 1, 0, 0, 0, 0}, "t", "29"},
        {{1900, 2, 1, 0, 0, 0, 0}, "t", "28"},
    };
    for (const auto& [fields, format, expected] : cases)
    {
        EXPECT_EQ(Format(fields, format), expected) << format;
        const std::wstring wide = DateOf(fields).ToString(Vellum::Platform::Utf8ToUtf16(format).c_str());
        EXPECT_EQ(Vellum::Platform::Utf16ToUtf8(wide), expected) << format;
    }
    std::string days;
    for (unsigned short month = 1; month <= 12; ++month)
        days += Format({2023, month, 99, 99, 0, 0, 0}, "t ");
    EXPECT_EQ(days, "31 28 31 30 31 30 31 31 30 31 30 31 ");
    for (const char* text : {"2024-00-01 00:00:00", "2024-13-01 00:00:00", "2024--1-01 00:00:00"})
        EXPECT_RAISES(CbExceptionConversion, "CbDateTime::ToString", CbDateTime(text).ToString("Yt"));
}

TEST(CbDateTime, InvalidTickCountIsTheFirstDayAndTheDefaultIsNow)
{
    for (const std::uint64_t ticks : {std::uint64_t{0}, std::uint64_t{1} << 63, ~std::uint64_t{0}})
        EXPECT_EQ(AsTuple(CbDateTime(ticks)), Fields(1601, 1, 1, 0, 0, 0, 0)) << ticks;
    EXPECT_GT(CbDateTime().ToFileTime(), DateOf(Sample).ToFileTime());
}

TEST(CbDateTime, IsCopiedThroughTheInterfaceAndAsItself)
{
    const CbDateTime source = DateOf(Sample);
    const IDateTime& interface = source;
    CbDateTime assigned("1999-12-31 23:59:58");
    CbDateTime copied("1999-12-31 23:59:58");
    assigned = interface;
    static_cast<IDateTime&>(copied) = source;
    copied = static_cast<const IDateTime&>(copied);
    for (const CbDateTime& date : {assigned, copied, CbDateTime(interface), CbDateTime(source)})
        EXPECT_EQ(AsTuple(date), Sample);

    struct SOffByOne : CbDateTime
    {
        unsigned short GetDay() const override { return CbDateTime::GetDay() + 1; }
        void SetYear(unsigned short value) override { CbDateTime::SetYear(value + 1); }
    } special;
    static_cast<IDateTime&>(special) = source;
    assigned = static_cast<const IDateTime&>(special);
    EXPECT_EQ(AsTuple(assigned), Fields(2025, 3, 2, 10, 20, 30, 7));
}

} // namespace
