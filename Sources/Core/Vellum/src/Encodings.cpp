#include "Vellum/Encodings.h"

#include "Platform/CodePages.h"
#include "Platform/Utf8.h"

namespace Vellum::Encodings
{

std::wstring FromCodePage(const char* text, unsigned int codePage)
{
    std::wstring units;
    if (text != nullptr && Platform::AppendFromCodePage(units, text, codePage))
        if (const std::size_t end = units.find(L'\0'); end != std::wstring::npos) // UTF-7 can spell a NUL
            units.resize(end);
    return units;
}

std::wstring FromCodePage(const std::string& text, unsigned int codePage)
{
    return FromCodePage(text.c_str(), codePage);
}

std::string ToCodePage(const wchar_t* text, unsigned int codePage)
{
    std::string bytes;
    if (text != nullptr)
        Platform::AppendToCodePage(bytes, text, codePage);
    return bytes;
}

std::string ToCodePage(const std::wstring& text, unsigned int codePage) { return ToCodePage(text.c_str(), codePage); }

std::wstring FromUTF8(const char* text) { return text == nullptr ? std::wstring() : Platform::Utf8ToUtf16(text); }
std::wstring FromUTF8(const std::string& text) { return FromUTF8(text.c_str()); }

std::string ToUTF8(const wchar_t* text) { return text == nullptr ? std::string() : Platform::Utf16ToUtf8(text); }
std::string ToUTF8(const std::wstring& text) { return ToUTF8(text.c_str()); }

} // namespace Vellum::Encodings
