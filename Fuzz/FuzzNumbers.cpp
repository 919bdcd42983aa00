// Text to numbers: integers against a scanner that counts digit by digit, doubles against strtod.

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "Vellum/CException.h"
#include "Vellum/Conversion.h"

#include "Support/Check.h"

namespace
{

using namespace Vellum;

// The library's answer, or nothing if it refused in the name of that function.
template <class T>
std::optional<T> From(const std::string& text, const char* function)
{
    T value{};
    try
    {
        Conversion::FromString(text, value);
        return value;
    }
    catch (const CException& exception)
    {
        FUZZ_CHECK(std::strcmp(exception.GetFunctionName(), function) == 0);
        return {};
    }
}

std::optional<std::int64_t> ModelInt(const char* text)
{
    constexpr std::uint64_t Most = std::numeric_limits<std::uint64_t>::max();
    constexpr const char* Digits = "00112233445566778899aAbBcCdDeEfF"; // each in both cases
    while (*text != '\0' && std::strchr(" \t\n\v\f\r", *text) != nullptr)
        ++text;
    const bool isNegative = *text == '-';
    text += isNegative || *text == '+' ? 1 : 0;
    const bool isHexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const unsigned int base = isHexadecimal ? 16 : text[0] == '0' ? 8 : 10;
    text += isHexadecimal ? 2 : 0;

    std::uint64_t magnitude = 0;
    bool hasDigits = isHexadecimal;
    bool isTooLarge = false;
    for (; *text != '\0'; ++text)
    {
        const char* const digit = std::strchr(Digits, *text);
        const auto value = digit == nullptr ? 16 : static_cast<unsigned int>(digit - Digits) / 2;
        if (value >= base)
            break;
        hasDigits = true;
        isTooLarge = isTooLarge || magnitude > (Most - value) / base;
        magnitude = magnitude * base + value;
    }
    if (!hasDigits)
        return {};
    if (isTooLarge)
        return isNegative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
    return static_cast<std::int64_t>(isNegative ? ~magnitude + 1 : magnitude);
}

template <class T>
void CheckInt(const std::string& text, std::optional<std::int64_t> expected)
{
    const std::optional<T> value = From<T>(text, "Vellum::Conversion::StringToInt");
    FUZZ_CHECK(value.has_value() == expected.has_value());
    FUZZ_CHECK(!value || *value == static_cast<T>(*expected));
}

void CheckDouble(const std::string& text)
{
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &end);
    const std::optional<double> value = From<double>(text, "Vellum::Conversion::StringToDouble");
    const std::optional<float> narrow = From<float>(text, "Vellum::Conversion::StringToDouble");
    FUZZ_CHECK(value.has_value() == (end == text.c_str() + text.size()));
    FUZZ_CHECK(value.has_value() == narrow.has_value());
    if (!value)
        return;
    FUZZ_CHECK(std::bit_cast<std::uint64_t>(*value) == std::bit_cast<std::uint64_t>(expected));
    FUZZ_CHECK(std::isnan(*narrow) ? std::isnan(expected) : *narrow == static_cast<float>(expected));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::optional<std::int64_t> integer = ModelInt(text.c_str());
    CheckInt<signed char>(text, integer);
    CheckInt<unsigned char>(text, integer);
    CheckInt<std::int16_t>(text, integer);
    CheckInt<std::uint16_t>(text, integer);
    CheckInt<std::int32_t>(text, integer);
    CheckInt<std::uint32_t>(text, integer);
    CheckInt<std::int64_t>(text, integer);
    CheckInt<std::uint64_t>(text, integer);
    CheckDouble(text);
    return 0;
}
