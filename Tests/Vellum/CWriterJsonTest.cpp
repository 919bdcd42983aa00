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

TEST(CWriterJson, ABlobThatIsTooLargeLeavesNothingOfItsItem)
{
    std::ostringstream stream;
    const CElements root([](IContainerWriter& w) { (w.Write(1), w.Write(std::size_t{1} << 32, "not that much")); });
    const CLogObserver log;
    EXPECT_THROW(CWriterJson(stream).Write(root), CException);
    EXPECT_EQ(log.GetFunctions(), (std::vector<std::string>{"Vellum::Base64::Encode", "Vellum::CWriterJson::Write"}));
    EXPECT_EQ(stream.str(), "[\t1");
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
