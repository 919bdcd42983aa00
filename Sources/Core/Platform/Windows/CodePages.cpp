#include "Platform/CodePages.h"

#include <algorithm>
#include <windows.h>

#include "Platform/Utf16.h"
#include "Platform/Utf8.h"

namespace Vellum::Platform
{

namespace
{

constexpr wchar_t Replacement = static_cast<wchar_t>(ReplacementCharacter);

// UTF-8 isn't among the system's own conversions here: its replacements are part of documents.
bool IsUtf8(unsigned int codePage) noexcept { return codePage == CodePageUtf8; }

unsigned int ToNumber(unsigned int codePage) noexcept { return codePage == CodePageOfUser ? ::GetACP() : codePage; }

bool IsKnown(unsigned int codePage) noexcept
{
    return IsUtf8(codePage) || ::MultiByteToWideChar(codePage, 0, "?", 1, nullptr, 0) != 0;
}

// Takes from the front what the system converts in one call: everything, unless that is huge. It ends with a line then,
// where no character is cut and each shift state is the first.
template <class Char>
std::basic_string_view<Char> TakePiece(std::basic_string_view<Char>& text)
{
    constexpr std::size_t MostAtOnce = std::size_t{1} << 29; // four times as many bytes are still an int
    std::basic_string_view<Char> piece = text.substr(0, MostAtOnce);
    if (piece.size() < text.size())
        piece = piece.substr(0, piece.rfind(Char('\n')) + 1);
    if (piece.empty())
        piece = text.substr(0, MostAtOnce);
    text.remove_prefix(piece.size());
    return piece;
}

// Appends the units of the bytes. False, with nothing done, if the system refuses them with these flags.
bool Decode(std::wstring& text, std::string_view bytes, unsigned int codePage, DWORD flags)
{
    const int size = static_cast<int>(bytes.size());
    const int count = ::MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0);
    if (count == 0)
        return false;
    const std::size_t before = text.size();
    text.resize(before + static_cast<std::size_t>(count));
    ::MultiByteToWideChar(codePage, flags, bytes.data(), size, text.data() + before, count);
    return true;
}

// Appends what is in front, a character or one replacement, and returns how many bytes that was.
std::size_t DecodeCharacter(std::wstring& text, std::string_view bytes, unsigned int codePage)
{
    constexpr std::size_t LongestCharacter = 4;
    const bool isLead = ::IsDBCSLeadByteEx(codePage, static_cast<BYTE>(bytes.front())) != 0;
    for (std::size_t size = isLead ? 2 : 1; size <= std::min(bytes.size(), LongestCharacter); ++size)
        if (Decode(text, bytes.substr(0, size), codePage, MB_ERR_INVALID_CHARS))
            return size;
    text += Replacement;
    return 1;
}

// Encodings with shift states take no flags, and replace by themselves.
void DecodePiece(std::wstring& text, std::string_view bytes, unsigned int codePage)
{
    if (Decode(text, bytes, codePage, MB_ERR_INVALID_CHARS))
        return;
    if (::GetLastError() == ERROR_INVALID_FLAGS)
        Decode(text, bytes, codePage, 0);
    else
        while (!bytes.empty())
            bytes.remove_prefix(DecodeCharacter(text, bytes, codePage));
}

// With `?` for each lone surrogate, and for each pair unless the code page has all of Unicode: the system replaces a
// pair by two.
std::wstring ReplaceSurrogates(std::wstring_view units, unsigned int codePage)
{
    constexpr unsigned int Utf7 = 65000;
    constexpr unsigned int Gb18030 = 54936;
    const bool hasAll = codePage == Utf7 || codePage == Gb18030;
    std::wstring text;
    text.reserve(units.size());
    while (!units.empty())
    {
        const wchar_t unit = units.front();
        const std::uint32_t codePoint = TakeCodePoint(units);
        if (codePoint > 0xFFFF ? hasAll : codePoint == static_cast<std::uint32_t>(unit))
            AppendUnits(text, codePoint);
        else
            text += L'?';
    }
    return text;
}

bool Encode(std::string& text, std::wstring_view units, unsigned int codePage, DWORD flags)
{
    const int size = static_cast<int>(units.size());
    const int count = ::WideCharToMultiByte(codePage, flags, units.data(), size, nullptr, 0, nullptr, nullptr);
    if (count == 0)
        return false;
    const std::size_t before = text.size();
    text.resize(before + static_cast<std::size_t>(count));
    ::WideCharToMultiByte(codePage, flags, units.data(), size, text.data() + before, count, nullptr, nullptr);
    return true;
}

} // namespace

bool AppendFromCodePage(std::wstring& text, std::string_view bytes, unsigned int codePage)
{
    const unsigned int number = ToNumber(codePage);
    if (!IsKnown(number))
        return false;
    if (IsUtf8(number))
        AppendUtf16(text, bytes);
    else
        while (!bytes.empty())
            DecodePiece(text, TakePiece(bytes), number);
    return true;
}

bool AppendToCodePage(std::string& text, std::wstring_view units, unsigned int codePage)
{
    const unsigned int number = ToNumber(codePage);
    if (!IsKnown(number))
        return false;
    if (IsUtf8(number))
    {
        AppendUtf8(text, units);
        return true;
    }
    const std::wstring prepared = ReplaceSurrogates(units, number);
    for (std::wstring_view rest = prepared; !rest.empty();)
    {
        // What only looks like a character isn't the character.
        const std::wstring_view piece = TakePiece(rest);
        if (!Encode(text, piece, number, WC_NO_BEST_FIT_CHARS))
            Encode(text, piece, number, 0);
    }
    return true;
}

} // namespace Vellum::Platform
