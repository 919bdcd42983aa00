#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Vellum::Platform
{

// Code points in wide text, which holds one UTF-16 code unit in each element, whatever the width of wchar_t.

inline constexpr std::uint32_t ReplacementCharacter = 0xFFFD;

constexpr bool IsHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// U+FFFD for what is none: a lone surrogate, or a number above 0x10FFFF.
constexpr std::uint32_t ToCodePoint(std::uint32_t value)
{
    return IsHighSurrogate(value) || IsLowSurrogate(value) || value > 0x10FFFF ? ReplacementCharacter : value;
}

// Takes one code point from the front of a text that isn't empty: a pair of surrogates, or one element. A lone
// surrogate and what is no code point give U+FFFD. Where wchar_t is wider than 16 bits, an element above 0xFFFF is that
// code point.
inline std::uint32_t TakeCodePoint(std::wstring_view& units)
{
    const auto unit = static_cast<std::uint32_t>(units.front());
    units.remove_prefix(1);
    if (IsHighSurrogate(unit) && !units.empty() && IsLowSurrogate(static_cast<std::uint32_t>(units.front())))
    {
        const auto low = static_cast<std::uint32_t>(units.front());
        units.remove_prefix(1);
        return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
    return ToCodePoint(unit);
}

// Appends one code point: one unit, or a pair of surrogates.
inline void AppendUnits(std::wstring& text, std::uint32_t codePoint)
{
    if (codePoint >= 0x10000)
    {
        text += static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        text += static_cast<wchar_t>(0xDC00 + (codePoint & 0x3FF));
    }
    else
        text += static_cast<wchar_t>(codePoint);
}

} // namespace Vellum::Platform
