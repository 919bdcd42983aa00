#include "Vellum/src/RealText.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <string_view>

namespace Vellum
{
namespace
{

constexpr int MostDigits = 17;

// A decimal number: digits d1 d2 d3 ... and exponent x stand for d1.d2d3... * 10^x.
struct SDecimal
{
    bool negative = false;
    char digits[MostDigits];
    int count = 0;
    int exponent = 0;
};

// Rounds to the given number of digits.
SDecimal ToDecimal(double value, int precision)
{
    SDecimal decimal;
    decimal.negative = std::signbit(value);
    char text[MostDigits + 8];
    const auto end =
        std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific, precision - 1).ptr;
    decimal.count = precision;
    decimal.digits[0] = text[0];
    std::memcpy(decimal.digits + 1, text + 2, static_cast<std::size_t>(precision - 1)); // behind the point
    const char* const exponent = text + precision + 2;                                  // behind the e
    std::from_chars(exponent + 1, end, decimal.exponent);
    if (*exponent == '-')
        decimal.exponent = -decimal.exponent;
    return decimal;
}

char* Append(char* to, std::string_view text)
{
    std::memcpy(to, text.data(), text.size());
    return to + text.size();
}

char* AppendZeros(char* to, int count)
{
    std::memset(to, '0', static_cast<std::size_t>(count));
    return to + count;
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

// Digits with a point behind the first `whole` of them, which may be more than there are.
char* AppendFixed(char* to, std::string_view digits, int whole, bool showPoint)
{
    const int count = static_cast<int>(digits.size());
    if (whole >= count)
    {
        to = AppendZeros(Append(to, digits), whole - count);
        if (showPoint)
            *to++ = '.';
        return to;
    }
    to = Append(to, digits.substr(0, static_cast<std::size_t>(whole)));
    *to++ = '.';
    return Append(to, digits.substr(static_cast<std::size_t>(whole)));
}

} // namespace

char* FormatReal(char* text, double value, int precision, bool showPoint)
{
    if (!std::isfinite(value))
    {
        if (std::signbit(value))
            *text++ = '-';
        return Append(text, std::isnan(value) ? "nan" : "inf");
    }

    SDecimal decimal = ToDecimal(value, precision);
    if (!showPoint)
        while (decimal.count > 1 && decimal.digits[decimal.count - 1] == '0')
            --decimal.count;
    const std::string_view digits(decimal.digits, static_cast<std::size_t>(decimal.count));

    if (decimal.negative)
        *text++ = '-';
    if (decimal.exponent < -4 || decimal.exponent >= precision)
        return AppendExponent(AppendFixed(text, digits, 1, showPoint), decimal.exponent);
    if (decimal.exponent < 0)
        return Append(AppendZeros(Append(text, "0."), -decimal.exponent - 1), digits);
    return AppendFixed(text, digits, decimal.exponent + 1, showPoint);
}

} // namespace Vellum
