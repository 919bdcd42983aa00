#include <cmath>
#include <limits>
#include <locale.h>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Groundwork/CbDateTime.h"

#include "Vellum/Vellum.h"

#include "Vellum/src/SJsonElement.h"

#include "Support/Clients.h"
#include "Support/FailEachAllocation.h"
#include "Support/Raises.h"
#include "Support/Texts.h"

using Support::CElements;
using Support::CFields;
using Support::ExactText;
using Support::ReadElements;
using Support::ReadFields;
using Vellum::CException;
using Vellum::CReaderJson;
using Vellum::IContainerReader;
using Vellum::IContainerWriter;
using Vellum::IDataReader;
using Vellum::IDataWriter;

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

std::string Dump(std::string_view text, bool isObject)
{
    const auto document = ExactText(text);
    const CReaderJson reader(document.get());
    std::string dump;
    if (isObject)
    {
        CFields root = ReadFields([&](IDataReader& r) { DumpObject(r, dump); });
        reader.Read(root);
    }
    else
    {
        CElements root = ReadElements([&](IContainerReader& r) { DumpArray(r, dump); });
        reader.Read(root);
    }
    return dump;
}
std::string DumpAsObject(std::string_view text) { return Dump(text, true); }
std::string DumpAsArray(std::string_view text) { return Dump(text, false); }

// Reads `value`, a piece of JSON, as one kind of value. False if it isn't found.
template <class T>
bool ReadAs(std::string_view value, T& result)
{
    const auto document = ExactText("{\"a\":" + std::string(value) + "}");
    bool found = false;
    CFields root = ReadFields([&](IDataReader& r) { found = r.Read("a", result); });
    CReaderJson(document.get()).Read(root);

    const auto sequence = ExactText("[" + std::string(value) + "]"); // by index it is the same
    T element{};
    CElements elements = ReadElements([&](IContainerReader& r) { EXPECT_EQ(r.Read(0, element), found); });
    CReaderJson(sequence.get()).Read(elements);
    if constexpr (!std::is_floating_point_v<T>)
    {
        EXPECT_TRUE(!found || element == result);
    }
    return found;
}

template <class T>
T Value(std::string_view value)
{
    T result{};
    EXPECT_TRUE(ReadAs(value, result)) << value;
    return result;
}

TEST(CReaderJson, ParsesItsOwnDocumentsAndThoseOfOthers)
{
    const struct
    {
        const char* document;
        const char* dump;
    } objects[] = {
        {"{}", "{}"},
        {"{ }", "{}"},
        {"{\n}\n", "{}"},
        {"null", "{}"},
        {" \t\r\n\v\f{ \"a\" : 1 } ", "{a=<1>}"},
        {"{\"a\":1,}", "{a=<1>}"},
        {"{\"a\":1 \"b\":2}", "{a=<1> b=<2>}"},
        {"{\"a\":\"x\"\"b\":{}\"c\":[]}", "{a=<x> b={} c=[]}"},
        {"{\"a\":,\"b\":1}", "{a=<> b=<1>}"},
        {"{\"a\":}", "{a=<>}"},
        {"{\"a\":1,\"a\":2}", "{a=<2>}"},
        {"{\"a\":1,\"a\":null}", "{a=<1>}"},
        {"{\"a\":{\"b\":1},\"a\":[2]}", "{a=[<2>]}"},
        {"{\"a\":null}", "{}"},
        {"{\"a\":\"null\"}", "{a=<null>}"},
        {"{\"a\":nulL}", "{a=<nulL>}"},
        {"{\"a\":1]}", "{a=<1]>}"},
        {"{\"a\":x\"y}", "{a=<x\"y>}"},
        {"{\"a\":\"line\nfeed\"}", "{a=<line\nfeed>}"},
        {"{\"k\\n\":1}", "{k\\n=<1>}"},
        {"{\"\":1}", "{=<1>}"},
        {"{\"\xC3\xA9\":\xC3\xA9}", "{\xC3\xA9=<\xC3\xA9>}"},
        {"{}}}]", "{}"},
        {"{\"id\":1,\"name\":\"x\"}", "{name=<x> id=<1>}"},
        {"{\"o\":{\"o\":{\"x\":[[1],[{}]]}}}", "{o={o={x=[[<1>] [{}]]}}}"},
    };
    for (const auto& row : objects)
        EXPECT_EQ(DumpAsObject(row.document), row.dump) << row.document;

    const struct
    {
        const char* document;
        const char* dump;
    } arrays[] = {
        {"", "[]"},
        {"[]", "[]"},
        {"[\n]\n", "[]"},
        {"[1 2 3]", "[<1> <2> <3>]"},
        {"[1,,2]", "[<1> <> <2>]"},
        {"[null,1]", "[- <1>]"},
        {"[1,null , null,2,null]", "[<1> - - <2>]"},
        {"[1}]", "[<1}>]"},
        {"[12ab,True,NULL,--]", "[<12ab> <True> <NULL> <-->]"},
        {"[{}{}[]\"a\"\"b\"]", "[{} {} [] <a> <b>]"},
        {"[] and so on", "[]"},
    };
    for (const auto& row : arrays)
        EXPECT_EQ(DumpAsArray(row.document), row.dump) << row.document;
}

