#include "Vellum/Conversion.h"

#include <charconv>
#include <concepts>
#include <cstdlib>
#include <limits>

#include "Platform/ThreadLocale.h"

#include "Groundwork/CbDateTime.h"

#include "Vellum/CException.h"

#include "Vellum/src/EightBytes.h"
#include "Vellum/src/NumberText.h"
#include "Vellum/src/WhiteSpace.h"

namespace Vellum::Conversion
{
namespace
{

constexpr bool IsDigit(char byte) { return byte >= '0' && byte <= '9'; }

// Takes `0x` from the front of hexadecimal digits. The zero of an octal number stays, it is one of its digits.
int TakeBase(std::string_view& digits)
{
    if (!digits.starts_with('0'))
        return 10;
    if (digits.size() == 1 || (digits[1] != 'x' && digits[1] != 'X'))
        return 8;
    digits.remove_prefix(2);
    return 16;
}

// A decimal number that begins with another digit than 0, and has too few of them to pass 64 bits. False for any other
// text, with the value as it was.
bool TryShortDecimal(std::string_view text, std::int64_t& value)
{
    constexpr std::size_t MostDigits = 18;
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative ? 1 : 0);
    if (text.empty() || !IsDigit(text.front()) || text.front() == '0')
        return false;
    std::int64_t magnitude = 0;
    std::size_t digits = 0;
    if (const std::uint64_t bytes = text.size() < 8 ? 0 : LoadEight(text.data()); AreDigits(bytes))
    {
        magnitude = NumberOf(bytes);
        digits = 8;
    }
    for (; digits < text.size() && IsDigit(text[digits]); ++digits)
    {
        if (digits == MostDigits)
            return false;
        magnitude = magnitude * 10 + (text[digits] - '0');
    }
    value = isNegative ? -magnitude : magnitude;
    return true;
}

// A decimal number in its plain form, for which std::from_chars does in any locale with a point what strtod does.
// Words, hexadecimal numbers, white space and a plus sign in front are left to strtod, and so is what the type can't
// hold; and everything where the standard library has no such function for doubles.
#if defined(__cpp_lib_to_chars)
bool TryPlainDecimal(std::string_view text, double& value)
{
    const char* const end = text.data() + text.size();
    const char* const first = text.data() + (text.starts_with('-') ? 1 : 0);
    if (first == end || !(IsDigit(*first) || *first == '.'))
        return false;
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end;
}
#else
bool TryPlainDecimal(std::string_view, double&) { return false; }
#endif

template <std::integral T>
void StoreInt(const std::string& text, T& value)
{
    value = static_cast<T>(ViewToInt(text));
}

} // namespace

std::int64_t ViewToInt(std::string_view text)
{
    if (std::int64_t value = 0; TryShortDecimal(text, value))
        return value;
    while (!text.empty() && IsWhiteSpace(text.front()))
        text.remove_prefix(1);
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);

    const int base = TakeBase(text);
    std::uint64_t magnitude = 0;
    const std::errc error = std::from_chars(text.data(), text.data() + text.size(), magnitude, base).ec;
    if (error == std::errc::invalid_argument && base != 16)
        throw CException(__FILE__, __LINE__, "Vellum::Conversion::StringToInt");
    if (error == std::errc::result_out_of_range)
        return isNegative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(isNegative ? 0 - magnitude : magnitude);
}

double ViewToDouble(std::string_view text)
{
    double value = 0;
    if (Platform::UsesDecimalPoint() && TryPlainDecimal(text, value))
        return value;
    std::size_t size = 0;
    value = Platform::ScanReal(std::string(text), size);
    if (size != text.size())
        throw CException(__FILE__, __LINE__, "Vellum::Conversion::StringToDouble");
    return value;
}

std::int64_t StringToInt(const std::string& text) { return ViewToInt(text); }
double StringToDouble(const std::string& text) { return ViewToDouble(text); }

void FromString(const std::string& text, signed char& value) { StoreInt(text, value); }
void FromString(const std::string& text, unsigned char& value) { StoreInt(text, value); }
void FromString(const std::string& text, std::int16_t& value) { StoreInt(text, value); }
void FromString(const std::string& text, std::uint16_t& value) { StoreInt(text, value); }
void FromString(const std::string& text, std::int32_t& value) { StoreInt(text, value); }
void FromString(const std::string& text, std::uint32_t& value) { StoreInt(text, value); }
void FromString(const std::string& text, std::int64_t& value) { StoreInt(text, value); }
void FromString(const std::string& text, std::uint64_t& value) { StoreInt(text, value); }

void FromString(const std::string& text, float& value) { value = static_cast<float>(StringToDouble(text)); }
void FromString(const std::string& text, double& value) { value = StringToDouble(text); }
void FromString(const std::string& text, char& value) { value = *text.c_str(); }
void FromString(const std::string& text, std::string& value) { value = text; }
void FromString(const std::string& text, CbDateTime& value) { value = text.c_str(); }

} // namespace Vellum::Conversion
