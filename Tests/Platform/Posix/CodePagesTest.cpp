#include "Platform/Utf16.h"
#include "Platform/Utf8.h"

#include "../CodePageTexts.h"
#include "Model/Values.h"
#include "Support/Posix/CSystemCalls.h"
#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

// The pages of one byte a character, and a digest of what the bytes are, as other tables than the C library's have it
// too but for three letters of 10000 and 10007.
constexpr std::pair<unsigned int, std::uint32_t> Narrow[] = {
    {437, 0x53C4C51C},   {737, 0x322D8F5E},   {775, 0x04645F54},   {850, 0x33E96BE5},   {852, 0x336409B5},
    {855, 0x45125B81},   {857, 0x46D9D337},   {858, 0xBFAEEF13},   {860, 0xBA458920},   {861, 0xD21C9972},
    {862, 0xB3F94C8E},   {863, 0x405CA92C},   {864, 0x20F6D9F4},   {865, 0x86176492},   {866, 0x6FBDD05E},
    {869, 0x3BD76078},   {874, 0x6C2B49C3},   {1250, 0x75DC2AF7},  {1251, 0x21A90567},  {1252, 0x27FDC521},
    {1253, 0xFCC568EA},  {1254, 0x2B26F424},  {1255, 0x49D417E1},  {1256, 0xB4FA3DF2},  {1257, 0xD1CDA001},
    {1258, 0x9CB10973},  {10000, 0x09C16F12}, {10007, 0xD6FADBB5}, {10029, 0x27CE4D84}, {20127, 0x3D43B82D},
    {20866, 0xC6AD74FD}, {21866, 0x41125085}, {28591, 0xCDB157B6}, {28592, 0xB67B664A}, {28593, 0x3AE182E4},
    {28594, 0x9FBEEA29}, {28595, 0xDA74633A}, {28596, 0xF1000528}, {28597, 0x3835D65C}, {28598, 0xD9C53551},
    {28599, 0x4A41CA1B}, {28600, 0x9A1BF4C7}, {28601, 0x59D58C8E}, {28603, 0xC93E9AB0}, {28604, 0x6BAAB5C2},
    {28605, 0x082D97B3}, {28606, 0xE4C5D018}};

} // namespace

const std::vector<unsigned int> KnownCodePages = []
{
    std::vector<unsigned int> numbers = {932,   936,   949,   950,   1361,  50220, 51932,
                                         51936, 51949, 51950, 54936, 65000, 65001, CodePageOfUser};
    for (const auto& [codePage, digest] : Narrow)
        numbers.push_back(codePage);
    return numbers;
}();

