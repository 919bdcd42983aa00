

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

TEST(CReaderJson, ParsesItsOwnDocumentsAndThoseOfOthers)
{
    const std::pair<std::string, std::vector<const char*>> table[] = {
        // what is read from which documents
        {"{}", {"{}", "{ }", "{\n}\n", "null", "{\"a\":null}", "{}}}]"}},
        {"{a=<1>}", {" \t\r\n\v\f{ \"a\" : 1 } ", "{\"a\":1,}", "{\"a\":1,\"a\":null}"}},
        {"{a=<1> b=<2>}", {"{\"a\":1 \"b\":2}"}},
        {"{a=<x> b={} c=[]}", {"{\"a\":\"x\"\"b\":{}\"c\":[]}"}},
        {"{a=<> b=<1>}", {"{\"a\":,\"b\":1}"}},
        {"{a=<>}", {"{\"a\":}"}},
        {"{a=<2>}", {"{\"a\":1,\"a\":2}"}},
        {"{a=[<2>]}", {"{\"a\":{\"b\":1},\"a\":[2]}"}},
        {"{a=<null>}", {"{\"a\":\"null\"}"}},
        {"{a=<nulL>}", {"{\"a\":nulL}"}},
        {"{a=<1]>}", {"{\"a\":1]}"}},
        {"{a=<x\"y>}", {"{\"a\":x\"y}"}},
        {"{a=<line\nfeed>}", {"{\"a\":\"line\nfeed\"}"}},
        {"{k\\n=<1>}", {"{\"k\\n\":1}"}},
        {"{=<1>}", {"{\"\":1}"}},
        {"{\xC3\xA9=<\xC3\xA9>}", {"{\"\xC3\xA9\":\xC3\xA9}"}},
        {"{name=<x> id=<1>}", {"{\"id\":1,\"name\":\"x\"}"}},
        {"{o={o={x=[[<1>] [{}]]}}}", {"{\"o\":{\"o\":{\"x\":[[1],[{}]]}}}"}},
        {"[]", {"", "[]", "[\n]\n", "[] and so on"}},
        {"[<1> <2> <3>]", {"[1 2 3]"}},
        {"[<1> <> <2>]", {"[1,,2]"}},
        {"[- <1>]", {"[null,1]"}},
        {"[<1> - - <2>]", {"[1,null , null,2,null]"}},
        {"[<1}>]", {"[1}]"}},
        {"[<12ab> <True> <NULL> <-->]", {"[12ab,True,NULL,--]"}},
        {"[{} {} [] <a> <b>]", {"[{}{}[]\"a\"\"b\"]"}},
    };
    for (const auto& [expected, documents] : table)
        for (const char* const document : documents)
            EXPECT_EQ(expected[0] == '{' ? DumpAsObject(document) : DumpAsArray(document), expected) << document;
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

TEST(CReaderJson, ADocumentCutAnywhereIsRefusedBeforeTheClientSeesIt)
{
    const std::string document = "{\"a\": \"x\\\"y\", \"b\" : [1, null, {\"c\":{}}, \"\\\\\"] \"d\":12.5e3 }";
    const CLogObserver quiet;
    for (std::size_t size = 0; size < document.size(); ++size)
    {
        const auto cut = ExactText(std::string_view(document).substr(0, size));
        CFields root = ReadFields([](IDataReader&) { ADD_FAILURE(); });
        EXPECT_THROW(CReaderJson(cut.get()).Read(root), CException) << size;
    }
    EXPECT_EQ(DumpAsObject(document), "{a=<x\"y> b=[<1> - {c={}} <\\>] d=<12.5e3>}");
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

TEST(CReaderJson, NumbersInQuotesAndWithoutAreTheSame)
{
    for (const char* const text : {"12", "\"12\""})
    {
        EXPECT_EQ(Value<std::int32_t>(text), 12);
        EXPECT_EQ(Value<double>(text), 12.0);
        EXPECT_EQ(Value<std::string>(text), "12");
    }
    EXPECT_EQ(Value<signed char>("300"), 44);
    EXPECT_EQ(Value<double>("\"\""), 0.0);
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToInt", Value<std::int32_t>("\"\""));
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", Value<double>("\"1 \""));
}

