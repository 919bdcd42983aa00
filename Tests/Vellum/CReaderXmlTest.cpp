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

// A value written and read back: as a field, and as an element.
template <class T>
std::optional<T> FieldBack(const T& value)
{
    std::optional<T> found;
    CFields root = ReadFields([&](IDataReader& r) { found = Get<T>(r, "K"); });
    CReaderXml(WriteXml(FieldsOf("k", value))).Read(root);
    return found;
}

template <class T>
std::optional<T> ElementBack(const T& value)
{
    std::optional<T> found;
    CElements root = ReadElements(
        [&](IContainerReader& r)
        {
            found = Get<T>(r, 0);
            EXPECT_EQ(Get<T>(r, 1), std::nullopt);
        });
    CReaderXml(WriteXml(ElementsOf(value))).Read(root);
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

TEST(CReaderXml, ValuesComeBackAsTheFormatPromises)
{
    const struct
    {
        std::string written, field, element;
    } table[] = {
        {"a&b<c>d%e&amp;", "a&b<c>d%e&amp;", "a&b<c>d%e&amp;"},
        {"a\n\r \t'\"\x01 b", "a\n\r \t'\"\x01 b", "a\n\r \t'\"\x01 b"},
        {" \ta\t ", "a", "a"},
        {"\n\ra\r\n", "a", "\n\ra\r\n"},
        {"\v\fa\f\v", "a", "\v\fa\f\v"},
        {"", "", ""},
        {" \t ", "", ""},
        {"Gr\xC3\xBC\xC3\x9F\x65", "Gr\xC3\xBC\xC3\x9F\x65", "Gr\xC3\xBC\xC3\x9F\x65"},
    };
    for (const auto& [written, field, element] : table)
    {
        EXPECT_EQ(FieldBack(written), field) << written;
        EXPECT_EQ(ElementBack(written), element) << written;
    }
    EXPECT_EQ(FieldBack<std::wstring>(L" \u20AC\n"), L"\u20AC");
    EXPECT_EQ(ElementBack<std::wstring>(L"\u20AC\n"), L"\u20AC\n");

    // A byte that hides the end tag, and a NUL, which ends the document.
    EXPECT_EQ(FieldBack<std::string>("\xE9"), "\xE9</k>");
    EXPECT_EQ(FieldBack(std::string("a\0b", 3)), "");

    for (const char plain : std::string(">=%\"'a\x7F"))
    {
        EXPECT_EQ(FieldBack(plain), plain);
        EXPECT_EQ(ElementBack(plain), plain);
    }
    EXPECT_EQ(FieldBack('<'), std::nullopt);
    EXPECT_EQ(FieldBack('&'), std::nullopt);
    EXPECT_EQ(FieldBack('\n'), '\0');
    EXPECT_EQ(FieldBack('\v'), '\0');
    EXPECT_EQ(ElementBack('\v'), '\v');
}

TEST(CReaderXml, BlobsComeBack)
{
    const std::string bytes = std::string("\0\xFF", 2) + std::string(200, 'x');
    CFields root(
        [&](IDataWriter& w)
        {
            w.Write("full", bytes.size(), bytes.data());
            w.Write("empty", 0, nullptr);
        },
        [&](IDataReader& r)
        {
            EXPECT_EQ(BlobText(r.GetBlob("Full")), bytes);
            EXPECT_EQ(BlobText(r.GetBlob("empty")), "none");
        });
    CReaderXml(WriteXml(root)).Read(root);
    Elements("<elt><![CDATA[\n\n\t]]></elt><x>QQ==</x>",
             [](IContainerReader& r)
             {
                 EXPECT_EQ(BlobText(r.GetBlob(0)), "none");
                 EXPECT_RAISES(CException, "Vellum::CContainerReaderXml::readValue", r.GetBlob(1));
             });
    EXPECT_RAISES(CException, "Vellum::Base64::Decode", Fields("<k>*</k>", [](IDataReader& r) { r.GetBlob("k"); }));
}

TEST(CReaderXml, FieldsAreTheFirstOfTheirNameAndTrimmed)
{
    EXPECT_EQ(Field<int>("<K>5</K><k>6</k>"), 5);
    EXPECT_EQ(Field<int>("<k>  12  </k>"), 12);
    EXPECT_EQ(Field<double>("<k><![CDATA[ 12 ]]></k>"), 12);
    EXPECT_EQ(Field<std::string>("<k>a<!-- c -->b</k>"), "a");
    EXPECT_EQ(Field<std::string>("<k><!-- c --></k>"), "c");
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

TEST(CReaderXml, DocumentsCutAtEveryByteGiveTheirFirstFieldsOrNone)
{
    const std::string document = WriteXml(FieldsOf("a", "a", "b", "b", "c", "c"));
    for (std::size_t size = 0; size < document.size(); ++size)
    {
        const auto text = ExactText(std::string_view(document).substr(0, size));
        const std::string found = Found(text.get());
        EXPECT_TRUE(std::string("abc").starts_with(found.substr(0, found.find_first_of("-0123")))) << found;
        EXPECT_EQ(CReaderXml(text.get()).Check().hasTree, CReaderXml(text.get()).Check().error <= 1) << size;
    }
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

TEST(CReaderXml, NoLocaleChangesADocumentOrWhatIsRead)
{
    CFields root([](IDataWriter& w) { WriteFields(w, "real", 1234.5, "whole", 1234567); },
                 [](IDataReader& r)
                 {
                     EXPECT_EQ(Get<double>(r, "real"), 1234.5);
                     EXPECT_EQ(Get<int>(r, "whole"), 1234567);
                 });
    const std::string plain = WriteXml(root);
    const CGermanThread german;
    EXPECT_EQ(WriteXml(root), plain);
    CReaderXml(plain).Read(root);
    EXPECT_TRUE(german.IsInForce());
}

TEST(CReaderXml, AFailedAllocationLosesAPartOrIsRaised)
{
    const std::string document = XmlExample();
    CFields order(
        {}, [](IDataReader& r) { EXPECT_LE(r.GetBlob("thumb").second - r.GetBlob("thumb").first, 5); }, "shop::Order");
    EXPECT_GT(FailEachAllocation([&] { GetsThrough([&] { CReaderXml(document).Read(order); }); }), 5u);
}

} // namespace
