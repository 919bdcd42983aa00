#include "Vellum/src/DateText.h"

#include "Groundwork/CbDateTime.h"

namespace Vellum
{
namespace
{

// With zeros in front up to the usual number of digits.
char* AppendField(char* to, unsigned value, int usualDigits)
{
    int digits = usualDigits;
    for (unsigned limit = usualDigits == 2 ? 100 : 10000; value >= limit; limit *= 10)
        ++digits;
    for (int digit = digits; digit-- > 0; value /= 10)
        to[digit] = static_cast<char>('0' + value % 10);
    return to + digits;
}

char* AppendNext(char* to, char separator, unsigned value)
{
    *to = separator;
    return AppendField(to + 1, value, 2);
}

} // namespace

CDateText::CDateText(const IDateTime& date)
{
    const CbDateTime fields(date);
    char* to = AppendField(text, fields.GetYear(), 4);
    to = AppendNext(to, '-', fields.GetMonth());
    to = AppendNext(to, '-', fields.GetDay());
    to = AppendNext(to, 'T', fields.GetHour());
    to = AppendNext(to, ':', fields.GetMinute());
    to = AppendNext(to, ':', fields.GetSecond());
    size = static_cast<std::size_t>(to - text);
}

} // namespace Vellum
