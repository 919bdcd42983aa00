#pragma once

#include <string>
#include <string_view>

namespace Vellum::Platform
{

// Narrow text of a code page to UTF-16 and back. A code page is a number of the usual numbering: 437 and 1252 for
// instance, 932 for Shift-JIS, 28591 for ISO 8859-1, 54936 for GB 18030. Wide text holds one UTF-16 code unit in each
// element, whatever the width of wchar_t.
//
// Errors   A number that the system has no converter for is refused: false, and the text is left as it was. A text
//          that doesn't suit its code page is no failure, it is converted with replacements. Only a failed allocation
//          is raised.
// Threads  Any thread, without a lock.
inline constexpr unsigned int CodePageOfUser = 0; // the narrow encoding of the user's environment; UTF-8 if it has none
inline constexpr unsigned int CodePageUtf8 = 65001;

// Appends the UTF-16 units of the bytes. Each byte that has no meaning becomes one U+FFFD, and so does a character that
// is cut off by the end.
bool AppendFromCodePage(std::wstring& text, std::string_view bytes, unsigned int codePage);

// Appends the bytes of the units. Each character that the code page lacks becomes one `?`, a pair of surrogates being
// one character, a lone one too. UTF-8 lacks nothing, there a lone surrogate becomes EF BF BD. A code page with shift
// states is back in its first state at the end.
bool AppendToCodePage(std::string& text, std::wstring_view units, unsigned int codePage);

} // namespace Vellum::Platform
