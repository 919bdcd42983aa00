#include "Vellum/Vellum.h"

#include "Vellum/src/XmlNames.h"

#include "DocsExample.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

using Vellum::CException;
using Vellum::CWriterXml;
using Vellum::IContainerWriter;
using Vellum::IDataWriter;

namespace
{

template <class Root>
std::string WriteXml(const Root& root)
{
    std::ostringstream stream;
    CWriterXml(stream).Write(root);
    return stream.str();
}

const std::string Namespaces = " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                               " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\">\n";

// The lines of a sequence document, without its header and root.
std::string Body(const CElements::Writing& writing)
{
    const std::string text = WriteXml(CElements(writing, {}, "R"));
    const std::string begin = "<?xml version=\"1.0\"?>\n<R" + Namespaces;
    const std::string end = "</R>\n";
    EXPECT_EQ(text.substr(0, begin.size()), begin);
    EXPECT_EQ(text.substr(text.size() - end.size()), end);
    return text.substr(begin.size(), text.size() - begin.size() - end.size());
}

template <class Value>
std::string ValueText(const Value& value)
{
    const std::string line = Body([&](IContainerWriter& w) { w.Write(value); });
    return line.substr(6, line.size() - 13); // between "→<elt>" and "</elt>\n"
}

TEST(CWriterXml, WritesTheWorkedExample)
{
    CbDateTime date("2024-03-07T14:05:09");
    date.SetMilliseconds(250);
    const CFields person([](IDataWriter& w) { w.Write("name", "Ann\nLee"); }, {}, "shop::Person");
    const CFields item([](IDataWriter& w) { w.Write("sku", std::uint16_t{9}); }, {}, "shop::Item");
    const CElements lines(
        [&](IContainerWriter& w)
        {
            ElementsOf(7, "a>b", item, date).Write(w);
            w.Write(5, "hello");
            ElementsOf(false, CElements({}, {}, "shop::Lines")).Write(w);
        },
        {}, "shop::Lines");
    const CFields order(
        [&](IDataWriter& w)
        {
            WriteFields(w, "id", 42u, "title", "Tom & Jerry <100%>", "note", L"Gr\u00FC\u00DFe", "price", 19.99,
                        "ratio", 0.1f, "paid", true, "grade", 'A', "level", static_cast<signed char>(-3), "created",
                        date);
            w.Write("thumb", 5, "hello");
            WriteFields(w, "buyer", person, "lines", lines);
        },
        {}, "shop::Order");
    EXPECT_EQ(WriteXml(order), XmlExample());
}

TEST(CWriterXml, EmptyOnesAndDeepOnes)
{
    EXPECT_EQ(WriteXml(CFields({}, {}, "a::b")),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a-b" + Namespaces + "</a-b>\n");
    EXPECT_EQ(Body({}), "");
    EXPECT_EQ(Body([](IContainerWriter& w) { w.Write(CFields()); }), Lines("→<Fields>", "→</Fields>"));

    CElements deep;
    for (int depth = 0; depth < 100; ++depth)
        deep = CElements([inner = deep](IContainerWriter& w) { w.Write(inner); });
    EXPECT_NE(WriteXml(deep).find('\n' + std::string(100, '\t') + "</Elements>\n"), std::string::npos);
}

TEST(CWriterXml, BlobsStandInSections)
{
    const std::string bytes(55, 'a');
    const std::string line = std::string(18 * 4, ' ');
    const auto blob = [&](std::size_t size) { return Body([&](IContainerWriter& w) { w.Write(size, bytes.data()); }); };
    std::string full;
    for (int i = 0; i < 18; ++i)
        full += "YWFh";
    EXPECT_EQ(blob(0), Lines("→<elt><![CDATA[", "", "→]]></elt>"));
    EXPECT_EQ(blob(54), Lines("→<elt><![CDATA[", full, "", "→]]></elt>"));
    EXPECT_EQ(blob(55), Lines("→<elt><![CDATA[", full, "YQ==", "→]]></elt>"));
    const CLogObserver quiet;
    EXPECT_THROW(blob(std::size_t{1} << 32), CException);
}

TEST(CWriterXml, NumbersHaveAllTheirDigitsWhateverTheStreamHasBeenToldBefore)
{
    EXPECT_EQ(ValueText(static_cast<unsigned char>(65)), "65");
    EXPECT_EQ(ValueText(static_cast<signed char>(-128)), "-128");
    EXPECT_EQ(ValueText(1.5f) + ValueText(100.0) + ValueText(19.99f), "1.510019.9899998");

    std::ostringstream stream;
    CWriterXml writer(stream);
    EXPECT_EQ(stream.precision(), 16);
    EXPECT_NE(stream.flags() & std::ios_base::boolalpha, 0);
    const CElements client(
        [&](IContainerWriter& w)
        {
            stream.precision(3);
            stream << std::noboolalpha;
            ElementsOf(0.1f, 0.1, true).Write(w);
            stream << std::hex << std::showbase << std::showpoint;
            ElementsOf(255, 2.0f).Write(w);
        });
    writer.Write(client);
    EXPECT_NE(stream.str().find(Lines("→<elt>0.100000001</elt>", "→<elt>0.10000000000000001</elt>", "→<elt>true</elt>",
                                      "→<elt>0xff</elt>", "→<elt>2.00000000</elt>")),
              std::string::npos);
    EXPECT_EQ(stream.precision(), 9);
}

TEST(CWriterXml, EachWriteAppendsADocument)
{
    std::ostringstream stream;
    const CWriterXml writer(stream);
    stream.precision(5);
    CWriterXml(writer).Write(CFields());
    EXPECT_EQ(stream.precision(), 5); // a copy leaves the stream as it is
    CWriterXml(stream).Write(CElements());
    EXPECT_EQ(stream.str(), WriteXml(CFields()) + WriteXml(CElements()));
}

TEST(CWriterXml, EveryExceptionBecomesItsOwnAndTheDocumentIsCutOff)
{
    const CGermanThread german;
    std::ostringstream stream;
    const CFields inner([](IDataWriter& w) { (w.Write("done", 1), throw 42); });
    const CElements root([&](IContainerWriter& w) { w.Write(inner); }, {}, "R");
    EXPECT_RAISES(CException, "Vellum::CWriterXml::Write", CWriterXml(stream).Write(root));
    EXPECT_EQ(stream.str(), "<?xml version=\"1.0\"?>\n<R" + Namespaces + Lines("→<Fields>", "→→<done>1</done>"));
    EXPECT_TRUE(german.IsInForce());
    EXPECT_RAISES(CException, "Vellum::CWriterXml::Write", CWriterXml(stream).Write(inner));
}

TEST(CWriterXml, AFailedAllocationIsAFailureOfTheWriter)
{
    const CFields root(
        [](IDataWriter& w)
        {
            WriteFields(w, "text", std::string(2000, '%'), "wide", std::wstring(100, L'w'));
            w.Write("blob", 5, "hello");
        });
    const auto write = [&]
    {
        std::ostringstream stream;
        try
        {
            CWriterXml(stream).Write(root);
        }
        catch (const IException& exception)
        {
            EXPECT_STREQ(exception.GetFunctionName(), "Vellum::CWriterXml::Write");
        }
    };
    EXPECT_GT(FailEachAllocation(write), 3u);
}

} // namespace
