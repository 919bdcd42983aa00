#include "Platform/Utf16.h"
#include "Platform/Utf8.h"

#include "CodePageTexts.h"
#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

TEST(CodePages, TextsGoThereAndBack)
{
    const std::tuple<unsigned int, const char*, const char*> cases[] = {
        {932, "aあ漢～ｱ", "61 82 A0 8A BF 81 60 B1"},
        {936, "中€", "D6 D0 80"},
        {949, "한똠", "C7 D1 8C 63"},
        {950, "中€", "A4 A4 A3 E1"},
        {1255, "אְ", "E0 C0"},
        {1361, "한", "D0 65"},
        {50220, "aあb漢", "61 1B 24 42 24 22 1B 28 42 62 1B 24 42 34 41 1B 28 42"},
        {51936, "中", "D6 D0"},
        {51949, "한", "C7 D1"},
        {54936, "中€😀\uFFFD", "D6 D0 A2 E3 94 39 FC 36 84 31 A4 37"},
        {65000, "a+ä€😀", "61 2B 2D 2B 41 4F 51 67 72 4E 67 39 33 67 41 2D"},
        {65001, "ä😀", "C3 A4 F0 9F 98 80"}};
    for (const auto& [codePage, text, bytes] : cases)
    {
        if (LacksCodePage(codePage))
            continue;
        EXPECT_EQ(Hex(Encode(codePage, Utf8ToUtf16(text))), bytes) << codePage;
        EXPECT_EQ(Utf16ToUtf8(Decode(codePage, Bytes(bytes))), text) << codePage;
    }
}

TEST(CodePages, EveryKnownNumberTakesAsciiAndUnknownOnesAreRefused)
{
    const auto expect = [](unsigned int codePage, bool isKnown)
    {
        std::wstring wide = L"<";
        std::string narrow = "<";
        EXPECT_EQ(AppendFromCodePage(wide, "Az 09", codePage), isKnown) << codePage;
        EXPECT_EQ(AppendToCodePage(narrow, L"Az 09", codePage), isKnown) << codePage;
        EXPECT_EQ(wide, isKnown ? L"<Az 09" : L"<") << codePage;
        EXPECT_EQ(narrow, isKnown ? "<Az 09" : "<") << codePage;
    };
    for (const unsigned int codePage : KnownCodePages)
        expect(codePage, !LacksCodePage(codePage));
    for (const unsigned int codePage : {436u, 1200u, 1201u, 12000u, 65002u, ~0u})
        expect(codePage, false);
}

TEST(CodePages, WhatIsInvalidOrLackingIsReplacedOneByOne)
{
    const std::tuple<unsigned int, std::string, const wchar_t*> cases[] = {
        {932, "a\x81 b", L"a\xFFFD b"},
        {932, "\x82\xA0\x81", L"\x3042\xFFFD"},
        {949, "\xC7\xD1\xFF\xFFz", L"\xD55C\xFFFD\xFFFDz"},
        {1253, "a\xFFz", L"a\xFFFDz"},
        {65001, "\xED\xA0\xBD", L"\xFFFD\xFFFD\xFFFD"},
        {65001, "\xE4z", L"\xFFFDz"},
    };
    for (const auto& [codePage, bytes, units] : cases)
        EXPECT_EQ(Decode(codePage, bytes), units) << codePage << ": " << Hex(bytes);
    const std::wstring lone = {L'a', wchar_t(0xD800), wchar_t(0xDC00 - 1), L'b', wchar_t(0xDC00)};
    for (const unsigned int codePage : {437u, 932u, 949u, 1252u, 20866u, 28591u, 65000u})
        EXPECT_EQ(Encode(codePage, lone), "a??b?") << codePage;
    EXPECT_EQ(Hex(Encode(65001, lone)), "61 EF BF BD EF BF BD 62 EF BF BD");
    for (const unsigned int codePage : {437u, 850u, 932u, 936u, 949u, 950u, 1252u, 1258u, 20866u, 28591u})
    { // an emoji, and the flag of England with its six tag characters
        EXPECT_EQ(Encode(codePage, Utf8ToUtf16("a😀b")), "a?b") << codePage;
        EXPECT_EQ(Encode(codePage, Utf8ToUtf16("🏴\U000E0067\U000E0062\U000E0065\U000E006E\U000E0067\U000E007F")),
                  "???????");
    }
    EXPECT_EQ(Encode(1252, L"\x0391\x0100\xFFFD\xFEFF‘"), "????\x91"); // what only looks alike is lacking
}

TEST(CodePages, AnyBytesGiveTextThatIsWellFormed)
{
    std::mt19937 random(20240307);
    for (const unsigned int codePage : KnownCodePages)
        for (int round = 0; round < 50 && !LacksCodePage(codePage); ++round)
        {
            std::string bytes(random() % 200, '\0');
            for (char& byte : bytes)
                byte = round % 2 == 0 ? static_cast<char>(random()) : "+-\x1B$(BJ+A2D3eAOQ\x81\x30"[random() % 19];
            const std::wstring units = Decode(codePage, bytes);
            for (std::wstring_view rest = units; !rest.empty();)
            {
                const bool isReplacement = rest.front() == wchar_t(ReplacementCharacter);
                ASSERT_EQ(TakeCodePoint(rest) == ReplacementCharacter, isReplacement) << codePage << ": " << Hex(bytes);
            }
        }
}

// Longer than any buffer on the way, with every kind of length in bytes.
TEST(CodePages, LongTextsComeBack)
{
    std::wstring text;
    for (std::uint32_t codePoint = 1; codePoint < 0x30000; codePoint += codePoint < 0x3000 ? 1 : 13)
        if (codePoint < 0xD800 || codePoint > 0xF8FF)
            AppendUnits(text, codePoint);
    for (const unsigned int codePage : {54936u, 65000u, 65001u})
        EXPECT_TRUE(LacksCodePage(codePage) || Decode(codePage, Encode(codePage, text)) == text) << codePage;
}

} // namespace