TEST(CReaderJson, RefusesDocumentsInTheNameOfTheRoutineThatMeetsTheFault)
{
    const struct
    {
        const char* document;
        const char* function;
    } objects[] = {
        {"", "SkipEmptyChars"},
        {" \n", "SkipEmptyChars"},
        {"{", "SkipEmptyChars"},
        {"{\"a\"", "SkipEmptyChars"},
        {"{\"a\":", "SkipEmptyChars"},
        {"{\"a\":1 ", "SkipEmptyChars"},
        {"{\"a\":\"b\"", "SkipEmptyChars"},
        {"{\"a\":null,", "SkipEmptyChars"},
        {"{\"a\":1", "ParseValue"},
        {"{\"a\":1]", "ParseValue"},
        {"{\"", "Vellum::ParseString"},
        {"{\"a", "Vellum::ParseString"},
        {"{\"a\\", "Vellum::ParseString"},
        {"{\"a\\\"", "Vellum::ParseString"},
        {"{\"a\":\"x\\", "Vellum::ParseString"},
        {"[]", "Vellum::ParseObject"},
        {"null\n", "Vellum::ParseObject"},
        {"\xEF\xBB\xBF{}", "Vellum::ParseObject"},
        {"{,}", "Vellum::ParseObject"},
        {"{a:1}", "Vellum::ParseObject"},
        {"{\"a\" 1}", "Vellum::ParseObject"},
        {"{\"a\":1,,\"b\":1}", "Vellum::ParseObject"},
        {"{\"a\":[1,]}", "Vellum::ParseArray"},
    };
    for (const auto& row : objects)
        EXPECT_RAISES(CException, row.function, DumpAsObject(row.document));

    const struct
    {
        const char* document;
        const char* function;
    } arrays[] = {
        {" ", "SkipEmptyChars"},
        {"[", "SkipEmptyChars"},
        {"[1,", "SkipEmptyChars"},
        {"[1", "ParseValue"},
        {"[1}", "ParseValue"},
        {"[\"", "Vellum::ParseString"},
        {"{}", "Vellum::ParseArray"},
        {"null", "Vellum::ParseArray"},
        {"[,1]", "Vellum::ParseArray"},
        {"[1,]", "Vellum::ParseArray"},
        {"[1, \n]", "Vellum::ParseArray"},
        {"[{,}]", "Vellum::ParseObject"},
    };
    for (const auto& row : arrays)
        EXPECT_RAISES(CException, row.function, DumpAsArray(row.document));

    const CReaderJson nothing(static_cast<const char*>(nullptr));
    CFields object;
    CElements sequence;
    EXPECT_RAISES(CException, "Vellum::CReaderJson::Read", nothing.Read(object));
    EXPECT_RAISES(CException, "Vellum::CReaderJson::Read", nothing.Read(sequence));
}

