#include <locale>
#include <streambuf>

#include "Vellum/Vellum.h"

#include "DocsExample.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

using Vellum::CException;
using Vellum::CWriterJson;
using Vellum::IContainerWriter;
using Vellum::IDataWriter;

namespace
{

template <class Root>
std::string WriteJson(const Root& root, bool showPoint = true)
{
    std::ostringstream stream;
    CWriterJson writer(stream);
    writer.SetShowPoint(showPoint);
    writer.Write(root);
    return stream.str();
}

// The text of one value, as the only element of a sequence.
template <class Value>
std::string ValueText(const Value& value, bool showPoint = true)
{
    const std::string text = WriteJson(ElementsOf(value), showPoint);
    return text.substr(2, text.size() - 5); // between "[→" and "\n]\n"
}

// Sequences of sequences, the innermost empty.
void WriteNested(IContainerWriter& writer, int depth)
{
    if (depth > 0)
        writer.Write(CElements([=](IContainerWriter& w) { WriteNested(w, depth - 1); }));
}

TEST(CWriterJson, LaysOutTheWorkedExample)
{
    const CElements rows = ElementsOf(FieldsOf("a", 1), FieldsOf("a", 2));
    const CFields root =
        FieldsOf("name", "x", "count", 3, "ratio", 1.5, "ok", true, "inner", FieldsOf("a", 1, "b", "two"), "list",
                 ElementsOf(1, 2), "none", FieldsOf(), "nothing", ElementsOf(), "rows", rows);
    EXPECT_EQ(WriteJson(root), JsonExample());
}

TEST(CWriterJson, EmptyRootsAndDeepOnes)
{
    EXPECT_EQ(WriteJson(CFields()), "{\n}\n");
    EXPECT_EQ(WriteJson(CElements()), "[\n]\n");
    EXPECT_EQ(WriteJson(CElements([](IContainerWriter& w) { WriteNested(w, 2); })), Lines("[→[→[", "→→]", "→]", "]"));

    // Deeper than any block of TABs and than any reader would follow.
    const std::string deep = WriteJson(CElements([](IContainerWriter& w) { WriteNested(w, 3000); }));
    EXPECT_NE(deep.find('\n' + std::string(3000, '\t') + "]\n"), std::string::npos);
}

TEST(CWriterJson, KeysStandAsTheyAreAndAsOftenAsTheyAreWritten)
{
    EXPECT_EQ(WriteJson(FieldsOf("a b", 1, "a b", 2, "", 3, "\\n\xC3\xA9", 4)),
              Lines("{→\"a b\":1,", "→\"a b\":2,", "→\"\":3,", "→\"\\n\xC3\xA9\":4", "}"));
}

TEST(CWriterJson, TextsAreEscapedByteByByteUpToTheirFirstNul)
{
    EXPECT_EQ(ValueText(std::string("\b\t\n\f\r\"\\")), R"("\b\t\n\f\r\"\\")");
    EXPECT_EQ(ValueText(std::string("\x01\x1F\x7F/\xC3\xA9\xFF\v")), "\"\x01\x1F\x7F/\xC3\xA9\xFF\v\"");
    EXPECT_EQ(ValueText(std::string("cut\0off", 7)), "\"cut\"");
    EXPECT_EQ(ValueText(std::string()), "\"\"");
    for (std::size_t at = 0; at < 20; ++at) // in every place of a block of eight
    {
        std::string text(20, 'x');
        text[at] = '\n';
        EXPECT_EQ(ValueText(text), '"' + std::string(at, 'x') + "\\n" + std::string(19 - at, 'x') + '"');
    }
    const std::string large(100000, 'y');
    EXPECT_EQ(ValueText(large + '"' + large), '"' + large + "\\\"" + large + '"');

    EXPECT_EQ(ValueText(std::wstring(L"\u00E9\t\"")), "\"\xC3\xA9\\t\\\"\""); // wide text as UTF-8
    EXPECT_EQ(ValueText(std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)}), "\"\xF0\x9F\x98\x80\"");
    EXPECT_EQ(ValueText(std::wstring(L"cut\0off", 7)), "\"cut\"");
    EXPECT_EQ(ValueText(std::wstring()), "\"\"");
}

