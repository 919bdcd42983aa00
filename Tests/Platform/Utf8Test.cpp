#include "Platform/Utf8.h"

#include "Platform/Utf16.h"

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

// Every character once, there and back, with ASCII runs of every length around the eight-byte blocks.
TEST(Utf8, EveryCharacterComesBack)
{
    for (std::uint32_t codePoint = 1; codePoint <= 0x10FFFF; codePoint += codePoint < 0x11000 ? 1 : 97)
    {
        if (codePoint >= 0xD800 && codePoint <= 0xDFFF)
            continue;
        std::wstring literal(codePoint % 19, L'a');
        if constexpr (sizeof(wchar_t) > 2)
            literal += static_cast<wchar_t>(codePoint);
        else
            AppendUnits(literal, codePoint);
        literal += L'z';
        const std::string bytes = Utf16ToUtf8(literal);
        const std::wstring units = Utf8ToUtf16(bytes);
        ASSERT_EQ(units.size(), codePoint % 19 + (codePoint > 0xFFFF ? 3 : 2)) << codePoint;
        ASSERT_EQ(Hex(Utf16ToUtf8(units)), Hex(bytes)) << codePoint;
    }
    EXPECT_EQ(Hex(Utf16ToUtf8(L"\u00E4\u20AC\U0001F600")), "C3 A4 E2 82 AC F0 9F 98 80");
    EXPECT_EQ(Utf8ToUtf16("\xF0\x9F\x98\x80"), (std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)}));
}

// One, two, three or four bytes long.
char32_t AnyCharacter(CTape& tape)
{
    const std::pair<char32_t, char32_t> ranges[] = {{0, 0x80}, {0x80, 0x800}, {0x800, 0xD800}, {0xE000, 0x110000}};
    const auto& [first, end] = tape.From(ranges);
    return first + static_cast<char32_t>(tape.Below(end - first));
}

TEST(Utf8, IsToldFromTheFirstWholeCharacterBeyondAsciiOnWhereverTheTextIsCut)
{
    CheckProperty(
        [](CTape& tape)
        {
            std::string text;
            std::size_t from = std::string::npos; // on it is told
            for (std::size_t count = tape.Below(50); count > 0; --count)
            {
                const char32_t character = AnyCharacter(tape);
                AppendUtf8(text, character);
                if (character >= 0x80 && from == std::string::npos)
                    from = text.size();
            }
            for (std::size_t size = 0; size <= text.size(); ++size)
                HOLDS(IsUtf8(std::string_view(text).substr(0, size)) == (size >= from));
            const char* const illFormed[] = {"80",       "BF",          "C0 80",       "C1 BF", "E0 9F BF",
                                             "ED A0 80", "F0 8F BF BF", "F4 90 80 80", "F5",    "FF",
                                             "E4 61",    "F1 80 80 41", "C3 C3 A4"};
            const std::string bytes = Bytes(tape.From(illFormed));
            HOLDS(!IsUtf8(text + bytes) && !IsUtf8(bytes + text));
        });
}

} // namespace