TEST(CReaderJson, ADocumentCutAnywhereIsRefusedBeforeTheClientSeesIt)
{
    const std::string document = "{\"a\": \"x\\\"y\", \"b\" : [1, null, {\"c\":{}}, \"\\\\\"] \"d\":12.5e3 }";
    const Support::CLogObserver quiet;
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

TEST(CReaderJson, NumbersInQuotesAndWithoutAreTheSame)
{
    for (const char* const text : {"12", "\"12\""})
    {
        EXPECT_EQ(Value<std::int32_t>(text), 12);
        EXPECT_EQ(Value<double>(text), 12.0);
        EXPECT_EQ(Value<std::string>(text), "12");
    }
    EXPECT_EQ(Value<std::int32_t>("1.50000000"), 1);
    EXPECT_EQ(Value<double>("1.50000000"), 1.5);
    EXPECT_EQ(Value<float>("0.100000001"), 0.1f);
    EXPECT_EQ(Value<std::int32_t>("12abc"), 12);
    EXPECT_EQ(Value<unsigned char>("300"), 44);
    EXPECT_EQ(Value<signed char>("300"), 44);
    EXPECT_EQ(Value<std::int16_t>("65536"), 0);
    EXPECT_EQ(Value<std::uint16_t>("-1"), 65535);
    EXPECT_EQ(Value<std::uint32_t>("0x10"), 16u);
    EXPECT_EQ(Value<std::uint64_t>("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(Value<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(Value<double>("\"\""), 0.0);
    EXPECT_TRUE(std::isnan(Value<double>("nan")));

    std::int32_t number = 7;
    double real = 7;
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToInt", ReadAs("\"\"", number));
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToInt", ReadAs("true", number));
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", ReadAs("12abc", real));
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", ReadAs("\"1 \"", real));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(real, 7);
}

TEST(CReaderJson, BoolIsOneOfTwoWords)
{
    EXPECT_TRUE(Value<bool>("true"));
    EXPECT_TRUE(Value<bool>("\"true\""));
    EXPECT_FALSE(Value<bool>("false"));
    for (const char* const text : {"1", "0", "True", "\"\"", "\"true \""})
    {
        bool value = true;
        EXPECT_FALSE(ReadAs(text, value)) << text;
        EXPECT_FALSE(value) << text; // the one Read that finds nothing and yet changes its argument
    }
}

TEST(CReaderJson, CharIsTheFirstRawByte)
{
    EXPECT_EQ(Value<char>("\"\""), '\0');
    EXPECT_EQ(Value<char>("\"abc\""), 'a');
    EXPECT_EQ(Value<char>("7"), '7');
    EXPECT_EQ(Value<char>("\"\\n\""), '\\');
    EXPECT_EQ(Value<char>("\"\\\\\""), '\\');
    EXPECT_EQ(Value<char>("\"\\\"\""), '"');
    EXPECT_EQ(Value<char>("\"\\\"x\""), '\\'); // that quote is no char of its own
}