TEST(CWriterJson, BlobsAreBase64OnOneLine)
{
    EXPECT_EQ(WriteJson(CElements([](IContainerWriter& w) { w.Write(0, nullptr); })), Lines("[→\"\"", "]"));
    const std::string zeros(100, '\0');
    EXPECT_EQ(WriteJson(CFields([&](IDataWriter& w) { w.Write("b", zeros.size(), zeros.data()); })),
              Lines("{→\"b\":\"" + std::string(134, 'A') + "==\"", "}"));
}

TEST(CWriterJson, ABlobThatIsTooLargeLeavesNothingOfItsItem)
{
    std::ostringstream stream;
    const CElements root([](IContainerWriter& w) { (w.Write(1), w.Write(std::size_t{1} << 32, "not that much")); });
    const CLogObserver log;
    EXPECT_THROW(CWriterJson(stream).Write(root), CException);
    EXPECT_EQ(log.GetFunctions(), (std::vector<std::string>{"Vellum::Base64::Encode", "Vellum::CWriterJson::Write"}));
    EXPECT_EQ(stream.str(), "[\t1");
}

TEST(CWriterJson, DatesHaveNineteenCharacters)
{
    CbDateTime date("2024-03-07T09:05:01");
    date.SetMilliseconds(250);
    EXPECT_EQ(ValueText(date), "\"2024-03-07T09:05:01\"");
    EXPECT_EQ(ValueText(CbDateTime("0987-01-02 03:04:05")), "\"0987-01-02T03:04:05\"");
    date.SetMonth(13); // nothing is validated
    EXPECT_EQ(WriteJson(FieldsOf("d", date)), Lines("{→\"d\":\"2024-13-07T09:05:01\"", "}"));
}

