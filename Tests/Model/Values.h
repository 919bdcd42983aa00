#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Model/Tree.h"

// What the formats share, written down as plainly as possible and without the library.
namespace Model
{

// The words between signs of ~.
std::vector<std::string> Words(const std::string& text);

// What the library raises: the class and the function name.
struct SRaised
{
    const char* className;
    const char* function;
};
inline constexpr const char *Exception = "CException", *ConversionException = "CbExceptionConversion",
                            *StreamException = "CbExceptionStream", *VersionException = "CbExceptionWrongFileVersion",
                            *MemoryException = "CbExceptionContainer";

// The order in which a hash table iterates that has taken these hashes, as places in the list.
std::vector<std::size_t> TableOrder(const std::vector<std::uint64_t>& hashes);
std::uint64_t HashOfBytes(std::string_view bytes);
std::uint64_t HashOfName(std::string_view name);

std::string UpToNul(const std::string& text);
void AppendCodePoint(std::string& utf8, std::uint32_t codePoint);
std::vector<std::uint16_t> ToUnits(const std::wstring& text); // UTF-16, up to the first NUL
std::string ToUtf8(const std::wstring& text);                 // up to the first NUL
std::wstring FromUtf8(const std::string& text);               // up to the first NUL

// What a binary stream stores of a number, a size, bytes with their size in front, and a value; nothing of a part.
template <class Number>
std::string Raw(Number number)
{
    std::string bytes(reinterpret_cast<const char*>(&number), sizeof number);
    if (std::endian::native == std::endian::big)
        std::ranges::reverse(bytes);
    return bytes;
}
template <class Number>
Number FromRaw(std::string bytes)
{
    Number number{};
    if (std::endian::native == std::endian::big)
        std::ranges::reverse(bytes);
    bytes.copy(reinterpret_cast<char*>(&number), sizeof number);
    return number;
}
inline std::string Size(std::size_t size) { return Raw(static_cast<std::uint32_t>(size)); }
inline std::string Counted(const std::string& bytes) { return Size(bytes.size()) + bytes; }
std::string Encoded(const Value& value);

std::uint64_t ToTicks(const SDate& date);
SDate FromTicks(std::uint64_t ticks);
std::string ToText(const SDate& date);
SDate ToDate(const std::string& text, const char* function);

std::string ToBase64(const std::string& bytes, bool hasLines);
std::string FromBase64(const std::string& text);

std::int64_t ToInteger(const std::string& text);
double ToDouble(const std::string& text);

// What the text formats share: a number, as it is printed.
std::string ToText(double value, int digits, bool showPoint);
template <class Number>
std::string ToText(Number value, bool showPoint)
{
    if constexpr (std::is_same_v<Number, bool>)
        return value ? "true" : "false";
    else if constexpr (std::is_floating_point_v<Number>)
        return ToText(static_cast<double>(value), sizeof value == 4 ? 9 : 17, showPoint);
    else
        return std::to_string(value);
}

// ... and a value that is read, bools and dates apart.
template <class T>
void Convert(const std::string& text, T& value)
{
    if constexpr (std::is_same_v<T, char>)
        value = text.empty() ? '\0' : text.front();
    else if constexpr (std::is_same_v<T, std::string>)
        value = text;
    else if constexpr (std::is_same_v<T, std::wstring>)
        value = FromUtf8(text);
    else if constexpr (std::is_floating_point_v<T>)
        value = static_cast<T>(ToDouble(text));
    else
        value = static_cast<T>(ToInteger(text));
}

} // namespace Model