TEST(CReaderJson, TextsAreUnescaped)
{
    const struct
    {
        const char* raw;
        std::string text;
    } table[] = {
        {R"(x\ty\u0041)", "x\tyA"},
        {R"(\a\b\f\n\r\t\v\"\\\/)", "\a\b\f\n\r\t\v\"\\/"},
        {R"(\q\0\e')", "q0e'"},
        {R"(\x414\x4g\xg\x)", "A4\x04gxgx"},
        {R"(\u41 \u00e9\u20AC5\uG)", "A \xC3\xA9\xE2\x82\xAC"
                                     "5uG"},
        {R"(\U0001F600\U41\U)", "\xF0\x9F\x98\x80"
                                "AU"},
        {R"(\uD83D\uDE00)", "\xED\xA0\xBD\xED\xB8\x80"},
        {R"(\U0010FFFF\U00110000\UFFFFFFFF!)", "\xF4\x8F\xBF\xBF!"},
        {R"(\xE9\x7F\x80\u7FF\u800)", "\xC3\xA9\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80"},
        {R"(a\u0000b)", std::string("a\0b", 3)},
        {"\\\xC3\xA9", "\xA9"},
        {"\x01\x1F\xC3\xA9\xFF", "\x01\x1F\xC3\xA9\xFF"},
    };
    for (const auto& row : table)
        EXPECT_EQ(Value<std::string>('"' + std::string(row.raw) + '"'), row.text) << row.raw;
    EXPECT_EQ(Value<std::string>("x\\"), "x\\"); // a word may end in a backslash
}

TEST(CReaderJson, WideTextsAreUtf16UpToTheFirstNul)
{
    EXPECT_EQ(Value<std::wstring>("\"\xC3\xA9\\t\""), L"\u00E9\t");
    EXPECT_EQ(Value<std::wstring>("\"\\U0001F600\""), (std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)}));
    EXPECT_EQ(Value<std::wstring>("\"a\\u0000b\""), L"a");
    EXPECT_EQ(Value<std::wstring>("\"\xE4\""), L"\uFFFD");
    EXPECT_EQ(Value<std::wstring>("\"\\uD83D\""), L"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Value<std::wstring>("\"\""), L"");
}

TEST(CReaderJson, DatesAreHandedOverWithoutMilliseconds)
{
    for (const char* const text : {"\"2024-03-07T09:05:01\"", "\"2024-03-07 09:05:01\"", "2024-03-07T09:05:01.250Z"})
    {
        CbDateTime date;
        CElements root = ReadElements([&](IContainerReader& r) { EXPECT_TRUE(r.Read(0, date)); });
        const std::string document = "[" + std::string(text) + "]";
        CReaderJson(document).Read(root);
        EXPECT_EQ(date.ToString("Y-m-d H:i:s v", false), "2024-03-07 09:05:01 000");
    }
    CbDateTime date("2001-02-03T04:05:06");
    for (const char* const text : {"[\"\"]", "[2024-03-07]", "[\"2024-03-0709:05:01\"]", "[2024-03-07T09:05:0]"})
    {
        CElements root = ReadElements([&](IContainerReader& r) { r.Read(0, date); });
        EXPECT_RAISES(CbExceptionConversion, "CbDateTime::operator =", CReaderJson(text).Read(root));
    }
    EXPECT_EQ(date.ToString("Y-m-dTH:i:s", false), "2001-02-03T04:05:06");
}

TEST(CReaderJson, BlobsAreDecodedOnceAndKept)
{
    // Each is followed by what would be Base64 too, were it not for the end of the text.
    CFields root = ReadFields(
        [](IDataReader& r)
        {
            const Vellum::BlobRange first = r.GetBlob("a");
            EXPECT_EQ(std::string(first.first, first.second), "ABC");
            const Vellum::BlobRange word = r.GetBlob("w");
            EXPECT_EQ(std::string(word.first, word.second), "AB");
            EXPECT_EQ(r.GetBlob("a"), first);
            std::string text;
            EXPECT_TRUE(r.Read("a", text));
            EXPECT_EQ(text, "QUJD");
            for (const char* const key : {"absent", "object", "array"})
                EXPECT_EQ(r.GetBlob(key), Vellum::BlobRange());
            EXPECT_RAISES(CException, "Vellum::Base64::Decode", r.GetBlob("empty"));
            EXPECT_RAISES(CException, "Vellum::Base64::Decode", r.GetBlob("empty"));
        });
    const auto object = ExactText(R"({"a":"QUJD" "w":QUI "empty":"" "object":{} "array":[]})");
    CReaderJson(object.get()).Read(root);

    CElements elements = ReadElements(
        [](IContainerReader& r)
        {
            const Vellum::BlobRange first = r.GetBlob(1);
            EXPECT_EQ(std::string(first.first, first.second), "A");
            EXPECT_EQ(r.GetBlob(1), first);
            for (const std::uint32_t index : {0u, 2u, 3u, 4000000000u})
                EXPECT_EQ(r.GetBlob(index), Vellum::BlobRange());
        });
    CReaderJson("[null \"QQ==\" []]").Read(elements);
}

