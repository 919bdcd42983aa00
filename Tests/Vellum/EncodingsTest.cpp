#include "Vellum/Encodings.h"

#include "Support/Testing.h"

namespace
{

using namespace Vellum;

TEST(Encodings, NullEmptyTextsAndUnknownCodePagesGiveTheEmptyText)
{
    for (const unsigned int codePage : {0u, 1252u, 65000u, 65001u})
    {
        EXPECT_EQ(Encodings::FromCodePage(static_cast<const char*>(nullptr), codePage), L"");
        EXPECT_EQ(Encodings::ToCodePage(static_cast<const wchar_t*>(nullptr), codePage), "");
        EXPECT_EQ(Encodings::FromCodePage(std::string(), codePage), L"");
        EXPECT_EQ(Encodings::ToCodePage(std::wstring(), codePage), "");
    }
    EXPECT_EQ(Encodings::FromUTF8(static_cast<const char*>(nullptr)), L"");
    EXPECT_EQ(Encodings::ToUTF8(static_cast<const wchar_t*>(nullptr)), "");
    EXPECT_EQ(Encodings::FromCodePage("abc", 4711), L"");
    EXPECT_EQ(Encodings::ToCodePage(L"abc", 4711), "");
}

TEST(Encodings, Utf8IsCodePage65001)
{
    const std::wstring pair = {wchar_t(0xD83D), wchar_t(0xDE00)};
    EXPECT_EQ(Encodings::ToUTF8(pair), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Encodings::FromUTF8(std::string("\xF0\x9F\x98\x80")), pair);
    EXPECT_EQ(Encodings::ToCodePage(pair, 65001), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Encodings::FromCodePage("\xED\xA0\xBDz\xE4", 65001), L"\uFFFD\uFFFD\uFFFDz\uFFFD");
}

TEST(Encodings, TextsEndAtTheirFirstNul)
{
    using namespace std::string_literals;
    EXPECT_EQ(Encodings::ToUTF8(L"a\0b"s), "a");
    EXPECT_EQ(Encodings::FromUTF8("a\0b"s), L"a");
    EXPECT_EQ(Encodings::ToCodePage(L"ä\0b"s, 1252), "\xE4");
    EXPECT_EQ(Encodings::FromCodePage("\xE4\0b"s, 1252), L"ä");
    EXPECT_EQ(Encodings::FromCodePage("a+AAA-b", 65000), L"a"); // a NUL in UTF-7
}

} // namespace
