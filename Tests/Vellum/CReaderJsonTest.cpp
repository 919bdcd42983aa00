#include <memory_resource>

#include "Vellum/Vellum.h"

#include "DocsExample.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

using Vellum::CException;
using Vellum::CReaderJson;
using Vellum::IContainerReader;
using Vellum::IDataReader;

namespace
{

// Reads a document, as a sequence if it begins with a bracket, and asks for nothing.
void Parse(std::string_view text)
{
    const auto document = ExactText(text);
    CFields object;
    CElements sequence;
    const CReaderJson reader(document.get());
    text.starts_with('[') ? reader.Read(sequence) : reader.Read(object);
}

TEST(CReaderJson, RefusesTheTextThatIsNone)
{
    const CReaderJson nothing(static_cast<const char*>(nullptr));
    CFields object;
    CElements sequence;
    EXPECT_RAISES(CException, "Vellum::CReaderJson::Read", nothing.Read(object));
    EXPECT_RAISES(CException, "Vellum::CReaderJson::Read", nothing.Read(sequence));
}

std::string Repeat(std::string_view text, std::size_t count)
{
    std::string repeated;
    for (; count != 0; --count)
        repeated += text;
    return repeated;
}

TEST(CReaderJson, FollowsBracketsDownTo1024Levels)
{
    Parse(Repeat("[", 1024) + Repeat("]", 1024));
    Parse(Repeat("{\"a\":", 1023) + "{" + Repeat("}", 1024));
    Parse("[" + Repeat("[],{},", 5000) + "1]"); // side by side
    EXPECT_RAISES(CException, "Vellum::ParseArray", Parse(Repeat("[", 1025) + Repeat("]", 1025)));
    EXPECT_RAISES(CException, "Vellum::ParseObject", Parse(Repeat("[", 1024) + "{}" + Repeat("]", 1024)));
    EXPECT_RAISES(CException, "Vellum::ParseArray", Parse(Repeat("{\"a\":", 1024) + "[]" + Repeat("}", 1024)));
    EXPECT_RAISES(CException, "Vellum::ParseArray", Parse(Repeat("[", 1000000)));
}

// What costs most for its length, with and without all blobs, and as much of it as makes tables and arrays just grow.
TEST(CReaderJson, MemoryStaysInProportionToTheText)
{
    for (const char* const piece : {"1,", "AA,", ",", "{}", "[]", "[1]", "{\"\":}", "{\"\":{}}", "null "})
        for (const std::size_t count : {11800u, 25300u, 65537u})
        {
            const std::string text = (*piece == ',' ? "[1" : "[") + Repeat(piece, count) + "1]";
            const bool hasBlobs = *piece == 'A';
            CElements root = ReadElements(
                [&](IContainerReader& r)
                {
                    for (std::uint32_t index = 0; hasBlobs && index < count; ++index)
                        EXPECT_NE(r.GetBlob(index).first, nullptr);
                });
            const CAllocationCounter counter;
            CReaderJson(text).Read(root);
            EXPECT_LT(counter.GetPeak(), 64 * text.size() + 256 * 1024) << piece;
            EXPECT_GT(counter.GetPeak(), text.size()) << piece; // there was as much to read as it seems
        }
}

// The default resource is the client's.
TEST(CReaderJson, LeavesTheDefaultResourceAlone)
{
    std::pmr::memory_resource* const before = std::pmr::set_default_resource(std::pmr::null_memory_resource());
    Parse("[" + Repeat("{\"a\":[1]}", 1000) + "]");
    std::pmr::set_default_resource(before);
}

TEST(CReaderJson, ReadsTheWorkedExample)
{
    std::string keys;
    CElements list = ReadElements([](IContainerReader& r) { EXPECT_EQ(Get<int>(r, 1), 2); });
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            for (std::uint32_t index = 0; index < r.GetKeyCount(); ++index)
                (keys += r.GetKey(index)) += ' ';
            EXPECT_EQ(Get<double>(r, "ratio"), 1.5);
            EXPECT_TRUE(r.Read("list", list));
        });
    CReaderJson(JsonExample()).Read(root);
    EXPECT_EQ(keys, "name inner nothing rows list ratio ok count none ");
}

TEST(CReaderJson, MembersNameTheFullTypeOfTheirPoolWhenTheyHaveNoMemory)
{
    std::string document = "{";
    for (int key = 0; key < 1000; ++key)
        document += "\"" + std::to_string(key) + "\":1,";
    const CLogObserver log;
    FailEachAllocation([&] { GetsThrough([&] { Parse(document + "}"); }); });
    const std::string text = "class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >";
    EXPECT_GT(log.GetFunctions().size(), 5u);
    for (const std::string& function : log.GetFunctions())
        EXPECT_EQ(function, "CbPlexManager<struct CbMapTypes::SAssociation<" + text +
                                ",class std::unique_ptr<struct Vellum::SJsonElement,struct std::default_delete<struct "
                                "Vellum::SJsonElement> > >,0,unsigned int>::getFreeElement");
}

} // namespace