TEST(CReaderJson, WhatIsAbsentOrOfAnotherKindLeavesTheArgumentAlone)
{
    const auto expectNothing = [](auto& reader, auto key)
    {
        std::int32_t number = 5;
        bool truth = true;
        std::string text = "kept";
        CbDateTime date("2001-02-03T04:05:06");
        EXPECT_FALSE(reader.Read(key, number) || reader.Read(key, truth) || reader.Read(key, text) ||
                     reader.Read(key, date));
        EXPECT_TRUE(number == 5 && truth && text == "kept" && date.GetYear() == 2001);
    };
    CFields never = ReadFields([](IDataReader&) { ADD_FAILURE(); });
    CElements neverEither = ReadElements([](IContainerReader&) { ADD_FAILURE(); });
    CFields empty = ReadFields([](IDataReader& r) { EXPECT_EQ(r.GetKeyCount(), 0u); });
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            for (const char* const key : {"absent", "null", "object", "array", "OBJECT"})
                expectNothing(r, key);
            for (const char* const key : {"absent", "null", "text", "array"})
                EXPECT_FALSE(r.Read(key, never)) << key;
            for (const char* const key : {"absent", "null", "text", "object"})
                EXPECT_FALSE(r.Read(key, neverEither)) << key;
            EXPECT_TRUE(r.Read("object", empty) && r.Read("object", empty));
        });
    CReaderJson("{\"null\":null,\"text\":x,\"object\":{},\"array\":[]}").Read(root);

    CElements elements = ReadElements(
        [&](IContainerReader& r)
        {
            for (const std::uint32_t index : {0u, 1u, 2u, 3u, 4000000000u})
                expectNothing(r, index);
            EXPECT_FALSE(r.Read(2, never) || r.Read(1, neverEither) || r.Read(3, never) || r.Read(3, neverEither));
            EXPECT_TRUE(r.Read(1, empty));
        });
    CReaderJson("[null {} []]").Read(elements);
}

TEST(CReaderJson, ManyMembersAreFoundAndEnumerated)
{
    std::string document = "{";
    for (int index = 0; index < 200; ++index)
        document += "\"key" + std::to_string(index) + "\":" + std::to_string(index) + ",";
    document += "\"inner\":" + document + "}}";
    const auto expectAll = [](IDataReader& r)
    {
        std::vector<bool> seen(200);
        for (std::uint32_t index = 0; index < r.GetKeyCount(); ++index)
            if (std::int32_t number = 0; std::string(r.GetKey(index)) != "inner")
            {
                EXPECT_TRUE(r.Read(r.GetKey(index), number));
                EXPECT_EQ(r.GetKey(index), "key" + std::to_string(number));
                seen[static_cast<std::size_t>(number)] = true;
            }
        EXPECT_EQ(seen, std::vector<bool>(200, true));
    };
    CFields inner = ReadFields(
        [&](IDataReader& r)
        {
            EXPECT_EQ(r.GetKeyCount(), 200u);
            expectAll(r);
        });
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            EXPECT_EQ(r.GetKeyCount(), 201u);
            expectAll(r);
            EXPECT_TRUE(r.Read("inner", inner));
        });
    CReaderJson(document).Read(root);
}

TEST(CReaderJson, ReadsAsOftenAsAskedAndCopiesReadTheSameText)
{
    const std::string document = "{\"a\":1}";
    std::int32_t sum = 0;
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            std::int32_t number = 0;
            EXPECT_TRUE(r.Read("a", number));
            sum += number;
        });
    const CReaderJson reader(document);
    CReaderJson copy(reader);
    CReaderJson assigned("[]");
    assigned = copy;
    reader.Read(root);
    reader.Read(root);
    copy.Read(root);
    assigned.Read(root);
    EXPECT_EQ(sum, 4);
}