TEST(CReaderJson, BoolIsOneOfTwoWordsAndAnyOtherTextMakesItFalse)
{
    EXPECT_EQ(Value<bool>("true"), true);
    EXPECT_EQ(Value<bool>("\"true\""), true);
    EXPECT_EQ(Value<bool>("false"), false);
    for (const char* const text : {"[1]", "[0]", "[True]", "[\"\"]", "[\"true \"]"})
    {
        bool value = true; // changed by a Read that finds nothing, which is the only one
        CElements root = ReadElements([&](IContainerReader& r) { EXPECT_FALSE(r.Read(0, value)); });
        CReaderJson(text).Read(root);
        EXPECT_FALSE(value) << text;
    }
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

TEST(CReaderJson, DatesAreHandedOverWithoutMilliseconds)
{
    const auto read = [](const char* text, CbDateTime& date)
    {
        CElements root = ReadElements([&](IContainerReader& r) { EXPECT_TRUE(r.Read(0, date)); });
        CReaderJson(text).Read(root);
    };
    for (const char* const text :
         {"[\"2024-03-07T09:05:01\"]", "[\"2024-03-07 09:05:01\"]", "[2024-03-07T09:05:01.250Z]"})
    {
        CbDateTime date;
        read(text, date);
        EXPECT_EQ(date.ToString("Y-m-d H:i:s v", false), "2024-03-07 09:05:01 000");
    }
    CbDateTime date("2001-02-03T04:05:06");
    EXPECT_RAISES(CbExceptionConversion, "CbDateTime::operator =", read("[2024-03-07]", date));
    EXPECT_EQ(date.ToString("Y-m-dTH:i:s", false), "2001-02-03T04:05:06");
}

TEST(CReaderJson, BlobsAreDecodedOnceAndKept)
{
    const auto expect = [](auto& r, auto key, std::string_view bytes)
    {
        const Vellum::BlobRange blob = r.GetBlob(key);
        EXPECT_EQ(std::string(blob.first, blob.second), bytes);
        EXPECT_EQ(r.GetBlob(key), blob);
    };
    // Each is followed by what would be Base64 too, were it not for the end of the text.
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            expect(r, "a", "ABC");
            expect(r, "w", "AB");
            EXPECT_EQ(Get<std::string>(r, "a"), "QUJD");
            for (const char* const key : {"absent", "object", "array"})
                EXPECT_EQ(r.GetBlob(key), Vellum::BlobRange());
            for (const char* const key : {"empty", "empty"})
                EXPECT_RAISES(CException, "Vellum::Base64::Decode", r.GetBlob(key));
        });
    const auto object = ExactText(R"({"a":"QUJD" "w":QUI "empty":"" "object":{} "array":[]})");
    CReaderJson(object.get()).Read(root);

    CElements elements = ReadElements(
        [&](IContainerReader& r)
        {
            expect(r, 1u, "A");
            for (const std::uint32_t index : {0u, 2u, 3u, 4000000000u})
                EXPECT_EQ(r.GetBlob(index), Vellum::BlobRange());
        });
    CReaderJson("[null \"QQ==\" []]").Read(elements);
}

template <class Reader, class Key>
void ExpectNoScalar(Reader& reader, Key key)
{
    CbDateTime date("2001-02-03T04:05:06");
    EXPECT_FALSE(Get<std::int32_t>(reader, key) || Get<bool>(reader, key) || Get<std::string>(reader, key));
    EXPECT_FALSE(reader.Read(key, date));
    EXPECT_EQ(date.GetYear(), 2001);
}

TEST(CReaderJson, WhatIsAbsentOrOfAnotherKindLeavesTheArgumentAlone)
{
    CFields object = ReadFields([](IDataReader&) { ADD_FAILURE(); });
    CElements sequence = ReadElements([](IContainerReader&) { ADD_FAILURE(); });
    CFields empty = ReadFields([](IDataReader& r) { EXPECT_EQ(r.GetKeyCount(), 0u); });
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            for (const char* const key : {"absent", "null", "object", "array", "OBJECT"})
                ExpectNoScalar(r, key);
            for (const char* const key : {"absent", "null", "text", "array"})
                EXPECT_FALSE(r.Read(key, object));
            for (const char* const key : {"absent", "null", "text", "object"})
                EXPECT_FALSE(r.Read(key, sequence));
            EXPECT_TRUE(r.Read("object", empty) && r.Read("object", empty));
        });
    CReaderJson("{\"null\":null,\"text\":x,\"object\":{},\"array\":[]}").Read(root);

    CElements elements = ReadElements(
        [&](IContainerReader& r)
        {
            for (const std::uint32_t index : {0u, 1u, 2u, 3u, 4000000000u})
                ExpectNoScalar(r, index);
            EXPECT_FALSE(r.Read(2, object) || r.Read(3, object) || r.Read(1, sequence) || r.Read(3, sequence));
            EXPECT_TRUE(r.Read(1, empty));
        });
    CReaderJson("[null {} []]").Read(elements);
}

TEST(CReaderJson, ManyMembersAreFoundAndEnumerated)
{
    std::string document = "{";
    for (int index = 0; index < 200; ++index)
        document += "\"key" + std::to_string(index) + "\":key" + std::to_string(index) + ",";
    CFields root = ReadFields(
        [](IDataReader& r)
        {
            ASSERT_EQ(r.GetKeyCount(), 200u);
            for (std::uint32_t index = 0; index < 200; ++index)
                EXPECT_EQ(Get<std::string>(r, r.GetKey(index)), r.GetKey(index));
        });
    CReaderJson(document + "}").Read(root);
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
