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

TEST(Encodings, TextsEndAtTheirFirstNul)
{
    using namespace std::string_literals;
    const std::wstring pair = {wchar_t(0xD83D), wchar_t(0xDE00)};
    EXPECT_EQ(Encodings::ToUTF8(pair + L"\0b"s), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Encodings::FromUTF8("\xF0\x9F\x98\x80\0b"s), pair);
    EXPECT_EQ(Encodings::ToCodePage(L"ä\0b"s, 1252), "\xE4");
    EXPECT_EQ(Encodings::FromCodePage("\xE4\0b"s, 1252), L"ä");
    EXPECT_EQ(Encodings::FromCodePage("a+AAA-b", 65000), L"a"); // a NUL in UTF-7
}

} // namespace
