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

} // namespace