TEST(CWriterJson, CharIsOneRawByteUnlessThatWouldBreakTheQuotes)
{
    const std::pair<char, const char*> table[] = {{'a', "\"a\""},   {'\n', "\"\n\""},  {'\xE9', "\"\xE9\""},
                                                  {'"', R"("\"")"}, {'\\', R"("\\")"}, {'\0', R"("")"}};
    for (const auto& [character, text] : table)
        EXPECT_EQ(ValueText(character), text);
}

TEST(CWriterJson, IntegersOfEveryWidthAreNumbers)
{
    EXPECT_EQ(WriteJson(ElementsOf(static_cast<signed char>(-128), static_cast<unsigned char>(255),
                                   std::int16_t{-32768}, std::uint16_t{65535}, std::int32_t{-2147483647 - 1},
                                   std::uint32_t{4294967295}, std::numeric_limits<std::int64_t>::min(),
                                   std::numeric_limits<std::uint64_t>::max(), false)),
              Lines("[→-128,", "→255,", "→-32768,", "→65535,", "→-2147483648,", "→4294967295,",
                    "→-9223372036854775808,", "→18446744073709551615,", "→false", "]"));
}

TEST(CWriterJson, RealsHaveNineOrSeventeenDigits)
{
    const struct
    {
        double value;
        const char* texts[4]; // float and double with the point shown, float and double without
    } table[] = {
        {1.5, {"1.50000000", "1.5000000000000000", "1.5", "1.5"}},
        {0.1, {"0.100000001", "0.10000000000000001", "0.100000001", "0.10000000000000001"}},
        {100, {"100.000000", "100.00000000000000", "100", "100"}},
        {0, {"0.00000000", "0.0000000000000000", "0", "0"}},
        {1e20, {"1.00000002e+20", "1.0000000000000000e+20", "1.00000002e+20", "1e+20"}},
        {std::nan(""), {"nan", "nan", "nan", "nan"}},
        {-HUGE_VAL, {"-inf", "-inf", "-inf", "-inf"}},
    };
    for (const auto& row : table)
    {
        EXPECT_EQ(ValueText(static_cast<float>(row.value)), row.texts[0]);
        EXPECT_EQ(ValueText(row.value), row.texts[1]);
        EXPECT_EQ(ValueText(static_cast<float>(row.value), false), row.texts[2]);
        EXPECT_EQ(ValueText(row.value, false), row.texts[3]);
    }
}

TEST(CWriterJson, ShowPointReachesNestedLevelsAndTakesEffectAtTheNextWrite)
{
    std::ostringstream stream;
    CWriterJson writer(stream);
    const CFields root(
        [&](IDataWriter& w)
        {
            writer.SetShowPoint(false);
            w.Write("i", FieldsOf("x", 100.0));
        });
    writer.Write(root);
    CWriterJson(writer).Write(root); // a copy has the setting and the stream
    EXPECT_EQ(stream.str(), Lines("{→\"i\":", "→{→\"x\":100.00000000000000", "→}", "}") +
                                Lines("{→\"i\":", "→{→\"x\":100", "→}", "}"));
}

// One of each form of number.
const CElements Numbers = ElementsOf(static_cast<signed char>(-1), 255, 1.5, true, "text");

TEST(CWriterJson, FlagsOfTheClientsStreamApplyToNumbers)
{
    std::ostringstream stream;
    stream << std::hex << std::showbase << std::uppercase << std::fixed << std::showpos;
    CWriterJson(stream).Write(Numbers);
    EXPECT_EQ(stream.str(), Lines("[→0XFFFF,", "→0XFF,", "→+1.50000000000000000,", "→true,", "→\"text\"", "]"));

    stream.str("");
    stream.flags(std::ios_base::dec | std::ios_base::left);
    stream.fill('*');
    const CElements wide(
        [&](IContainerWriter& w)
        {
            w.Write("no number");
            stream.width(5);
            (w.Write(7), w.Write(8));
            stream.width(6);
            w.Write(true);
            stream.width(20);
            w.Write(0.5);
        });
    CWriterJson(stream).Write(wide);
    EXPECT_EQ(stream.str(), Lines("[→\"no number\",", "→7****,", "→8,", "→true**,", "→0.50000000000000000*", "]"));
}

TEST(CWriterJson, PrecisionShowpointAndBoolalphaStayOnTheStreamAsSetLast)
{
    std::ostringstream stream;
    CWriterJson writer(stream);
    writer.Write(ElementsOf("text"));
    EXPECT_EQ(stream.precision(), 6);
    EXPECT_EQ(stream.flags(), std::ios_base::dec | std::ios_base::skipws);

    writer.Write(Numbers);
    EXPECT_EQ(stream.precision(), 17);
    EXPECT_EQ(stream.flags(),
              std::ios_base::dec | std::ios_base::skipws | std::ios_base::showpoint | std::ios_base::boolalpha);

    writer.SetShowPoint(false);
    writer.Write(ElementsOf(1.5f));
    EXPECT_EQ(stream.precision(), 9);
    EXPECT_EQ(stream.flags(), std::ios_base::dec | std::ios_base::skipws | std::ios_base::boolalpha);
}

// Decimal comma and digit grouping, in each of the ways in which a program can ask for them.
TEST(CWriterJson, NoLocaleChangesANumber)
{
    const std::locale german("de_DE.UTF-8");
    const auto expectPoints = [](const std::locale& ofStream)
    {
        for (const bool flags : {false, true})
        {
            std::ostringstream stream;
            stream.imbue(ofStream);
            if (flags)
                stream << std::showpos << std::fixed;
            CWriterJson(stream).Write(ElementsOf(1234567, 1234.5));
            EXPECT_EQ(stream.str(), flags ? Lines("[→+1234567,", "→+1234.50000000000000000", "]")
                                          : Lines("[→1234567,", "→1234.5000000000000", "]"));
            EXPECT_EQ(stream.getloc(), ofStream);
        }
    };
    expectPoints(german); // of the stream alone
    {
        const CGermanProcess process;
        expectPoints(german);
        expectPoints(std::locale::classic());
    }
    const CGermanThread thread;
    expectPoints(std::locale::classic());
    EXPECT_TRUE(thread.IsInForce());
}

TEST(CWriterJson, AClientThatChangesItsStreamWhileWritingIsHarmless)
{
    std::ostringstream stream;
    const CElements client(
        [&](IContainerWriter& w)
        {
            w.Write(10);
            stream << std::hex;
            stream.imbue(std::locale("de_DE.UTF-8"));
            w.Write(1000);
            stream << "<<client>>";
            w.Write(1.5);
        });
    CWriterJson(stream).Write(client);
    EXPECT_EQ(stream.str(), Lines("[→10,", "→3e8<<client>>,", "→1.5000000000000000", "]"));
}

TEST(CWriterJson, EveryExceptionBecomesItsOwnAndTheDocumentIsCutOff)
{
    const CGermanThread german;
    const std::function<void()> failures[] = {[] { throw std::bad_alloc(); }, [] { throw 42; },
                                              [] { throw std::string("anything"); }};
    for (const auto& fail : failures)
    {
        const CFields inner([&](IDataWriter& w) { (w.Write("done", 1), fail()); });
        std::ostringstream stream;
        EXPECT_RAISES(CException, "Vellum::CWriterJson::Write", CWriterJson(stream).Write(FieldsOf("inner", inner)));
        EXPECT_EQ(stream.str() + '\n', Lines("{→\"inner\":", "→{→\"done\":1"));
        EXPECT_TRUE(german.IsInForce());
    }
    const CElements failing([](IContainerWriter&) { throw CException("file", 1, "Client"); });
    std::ostringstream stream;
    CLogObserver log;
    EXPECT_THROW(CWriterJson(stream).Write(failing), CException);
    EXPECT_EQ(log.GetFunctions(), (std::vector<std::string>{"Client", "Vellum::CWriterJson::Write"}));
    EXPECT_EQ(log.GetEntries()[1].file, "Sources/Core/Vellum/src/CWriterJson.cpp");
}

// Takes a few characters and no more.
class CFullBuffer : public std::streambuf
{
    int_type overflow(int_type character) override { return left-- > 0 ? character : traits_type::eof(); }
    int left = 5;
};

TEST(CWriterJson, AFullStreamTellsByItsStateOrAsTheClientAskedForIt)
{
    for (const std::ios_base::iostate raising : {std::ios_base::goodbit, std::ios_base::badbit})
    {
        CFullBuffer full;
        std::ostringstream stream;
        static_cast<std::ios&>(stream).rdbuf(&full);
        stream.exceptions(raising);
        if (raising == std::ios_base::badbit)
            EXPECT_RAISES(CException, "Vellum::CWriterJson::Write", CWriterJson(stream).Write(Numbers));
        else
            CWriterJson(stream).Write(Numbers);
        EXPECT_TRUE(stream.bad());
    }
}

TEST(CWriterJson, WritesScalarsWithoutAllocating)
{
    std::ostringstream stream(std::string(4096, ' ')); // has room
    const std::string text(100, 'x');
    std::uint64_t allocations = 0;
    const CFields inner = FieldsOf("deep", 1.5);
    const CFields root(
        [&](IDataWriter& w)
        {
            const CAllocationCounter counter;
            WriteFields(w, "text", text, "int", 1, "double", 0.1, "inner", inner);
            allocations = counter.GetCount();
        });
    CWriterJson(stream).Write(root);
    EXPECT_EQ(allocations, 0u);
}

} // namespace
