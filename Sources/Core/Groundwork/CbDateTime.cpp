#include "Groundwork/CbDateTime.h"

#include <bit>
#include <cstring>
#include <limits>
#include <string_view>
#include <typeinfo>

#include "Platform/DateNames.h"
#include "Platform/SystemTime.h"
#include "Platform/Utf8.h"

#include "Groundwork/CbExceptions.h"

using namespace Vellum::Platform;

namespace
{

constexpr SSystemTime FirstDay = {1601, 1, 1, 1, 0, 0, 0, 0}; // tick count 0, a Monday

// Parsing: what sscanf does with "%hu", with a blank and with any other character of its format, in the C locale.

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

void SkipBlanks(const char*& at)
{
    while (*at == ' ' || (*at >= '\t' && *at <= '\r'))
        ++at;
}

// False, with the value untouched, if there are no digits. A minus sign negates modulo 2^64, and what passes 64 bits is
// the largest 64-bit number, sign or not; then the low 16 bits count.
bool TakeNumber(const char*& at, std::uint16_t& value)
{
    constexpr std::uint64_t Largest = std::numeric_limits<std::uint64_t>::max();
    SkipBlanks(at);
    const bool negative = *at == '-';
    if (negative || *at == '+')
        ++at;
    if (!IsDigit(*at))
        return false;

    std::uint64_t number = 0;
    bool tooLarge = false;
    for (; IsDigit(*at); ++at)
    {
        const auto digit = static_cast<std::uint64_t>(*at - '0');
        tooLarge = tooLarge || number > Largest / 10 || (number == Largest / 10 && digit > Largest % 10);
        number = number * 10 + digit;
    }
    if (tooLarge)
        number = Largest;
    else if (negative)
        number = 0 - number;
    value = static_cast<std::uint16_t>(number & 0xFFFF);
    return true;
}

bool TakeLiteral(const char*& at, char literal)
{
    if (literal == ' ')
        SkipBlanks(at);
    else if (*at == literal)
        ++at;
    else
        return false;
    return true;
}

constexpr unsigned NoNumber = 0x10000; // larger than any field

// The number of two digits, or else NoNumber.
unsigned TwoDigits(const char* at)
{
    const auto tens = static_cast<unsigned char>(at[0] - '0');
    const auto ones = static_cast<unsigned char>(at[1] - '0');
    return tens <= 9 && ones <= 9 ? 10u * tens + ones : NoNumber;
}

// The six numbers of a text that has digits alone between its signs, and no further one behind them, as everything has
// that was written by a program: they stand where one knows. False, with nothing changed, if they must be scanned for.
// Where it is true, the scan would give the same.
template <class Fields>
bool TakeInPlace(const char* text, Fields& fields)
{
    const unsigned year = 100 * TwoDigits(text) + TwoDigits(text + 2);
    const unsigned month = TwoDigits(text + 5);
    const unsigned day = TwoDigits(text + 8);
    const unsigned hour = TwoDigits(text + 11);
    const unsigned minute = TwoDigits(text + 14);
    const unsigned second = TwoDigits(text + 17);
    if ((year | month | day | hour | minute | second) >= NoNumber || IsDigit(text[19]))
        return false;
    fields.year = static_cast<std::uint16_t>(year);
    fields.month = static_cast<std::uint16_t>(month);
    fields.day = static_cast<std::uint16_t>(day);
    fields.hour = static_cast<std::uint16_t>(hour);
    fields.minute = static_cast<std::uint16_t>(minute);
    fields.second = static_cast<std::uint16_t>(second);
    return true;
}

// Formatting.

void AppendNumber(std::string& text, unsigned value, std::size_t minimalDigits)
{
    char digits[5]; // of a 16-bit number
    std::size_t count = 0;
    do
    {
        digits[sizeof digits - ++count] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0 || count < minimalDigits);
    text.append(digits + sizeof digits - count, count);
}

unsigned GetDaysInMonth(unsigned year, unsigned month)
{
    constexpr unsigned char Days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12)
        throw CbExceptionConversion(__FILE__, __LINE__, "CbDateTime::ToString");
    const bool leapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 && leapYear ? 29 : Days[month - 1];
}

// The name, or what stands in its place.
std::string GetName(const SSystemTime& date, EDateName which)
{
    std::wstring name;
    switch (GetDateName(date, which, name))
    {
    case EDateNameResult::Success:
        return Utf16ToUtf8(name);
    case EDateNameResult::InvalidParameter:
        return "ERROR_INVALID_PARAMETER";
    case EDateNameResult::InsufficientBuffer:
        return "ERROR_INSUFFICIENT_BUFFER";
    case EDateNameResult::InvalidFlags:
        return "ERROR_INVALID_FLAGS";
    case EDateNameResult::OtherFailure:
        break;
    }
    return "UNKNOWN ERROR";
}

// Characters, not bytes: a letter of UTF-8 is never cut.
std::string_view GetFirstThree(std::string_view utf8)
{
    std::size_t end = 0;
    for (int characters = 0; end < utf8.size(); ++end)
        if ((static_cast<unsigned char>(utf8[end]) & 0xC0) != 0x80 && ++characters > 3)
            break;
    return utf8.substr(0, end);
}

