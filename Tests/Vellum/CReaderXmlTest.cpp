#include "Vellum/Vellum.h"

#include "DocsExample.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

using Vellum::CReaderXml;
using Vellum::IContainerReader;
using Vellum::IDataReader;

namespace
{

std::string DateText(const IDateTime& date) { return CbDateTime(date).ToString("Y-m-dTH:i:s.v"); }

TEST(CReaderXml, ReadsTheWorkedExample)
{
    CFields item = ReadFields([](IDataReader& r) { EXPECT_EQ(Get<std::uint16_t>(r, "sku"), 9); });
    CElements lines = ReadElements(
        [&](IContainerReader& r)
        {
            EXPECT_EQ(Get<std::string>(r, 1), "a>b");
            EXPECT_TRUE(r.Read(2u, item));
            const Vellum::BlobRange blob = r.GetBlob(4);
            EXPECT_EQ(std::string(blob.first, blob.second), "hello");
            EXPECT_FALSE(r.Read(7u, item));
        });
    const auto readOrder = [&](IDataReader& r)
    {
        CbDateTime date;
        EXPECT_EQ(r.GetKeyCount(), 12u);
        EXPECT_STREQ(r.GetKey(11), "lines");
        EXPECT_EQ(r.GetKey(12), nullptr);
        EXPECT_EQ(Get<std::string>(r, "TITLE"), "Tom & Jerry <100%>");
        EXPECT_TRUE(r.Read("created", date) && r.Read("lines", lines));
        EXPECT_EQ(DateText(date), "2024-03-07T14:05:09.000");
        EXPECT_EQ(Get<std::string>(r, "buyer"), ""); // an object has no text of its own
    };
    const std::string document = XmlExample();
    for (const char* typeName : {"shop::Order", "SHOP-ORDER"})
    {
        CFields order({}, readOrder, typeName);
        CReaderXml(document).Read(order);
    }
}

TEST(CReaderXml, TheTextThatIsNoneIsReadAsEmpty)
{
    std::uint32_t reads = 0;
    CFields root = ReadFields([&](IDataReader& r) { reads += 1 + r.GetKeyCount(); });
    CReaderXml(static_cast<const char*>(nullptr)).Read(root);
    EXPECT_EQ(reads, 1u);
}

TEST(CReaderXml, ElementsAndFieldsAreReadInAnyOrder)
{
    std::string text = "<?xml?><Elements>";
    for (int i = 0; i < 100; ++i)
        text += "<elt>" + std::to_string(i) + "</elt>";
    CElements elements = ReadElements(
        [](IContainerReader& r)
        {
            for (const unsigned step : {1u, 7u, 99u})
                for (unsigned i = 0, index = 0; i < 200; ++i, index = (index + step) % 101)
                    EXPECT_EQ(Get<unsigned>(r, index), index < 100 ? std::optional(index) : std::nullopt);
        });
    CReaderXml(text).Read(elements);

    std::string found;
    const auto readInTurn = [&](IDataReader& r)
    {
        for (const char* key : {"a", "b", "a", "b", "c", "B", "x", "a"})
            found += Get<std::string>(r, key).value_or("-");
    };
    CFields fields = ReadFields(readInTurn);
    CReaderXml("<?xml?><Fields><a>1</a><b>2</b><a>3</a><B>4</B><c>5</c></Fields>").Read(fields);
    EXPECT_EQ(found, "121252-1");
}

TEST(CReaderXml, CheckTellsWhatIsWrongAndWhere)
{
    const std::pair<const char*, Vellum::SXmlOutcome> table[] = {
        {nullptr, {0, "XmlOk", 0, 0, false}},
        {"", {0, "XmlOk", 0, 0, true}},
        {"<?xml?>\n<a/>", {0, "XmlOk", 0, 0, true}},
        {"<a>\n<b>", {1, "XmlElementNotClosed", 2, 4, true}},
        {"<a>\r\n  <b></c>\n</a>", {7, "XmlStrayEndTag", 2, 8, false}},
        {"\n\n\xC3\xA4&x;", {0, "XmlOk", 0, 0, true}}, // text at the top is never decoded
        {"<a>\n\n\xC3\xA4&x;</a>", {14, "XmlBadReference", 3, 3, false}},
    };
    for (const auto& [text, expected] : table)
    {
        const Vellum::SXmlOutcome outcome = CReaderXml(text).Check();
        EXPECT_EQ(outcome.error, expected.error);
        EXPECT_STREQ(outcome.name, expected.name);
        EXPECT_EQ(outcome.line, expected.line) << expected.name;
        EXPECT_EQ(outcome.column, expected.column) << expected.name;
        EXPECT_EQ(outcome.hasTree, expected.hasTree) << expected.name;
    }
}

} // namespace
