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

// Hands the fields, or the elements, of a document to the client. The inner text is what stands in the root.
void Fields(const std::string& inner, const CFields::Reading& reading)
{
    CFields root = ReadFields(reading);
    CReaderXml(ExactText("<?xml?><Fields>" + inner + "</Fields>").get()).Read(root);
}

void Elements(const std::string& inner, const CElements::Reading& reading)
{
    CElements root = ReadElements(reading);
    CReaderXml(ExactText("<?xml?><Elements>" + inner + "</Elements>").get()).Read(root);
}

template <class T>
std::optional<T> Field(const std::string& inner)
{
    std::optional<T> found;
    Fields(inner, [&](IDataReader& r) { found = Get<T>(r, "k"); });
    return found;
}

template <class T>
std::optional<T> Element(const std::string& inner)
{
    std::optional<T> found;
    Elements(inner, [&](IContainerReader& r) { found = Get<T>(r, 0); });
    return found;
}

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

TEST(CReaderXml, FieldsAreTheFirstOfTheirNameAndTrimmed)
{
    EXPECT_EQ(Field<int>("<K>5</K><k>6</k>"), 5);
    EXPECT_EQ(Field<int>("<k>  12  </k>"), 12);
    EXPECT_EQ(Field<double>("<k><![CDATA[ 12 ]]></k>"), 12);
    EXPECT_EQ(Field<std::string>("<k>a<!-- c -->b</k>"), "a");
    EXPECT_EQ(Field<std::string>("<k><!-- c --><![CDATA[d]]></k>"), "c");
    EXPECT_EQ(Field<std::string>("<k>a&#0;b</k>"), "a");
    EXPECT_EQ(Field<char>("<k></k>"), '\0');
    EXPECT_EQ(Field<double>("<k/>"), 0.0);
    EXPECT_EQ(Field<int>("k='1'"), std::nullopt);
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToInt", Field<int>("<k><b>1</b></k>"));
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", Field<float>("<k>1,5</k>"));

    // A bool or a date is the first text as it stands.
    for (const char* text : {"", "TRUE", "1", "&#32;true", "<![CDATA[true]]>"})
        EXPECT_EQ(Field<bool>("<k>" + std::string(text) + "</k>"), std::nullopt) << text;
    EXPECT_EQ(Field<bool>("<k> true </k>"), true);
    const auto readDate = [](IDataReader& r)
    {
        CbDateTime date("1999-01-01T00:00:00");
        EXPECT_TRUE(r.Read("good", date));
        EXPECT_EQ(DateText(date), "2024-03-07T14:05:09.000");
        EXPECT_RAISES(CbExceptionConversion, "CbDateTime::CbDateTime", r.Read("bad", date));
        EXPECT_EQ(DateText(date), "2024-03-07T14:05:09.000");
    };
    Fields("<good>2024-03-07 14:05:09.500Z</good><bad><![CDATA[2024-03-07 14:05:09]]></bad>", readDate);
}

TEST(CReaderXml, ElementsAreCalledEltAndNotTrimmed)
{
    EXPECT_EQ(Element<std::string>("<elt>abc&#10;</elt>"), "abc\n");
    EXPECT_EQ(Element<int>("<elt><![CDATA[ 12 ]]></elt>"), 12);
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToDouble", Element<double>("<elt><![CDATA[ 12 ]]></elt>"));
    EXPECT_EQ(Element<bool>("<elt><![CDATA[true]]></elt>"), true);
    EXPECT_EQ(Element<bool>("<elt>yes</elt>"), std::nullopt);
    EXPECT_EQ(Element<std::string>("<elt></elt>"), "");
    EXPECT_RAISES(CException, "Vellum::CContainerReaderXml::readValue", Element<int>("<ELT>1</ELT>"));
    EXPECT_RAISES(CException, "Vellum::CContainerReaderXml::readValue", Element<bool>("<k>true</k>"));
    Elements("<ELT>1</ELT><elt><![CDATA[2024-03-07 14:05:09]]></elt><elt/>",
             [](IContainerReader& r)
             {
                 CFields nested;
                 CElements sequence;
                 EXPECT_TRUE(r.Read(0u, nested) && r.Read(0u, sequence));
                 CbDateTime date;
                 EXPECT_TRUE(r.Read(1u, date));
                 EXPECT_EQ(DateText(date), "2024-03-07T14:05:09.000");
                 EXPECT_RAISES(CbExceptionConversion, "CbDateTime::CbDateTime", r.Read(2u, date));
                 EXPECT_FALSE(r.Read(3u, date) || r.Read(0xFFFFFFFFu, nested));
             });
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

} // namespace
