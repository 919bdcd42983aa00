#include <cmath>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <locale>
#include <sstream>
#include <streambuf>
#include <string>

#include <gtest/gtest.h>

#include "Groundwork/CbDateTime.h"

#include "Vellum/Vellum.h"

#include "Support/Clients.h"
#include "Support/FailEachAllocation.h"
#include "Support/Raises.h"
#include "Support/Texts.h"

using Support::CElements;
using Support::CFields;
using Support::Lines;
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
    const std::string text = WriteJson(CElements([&](IContainerWriter& w) { w.Write(value); }), showPoint);
    return text.substr(2, text.size() - 5); // between "[→" and "\n]\n"
}

// Sequences of sequences, the innermost empty.
void WriteNested(IContainerWriter& writer, int depth)
{
    if (depth > 0)
        writer.Write(CElements([=](IContainerWriter& w) { WriteNested(w, depth - 1); }));
}

TEST(CWriterJson, LaysOutEveryFormOfItem)
{
    const auto number = [](const char* key, int value)
    { return CFields([=](IDataWriter& w) { w.Write(key, value); }); };
    const CElements list([](IContainerWriter& w) { (w.Write(1), w.Write(2)); });
    const CElements rows([&](IContainerWriter& w) { (w.Write(number("a", 1)), w.Write(number("a", 2))); });
    const CFields inner([](IDataWriter& w) { (w.Write("a", 1), w.Write("b", "two")); });
    const CFields root(
        [&](IDataWriter& w)
        {
            w.Write("name", "x");
            w.Write("count", 3);
            w.Write("ratio", 1.5);
            w.Write("ok", true);
            w.Write("inner", inner);
            w.Write("list", list);
            w.Write("none", CFields());
            w.Write("nothing", CElements());
            w.Write("rows", rows);
        });

    EXPECT_EQ(WriteJson(root),
              Lines("{→\"name\":\"x\",", "→\"count\":3,", "→\"ratio\":1.5000000000000000,", "→\"ok\":true,",
                    "→\"inner\":", "→{→\"a\":1,", "→→\"b\":\"two\"", "→},", "→\"list\":", "→[→1,", "→→2", "→],",
                    "→\"none\":", "→{", "→},", "→\"nothing\":", "→[", "→],", "→\"rows\":", "→[→{→\"a\":1", "→→},",
                    "→→{→\"a\":2", "→→}", "→]", "}"));
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
    const CFields root(
        [](IDataWriter& w)
        {
            w.Write("a b", 1);
            w.Write("a b", 2);
            w.Write("", 3);
            w.Write("\\n\xC3\xA9", 4);
        });
    EXPECT_EQ(WriteJson(root), Lines("{→\"a b\":1,", "→\"a b\":2,", "→\"\":3,", "→\"\\n\xC3\xA9\":4", "}"));
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
}

TEST(CWriterJson, WideTextIsWrittenInUtf8)
{
    EXPECT_EQ(ValueText(std::wstring(L"\u00E9\t\"")), "\"\xC3\xA9\\t\\\"\"");
    EXPECT_EQ(ValueText(std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)}), "\"\xF0\x9F\x98\x80\"");
    EXPECT_EQ(ValueText(std::wstring(L"cut\0off", 7)), "\"cut\"");
    EXPECT_EQ(ValueText(std::wstring()), "\"\"");
}

TEST(CWriterJson, BlobsAreBase64OnOneLine)
{
    const auto blobText = [](std::size_t size)
    {
        const std::string bytes("\0\1", size);
        return WriteJson(CElements([&](IContainerWriter& w) { w.Write(bytes.size(), bytes.data()); }));
    };
    EXPECT_EQ(blobText(0), Lines("[→\"\"", "]"));
    EXPECT_EQ(blobText(1), Lines("[→\"AA==\"", "]"));
    EXPECT_EQ(blobText(2), Lines("[→\"AAE=\"", "]"));
    const std::string zeros(100, '\0');
    EXPECT_EQ(WriteJson(CFields([&](IDataWriter& w) { w.Write("b", zeros.size(), zeros.data()); })),
              Lines("{→\"b\":\"" + std::string(134, 'A') + "==\"", "}"));
}

TEST(CWriterJson, ABlobThatIsTooLargeLeavesNothingOfItsItem)
{
    std::ostringstream stream;
    const CElements root([](IContainerWriter& w) { (w.Write(1), w.Write(std::size_t{1} << 32, "not that much")); });
    const Support::CLogObserver log;
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
    EXPECT_EQ(WriteJson(CFields([&](IDataWriter& w) { w.Write("d", date); })),
              Lines("{→\"d\":\"2024-13-07T09:05:01\"", "}"));
}

TEST(CWriterJson, CharIsOneRawByteUnlessThatWouldBreakTheQuotes)
{
    EXPECT_EQ(ValueText('a'), "\"a\"");
    EXPECT_EQ(ValueText('\n'), "\"\n\"");
    EXPECT_EQ(ValueText('\xE9'), "\"\xE9\"");
    EXPECT_EQ(ValueText('"'), R"("\"")");
    EXPECT_EQ(ValueText('\\'), R"("\\")");
    EXPECT_EQ(ValueText('\0'), R"("")");
}