TEST(CReaderJson, NoLocaleChangesAValueAndTheClientsExceptionPassesThrough)
{
    const char* const german = "de_DE.UTF-8";
    const auto expectPoints = []
    {
        EXPECT_EQ(Value<double>("1234.5"), 1234.5);
        EXPECT_EQ(Value<double>("+1.5"), 1.5); // a way through the C library
        double value = 0;
        EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", ReadAs("\"1,5\"", value));
    };
    const std::locale oldGlobal = std::locale::global(std::locale(german)); // of C++, and of the process
    expectPoints();
    std::locale::global(oldGlobal);

    const locale_t germanC = newlocale(LC_ALL_MASK, german, nullptr);
    const locale_t oldThread = uselocale(germanC);
    expectPoints();
    CFields root = ReadFields([](IDataReader&) { throw 42; });
    EXPECT_THROW(CReaderJson("{}").Read(root), int);
    EXPECT_EQ(uselocale(nullptr), germanC);
    uselocale(oldThread);
    freelocale(germanC);
}

// One value of every kind, as fields and as elements.
struct SAllKinds
{
    std::vector<unsigned char> blob{0, 1, 255};
    CbDateTime date{"0987-01-02T03:04:05"};
    std::wstring wide = L"\u00E9\"\U0001F600";
    std::string text = "tab\tquote\"backslash\\\x01\xFF";
    char character = '"';
    double real = -0.1;
    float shortReal = 1e-30f;
    std::int64_t i64 = std::numeric_limits<std::int64_t>::min();
    std::uint64_t u64 = std::numeric_limits<std::uint64_t>::max();
    std::int32_t i32 = -1;
    std::uint32_t u32 = 0xFFFFFFFF;
    std::int16_t i16 = -32768;
    std::uint16_t u16 = 65535;
    signed char i8 = -128;
    unsigned char u8 = 255;
    bool truth = true;

    // Calls visit(name, value) for all that have a Read.
    template <class Self, class Visit>
    static void ForEach(Self& self, const Visit& visit)
    {
        visit("date", self.date);
        visit("wide", self.wide);
        visit("text", self.text);
        visit("character", self.character);
        visit("real", self.real);
        visit("shortReal", self.shortReal);
        visit("i64", self.i64);
        visit("u64", self.u64);
        visit("i32", self.i32);
        visit("u32", self.u32);
        visit("i16", self.i16);
        visit("u16", self.u16);
        visit("i8", self.i8);
        visit("u8", self.u8);
        visit("truth", self.truth);
    }

    std::string Spell() const
    {
        std::ostringstream spelled;
        spelled.precision(17);
        spelled << std::string(blob.begin(), blob.end()) << date.ToString("Y-m-dTH:i:s", false);
        for (const wchar_t unit : wide)
            spelled << ' ' << static_cast<unsigned>(unit);
        spelled << text << character << real << ' ' << shortReal << ' ' << i64 << ' ' << u64 << ' ' << i32 << ' ' << u32
                << ' ' << i16 << ' ' << u16 << ' ' << int{i8} << ' ' << int{u8} << ' ' << truth;
        return spelled.str();
    }
};

void WriteAll(const SAllKinds& all, std::ostringstream& stream)
{
    const CElements elements(
        [&](IContainerWriter& w)
        {
            w.Write(all.blob.size(), all.blob.data());
            SAllKinds::ForEach(all, [&](const char*, const auto& value) { w.Write(value); });
        });
    const CFields root(
        [&](IDataWriter& w)
        {
            w.Write("blob", all.blob.size(), all.blob.data());
            SAllKinds::ForEach(all, [&](const char* key, const auto& value) { w.Write(key, value); });
            w.Write("elements", elements);
        });
    Vellum::CWriterJson(stream).Write(root);
}

