#pragma once

#include <string>

#include "../Platform/Export.h"

/// Encodings: whole texts between wide text and narrow text in a code page.
///
/// Wide text is UTF-16, one code unit in each element, whatever the width of wchar_t. A text ends at its first NUL, in
/// the forms that take a std::string or std::wstring too. A null pointer is the empty text.
///
/// - **Pages** 65001 is UTF-8 (RFC 3629), 65000 UTF-7 (RFC 2152), 54936 GB 18030, and 0 the narrow encoding of the
///   user's environment, UTF-8 if that is plain ASCII. Known as well, under the usual numbers, are the common DOS,
///   Windows and ISO 8859 pages, the KOI8 ones and those of East Asia. The text in a number that isn't known is the
///   empty text.
/// - **Errors** None but std::bad_alloc: what can't be converted is replaced. A character that the code page lacks
///   becomes `?`, one for a pair of surrogates too. Bytes that are invalid become U+FFFD, in UTF-8 one for each maximal
///   ill-formed subsequence. A lone surrogate becomes the bytes EF BF BD in UTF-8.
/// - **Threads** Any thread; nothing is shared.
namespace Vellum::Encodings
{

/// @name FromCodePage
/// The wide text of the bytes of a code page.
/// @{
VELLUM_API std::wstring FromCodePage(const char* text, unsigned int codePage);
VELLUM_API std::wstring FromCodePage(const std::string& text, unsigned int codePage);
/// @}

/// @name ToCodePage
/// The bytes of a wide text in a code page.
/// @{
VELLUM_API std::string ToCodePage(const wchar_t* text, unsigned int codePage);
VELLUM_API std::string ToCodePage(const std::wstring& text, unsigned int codePage);
/// @}

/// @name FromUTF8
/// The wide text of UTF-8, code page 65001.
/// @{
VELLUM_API std::wstring FromUTF8(const char* text);
VELLUM_API std::wstring FromUTF8(const std::string& text);
/// @}

/// @name ToUTF8
/// The UTF-8 of a wide text.
/// @{
VELLUM_API std::string ToUTF8(const wchar_t* text);
VELLUM_API std::string ToUTF8(const std::wstring& text);
/// @}

} // namespace Vellum::Encodings