TEST(CWriterJson, IntegersOfEveryWidthAreNumbers)
{
    EXPECT_EQ(ValueText(static_cast<signed char>(-128)), "-128");
    EXPECT_EQ(ValueText(static_cast<unsigned char>(255)), "255");
    EXPECT_EQ(ValueText(std::int16_t{-32768}), "-32768");
    EXPECT_EQ(ValueText(std::uint16_t{65535}), "65535");
    EXPECT_EQ(ValueText(std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(ValueText(std::numeric_limits<std::uint32_t>::max()), "4294967295");
    EXPECT_EQ(ValueText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(ValueText(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(ValueText(false), "false");
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
    const CFields inner([](IDataWriter& w) { w.Write("x", 100.0); });
    std::ostringstream stream;
    CWriterJson writer(stream);
    const CFields root(
        [&](IDataWriter& w)
        {
            writer.SetShowPoint(false);
            w.Write("i", inner);
        });
    writer.Write(root);
    CWriterJson(writer).Write(root); // a copy has the setting and the stream
    EXPECT_EQ(stream.str(), Lines("{→\"i\":", "→{→\"x\":100.00000000000000", "→}", "}") +
                                Lines("{→\"i\":", "→{→\"x\":100", "→}", "}"));
}

// One of each form of number.
const CElements Numbers(
    [](IContainerWriter& w)
    {
        w.Write(static_cast<signed char>(-1));
        w.Write(255);
        w.Write(1.5);
        w.Write(true);
        w.Write("text");
    });

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
            w.Write(7);
            w.Write(8);
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
    writer.Write(CElements([](IContainerWriter& w) { w.Write("text"); }));
    EXPECT_EQ(stream.precision(), 6);
    EXPECT_EQ(stream.flags(), std::ios_base::dec | std::ios_base::skipws);

    writer.Write(Numbers);
    EXPECT_EQ(stream.precision(), 17);
    EXPECT_EQ(stream.flags(),
              std::ios_base::dec | std::ios_base::skipws | std::ios_base::showpoint | std::ios_base::boolalpha);

    writer.SetShowPoint(false);
    writer.Write(CElements([](IContainerWriter& w) { w.Write(1.5f); }));
    EXPECT_EQ(stream.precision(), 9);
    EXPECT_EQ(stream.flags(), std::ios_base::dec | std::ios_base::skipws | std::ios_base::boolalpha);
}

// Decimal comma and digit grouping, in each of the ways in which a program can ask for them.
TEST(CWriterJson, NoLocaleChangesANumber)
{
    const char* const german = "de_DE.UTF-8";
    const std::locale germanCpp(german);
    const locale_t germanC = newlocale(LC_ALL_MASK, german, nullptr);
    ASSERT_NE(germanC, nullptr);
    const CElements numbers([](IContainerWriter& w) { (w.Write(1234567), w.Write(1234.5)); });
    const std::string plain = Lines("[→1234567,", "→1234.5000000000000", "]");
    const std::string flagged = Lines("[→+1234567,", "→+1234.50000000000000000", "]");
    const auto expectPoints = [&](const std::locale& ofStream)
    {
        for (const bool flags : {false, true})
        {
            std::ostringstream stream;
            stream.imbue(ofStream);
            if (flags)
                stream << std::showpos << std::fixed;
            CWriterJson(stream).Write(numbers);
            EXPECT_EQ(stream.str(), flags ? flagged : plain);
            EXPECT_EQ(stream.getloc(), ofStream);
        }
    };

    expectPoints(germanCpp); // of the stream

    const std::locale oldGlobal = std::locale::global(germanCpp); // of C++, and of the process
    expectPoints(germanCpp);
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    expectPoints(std::locale::classic());
    std::locale::global(oldGlobal);

    const locale_t oldThread = uselocale(germanC); // of the thread
    expectPoints(std::locale::classic());
    EXPECT_EQ(uselocale(nullptr), germanC);
    uselocale(oldThread);
    freelocale(germanC);
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
    const auto german = newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
    const auto oldThread = uselocale(german);
    for (const int kind : {0, 1, 2})
    {
        const CFields inner(
            [&](IDataWriter& w)
            {
                w.Write("done", 1);
                if (kind == 0)
                    throw std::bad_alloc();
                if (kind == 1)
                    throw 42;
                throw std::string("anything");
            });
        std::ostringstream stream;
        const CFields root([&](IDataWriter& w) { w.Write("inner", inner); });
        EXPECT_RAISES(CException, "Vellum::CWriterJson::Write", CWriterJson(stream).Write(root));
        EXPECT_EQ(stream.str() + '\n', Lines("{→\"inner\":", "→{→\"done\":1"));
        EXPECT_EQ(uselocale(nullptr), german);
    }
    uselocale(oldThread);
    freelocale(german);

    const CElements failing([](IContainerWriter&) { throw CException("file", 1, "Client"); });
    std::ostringstream stream;
    Support::CLogObserver log;
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
    CFullBuffer full;
    std::ostringstream stream;
    static_cast<std::ios&>(stream).rdbuf(&full);
    CWriterJson(stream).Write(Numbers);
    EXPECT_TRUE(stream.bad());

    CFullBuffer fullToo;
    static_cast<std::ios&>(stream).rdbuf(&fullToo);
    stream.exceptions(std::ios_base::badbit);
    EXPECT_RAISES(CException, "Vellum::CWriterJson::Write", CWriterJson(stream).Write(Numbers));
}

TEST(CWriterJson, WritesScalarsWithoutAllocating)
{
    std::ostringstream stream(std::string(4096, ' ')); // has room
    const std::string text(100, 'x');
    std::uint64_t allocations = 0;
    const CFields inner([&](IDataWriter& w) { w.Write("deep", 1.5); });
    const CFields root(
        [&](IDataWriter& w)
        {
            const Support::CAllocationCounter counter;
            w.Write("text", text);
            w.Write("int", 1);
            w.Write("double", 0.1);
            w.Write("inner", inner);
            allocations = counter.GetCount();
        });
    CWriterJson(stream).Write(root);
    EXPECT_EQ(allocations, 0u);
}

} // namespace
