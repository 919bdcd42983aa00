#include <windows.h>

#include "Platform/Utf16.h"
#include "Platform/Utf8.h"

#include "../CodePageTexts.h"
#include "Support/Testing.h"

using namespace Vellum::Platform;

const std::vector<unsigned int> KnownCodePages = {437, 932, 936, 949, 950, 1252, 1361, 54936, 65001, CodePageOfUser};

namespace
{

// The pages of Europe and the Near East, byte by byte, as the system has them.
TEST(CodePages, EachByteIsThatOfTheSystemAndComesBack)
{
    for (const unsigned int codePage :
         {437u,  737u,  775u,  850u,   852u,   855u,   857u,   860u,   861u,   862u,  863u,
          864u,  865u,  866u,  869u,   874u,   1250u,  1251u,  1252u,  1253u,  1254u, 1255u,
          1256u, 1257u, 1258u, 10000u, 20866u, 21866u, 28591u, 28592u, 28595u, 28605u})
        for (int byte = 1; byte < 256; ++byte)
        {
            const char character = static_cast<char>(byte);
            wchar_t unit = 0;
            const int count = ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, &character, 1, &unit, 1);
            const std::wstring text = Decode(codePage, std::string(1, character));
            EXPECT_EQ(text, std::wstring(1, count == 1 ? unit : wchar_t(ReplacementCharacter))) << codePage;
            if (count == 1)
            {
                EXPECT_EQ(Decode(codePage, Encode(codePage, text)), text) << codePage << ' ' << byte;
            }
        }
}

TEST(CodePages, NumberZeroIsTheEncodingOfTheUser)
{
    EXPECT_EQ(Encode(CodePageOfUser, L"aä中"), Encode(::GetACP(), L"aä中"));
    EXPECT_EQ(Decode(CodePageOfUser, "a\xE4"), Decode(::GetACP(), "a\xE4"));
}

} // namespace
