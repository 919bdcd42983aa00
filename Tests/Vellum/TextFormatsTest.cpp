// What JSON and XML have in common, beside what the model of the formats compares: surroundings, failures, memory.

#include <clocale>
#include <locale>
#include <streambuf>

#include "Vellum/Vellum.h"

#include "Support/Clients.h"
#include "Support/Testing.h"

using Vellum::CException;
using Vellum::IContainerReader;
using Vellum::IContainerWriter;
using Vellum::IDataReader;
using Vellum::IDataWriter;

namespace
{

struct SJson
{
    using Writer = Vellum::CWriterJson;
    using Reader = Vellum::CReaderJson;
    static constexpr const char* Function = "Vellum::CWriterJson::Write";
    static constexpr const char* File = "Sources/Core/Vellum/src/CWriterJson.cpp";
    static constexpr const char* CutOff = "{\t\"inner\":\n\t{\t\"done\":1";
};

struct SXml
{
    using Writer = Vellum::CWriterXml;
    using Reader = Vellum::CReaderXml;
    static constexpr const char* Function = "Vellum::CWriterXml::Write";
    static constexpr const char* File = "Sources/Core/Vellum/src/CWriterXml.cpp";
    static constexpr const char* CutOff = "\t<inner>\n\t\t<done>1</done>\n";
};

template <class Format>
class TextFormats : public testing::Test
{
};
using Both = testing::Types<SJson, SXml>;
TYPED_TEST_SUITE(TextFormats, Both);

template <class Format, class Root>
std::string Written(const Root& root)
{
    std::ostringstream stream;
    typename Format::Writer(stream).Write(root);
    return stream.str();
}

// Lets the client act in its Write and in its Read, as an object and as a sequence. Behind each, `check` is called.
template <class Format>
void InEachCall(const std::function<void()>& act, const std::function<void()>& check)
{
    CFields object([&](IDataWriter&) { act(); }, [&](IDataReader&) { act(); });
    CElements sequence([&](IContainerWriter&) { act(); }, [&](IContainerReader&) { act(); });
    const std::string ofObject = Written<Format>(FieldsOf()), ofSequence = Written<Format>(ElementsOf());
    const std::function<void()> calls[] = {[&] { Written<Format>(object); }, [&] { Written<Format>(sequence); },
                                           [&] { typename Format::Reader(ofObject).Read(object); },
                                           [&] { typename Format::Reader(ofSequence).Read(sequence); }};
    for (const auto& call : calls)
    {
        GetsThrough(call);
        check();
    }
}

TYPED_TEST(TextFormats, ClientsRunInTheCLocaleAndThreadsGetTheirOwnBack)
{
    const CGermanThread german;
    const CLogObserver quiet;
    const auto act = [] { EXPECT_STREQ(std::localeconv()->decimal_point, ThreadsHaveLocales() ? "." : ","); };
    const auto check = [&] { EXPECT_TRUE(german.IsInForce()); };
    InEachCall<TypeParam>(act, check);
    InEachCall<TypeParam>([&] { (act(), throw CException("", 0, "")); }, check);
}

TYPED_TEST(TextFormats, EveryExceptionBecomesTheWritersOwnAndTheDocumentIsCutOff)
{
    const std::function<void()> failures[] = {[] { throw std::bad_alloc(); }, [] { throw 42; },
                                              [] { throw std::string("anything"); }};
    for (const auto& fail : failures)
    {
        const CFields inner([&](IDataWriter& w) { (w.Write("done", 1), fail()); });
        std::ostringstream stream;
        EXPECT_RAISES(CException, TypeParam::Function,
                      typename TypeParam::Writer(stream).Write(FieldsOf("inner", inner)));
        EXPECT_TRUE(stream.str().ends_with(TypeParam::CutOff)) << stream.str();
    }
    const CElements failing([](IContainerWriter&) { throw CException("file", 1, "Client"); });
    const CLogObserver log;
    EXPECT_THROW(Written<TypeParam>(failing), CException);
    EXPECT_EQ(log.GetFunctions(), (std::vector<std::string>{"Client", TypeParam::Function}));
    EXPECT_EQ(log.GetEntries()[1].file, TypeParam::File);
}

TYPED_TEST(TextFormats, NothingOfAnItemThatFailsIsWritten)
{
    if (FourGigabytes == 0)
        GTEST_SKIP() << "No size is too large here.";
    for (const bool isField : {true, false})
    {
        std::ostringstream stream;
        std::string before;
        const auto write = [&](auto& writer, auto... key)
        {
            before = stream.str();
            writer.Write(key..., FourGigabytes, "not that much");
        };
        const CLogObserver quiet;
        typename TypeParam::Writer writer(stream);
        EXPECT_THROW(isField ? writer.Write(CFields([&](IDataWriter& w) { write(w, "key"); }))
                             : writer.Write(CElements([&](IContainerWriter& w) { write(w); })),
                     CException);
        EXPECT_EQ(stream.str(), before);
    }
}

// What the client writes onto its stream itself stands where it was at that time.
TYPED_TEST(TextFormats, TheDocumentGrowsWhileTheClientWrites)
{
    std::ostringstream stream;
    const auto mark = [&](const std::string& name) { stream << '<' << name << '>'; };
    const CFields nested(
        [&](IDataWriter& w)
        {
            mark("nested");
            w.Write("deep", "five");
            mark("in nested");
        });
    const CElements list(
        [&](IContainerWriter& w)
        {
            mark("list");
            w.Write("three");
            mark("in list");
            w.Write(nested);
            mark("behind nested");
        });
    const CFields root(
        [&](IDataWriter& w)
        {
            mark("root");
            w.Write("one", 1.5);
            mark("behind one");
            w.Write("two", list);
            mark("behind list");
        });
    typename TypeParam::Writer(stream).Write(root);
    const std::string document = stream.str();
    std::size_t at = 0;
    for (const char* const piece : {"<root>", "one", "1.5", "<behind one>", "two", "<list>", "three", "<in list>",
                                    "<nested>", "five", "<in nested>", "<behind nested>", "<behind list>", "\n"})
    {
        at = document.find(piece, at);
        ASSERT_NE(at, std::string::npos) << piece << "\n" << document;
    }
}

// Takes a few characters and no more, or raises.
class CFullBuffer : public std::streambuf
{
public:
    explicit CFullBuffer(bool isRaising) : isRaising(isRaising) {}

private:
    int_type overflow(int_type character) override
    {
        if (left-- > 0)
            return character;
        return isRaising ? throw 42 : traits_type::eof();
    }
    int left = 5;
    bool isRaising;
};

TYPED_TEST(TextFormats, AFullStreamTellsByItsStateOrAsTheClientAskedForIt)
{
    for (const bool isRaising : {false, true})
        for (const bool isAsked : {false, true})
        {
            CFullBuffer full(isRaising);
            std::ostringstream stream;
            static_cast<std::ios&>(stream).rdbuf(&full);
            stream.exceptions(isAsked ? std::ios_base::badbit : std::ios_base::goodbit);
            const auto write = [&] { typename TypeParam::Writer(stream).Write(ElementsOf("text", 255, 1.5, true)); };
            if (isAsked)
                EXPECT_RAISES(CException, TypeParam::Function, write());
            else
                write();
            EXPECT_TRUE(stream.bad());
        }
}

TYPED_TEST(TextFormats, ReadersKeepTemporariesAndCopiesReadTheSameText)
{
    int count = 0;
    CFields root([](IDataWriter& w) { w.Write("a", 1); }, [&](IDataReader& r) { count += *Get<int>(r, "a"); });
    const std::string document = Written<TypeParam>(root);
    using Reader = typename TypeParam::Reader;
    std::optional<Reader> kept(std::in_place, std::string(document));
    std::optional<Reader> borrowed(std::in_place, document);
    std::optional<Reader> zeroTerminated(std::in_place, document.c_str());
    for (std::optional<Reader>* const reader : {&kept, &borrowed, &zeroTerminated})
    {
        const Reader copy(**reader);
        Reader assigned(std::string("no document"));
        assigned = **reader;
        assigned = static_cast<const Reader&>(assigned);
        (*reader)->Read(root);
        (*reader)->Read(root);
        reader->reset();
        copy.Read(root);
        assigned.Read(root);
    }
    EXPECT_EQ(count, 12);

    std::string text = document; // not a copy of it
    const Reader reader(text);
    text[text.rfind('1')] = '7';
    reader.Read(root);
    EXPECT_EQ(count, 19);
}

TYPED_TEST(TextFormats, WritesScalarsWithoutAllocating)
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
    typename TypeParam::Writer(stream).Write(root);
    EXPECT_EQ(allocations, 0u);
}

} // namespace
