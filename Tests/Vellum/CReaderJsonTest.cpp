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
    const std::pair<const char*, const char*> objects[] = {
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
    for (const auto& [document, expected] : objects)
        EXPECT_EQ(DumpAsObject(document), expected) << document;

    const std::pair<const char*, const char*> arrays[] = {
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
    for (const auto& [document, expected] : arrays)
        EXPECT_EQ(DumpAsArray(document), expected) << document;
}

TEST(CReaderJson, RefusesDocumentsInTheNameOfTheRoutineThatMeetsTheFault)
{
    const std::pair<const char*, const char*> objects[] = {
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
    for (const auto& [document, expected] : objects)
        EXPECT_RAISES(CException, expected, DumpAsObject(document));

    const std::pair<const char*, const char*> arrays[] = {
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
    for (const auto& [document, expected] : arrays)
        EXPECT_RAISES(CException, expected, DumpAsArray(document));

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
    const std::pair<std::string, std::string> table[] = {
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
    for (const auto& [raw, text] : table)
        EXPECT_EQ(Value<std::string>('"' + raw + '"'), text) << raw;
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

template <class Reader, class Key>
void ExpectNoScalar(Reader& reader, Key key)
{
    std::int32_t number = 5;
    bool truth = true;
    std::string text = "kept";
    CbDateTime date("2001-02-03T04:05:06");
    EXPECT_FALSE(reader.Read(key, number) || reader.Read(key, truth) || reader.Read(key, text) ||
                 reader.Read(key, date));
    EXPECT_TRUE(number == 5 && truth && text == "kept" && date.GetYear() == 2001);
}

TEST(CReaderJson, WhatIsAbsentOrOfAnotherKindLeavesTheArgumentAlone)
{
    CFields never = ReadFields([](IDataReader&) { ADD_FAILURE(); });
    CElements neverEither = ReadElements([](IContainerReader&) { ADD_FAILURE(); });
    CFields empty = ReadFields([](IDataReader& r) { EXPECT_EQ(r.GetKeyCount(), 0u); });
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            for (const char* const key : {"absent", "null", "object", "array", "OBJECT"})
                ExpectNoScalar(r, key);
            EXPECT_FALSE(r.Read("absent", never) || r.Read("null", never) || r.Read("text", never) ||
                         r.Read("array", never));
            EXPECT_FALSE(r.Read("absent", neverEither) || r.Read("null", neverEither) || r.Read("text", neverEither) ||
                         r.Read("object", neverEither));
            EXPECT_TRUE(r.Read("object", empty) && r.Read("object", empty));
        });
    CReaderJson("{\"null\":null,\"text\":x,\"object\":{},\"array\":[]}").Read(root);

    CElements elements = ReadElements(
        [&](IContainerReader& r)
        {
            for (const std::uint32_t index : {0u, 1u, 2u, 3u, 4000000000u})
                ExpectNoScalar(r, index);
            EXPECT_FALSE(r.Read(2, never) || r.Read(3, never) || r.Read(1, neverEither) || r.Read(3, neverEither));
            EXPECT_TRUE(r.Read(1, empty));
        });
    CReaderJson("[null {} []]").Read(elements);
}

TEST(CReaderJson, ManyMembersAreFoundAndEnumerated)
{
    std::string document = "{\"inner\":{";
    for (int index = 0; index < 200; ++index)
        document += "\"key" + std::to_string(index) + "\":" + std::to_string(index) + ",";
    CFields inner = ReadFields(
        [&](IDataReader& r)
        {
            ASSERT_EQ(r.GetKeyCount(), 200u);
            std::vector<bool> seen(200);
            for (std::uint32_t index = 0; index < r.GetKeyCount(); ++index)
            {
                std::uint32_t number = 0;
                EXPECT_TRUE(r.Read(r.GetKey(index), number));
                EXPECT_EQ(r.GetKey(index), "key" + std::to_string(number));
                seen[number] = true;
            }
            EXPECT_EQ(seen, std::vector<bool>(200, true));
        });
    CFields root = ReadFields([&](IDataReader& r) { EXPECT_TRUE(r.Read("inner", inner)); });
    document += "}}";
    CReaderJson(document).Read(root);
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

template <class T>
T RoundTrip(const T& value)
{
    std::ostringstream stream;
    Vellum::CWriterJson(stream).Write(CElements([&](IContainerWriter& w) { w.Write(value); }));
    const std::string document = stream.str();
    T result{};
    CElements root = ReadElements([&](IContainerReader& r) { EXPECT_TRUE(r.Read(0, result)); });
    CReaderJson(document).Read(root);
    return result;
}

template <class T>
void ExpectLimitsComeBack()
{
    for (const T value : {std::numeric_limits<T>::min(), std::numeric_limits<T>::lowest(),
                          std::numeric_limits<T>::max(), std::numeric_limits<T>::denorm_min(), static_cast<T>(0.1)})
        EXPECT_EQ(RoundTrip(value), value);
}

TEST(CReaderJson, ReadsBackWhatTheWriterWrites)
{
    ExpectLimitsComeBack<bool>();
    ExpectLimitsComeBack<signed char>();
    ExpectLimitsComeBack<unsigned char>();
    ExpectLimitsComeBack<std::int16_t>();
    ExpectLimitsComeBack<std::uint16_t>();
    ExpectLimitsComeBack<std::int32_t>();
    ExpectLimitsComeBack<std::uint32_t>();
    ExpectLimitsComeBack<std::int64_t>();
    ExpectLimitsComeBack<std::uint64_t>();
    ExpectLimitsComeBack<float>();
    ExpectLimitsComeBack<double>();
    for (int byte = 0; byte < 256; ++byte)
    {
        EXPECT_EQ(RoundTrip(static_cast<char>(byte)), static_cast<char>(byte));
        const std::string text = 'x' + std::string(byte == 0 ? 0 : 3, static_cast<char>(byte));
        EXPECT_EQ(RoundTrip(text), text);
    }
    const std::wstring wide{wchar_t(0xE9), L'"', L'\\', L'\n', wchar_t(0xD83D), wchar_t(0xDE00)};
    EXPECT_EQ(RoundTrip(wide), wide);
}

TEST(CReaderJson, AnyAllocationMayFail)
{
    const Support::CLogObserver quiet;
    const std::string text(100, '\n');
    const CFields inner([&](IDataWriter& w) { w.Write("a key that is longer than any small text", text); });
    const CElements written([&](IContainerWriter& w) { (w.Write(inner), w.Write(text.size(), text.data())); });
    bool isComplete = false;
    const auto writeAndRead = [&]
    {
        std::ostringstream stream;
        Vellum::CWriterJson(stream).Write(written);
        const std::string document = stream.str();
        std::string read;
        CFields object = ReadFields([&](IDataReader& r) { r.Read(r.GetKey(0), read); });
        CElements root = ReadElements(
            [&](IContainerReader& r)
            {
                r.Read(0, object);
                const Vellum::BlobRange blob = r.GetBlob(1);
                isComplete = read == text && std::string(blob.first, blob.second) == text;
            });
        CReaderJson(document).Read(root);
    };
    const std::uint32_t failures = Support::FailEachAllocation(
        [&]
        {
            isComplete = false;
            try
            {
                writeAndRead();
            }
            catch (const IException&)
            {
            }
            catch (const std::bad_alloc&)
            {
            }
        });
    EXPECT_GT(failures, 15u);
    EXPECT_TRUE(isComplete);
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
