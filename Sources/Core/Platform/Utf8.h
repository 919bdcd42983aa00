#pragma once

#include <span>
#include <string>
#include <string_view>

namespace Vellum::Platform
{

// UTF-8 (RFC 3629) to UTF-16 and back. Wide text holds one UTF-16 code unit in each element, whatever the width of
// wchar_t. Nothing is refused: what is ill-formed is replaced by U+FFFD. Only a failed allocation is raised.

// Whether the bytes are UTF-8 that could be nothing else: well-formed, with at least one character beyond ASCII. Bytes
// that end in the middle of a further character are.
bool IsUtf8(std::string_view bytes);

// Appends the UTF-16 units of the bytes. Each maximal ill-formed subsequence becomes one U+FFFD, as Unicode recommends:
// the lone byte E4 gives one, the three bytes ED A0 BD give three.
void AppendUtf16(std::wstring& text, std::string_view utf8);

// Appends the UTF-8 bytes of the units. A lone surrogate becomes EF BF BD. Where wchar_t is wider than 16 bits, an
// element above 0xFFFF is taken as that code point; beyond U+10FFFF it becomes EF BF BD as well.
void AppendUtf8(std::string& text, std::wstring_view units);

// Appends the UTF-8 bytes of one code point up to U+10FFFF. A surrogate is encoded like any other: three bytes.
void AppendUtf8(std::string& text, char32_t codePoint);

// The same into memory of fixed size: as many whole characters as there is room for. Returns the number of bytes.
std::size_t CopyUtf8(std::span<char> to, std::wstring_view units) noexcept;

inline std::wstring Utf8ToUtf16(std::string_view utf8)
{
    std::wstring text;
    AppendUtf16(text, utf8);
    return text;
}

inline std::string Utf16ToUtf8(std::wstring_view units)
{
    std::string text;
    AppendUtf8(text, units);
    return text;
}

} // namespace Vellum::Platform
