#include "Vellum/src/XmlParser.h"

#include <sys/mman.h>
#include <unistd.h>

#include "Support/Testing.h"

namespace
{

// One memory of 64 MiB, mapped again and again, is the text.
TEST(XmlParser, TextsOfTwoGigabytesAreRefused)
{
    constexpr std::size_t Block = 64 << 20, Size = std::size_t{1} << 31;
    const int file = ::memfd_create("text", 0);
    ASSERT_EQ(::ftruncate(file, Block), 0);
    void* const room = ::mmap(nullptr, Size + 1, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(room, MAP_FAILED);
    char* const text = static_cast<char*>(room);
    const auto map = [&](std::size_t at, int protection)
    { return ::mmap(text + at, Block, protection, MAP_SHARED | MAP_FIXED, file, 0); };
    ASSERT_NE(map(0, PROT_READ | PROT_WRITE), MAP_FAILED);
    std::fill_n(text, Block, '<'); // is wrong at once
    for (std::size_t at = Block; at < Size; at += Block)
        ASSERT_NE(map(at, PROT_READ), MAP_FAILED);

    Vellum::SXmlParseOutcome outcome{};
    EXPECT_TRUE(Vellum::ParseXmlText(text, &outcome).IsEmpty());
    EXPECT_EQ(outcome.error, Vellum::XmlTextTooLong);
    EXPECT_TRUE(Vellum::ParseXmlText(text + 1, &outcome).IsEmpty());
    EXPECT_EQ(outcome.error, Vellum::XmlNoElementName);
    ::munmap(room, Size + 1);
    ::close(file);
}

} // namespace
