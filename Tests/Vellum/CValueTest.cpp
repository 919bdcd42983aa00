#include "Vellum/CValue.h"

#include "Vellum/CDocumentException.h"

#include "Support/Binary.h"
#include "Support/Testing.h"

namespace
{

using namespace Vellum;

TEST(CValue, HasTheKindsAndTheOrderOfABinaryDocument)
{
    CValue value = ValueOf(Support::Bytes(Support::ExampleDocument));
    EXPECT_EQ(value.ToJson(), "{\t\"x\":7,\n\t\"name\":\"ab\",\n\t\"on\":true,\n\t\"tags\":\n\t[\t1,\n\t\t2\n\t]\n}\n");
    EXPECT_EQ(*value.Find("tags[1]"), CValue(std::uint16_t{2}));
    EXPECT_TRUE(std::as_const(value).GetElements().empty());
    EXPECT_RAISES(CException, "Vellum::CValue::GetElements", value.GetElements());
    value.Set("tags[1]", 2.5);
    EXPECT_THROW(BinaryOf(value), CDocumentException);
}

TEST(CValue, PathsLeadToWhatIsChanged)
{
    CValue value = CValue::FromJson(R"({"a.b":[{"c":1}],"a":{"b":2},"n":null})");
    EXPECT_EQ(*value.Find("a.b[0].c"), CValue(CValue::SNumber{"1"})) << "the longest key";
    EXPECT_EQ(value.Find("n")->GetKind(), EValueKind::Null);
    for (const char* path : {"x", "a.b[1]", "a.b[x]", "a.b[0]c", "[0]", "a.", ".a", "a.b[0].c.d"})
        EXPECT_EQ(value.Find(path), nullptr) << path;
    value.Set("a.b[1]", "text");
    value.Set("a.b[0].d", true);
    EXPECT_TRUE(value.Remove("a.b[0].c") && value.Remove("n"));
    EXPECT_FALSE(value.Remove("n") || value.Remove(""));
    EXPECT_EQ(value, CValue::FromJson(R"({"a.b":[{"d":true},"text"],"a":{"b":2}})"));
    EXPECT_TRUE(value.Remove("a.b[0]"));
    EXPECT_EQ(value, CValue::FromJson(R"({"a.b":["text"],"a":{"b":2}})"));
    value.Set("a.b[0]", CValue::Object());
    for (const char* path : {"a.b[3]", "a.b.c", "a.b[0].d.e", "x.y", "[0]"})
        EXPECT_RAISES(CDocumentException, "Vellum::CValue::Set", value.Set(path, 1));
}

TEST(CValue, WordsOfJsonStayWhatTheyAre)
{
    const std::string document = "[\t-1.50e3,\n\t1,\n\t\"1\",\n\ttrue,\n\tnull,\n\t100.,\n\t-inf\n]\n";
    EXPECT_EQ(CValue::FromJson(document).ToJson(), document);
    EXPECT_EQ(CValue::FromJson("[010,12ab,?1,\"\\u0041\"]"), CValue::FromJson(R"(["010","12ab","?1","A"])"));
    EXPECT_EQ(CValue::FromJson(R"({"a":1,"b":2,"a":null,"b":3})"), CValue::FromJson(R"({"a":1,"b":3})"));
    EXPECT_EQ(CValue::FromJson(""), CValue::Sequence()); // as CReaderJson has it
    EXPECT_EQ(CValue::FromJson("null"), CValue::Object());
    const char* const numbers = R"({"i":[1,-1],"u":[1,18446744073709551615],"d":[-1,18446744073709551615,0.5]})";
    const CValue binary = ValueOf(BinaryOf(CValue::FromJson(numbers)));
    EXPECT_EQ(*binary.Find("i[1]"), CValue(std::int64_t{-1}));
    EXPECT_EQ(*binary.Find("u[0]"), CValue(std::uint64_t{1}));
    EXPECT_EQ(*binary.Find("d[0]"), CValue(-1.0));
    EXPECT_NE(CValue::FromJson("[1.50]").ToXml().find("<elt>1.50</elt>"), std::string::npos);
}

TEST(CValue, EveryPartOfADateCounts)
{
    constexpr std::uint64_t Date = 133'541'931'012'500'000, Millisecond = 10'000, Day = 864'000'000'000;
    for (const std::uint64_t later :
         {Millisecond, 1000 * Millisecond, 60'000 * Millisecond, Day / 24, Day, 31 * Day, 365 * Day})
        EXPECT_NE(CValue(CbDateTime(Date)), CValue(CbDateTime(Date + later))) << later;
    EXPECT_EQ(CValue(CbDateTime(Date)), CValue(CbDateTime(Date)));
}

TEST(CValue, ElementsOfXmlAreTakenForWhatTheyLookLike)
{
    const CValue value = CValue::FromXml("<?xml?><shop-Order><id> 7 </id><l><elt>1</elt></l><o><T><a>1</a></T><T/></o>"
                                         "<s><a>1</a></s></shop-Order>");
    CValue expected = CValue::Object("shop::Order");
    CValue objects = CValue::Sequence();
    objects.GetElements() = {CValue::Object("T"), CValue::Object("T")};
    objects.Set("[0].a", "1");
    expected.Set("id", "7");
    expected.Set("l", CValue::Sequence()).GetElements().emplace_back("1");
    expected.Set("o", objects);
    expected.Set("s", CValue::Object()).Set("a", "1");
    EXPECT_EQ(value, expected);
    EXPECT_EQ(CValue::FromXml(value.ToXml()), value);
}

TEST(CValue, WhatAFormatCantHoldIsRefusedWithItsPath)
{
    const auto refuse = [](const char* json, const char* path, const char* reason, auto write)
    {
        CValue value = CValue::FromJson(json);
        try
        {
            write(value);
            ADD_FAILURE() << json;
        }
        catch (const CDocumentException& exception)
        {
            EXPECT_STREQ(exception.GetPath(), path);
            EXPECT_STREQ(exception.GetReason(), reason);
        }
    };
    const auto binary = [](CValue& value) { BinaryOf(value); };
    const auto toXml = [](CValue& value) { value.ToXml(); };
    refuse(R"({"a":[1,true]})", "a[1]", "A binary document can't hold bool in a sequence of number.", binary);
    refuse(R"({"a":[null]})", "a[0]", "A binary document can't hold a null in a sequence.", binary);
    refuse(R"({"a":[null]})", "a[0]", "XML can't hold a null in a sequence.", toXml);
    refuse(R"({"a b":1})", "a b", "The key is no element name of XML.", toXml);
    refuse(R"({"a":1,"A":2})", "", "XML can't hold two fields that are called \"a\".", toXml);
    refuse(R"({"a":"1"})", "a", "A text has a zero byte, where it would end.",
           [](CValue& value) { (value.Set("a", std::string(1, '\0')), value.ToJson()); });
    refuse(R"({"a":1})", "", "JSON can't hold two fields that are called \"a\".",
           [](CValue& value) {
               (value.GetFields().push_back({"a", 2}), value.ToJson());
           });
    refuse(R"({"a":1})", "a", "\"1x\" is no number.",
           [](CValue& value) { (value.Set("a", CValue::SNumber{"1x"}), value.ToJson()); });
    refuse("[]", "", "A document is an object or a sequence.", [](CValue& value) { ((value = 1), value.ToJson()); });
}

} // namespace

// However the writer's tables have grown, and whichever object had the keys first, the same bytes come back.
TEST(CValue, FieldsOfLargeObjectsComeBackInTheirOrder)
{
    for (const int count : {95, 96, 97, 192, 200, 1000})
    {
        CValue objects = CValue::Sequence();
        for (const int step : {1, 7919})
        {
            objects.GetElements().push_back(CValue::Object("T"));
            for (int number = 0; number < count; ++number)
                objects.GetElements().back().GetFields().push_back({"k" + std::to_string(number * step % count), 1});
        }
        const auto bytes = BinaryOf(objects);
        EXPECT_TRUE(BinaryOf(ValueOf(bytes)) == bytes) << count;
        EXPECT_TRUE(std::as_const(objects).GetElements()[0] == ValueOf(bytes).GetElements()[0]) << count;
    }
}

TEST(CValue, NothingIsPutOnAStreamThatHasFailed)
{
    std::ostringstream stream;
    stream << "before";
    stream.setstate(std::ios_base::eofbit);
    CValue::FromJson("{}").ToJson(stream);
    EXPECT_TRUE(stream.fail());
    EXPECT_EQ(stream.str(), "before");
}
