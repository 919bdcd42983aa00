#include "Platform/CodePageDetector.h"

#include "Platform/CodePages.h"

#include "Support/Testing.h"

using namespace Vellum::Platform;

namespace
{

unsigned int Detect(const std::string& bytes)
{
    return DetectCodePage({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
}

TEST(CodePageDetector, TellsPagesThatCanBeDecodedOrNothing)
{
    EXPECT_EQ(Detect(""), 0u);
    EXPECT_EQ(Detect("plain text"), VELLUM_DETECTOR ? 20127u : 0u);
    EXPECT_EQ(Detect("Gr\xC3\xBC\xC3\x9F"
                     "e aus K\xC3\xB6ln"),
              VELLUM_DETECTOR ? 65001u : 0u);

    std::mt19937 random(7);
    for (int times = 0; times < 300; ++times)
    {
        std::string bytes(1 + random() % 60, ' ');
        std::ranges::generate(bytes, [&] { return static_cast<char>(random() | 0x80u); });
        std::wstring text;
        const unsigned int codePage = Detect(bytes);
        EXPECT_TRUE(codePage == 0 || AppendFromCodePage(text, bytes, codePage)) << codePage;
    }
}

} // namespace