void ReadAll(const std::string& document, SAllKinds& fields, SAllKinds& elements)
{
    CElements sequence = ReadElements(
        [&](IContainerReader& r)
        {
            const Vellum::BlobRange range = r.GetBlob(0);
            elements.blob.assign(range.first, range.second);
            std::uint32_t index = 0;
            SAllKinds::ForEach(elements, [&](const char*, auto& value) { EXPECT_TRUE(r.Read(++index, value)); });
        });
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            const Vellum::BlobRange range = r.GetBlob("blob");
            fields.blob.assign(range.first, range.second);
            SAllKinds::ForEach(fields, [&](const char* key, auto& value) { EXPECT_TRUE(r.Read(key, value)); });
            EXPECT_TRUE(r.Read("elements", sequence));
        });
    CReaderJson(document).Read(root);
}

SAllKinds Blank() { return {{}, CbDateTime(std::uint64_t{0}), {}, {}, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, false}; }

TEST(CReaderJson, ReadsBackEveryKindThatTheWriterWrites)
{
    SAllKinds written;
    written.wide = {wchar_t(0xE9), L'"', wchar_t(0xD83D), wchar_t(0xDE00)};
    for (const char character : {'"', '\\', '\0', 'x', '\n', '\xE9'})
    {
        written.character = character;
        std::ostringstream stream;
        WriteAll(written, stream);
        SAllKinds fields = Blank();
        SAllKinds elements = Blank();
        ReadAll(stream.str(), fields, elements);
        EXPECT_EQ(fields.Spell(), written.Spell());
        EXPECT_EQ(elements.Spell(), written.Spell());
    }
}

TEST(CReaderJson, AnyAllocationMayFail)
{
    const Support::CLogObserver quiet;
    const SAllKinds written;
    std::string document;
    EXPECT_GT(Support::FailEachAllocation(
                  [&]
                  {
                      try
                      {
                          std::ostringstream stream;
                          WriteAll(written, stream);
                          document = stream.str();
                      }
                      catch (const IException&)
                      {
                      }
                      catch (const std::bad_alloc&)
                      {
                      }
                  }),
              3u);
    EXPECT_GT(Support::FailEachAllocation(
                  [&]
                  {
                      try
                      {
                          SAllKinds fields = Blank();
                          SAllKinds elements = Blank();
                          ReadAll(document, fields, elements);
                      }
                      catch (const IException&)
                      {
                      }
                      catch (const std::bad_alloc&)
                      {
                      }
                  }),
              10u);
    SAllKinds fields = Blank();
    SAllKinds elements = Blank();
    ReadAll(document, fields, elements);
    EXPECT_EQ(fields.text, written.text);
}

TEST(SJsonElement, HasThreeKindsAndNoFourth)
{
    Vellum::SJsonDocument document;
    for (const std::uint32_t kind : {0u, 2u, 3u})
        EXPECT_EQ(Vellum::SJsonElement(kind, document).kind, kind);
    for (const std::uint32_t kind : {1u, 4u})
        EXPECT_RAISES(CException, "Vellum::SJsonElement::SJsonElement", Vellum::SJsonElement(kind, document));
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

    const std::string getFreeElement = "CbPlexManager<" + node + ",0,unsigned int>::getFreeElement";
    std::vector<std::string> functions;
    const Support::CLogObserver quiet;
    Support::FailEachAllocation(
        [&]
        {
            try
            {
                DumpAsObject("{\"a\":{\"b\":1}}");
            }
            catch (const CbExceptionContainer& exception)
            {
                functions.push_back(exception.GetFunctionName());
            }
            catch (const std::bad_alloc&)
            {
            }
        });
    EXPECT_EQ(functions, std::vector<std::string>(functions.size(), getFreeElement));
    EXPECT_EQ(functions.size(), 4u); // the record and the storage of the pools of the root and of all others
}

} // namespace
