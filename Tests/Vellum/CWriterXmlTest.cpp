#include "Vellum/Vellum.h"

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

TEST(CWriterXml, LeavesPrecisionAndBoolalphaOnTheStreamAsSetLast)
{
    std::ostringstream stream;
    const CWriterXml writer(stream);
    EXPECT_EQ(stream.precision(), 16);
    EXPECT_NE(stream.flags() & std::ios_base::boolalpha, 0);
    stream.precision(5);
    stream << std::noboolalpha << std::showpoint;
    CWriterXml(writer).Write(CFields());
    EXPECT_EQ(stream.precision(), 5); // a copy leaves the stream as it is
    CWriterXml(writer).Write(ElementsOf(0.5f, true));
    EXPECT_EQ(stream.precision(), 9);
    EXPECT_NE(stream.str().find("\t<elt>0.500000000</elt>\n\t<elt>true</elt>\n"), std::string::npos);
}

} // namespace
