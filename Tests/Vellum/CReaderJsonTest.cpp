

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

// A piece of JSON, read as one kind of value: by key, and by index, which is the same.
template <class T>
std::optional<T> Value(std::string_view value)
{
    const auto object = ExactText("{\"a\":" + std::string(value) + "}");
    const auto sequence = ExactText("[" + std::string(value) + "]");
    std::optional<T> field;
    std::optional<T> element;
    CFields root = ReadFields([&](IDataReader& r) { field = Get<T>(r, "a"); });
    CElements elements = ReadElements([&](IContainerReader& r) { element = Get<T>(r, 0); });
    CReaderJson(object.get()).Read(root);
    CReaderJson(sequence.get()).Read(elements);
    EXPECT_EQ(testing::PrintToString(field), testing::PrintToString(element)); // also for nan
    return field;
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
    EXPECT_EQ(DumpAsArray("[" + Repeat("[],", 5000) + "1]"), "[" + Repeat("[] ", 5000) + "<1>]"); // side by side

    EXPECT_RAISES(CException, "Vellum::ParseArray", DumpAsArray(Repeat("[", 1025) + Repeat("]", 1025)));
    EXPECT_RAISES(CException, "Vellum::ParseObject", DumpAsArray(Repeat("[", 1024) + "{}" + Repeat("]", 1024)));
    EXPECT_RAISES(CException, "Vellum::ParseArray", DumpAsObject(Repeat("{\"a\":", 1024) + "[]" + Repeat("}", 1024)));
    EXPECT_RAISES(CException, "Vellum::ParseArray", DumpAsArray(Repeat("[", 1000000)));
}

// What costs most for its length: elements of one byte or two.
TEST(CReaderJson, MemoryStaysInProportionToTheText)
{
    CElements none;
    for (const char* const piece : {"1,", ",", "{}", "[]", "{\"\":{}}", "null "})
    {
        const std::string text = "[1" + Repeat(piece, 100000) + "1]";
        const CAllocationCounter counter;
        CReaderJson(text).Read(none);
        EXPECT_LT(counter.GetBytes(), 100 * text.size()) << piece;
    }
}

TEST(CReaderJson, ReadsTheWorkedExample)
{
    EXPECT_EQ(DumpAsObject(JsonExample()),
              "{name=<x> inner={a=<1> b=<two>} nothing=[] rows=[{a=<1>} {a=<2>}] list=[<1> <2>] "
              "ratio=<1.5000000000000000> ok=<true> count=<3> none={}}");
}

TEST(CReaderJson, ReadsAsOftenAsAskedAndCopiesReadTheSameText)
{
    std::uint32_t count = 0;
    CFields root = ReadFields([&](IDataReader& r) { count += r.GetKeyCount(); });
    const std::string document = "{\"a\":1}";
    const CReaderJson reader(document);
    CReaderJson assigned("[]");
    assigned = CReaderJson(reader);
    reader.Read(root);
    reader.Read(root);
    assigned.Read(root);
    EXPECT_EQ(count, 3u);
}

TEST(CReaderJson, NoLocaleChangesAValueAndTheClientsExceptionPassesThrough)
{
    const CGermanThread german;
    EXPECT_EQ(Value<double>("1234.5"), 1234.5);
    EXPECT_EQ(Value<double>("+1.5"), 1.5); // a way through the C library
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", Value<double>("\"1,5\""));
    CFields root = ReadFields([](IDataReader&) { throw 42; });
    EXPECT_THROW(CReaderJson("{}").Read(root), int);
    EXPECT_TRUE(german.IsInForce());
}

TEST(CReaderJson, AnyAllocationMayFail)
{
    const CLogObserver quiet;
    const std::string document = "[{\"a key that is longer than any small text\":\"" + Repeat("\\n", 100) + "\"} \"" +
                                 Repeat("QUJD", 50) + "\"]";
    bool isComplete = false;
    const auto read = [&]
    {
        std::string text;
        CFields object = ReadFields([&](IDataReader& r) { r.Read(r.GetKey(0), text); });
        CElements root = ReadElements(
            [&](IContainerReader& r)
            {
                r.Read(0, object);
                const Vellum::BlobRange blob = r.GetBlob(1);
                isComplete = text == Repeat("\n", 100) && std::string(blob.first, blob.second) == Repeat("ABC", 50);
            });
        CReaderJson(document).Read(root);
    };
    EXPECT_GT(FailEachAllocation([&] { isComplete = GetsThrough(read) && isComplete; }), 10u);
    EXPECT_TRUE(isComplete);
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