namespace
{

TEST(CodePages, TextsOfLetterAndAccentAndOfMoreShiftsGoThereAndBack)
{
    const std::tuple<unsigned int, const char*, const char*> cases[] = {
        {1258, "ấả", "E2 EC 61 D2"}, {50225, "a한b", "1B 24 29 43 61 0E 47 51 0F 62"}, {51932, "あ～", "A4 A2 A1 C1"}};
    for (const auto& [codePage, text, bytes] : cases)
    {
        EXPECT_EQ(Hex(Encode(codePage, Utf8ToUtf16(text))), bytes) << codePage;
        EXPECT_EQ(Utf16ToUtf8(Decode(codePage, Bytes(bytes))), text) << codePage;
    }
    for (const unsigned int codePage : {1u, 3u, 42u, 28602u})
    {
        std::wstring wide;
        std::string narrow;
        EXPECT_FALSE(AppendFromCodePage(wide, "a", codePage) || AppendToCodePage(narrow, L"a", codePage)) << codePage;
        EXPECT_TRUE(wide.empty() && narrow.empty()) << codePage;
    }
}

TEST(CodePages, EachByteIsThatOfItsPageAndComesBack)
{
    for (const auto& [codePage, digest] : Narrow)
    {
        std::string decoded;
        for (int byte = 1; byte < 256; ++byte)
        {
            const std::wstring text = Decode(codePage, std::string(1, static_cast<char>(byte)));
            decoded += Utf16ToUtf8(text);
            if (text.size() == 1 && text[0] != wchar_t(ReplacementCharacter))
            {
                EXPECT_EQ(Decode(codePage, Encode(codePage, text)), text) << codePage;
            }
        }
        EXPECT_EQ(Model::HashOfBytes(decoded) >> 32, digest) << codePage;
    }
}

TEST(CodePages, InvalidBytesBecomeReplacementCharacters)
{
    const std::tuple<unsigned int, std::string, const wchar_t*> cases[] = {
        {1252, "a\x81z", L"a\xFFFDz"},
        {20127, "a\x80\xFF", L"a\xFFFD\xFFFD"},
        {932, "a\x81", L"a\xFFFD"},
        {932, "\x80\xA0\xFD", L"\xFFFD\xFFFD\xFFFD"},
        {54936, "\x81\x30\x81", L"\xFFFD"},
        {1258, "a\xFF", L"a\xFF"}, // a letter that waits for an accent
        {28596, "\xA1\xC7", L"\xFFFD\x627"},
        {1255, "\xE0\xD9\xC0", L"\x5D0\xFFFD\x5B0"},        // ... comes before what follows, and doesn't join across it
        {50220, "\x1B$B$\"\x80$\"", L"\x3042\xFFFD\x3042"}, // the shift outlives the bad byte
        {50220, "a\x1B$", L"a\xFFFD"},
        {65000, "\xE4z~", L"\xFFFDz\xFFFD"},
        {65000, "+2D0-xy", L"\xFFFDxy"}, // half a pair ends the shift
        {65000, "a+", L"a\xFFFD"},
    };
    for (const auto& [codePage, bytes, units] : cases)
        EXPECT_EQ(Decode(codePage, bytes), units) << codePage << ": " << Hex(bytes);
}

TEST(CodePages, WhatACodePageLacksBecomesOneQuestionMark)
{
    const std::wstring lone = {L'a', wchar_t(0xD800), wchar_t(0xDC00 - 1), L'b', wchar_t(0xDC00)};
    EXPECT_EQ(Encode(50220, lone) + Encode(54936, lone), "a??b?a??b?");
    EXPECT_EQ(Hex(Encode(50220, L"あä\U0001F600")), "1B 24 42 24 22 1B 28 42 3F 3F");
    EXPECT_EQ(Encode(50220, Utf8ToUtf16("🏴\U000E0067\U000E0062\U000E0065\U000E006E\U000E0067\U000E007F")),
              "???????");
    if constexpr (sizeof(wchar_t) > 2)
    {
        EXPECT_EQ(Encode(54936, std::wstring{static_cast<wchar_t>(0x110000), static_cast<wchar_t>(0xFFFFFFFF)}), "??");
    }
}

TEST(CodePages, NumberZeroIsTheEncodingOfTheUser)
{
    const CEnvironment polish("LC_ALL", "pl_PL.ISO-8859-2");
    EXPECT_EQ(Hex(Encode(CodePageOfUser, L"Łä中")), "A3 E4 3F");
    EXPECT_EQ(Decode(CodePageOfUser, "\xA3\xE4"), L"Łä");
    for (const char* locale : {"de_DE.UTF-8", "C", "xx_XX"}) // plain ASCII and what isn't installed too
    {
        const CEnvironment environment("LC_ALL", locale);
        EXPECT_EQ(Hex(Encode(CodePageOfUser, L"Ł")), "C5 81") << locale;
        EXPECT_EQ(Decode(CodePageOfUser, "\xC5\x81\xE4"), L"Ł\xFFFD") << locale;
    }
}

// The C library tells of memory that it couldn't have as of a locale or a converter that isn't there.
TEST(CodePages, MemoryThatRunsOutIsNoTextThatIsWrong)
{
    CSystemCalls calls;
    const auto decode = [&](unsigned int codePage, CSystemCalls::ECall call, CSystemCalls::Fates fates)
    {
        std::wstring text;
        calls.fates[call] = std::move(fates);
        return AppendFromCodePage(text, "\xA3", codePage) ? text : L"refused";
    };
    const CEnvironment once("LC_ALL", "pl_PL.ISO-8859-2@once");
    EXPECT_EQ(decode(CodePageOfUser, CSystemCalls::OpenLocale, {{ENOENT}}), L"Ł");
    EXPECT_EQ(decode(1250, CSystemCalls::OpenConverter, {{EINVAL}}), L"Ł");
    EXPECT_EQ(decode(1250, CSystemCalls::OpenConverter, {{EINVAL}, {EINVAL}}), L"refused");
    {
        const CEnvironment missing("LC_ALL", "pl_PL.ISO-8859-2@missing");
        EXPECT_EQ(decode(CodePageOfUser, CSystemCalls::OpenLocale, {{ENOENT}, {ENOENT}}), L"\xFFFD");
        const CEnvironment twice("LC_ALL", "pl_PL.ISO-8859-2@twice");
        for (int times = 0; times < 2; ++times) // it may be lost to the C library
            EXPECT_THROW(decode(CodePageOfUser, CSystemCalls::OpenLocale, {{ENOMEM}, {ENOENT}}), std::bad_alloc);
    }
    const auto expectOutcome = [&](unsigned int codePage, CSystemCalls::ECall call)
    { GetsThrough([&] { EXPECT_EQ(decode(codePage, call, {{EINVAL}}), L"Ł"); }); };
    EXPECT_GT(FailEachAllocation([&] { expectOutcome(1250, CSystemCalls::OpenConverter); }), 0u);
    int names = 0; // one that is new each time
    const auto userOutcome = [&]
    {
        static std::array<char, 64> name;
        std::snprintf(name.data(), name.size(), "pl_PL.ISO-8859-2@%d", ++names);
        ::setenv("LC_ALL", name.data(), 1);
        expectOutcome(CodePageOfUser, CSystemCalls::OpenLocale);
    };
    EXPECT_GT(FailEachAllocation(userOutcome), 1u);
}

} // namespace
