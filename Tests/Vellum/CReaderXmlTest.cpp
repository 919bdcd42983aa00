#include "Vellum/Vellum.h"

#include "DocsExample.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

using Vellum::CException;
using Vellum::CReaderXml;
using Vellum::IContainerReader;
using Vellum::IDataReader;

namespace
{

std::string BlobText(const Vellum::BlobRange& blob)
{
    EXPECT_EQ(blob.first == nullptr, blob.second == nullptr);
    return blob.first == nullptr ? "none" : std::string(blob.first, blob.second);
}

std::string DateText(const IDateTime& date) { return CbDateTime(date).ToString("Y-m-dTH:i:s.v"); }

TEST(CReaderXml, ReadsTheWorkedExample)
{
    CFields item = ReadFields([](IDataReader& r) { EXPECT_EQ(Get<std::uint16_t>(r, "sku"), 9); });
    CElements lines = ReadElements(
        [&](IContainerReader& r)
        {
            EXPECT_EQ(Get<std::string>(r, 1), "a>b");
            EXPECT_TRUE(r.Read(2u, item));
            EXPECT_EQ(BlobText(r.GetBlob(4)), "hello");
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
