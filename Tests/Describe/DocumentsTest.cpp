#include <chrono>
#include <fstream>
#include <iostream>
#include <map>
#include <system_error>

#include "Vellum/Vellum.h"

#include "Describe/Describe.h"
#include "Support/Binary.h"
#include "Support/Clients.h"
#include "Support/CTempFolder.h"
#include "Support/System.h"
#include "Support/Testing.h"

namespace
{

using namespace Vellum;

struct SLine
{
    std::uint16_t count = 0;
    double price = 0.0;
    std::optional<std::string> note;
    bool operator==(const SLine&) const = default;
};

class COrder
{
public:
    static constexpr auto Describe()
    {
        return Fields("shop::Order", Field("id", &COrder::id).Required(), Field("small", &COrder::small),
                      Field("paid", &COrder::paid), Field("grade", &COrder::grade), Field("lines", &COrder::lines),
                      Field("codes", &COrder::codes), Field("pair", &COrder::pair), Field("map", &COrder::map),
                      Field("thumb", &COrder::thumb), Field("wide", &COrder::wide), Field("created", &COrder::created));
    }
    bool operator==(const COrder& other) const { return ToJson(*this) == ToJson(other); }

    std::uint32_t id = 7;
    std::int8_t small = -3;
    bool paid = true;
    char grade = 'A';
    std::vector<SLine> lines{{1, 2.5, "x<\"y\""}, {2, 0.1, {}}};
    std::vector<std::int64_t> codes{1, -1};
    std::pair<int, int> pair{3, 4};
    std::map<std::string, float> map{{"a", 0.5F}};
    std::vector<unsigned char> thumb{1, 2, 3};
    std::wstring wide = L"\u00FC";
    CbDateTime created{"2024-03-07T14:05:09"};
};

// The same, written by hand.
template <class Items, class Convert = std::identity>
Support::CElements SequenceOf(const Items& items, const Convert& convert = {})
{
    const auto write = [=](IContainerWriter& writer)
    {
        for (const auto& item : items)
            writer.Write(convert(item));
    };
    return Support::CElements(write, {}, "sequence");
}

Support::CFields HandLine(const SLine& line)
{
    const auto write = [&line](IDataWriter& writer)
    {
        Support::WriteFields(writer, "count", line.count, "price", line.price);
        if (line.note)
            writer.Write("note", *line.note);
    };
    return Support::CFields(write, {}, "SLine");
}

Support::CFields HandOrder(const COrder& order)
{
    const auto write = [&order](IDataWriter& writer)
    {
        Support::WriteFields(writer, "id", order.id, "small", order.small, "paid", order.paid, "grade", order.grade,
                             "lines", SequenceOf(order.lines, HandLine), "codes", SequenceOf(order.codes), "pair",
                             SequenceOf(std::array{3, 4}), "map",
                             Support::CFields([](IDataWriter& map) { map.Write("a", 0.5F); }, {}, "map"));
        writer.Write("thumb", order.thumb.size(), order.thumb.data());
        Support::WriteFields(writer, "wide", order.wide, "created", order.created);
    };
    return Support::CFields(write, {}, "shop::Order");
}

TEST(Documents, AreThoseOfAHandWrittenClassByteForByte)
{
    const COrder order;
    const Support::CFields byHand = HandOrder(order);
    EXPECT_EQ(ToJson(order), ToJson(byHand));
    EXPECT_EQ(ToXml(order), ToXml(byHand));
    EXPECT_EQ(ToBinary(order), ToBinary(byHand));
    int read = 0;
    Support::CElements list = Support::ReadElements([&](IContainerReader& r) { r.Read(1, read); });
    FromJson(ToJson(Support::ElementsOf(5, 6)), list);
    EXPECT_EQ(read, 6);
    std::ostringstream stream;
    CWriterJson(stream).Write(Stored(COrder()));
    EXPECT_EQ(stream.str(), ToJson(COrder()));
}

TEST(Documents, StreamsTakeTextsWhateverTheirFlags)
{
    std::stringstream stream;
    stream << std::hex;
    ToJson(COrder(), stream);
    ToXml(COrder(), stream);
    EXPECT_EQ(stream.str(), ToJson(COrder()) + ToXml(COrder()));
}

// ---- Strict. ----

struct SStrictness
{
    std::int8_t small = 0;
    std::uint16_t positive = 0;
    float real = 0;
    bool yes = false;
    char letter = 'x';
    std::vector<SLine> lines;
    std::array<int, 2> two{};
    CbDateTime date{std::uint64_t{0}};
    CbArray<unsigned char> blob;
    std::map<std::string, int> map;
    std::vector<std::optional<int>> holes;
};

struct SRefused
{
    const char* document;
    const char* path;
    const char* reason;
    std::uint32_t line;
    std::uint32_t column;
};

void ExpectRefused(const SRefused& refused, const std::function<void()>& read)
{
    SCOPED_TRACE(refused.document);
    try
    {
        read();
        ADD_FAILURE() << "nothing was raised";
    }
    catch (const CDocumentException& exception)
    {
        EXPECT_STREQ(exception.GetPath(), refused.path);
        EXPECT_STREQ(exception.GetReason(), refused.reason);
        EXPECT_EQ(exception.GetLine(), refused.line);
        EXPECT_EQ(exception.GetColumn(), refused.column);
        EXPECT_STREQ(dynamic_cast<const CDocumentException&>(*exception.Clone()).what(), exception.what());
    }
}

TEST(Strict, TellsPathReasonAndPlaceInJson)
{
    const char* const otherKind = "The value is of another kind than the field.";
    const SRefused table[] = {
        {R"({"small":300})", "small", "The number 300 isn't between -128 and 127.", 1, 10},
        {R"({"small":1e3})", "small", "\"1e3\" is no whole number.", 1, 10},
        {R"({"small":"12ab"})", "small", "\"12ab\" is no whole number.", 1, 10},
        {R"({"small":010})", "small", "Expected a value of JSON, found \"010\".", 1, 10},
        {R"({"small":""})", "small", "\"\" is no whole number.", 1, 10},
        {R"({"small":99999999999999999999})", "small", "The number 99999999999999999999 isn't between -128 and 127.", 1,
         10},
        {R"({"small":{}})", "small", otherKind, 1, 10},
        {R"({"positive":-1})", "positive", "The number -1 isn't between 0 and 65535.", 1, 13},
        {R"({"real":1e39})", "real", "The number 1e39 is too large.", 1, 9},
        {R"({"real":"1x"})", "real", "\"1x\" is no number.", 1, 9},
        {R"({"yes":1})", "yes", "\"1\" is neither true nor false.", 1, 8},
        {R"({"letter":"ab"})", "letter", "\"ab\" is more than one character.", 1, 11},
        {"{\"lines\":[{},\n {\"count\":1,\"cuont\":2}]}", "lines[1].cuont", "Nothing is known by this name.", 2, 21},
        {R"({"lines":[{},7]})", "lines[1]", "The element is of another kind than what is read here.", 1, 14},
        {R"({"lines":[{},null]})", "lines[1]", "Expected an element of the sequence, found \"null\".", 1, 14},
        {R"({"lines":{}})", "lines", otherKind, 1, 10},
        {R"({"two":[1]})", "two", "There are 1 elements in place of 2.", 1, 8},
        {R"({"two":[1,2,3]})", "two", "There are more than 2 elements.", 1, 8},
        {R"({"date":"2024-02-30T00:00:00"})", "date", "The date is none of the calendar's.", 1, 9},
        {R"({"date":"soon"})", "date", "What stands here can't be read: CbDateTime::operator = refuses it.", 1, 9},
        {R"({"blob":"a?=="})", "blob", "The text is no Base64.", 1, 9},
        {R"({"holes":[[],[{}]]})", "holes[1][0]", "The element is of another kind than what is read here.", 1, 15},
        {R"({"map":{"a":1,"b":"c"}})", "map.b", "\"c\" is no whole number.", 1, 19},
        {R"({"small":1,})", "", "Expected a value behind the comma, found \"}\".", 1, 12},
        {R"({"map":{"a":hello}})", "map.a", "Expected a value of JSON, found \"hello\".", 1, 13},
        {"[]", "", "Expected an object, found \"[\".", 1, 1},
        {"{} {}", "", "Expected the end of the document, found \"{\".", 1, 4},
    };
    for (const SRefused& refused : table)
        ExpectRefused(refused, [&] { FromJson<SStrictness>(refused.document, Strict); });
    EXPECT_TRUE(std::ranges::equal(FromJson<SStrictness>(R"({"blob":" A Q I ="})", Strict).blob, std::array{1, 2}));
}

TEST(Strict, TellsPathAndReasonInXmlAndBinary)
{
    const std::string head = "<?xml version=\"1.0\"?>\n";
    const SRefused table[] = {
        {"<SStrictness><small>300</small></SStrictness>", "small", "The number 300 isn't between -128 and 127.", 0, 0},
        {"<SStrictness><yes>maybe</yes></SStrictness>", "yes", "\"maybe\" is neither true nor false.", 0, 0},
        {"<SStrictness><Other/></SStrictness>", "Other", "Nothing is known by this name.", 0, 0},
        {"<SStrictness><small>1</SStrictness>", "small",
         "Expected the end of the element \"small\", which is opened in line 2, column 15, found that of another one.",
         2, 24},
        {"<SStrictnesses/>", "", "Expected the root \"SStrictness\", found \"SStrictnesses\".", 2, 2},
        {"<Other><SStrictness/></Other>", "", "Expected the root \"SStrictness\", found \"Other\".", 2, 2},
    };
    for (const SRefused& refused : table)
        ExpectRefused(refused, [&] { FromXml<SStrictness>(head + refused.document, Strict); });

    const auto refuse = [](const char* path, const char* reason, const Support::CFields& document) {
        ExpectRefused({path, path, reason, 0, 0}, [&] { FromBinary<SStrictness>(ToBinary(document), Strict); });
    };
    refuse("small", "The value is of another kind than the field.",
           Support::CFields([](IDataWriter& writer) { writer.Write("small", std::int16_t{1}); }));
    refuse("other", "Nothing is known by this name.",
           Support::CFields([](IDataWriter& writer) { writer.Write("other", true); }));
    ExpectRefused({"", "", "Expected the version, found the end of the document after 2 of 4 bytes.", 0, 0},
                  [] { FromBinary<SStrictness>(std::string("\0\0", 2), Strict); });
    auto tail = ToBinary(SStrictness());
    tail.push_back(0);
    ExpectRefused({"", "", "Expected the end of the document, found 1 more byte.", 0, 0},
                  [&] { FromBinary<SStrictness>(tail, Strict); });
}

TEST(Documents, AreReadAsLenientlyAsTheContractHasIt)
{
    const auto read = FromJson<SStrictness>(
        R"({"small":300,"positive":"-1","yes":"maybe","lines":[{"count":1,"new":2},null,{}],"two":[5],"other":1})");
    EXPECT_EQ(read.small, 44);
    EXPECT_EQ(read.positive, 65535);
    EXPECT_EQ(read.lines, (std::vector<SLine>{{1, 0, {}}}));
    EXPECT_EQ(read.two, (std::array{5, 0}));
    EXPECT_RAISES(CException, "Vellum::Conversion::StringToInt", FromJson<SStrictness>(R"({"small":"x"})"));
    EXPECT_EQ(FromXml<SStrictness>("no document").small, 0);
}

template <class Value>
void ExpectUnwritable(const Value& value, const char* path, const char* reason, bool inJson, bool inXml)
{
    if (inJson)
        ExpectRefused({"JSON", path, reason, 0, 0}, [&] { ToJson(value); });
    if (inXml)
        ExpectRefused({"XML", path, reason, 0, 0}, [&] { ToXml(value); });
}

TEST(Documents, KeysOfMapsThatCouldNotBeReadBackAreRefused)
{
    using Map = std::map<std::string, int>;
    const char* const noName = "The key of the map is no element name of XML.";
    ExpectUnwritable(Map{{"a\"b", 1}}, "a\"b", "The key of the map can't be written in JSON.", true, false);
    ExpectUnwritable(std::vector{Map(), Map{{"\"", 1}}}, "[1].\"", "The key of the map can't be written in JSON.", true,
                     false);
    ExpectUnwritable(Map{{"a\\", 1}}, "a\\", "The key of the map can't be written in JSON.", true, false);
    for (const char* key : {"a b", "", "Pre", "\xC3"})
        ExpectUnwritable(Map{{key, 1}}, key, noName, false, true);
    ExpectUnwritable(Map{{"A", 1}, {"a", 1}}, "a", "XML can't tell keys that differ in case alone.", false, true);
    ExpectUnwritable(Map{{std::string("a\0b", 3), 1}}, "", "A key of the map has a zero byte.", true, true);
}

TEST(Documents, TimesEndWhereTheirFormatDoes)
{
    using Times = std::map<std::string, std::chrono::sys_time<std::chrono::milliseconds>>;
    const auto timesOf = [](std::int64_t day, std::int64_t millisecond) {
        return Times{{"t", Times::mapped_type(std::chrono::milliseconds(day * 86'400'000 + millisecond))}};
    };
    for (const Times& times : {timesOf(-134'774, 0), timesOf(2'932'897, -1000)}) // 1601-01-01 and 9999-12-31
        EXPECT_EQ(FromJson<Times>(ToJson(times)), times);
    for (const Times& times : {timesOf(-134'774, 1), timesOf(10'540'168, -1)}) // ... 30827-12-31
        EXPECT_EQ(FromBinary<Times>(ToBinary(times)), times);
    ExpectUnwritable(timesOf(2'932'897, 0), "t", "The time is out of range.", true, true);
    for (const Times& times : {timesOf(-134'774, -1), timesOf(10'540'168, 0)})
        EXPECT_THROW(ToBinary(times), CDocumentException);
}

// ---- Files. ----

TEST(Files, AreSavedAndLoadedByTheirExtension)
{
    const Support::CTempFolder folder;
    const std::vector<SLine> lines(20000, SLine{1, 2.5, "a note"});
    for (const char* name : {"a.json", "a.XML", "a.vellum", "noextension"})
    {
        const auto path = folder.GetPath() / name;
        Save(path, lines);
        Save(path.string(), lines);
        EXPECT_EQ(Load<std::vector<SLine>>(path, Strict), lines) << name;
    }
    EXPECT_EQ(FromBinary<std::vector<SLine>>(ToBinary(lines), Strict), lines);
    const auto path = folder.GetPath() / "b";
    Save(path, COrder(), EFormat::Json);
    std::ifstream file(path);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), ToJson(COrder()));
    COrder order;
    order.id = 0;
    order.created.SetYear(1999);
    Load(path, order, EFormat::Json, Strict);
    EXPECT_EQ(order, COrder());
}

// The old file is there until the new one is whole, and hands on its permissions; a link stays one.
TEST(Files, AreReplacedAsAWhole)
{
    const Support::CTempFolder folder;
    const auto path = folder.GetPath() / "a.json";
    Save(path, COrder());
    Save(path, std::map<std::string, int>{{"a", 1}});
    EXPECT_THROW(Save(path, std::map<std::string, int>{{"a\"", 1}}), CDocumentException);
    EXPECT_EQ((Load<std::map<std::string, int>>(path)), (std::map<std::string, int>{{"a", 1}}));
    const auto count = std::distance(std::filesystem::directory_iterator(folder.GetPath()), {});
    EXPECT_EQ(count, 1) << "a file is left behind";
}

TEST(Files, FailuresTellTheFileAndTheReason)
{
    const Support::CTempFolder folder;
    const std::string none = (folder.GetPath() / "none" / "a.json").string();
    const std::string json = (folder.GetPath() / "a.json").string();
    Save(json, COrder());
    const auto tell = [](const std::function<void()>& operation)
    {
        try
        {
            operation();
        }
        catch (const CDocumentException& exception)
        {
            return std::string(exception.what());
        }
        return std::string();
    };
    const auto reason = [](std::errc error) { return ToSystemError(error).message() + '.'; }; // the user's language
    EXPECT_EQ(tell([&] { Load<COrder>(none); }),
              "Vellum::Load: " + none + ": " + reason(std::errc::no_such_file_or_directory));
    EXPECT_EQ(tell([&] { Save(none, COrder()); }),
              "Vellum::Save: " + none + ": " + reason(std::errc::no_such_file_or_directory));
    EXPECT_EQ(tell([&] { Load<COrder>(folder.GetPath()); }),
              "Vellum::Load: " + folder.GetPath().string() + ": " + reason(std::errc::is_a_directory));
    EXPECT_EQ(tell([&] { Load<COrder>(json, EFormat::Xml); }),
              "Vellum::Load: " + json +
                  ", line 10, column 5: Expected an attribute or the end of the tag, found \"\"\".");
    EXPECT_EQ(tell([&] { Load<COrder>(json, EFormat::Binary); }),
              "Vellum::Load: " + json +
                  ": What stands here can't be read: CbStreamRead::ReadAndCompareVersion refuses it.");
    EXPECT_EQ(tell([&] { Load<std::vector<int>>(json); }),
              "Vellum::Load: " + json + ", line 1, column 1: Expected a sequence, found \"{\".");
}

} // namespace
