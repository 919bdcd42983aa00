#include <memory_resource>

#include "Vellum/Vellum.h"

#include "Vellum/src/SJsonElement.h"

#include "DocsExample.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

using Vellum::CException;
using Vellum::CReaderJson;
using Vellum::IContainerReader;
using Vellum::IDataReader;

namespace
{

void DumpObject(IDataReader& reader, std::string& dump);
void DumpArray(IContainerReader& reader, std::string& dump);

// {key=value key=value}, [value value] and <text>. False if nothing is there.
template <class Reader, class Key>
bool DumpValue(Reader& reader, Key key, std::string& dump)
{
    std::string text;
    CFields object = ReadFields([&](IDataReader& r) { DumpObject(r, dump); });
    CElements array = ReadElements([&](IContainerReader& r) { DumpArray(r, dump); });
    if (!reader.Read(key, text))
        return reader.Read(key, object) || reader.Read(key, array);
    dump += '<' + text + '>';
    return true;
}

void DumpObject(IDataReader& reader, std::string& dump)
{
    dump += '{';
    for (std::uint32_t index = 0; index < reader.GetKeyCount(); ++index)
    {
        dump += std::string(index == 0 ? "" : " ") + reader.GetKey(index) + '=';
        EXPECT_TRUE(DumpValue(reader, reader.GetKey(index), dump));
    }
    dump += '}';
}

// A dash stands for an index at which nothing is found before one at which something is.
void DumpArray(IContainerReader& reader, std::string& dump)
{
    dump += '[';
    std::string gap;
    for (std::uint32_t index = 0, missing = 0; missing < 3; ++index)
    {
        std::string value;
        const bool isFound = DumpValue(reader, index, value);
        gap += (index == 0 ? "" : " ") + (isFound ? value : "-");
        missing = isFound ? 0 : missing + 1;
        if (isFound)
            dump += std::exchange(gap, "");
    }
    dump += ']';
}

std::string DumpAsObject(std::string_view text)
{
    const auto document = ExactText(text);
    std::string dump;
    CFields root = ReadFields([&](IDataReader& r) { DumpObject(r, dump); });
    CReaderJson(document.get()).Read(root);
    return dump;
}

std::string DumpAsArray(std::string_view text)
{
    const auto document = ExactText(text);
    std::string dump;
    CElements root = ReadElements([&](IContainerReader& r) { DumpArray(r, dump); });
    CReaderJson(document.get()).Read(root);
    return dump;
}

// What is read of one value.
template <class T>
T Value(const std::string& value)
{
    T read{};
    CElements root = ReadElements([&](IContainerReader& r) { EXPECT_TRUE(r.Read(0, read)); });
    CReaderJson(ExactText("[" + value + "]").get()).Read(root);
    return read;
}

TEST(CReaderJson, RefusesDocumentsInTheNameOfTheRoutineThatMeetsTheFault)
{
    using Table = std::vector<std::pair<const char*, std::vector<const char*>>>;
    const Table objects = {
        {"SkipEmptyChars", {"", " \n", "{", "{\"a\"", "{\"a\":", "{\"a\":1 ", "{\"a\":\"b\"", "{\"a\":null,"}},
        {"ParseValue", {"{\"a\":1", "{\"a\":1]"}},
        {"Vellum::ParseString", {"{\"", "{\"a", "{\"a\\", "{\"a\\\"", "{\"a\":\"x\\"}},
        {"Vellum::ParseObject", {"[]", "null\n", "\xEF\xBB\xBF{}", "{,}", "{a:1}", "{\"a\" 1}", "{\"a\":1,,\"b\":1}"}},
        {"Vellum::ParseArray", {"{\"a\":[1,]}"}},
    };
    const Table arrays = {
        {"SkipEmptyChars", {" ", "[", "[1,"}}, {"ParseValue", {"[1", "[1}"}},
        {"Vellum::ParseString", {"[\""}},      {"Vellum::ParseArray", {"{}", "null", "[,1]", "[1,]", "[1, \n]"}},
        {"Vellum::ParseObject", {"[{,}]"}},
    };
    for (const auto& [function, documents] : objects)
        for (const char* const document : documents)
            EXPECT_RAISES(CException, function, DumpAsObject(document));
    for (const auto& [function, documents] : arrays)
        for (const char* const document : documents)
            EXPECT_RAISES(CException, function, DumpAsArray(document));

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
    EXPECT_EQ(DumpAsArray(Repeat("[", 1024) + Repeat("]", 1024)), Repeat("[", 1024) + Repeat("]", 1024));
    EXPECT_EQ(DumpAsObject(Repeat("{\"a\":", 1023) + "{" + Repeat("}", 1024)),
              Repeat("{a=", 1023) + "{" + Repeat("}", 1024));
    EXPECT_EQ(DumpAsArray("[" + Repeat("[],{},", 5000) + "1]"), "[" + Repeat("[] {} ", 5000) + "<1>]"); // side by side

    EXPECT_RAISES(CException, "Vellum::ParseArray", DumpAsArray(Repeat("[", 1025) + Repeat("]", 1025)));
    EXPECT_RAISES(CException, "Vellum::ParseObject", DumpAsArray(Repeat("[", 1024) + "{}" + Repeat("]", 1024)));
    EXPECT_RAISES(CException, "Vellum::ParseArray", DumpAsObject(Repeat("{\"a\":", 1024) + "[]" + Repeat("}", 1024)));
    EXPECT_RAISES(CException, "Vellum::ParseArray", DumpAsArray(Repeat("[", 1000000)));
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
    DumpAsArray("[" + Repeat("{\"a\":[1]}", 1000) + "]");
    std::pmr::set_default_resource(before);
}

TEST(CReaderJson, ReadsTheWorkedExample)
{
    EXPECT_EQ(DumpAsObject(JsonExample()),
              "{name=<x> inner={a=<1> b=<two>} nothing=[] rows=[{a=<1>} {a=<2>}] list=[<1> <2>] "
              "ratio=<1.5000000000000000> ok=<true> count=<3> none={}}");
}

TEST(CReaderJson, CharIsTheFirstRawByte)
{
    const std::pair<const char*, char> table[] = {{"\"\"", '\0'},     {"\"abc\"", 'a'},   {"7", '7'},
                                                  {"\"\\n\"", '\\'},  {"\"\\\\\"", '\\'}, {"\"\\\"\"", '"'},
                                                  {"\"\\\"x\"", '\\'}}; // that last quote is no char of its own
    for (const auto& [raw, expected] : table)
        EXPECT_EQ(Value<char>(raw), expected) << raw;
}

TEST(CReaderJson, TextsAreUnescaped)
{
    const std::pair<std::string, std::string> table[] = {
        {R"(x\ty\u0041)", "x\tyA"},
        {R"(\a\b\f\n\r\t\v\"\\\/)", "\a\b\f\n\r\t\v\"\\/"},
        {R"(\q\0\e')", "q0e'"},
        {R"(\x414\x4g\xg\x)", "A4\x04gxgx"},
        {R"(\u41 \u00e9\u20AC.\uG)", "A \xC3\xA9\xE2\x82\xAC.uG"},
        {R"(\U0001F600\U41\U)", std::string("\xF0\x9F\x98\x80") + "AU"},
        {R"(\uD83D\uDE00)", "\xED\xA0\xBD\xED\xB8\x80"},
        {R"(\U0010FFFF\U00110000\UFFFFFFFF!)", "\xF4\x8F\xBF\xBF!"},
        {R"(\xE9\x7F\x80\u7FF\u800\u20AC5)", "\xC3\xA9\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xE2\x82\xAC\x35"},
        {R"(a\u0000b)", std::string("a\0b", 3)},
        {"\\\xC3\xA9", "\xA9"},
        {"\x01\x1F\xC3\xA9\xFF", "\x01\x1F\xC3\xA9\xFF"},
    };
    for (const auto& [raw, text] : table)
        EXPECT_EQ(Value<std::string>('"' + raw + '"'), text) << raw;
    EXPECT_EQ(Value<std::string>("x\\"), "x\\"); // a word may end in a backslash

    const std::pair<const char*, std::wstring> wide[] = {// UTF-16 up to the first NUL
                                                         {"\xC3\xA9\\t", L"\u00E9\t"},
                                                         {"\\U0001F600", {wchar_t(0xD83D), wchar_t(0xDE00)}},
                                                         {"a\\u0000b", L"a"},
                                                         {"\xE4", L"\uFFFD"},
                                                         {"\\uD83D", L"\uFFFD\uFFFD\uFFFD"},
                                                         {"", L""}};
    for (const auto& [raw, text] : wide)
        EXPECT_EQ(Value<std::wstring>('"' + std::string(raw) + '"'), text) << raw;
}

// Of any length; what stands behind the seconds is ignored.
TEST(CReaderJson, DatesAreHandedOverWithoutMilliseconds)
{
    for (std::size_t size = 0; size < 60; ++size)
        EXPECT_EQ(Value<CbDateTime>("2024-03-07T09:05:01" + std::string(size, '.')).ToString("Y-m-d H:i:s v", false),
                  "2024-03-07 09:05:01 000");
    EXPECT_RAISES(CbExceptionConversion, "CbDateTime::operator =", Value<CbDateTime>("2024-03-07"));
}

TEST(SJsonElement, HasThreeKindsAndNoFourth)
{
    for (const std::uint32_t kind : {0u, 2u, 3u})
        EXPECT_EQ(Vellum::SJsonElement(kind).kind, kind);
    for (const std::uint32_t kind : {1u, 4u})
        EXPECT_RAISES(CException, "Vellum::SJsonElement::SJsonElement", Vellum::SJsonElement{kind});
}

TEST(SJsonElement, TablesNameTheirFullTypeWhenTheyFail)
{
    const std::string text = "class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >";
    const std::string element =
        "class std::unique_ptr<struct Vellum::SJsonElement,struct std::default_delete<struct Vellum::SJsonElement> >";
    const std::string node = "struct CbMapTypes::SAssociation<" + text + "," + element + " >";

    Vellum::SJsonDocument document;
    Vellum::JsonMembers members;
    members.FindOrInsert("a");
    const std::string setPlexManager = "CbMapPolicyPlexManager<class CbMapEx<" + text + "," + element +
                                       ",0,struct std::hash<" + text + " >,struct std::equal_to<" + text + " > >," +
                                       node + ",0,0,unsigned int>::SetPlexManager";
    EXPECT_RAISES(CbExceptionContainer, setPlexManager.c_str(), members.SetPlexManager(document.plexManager));

    const CLogObserver log;
    FailEachAllocation([] { GetsThrough([] { DumpAsObject("{\"a\":{\"b\":1}}"); }); });
    // The record and the storage of the pools of the root and of all others.
    EXPECT_EQ(log.GetFunctions(),
              std::vector<std::string>(4, "CbPlexManager<" + node + ",0,unsigned int>::getFreeElement"));
}

} // namespace
