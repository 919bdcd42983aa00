#include "Vellum/Vellum.h"

#include "DocsExample.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

using Vellum::CException;
using Vellum::CReaderXml;
using Vellum::CWriterXml;
using Vellum::IContainerReader;
using Vellum::IDataReader;
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

std::string BlobText(const Vellum::BlobRange& blob)
{
    EXPECT_EQ(blob.first == nullptr, blob.second == nullptr);
    return blob.first == nullptr ? "none" : std::string(blob.first, blob.second);
}

std::string DateText(const IDateTime& date) { return CbDateTime(date).ToString("Y-m-dTH:i:s.v"); }

TEST(CReaderXml, ReadsTheWorkedExample)
{
    CbDateTime date;
    CFields buyer = ReadFields([](IDataReader& r) { EXPECT_EQ(Get<std::string>(r, "name"), "Ann\nLee"); });
    CFields item = ReadFields([](IDataReader& r) { EXPECT_EQ(Get<std::uint16_t>(r, "sku"), 9); });
    CElements none = ReadElements([](IContainerReader& r) { EXPECT_FALSE(Get<int>(r, 0)); });
    CElements lines = ReadElements(
        [&](IContainerReader& r)
        {
            EXPECT_EQ(Get<int>(r, 0), 7);
            EXPECT_EQ(Get<std::string>(r, 1), "a>b");
            EXPECT_TRUE(r.Read(2u, item) && r.Read(6u, none) && r.Read(3u, date));
            EXPECT_EQ(DateText(date), "2024-03-07T14:05:09.000");
            EXPECT_EQ(BlobText(r.GetBlob(4)), "hello");
            EXPECT_EQ(r.GetBlob(4), r.GetBlob(4));
            EXPECT_EQ(Get<bool>(r, 5), false);
            EXPECT_FALSE(r.Read(7u, item));
            EXPECT_EQ(BlobText(r.GetBlob(7)), "none");
        });
    const auto readOrder = [&](IDataReader& r)
    {
        EXPECT_EQ(r.GetKeyCount(), 12u);
        EXPECT_STREQ(r.GetKey(0), "id");
        EXPECT_STREQ(r.GetKey(11), "lines");
        EXPECT_EQ(r.GetKey(12), nullptr);
        EXPECT_EQ(Get<std::uint32_t>(r, "id"), 42u);
        EXPECT_EQ(Get<std::string>(r, "TITLE"), "Tom & Jerry <100%>");
        EXPECT_EQ(Get<std::wstring>(r, "note"), L"Gr\u00FC\u00DFe");
        EXPECT_EQ(Get<double>(r, "price"), 19.99);
        EXPECT_EQ(Get<float>(r, "ratio"), 0.1f);
        EXPECT_EQ(Get<bool>(r, "paid"), true);
        EXPECT_EQ(Get<char>(r, "grade"), 'A');
        EXPECT_EQ(Get<signed char>(r, "level"), -3);
        EXPECT_TRUE(r.Read("created", date) && r.Read("buyer", buyer) && r.Read("lines", lines));
        EXPECT_EQ(DateText(date), "2024-03-07T14:05:09.000");
        EXPECT_EQ(BlobText(r.GetBlob("thumb")), "hello");
        EXPECT_EQ(r.GetBlob("thumb"), r.GetBlob("thumb"));
        EXPECT_EQ(Get<std::string>(r, "thumb"), "aGVsbG8=");
        EXPECT_EQ(Get<int>(r, "absent"), std::nullopt);
        EXPECT_FALSE(r.Read("absent", date) || r.Read("absent", buyer) || r.Read("absent", lines));
        EXPECT_EQ(BlobText(r.GetBlob("absent")), "none");
        EXPECT_EQ(Get<std::string>(r, "buyer"), ""); // an object has no text of its own
        EXPECT_TRUE(r.Read("id", none));             // and a value no elements
    };
    const std::string document = XmlExample();
    for (const char* typeName : {"shop::Order", "SHOP-ORDER"})
    {
        CFields order({}, readOrder, typeName);
        CReaderXml(document).Read(order);
    }
}

// What is found of a document, for a root that wants the fields a, b and c.
std::string Found(const char* document)
{
    std::string found;
    bool isRead = false;
    CFields root = ReadFields(
        [&](IDataReader& r)
        {
            isRead = true;
            for (const char* key : {"a", "b", "c"})
                found += Get<std::string>(r, key).value_or("-");
            found += std::to_string(r.GetKeyCount());
        });
    CReaderXml(document).Read(root);
    EXPECT_TRUE(isRead);
    return found;
}

TEST(CReaderXml, WhatIsNotThereOrRejectedIsReadAsEmpty)
{
    EXPECT_EQ(Found("<?xml?><Fields><a>1</a><b>2</b></Fields>"), "12-2");
    EXPECT_EQ(Found("<?xml?><!-- c --><!DOCTYPE x><FIELDS><b>2</b></FIELDS>"), "-2-1");
    EXPECT_EQ(Found("<x/><Fields><a>1</a></Fields>"), "1--1"); // two at the top need no declaration
    for (const char* empty :
         {"", "<?xml?><Other><a>1</a></Other>", "<Fields><a>1</a></Fields>",
          "\xEF\xBB\xBF<?xml?><Fields><a>1</a></Fields>", "<!-- c --><?xml?><Fields><a>1</a></Fields>",
          "<?xml?><Fields><a>1</a><b>&</b></Fields>", "<?xml?><Fields><a>1</a></b></Fields>"})
        EXPECT_EQ(Found(empty), "---0") << empty;
    EXPECT_EQ(Found(nullptr), "---0");
    CElements none = ReadElements([](IContainerReader& r)
                                  { EXPECT_EQ(BlobText(r.GetBlob(0)) + (Get<int>(r, 0) ? "0" : ""), "none"); });
    CReaderXml("<?xml?><Fields><elt>1</elt></Fields>").Read(none);

    // Cut off, and an end tag that closes several elements.
    EXPECT_EQ(Found("<?xml?><Fields><a>1</a><b>2</b><c>3"), "123");
    EXPECT_EQ(Found("<?xml?><Fields><a>1</a><b><x><y>2</b><c>3</c></Fields>"), "133");
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

TEST(CReaderXml, WhatTheClientRaisesPassesThroughAndReadingCanBeRepeated)
{
    CFields root = ReadFields(
        [](IDataReader& r)
        {
            if (Get<int>(r, "k") == 1)
                throw 42;
        });
    const std::string text = "<?xml?><Fields><k>1</k></Fields>";
    CReaderXml reader(nullptr);
    reader = CReaderXml(text);
    const CReaderXml copy(reader);
    for (const CReaderXml& each : {reader, copy})
        for (int i = 0; i < 2; ++i)
            EXPECT_THROW(each.Read(root), int);
}

TEST(CReaderXml, AFailedAllocationLosesAPartOrIsRaised)
{
    const std::string document = XmlExample();
    CFields order(
        {}, [](IDataReader& r) { EXPECT_LE(r.GetBlob("thumb").second - r.GetBlob("thumb").first, 5); }, "shop::Order");
    EXPECT_GT(FailEachAllocation([&] { GetsThrough([&] { CReaderXml(document).Read(order); }); }), 5u);
}

} // namespace
