#include "Vellum/src/RealText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "Vellum/src/RealDigits.h"

namespace Vellum
{
namespace
{

constexpr auto DigitPairs = []
{
    std::array<std::array<char, 2>, 100> pairs{};
    for (std::size_t number = 0; number < pairs.size(); ++number)
        pairs[number] = {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
    return pairs;
}();

void WriteFourDigits(char* to, std::uint32_t digits)
{
    std::memcpy(to, DigitPairs[digits / 100].data(), 2);
    std::memcpy(to + 2, DigitPairs[digits % 100].data(), 2);
}

// With zeros in front.
void WriteDigits(char* to, std::uint64_t digits, int count)
{
    constexpr std::uint32_t EightDigits = 100000000;
    for (; count >= 8; digits /= EightDigits)
    {
        const auto last = static_cast<std::uint32_t>(digits % EightDigits);
        count -= 8;
        WriteFourDigits(to + count, last / 10000);
        WriteFourDigits(to + count + 4, last % 10000);
    }
    for (; count > 0; digits /= 10)
        to[--count] = static_cast<char>('0' + digits % 10);
}

char* Append(char* to, std::string_view text)
{
    std::memcpy(to, text.data(), text.size());
    return to + text.size();
}

char* AppendExponent(char* to, int exponent)
{
    *to++ = 'e';
    *to++ = exponent < 0 ? '-' : '+';
    const int magnitude = exponent < 0 ? -exponent : exponent;
    if (magnitude < 10)
        *to++ = '0'; // at least two digits
    return std::to_chars(to, to + 3, magnitude).ptr;
}

char* DropZeros(char* end)
{
    while (*(end - 1) == '0')
        --end;
    return *(end - 1) == '.' ? end - 1 : end;
}

} // namespace

char* FormatReal(char* text, double value, int precision, bool showPoint)
{
    if (std::signbit(value))
        *text++ = '-';
    if (!std::isfinite(value))
        return Append(text, std::isnan(value) ? "nan" : "inf");

    const auto [digits, exponent] = RoundToDigits(std::fabs(value), precision);
    const bool isFixed = exponent >= -4 && exponent < precision;
    char* end = text + precision + 1; // behind the digits and a point
    if (isFixed && exponent < 0)
    {
        std::memcpy(text, "0.000", 5);
        WriteDigits(text + 1 - exponent, digits, precision);
        end -= exponent;
    }
    else
    {
        const std::size_t whole = isFixed ? static_cast<std::size_t>(exponent) + 1 : 1;
        WriteDigits(text + 1, digits, precision);
        std::memmove(text, text + 1, whole);
        text[whole] = '.';
    }
    if (!showPoint)
        end = DropZeros(end);
    return isFixed ? end : AppendExponent(end, exponent);
}

} // namespace Vellum
