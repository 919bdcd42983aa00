// A text of unknown encoding: any bytes can be guessed and decoded in each code page, nothing is made up, and what was
// decoded comes back from its encoding.

#include <algorithm>
#include <cstdint>
#include <string>

#include "Platform/Utf16.h"

#include "Vellum/CTextFile.h"

#include "Support/Check.h"

namespace
{

using namespace Vellum;

constexpr unsigned int CodePages[] = {437,   850,   874,   932,   936,   949,   950,   1250,  1251,  1252,  1256,
                                      10007, 20127, 20866, 28591, 28596, 50220, 50225, 51932, 51950, 54936, 65000};

bool IsReplaced(const std::wstring& text)
{
    return text.find(wchar_t(Vellum::Platform::ReplacementCharacter)) != std::wstring::npos;
}

void CheckGuess(const CTextFile& text)
{
    const unsigned int codePage = text.GuessCodePage();
    FUZZ_CHECK(codePage == text.GuessCodePage());
    FUZZ_CHECK(text.GetText() == text.GetText(codePage));
}

// Each wide unit takes at least so many bytes.
void CheckLengths(const CTextFile& text, std::size_t size)
{
    for (const unsigned int codePage : CodePages)
        FUZZ_CHECK(text.GetText(codePage).size() <= size * 2);
    for (const unsigned int codePage : {1200u, 1201u, 12000u, 12001u})
        FUZZ_CHECK(text.GetText(codePage).size() <= (size + 1) / 2);
}

void CheckUtf8ComesBack(const CTextFile& text)
{
    const std::wstring decoded = text.GetText(65001);
    const std::string bytes = CTextFile().SetText(decoded).GetTextRaw();
    FUZZ_CHECK(IsReplaced(decoded) || bytes == text.GetTextRaw());
    FUZZ_CHECK(CTextFile().SetText(bytes).GetText(65001) == decoded);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const CTextFile text = CTextFile().SetText(std::string(data, data + size));
    CheckGuess(text);
    CheckLengths(text, size);
    CheckUtf8ComesBack(text);
    return 0;
}