// What one byte of the format stands for.
void AppendSpecifier(std::string& text, char specifier, const SSystemTime& date)
{
    const bool morning = date.hour <= 12; // noon and the hour behind it are AM too
    switch (specifier)
    {
    case 'Y':
        return AppendNumber(text, date.year, 4);
    case 'y':
        return AppendNumber(text, date.year % 100u, 2);
    case 'm':
        return AppendNumber(text, date.month, 2);
    case 'n':
        return AppendNumber(text, date.month, 1);
    case 'd':
        return AppendNumber(text, date.day, 2);
    case 'j':
        return AppendNumber(text, date.day, 1);
    case 'H':
        return AppendNumber(text, date.hour, 2);
    case 'G':
        return AppendNumber(text, date.hour, 1);
    case 'h':
        return AppendNumber(text, date.hour % 12u, 2);
    case 'g':
        return AppendNumber(text, date.hour % 12u, 1);
    case 'i':
        return AppendNumber(text, date.minute, 2);
    case 's':
        return AppendNumber(text, date.second, 2);
    case 'v':
        return AppendNumber(text, date.milliseconds % 1000u, 3);
    case 'A':
        text += morning ? "AM" : "PM";
        return;
    case 'a':
        text += morning ? "am" : "pm";
        return;
    case 'l':
        text += GetName(date, EDateName::Weekday);
        return;
    case 'D':
        text += GetFirstThree(GetName(date, EDateName::Weekday));
        return;
    case 'F':
        text += GetName(date, EDateName::Month);
        return;
    case 'M':
        text += GetName(date, EDateName::AbbreviatedMonth);
        return;
    case 't':
        return AppendNumber(text, GetDaysInMonth(date.year, date.month), 2);
    default:
        text += specifier;
    }
}

} // namespace

// The fields of a date are those of the platform layer, which public headers don't name.
CbDateTime::CbDateTime() : fields(std::bit_cast<SFields>(GetUtcTime())) {}

CbDateTime::CbDateTime(const IDateTime& other)
    : fields{other.GetYear(),   other.GetMonth(),       0, other.GetDay(), other.GetHour(), other.GetMinute(),
             other.GetSecond(), other.GetMilliseconds()}
{
}

CbDateTime& CbDateTime::operator=(const IDateTime& other)
{
    if (typeid(other) != typeid(CbDateTime) || typeid(*this) != typeid(CbDateTime))
    {
        IDateTime::operator=(other);
        return *this;
    }
    // Nothing is added to the getters and setters, so this gives the same.
    const std::uint16_t dayOfWeek = fields.dayOfWeek;
    fields = static_cast<const CbDateTime&>(other).fields;
    fields.dayOfWeek = dayOfWeek;
    return *this;
}

CbDateTime::CbDateTime(const char* text) : fields()
{
    if (!parse(text))
        throw CbExceptionConversion(__FILE__, __LINE__, "CbDateTime::CbDateTime");
}

CbDateTime& CbDateTime::operator=(const char* text)
{
    if (!parse(text))
        throw CbExceptionConversion(__FILE__, __LINE__, "CbDateTime::operator =");
    return *this;
}

CbDateTime::CbDateTime(std::uint64_t ticks)
{
    SSystemTime date = FirstDay;
    if (ticks != 0)
        TicksToFields(ticks, date);
    fields = std::bit_cast<SFields>(date);
}

std::uint64_t CbDateTime::ToFileTime() const
{
    std::uint64_t ticks = 0;
    FieldsToTicks(std::bit_cast<SSystemTime>(fields), ticks);
    return ticks;
}

ATL::CStringT<char> CbDateTime::ToString(const char* format, bool localTime) const
{
    if (format == nullptr)
        throw CbExceptionConversion(__FILE__, __LINE__, "CbDateTime::ToString");
    auto date = std::bit_cast<SSystemTime>(fields);
    if (localTime)
        UtcToLocal(date, date);

    ATL::CStringT<char> text;
    text.reserve(2 * std::strlen(format)); // enough for numbers with signs between them
    for (; *format != '\0'; ++format)
        if (*format != '\\')
            AppendSpecifier(text, *format, date);
        else if (format[1] != '\0')
            text += *++format;
    return text;
}

std::wstring CbDateTime::ToString(const wchar_t* format, bool localTime) const
{
    if (format == nullptr)
        throw CbExceptionConversion(__FILE__, __LINE__, "CbDateTime::ToString");
    return Utf8ToUtf16(ToString(Utf16ToUtf8(format).c_str(), localTime));
}

bool CbDateTime::parse(const char* text)
{
    constexpr std::size_t ShortestText = 19;
    if (text == nullptr || std::memchr(text, '\0', ShortestText) != nullptr)
        return false;
    if (text[4] != '-' || text[7] != '-' || text[13] != ':' || text[16] != ':')
        return false;
    fields.dayOfWeek = 0;
    fields.milliseconds = 0;
    const char separator = text[10];
    if (separator != ' ' && separator != 'T')
        return false;
    if (TakeInPlace(text, fields))
        return true;

    const char* at = text;
    return TakeNumber(at, fields.year) && TakeLiteral(at, '-') && TakeNumber(at, fields.month) &&
           TakeLiteral(at, '-') && TakeNumber(at, fields.day) && TakeLiteral(at, separator) &&
           TakeNumber(at, fields.hour) && TakeLiteral(at, ':') && TakeNumber(at, fields.minute) &&
           TakeLiteral(at, ':') && TakeNumber(at, fields.second);
}
