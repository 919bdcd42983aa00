#include <map>
#include <variant>

#include "Vellum/Vellum.h"

#include "Describe/Describe.h"
#include "Support/Clients.h"
#include "Support/Testing.h"

namespace
{

using namespace Vellum;

// Writes the value as a field "k" of one type and reads it as one of another.
template <class T>
struct SField
{
    T k{};
};

template <class To, class From>
std::optional<To> Convert(const From& value)
{
    const To untouched = To(99);
    SField<To> to{untouched};
    FromBinary(ToBinary(SField<From>{value}), to);
    return to.k == untouched ? std::nullopt : std::optional<To>(to.k);
}

template <class Wide, class... Narrow>
void ExpectWidening()
{
    const auto expect = [](auto narrow) { EXPECT_EQ(Convert<Wide>(narrow), static_cast<Wide>(narrow)); };
    (expect(Narrow{7}), ...);
    (expect(std::numeric_limits<Narrow>::lowest()), ...);
}

TEST(Evolution, WiderFieldsTakeWhatWasWrittenNarrower)
{
    ExpectWidening<std::int64_t, std::int32_t, std::uint32_t, std::int16_t, std::uint16_t, signed char,
                   unsigned char>();
    ExpectWidening<std::uint64_t, std::uint32_t, std::uint16_t, unsigned char>();
    ExpectWidening<std::int32_t, std::int16_t, std::uint16_t, signed char, unsigned char>();
    ExpectWidening<std::uint32_t, std::uint16_t, unsigned char>();
    ExpectWidening<std::int16_t, signed char, unsigned char>();
    ExpectWidening<std::uint16_t, unsigned char>();
    ExpectWidening<double, float>();
    EXPECT_EQ(Convert<std::int32_t>(std::int64_t{7}), std::nullopt);
    EXPECT_EQ(Convert<std::uint32_t>(std::int16_t{7}), std::nullopt);
    EXPECT_EQ(Convert<float>(7.0), std::nullopt);

    const auto list =
        FromBinary<SField<std::vector<std::int64_t>>>(ToBinary(SField<std::vector<signed char>>{{1, -2}}));
    EXPECT_EQ(list.k, (std::vector<std::int64_t>{1, -2}));
}

TEST(Evolution, TextsTakeEachOtherWhenNothingIsLost)
{
    const auto narrow = [](const std::wstring& wide)
    { return FromBinary<SField<std::string>>(ToBinary(SField<std::wstring>{wide})).k; };
    const auto wide = [](const std::string& text)
    { return FromBinary<SField<std::wstring>>(ToBinary(SField<std::string>{text})).k; };
    EXPECT_EQ(narrow(L"gr\u00FCn"), "gr\xC3\xBCn");
    EXPECT_EQ(wide("gr\xC3\xBCn"), L"gr\u00FCn");
    EXPECT_EQ(narrow(std::wstring(1, wchar_t{0xD800})), "");
    EXPECT_EQ(wide("\xFF"), L"");
}

// What was written with the key's own kind wins, whatever else stands under the key.
TEST(Evolution, TheKeysOwnKindIsPreferred)
{
    const Support::CFields both(
        [](IDataWriter& writer)
        {
            writer.Write("k", std::int16_t{1});
            writer.Write("k", std::int64_t{2});
        });
    EXPECT_EQ(FromBinary<SField<std::int64_t>>(ToBinary(both)).k, 2);
}

enum class EColor
{
    Red,
    Green
};
constexpr auto Describe(Type<EColor>) { return Names<EColor>({{EColor::Red, "red"}, {EColor::Green, "green"}}); }

TEST(Evolution, EnumeratorsWithNamesMayChangeTheirNumbers)
{
    EXPECT_EQ(ToJson(SField<EColor>{EColor::Green}), Lines("{→\"k\":\"green\"", "}"));
    EXPECT_EQ(FromJson<SField<EColor>>(R"({"k":"green"})").k, EColor::Green);
}

class CShop
{
public:
    static constexpr auto Describe()
    {
        return Fields("Shop", Field("name", &CShop::name).Required().Formerly("label").Formerly("title"),
                      Field("cents", &CShop::cents).Only(2), Field("euros", &CShop::euros).Only(0, 1),
                      Field("note", &CShop::note))
            .Version(2)
            .Upgrade(&CShop::upgrade);
    }

    std::string name = "default";
    std::int64_t cents = 5;
    double euros = 0;
    std::optional<std::string> note = "kept only when it is there";
    std::vector<std::uint32_t> upgrades;

private:
    void upgrade(std::uint32_t from)
    {
        upgrades.push_back(from);
        cents = static_cast<std::int64_t>(euros * 100);
    }
};

TEST(Evolution, FieldsAreRenamedDroppedAddedAndUpgraded)
{
    const auto now = FromJson<CShop>(R"({"version":2,"name":"a","label":"b","cents":3,"euros":9})");
    EXPECT_EQ(std::tuple(now.name, now.cents, now.euros, now.note.has_value()), std::tuple("a", 3, 0.0, false));
    EXPECT_TRUE(now.upgrades.empty());

    for (const char* text : {R"({"version":1,"label":"b","euros":1.5,"cents":3})", R"({"title":"b","euros":1.5})"})
    {
        const auto then = FromJson<CShop>(text);
        EXPECT_EQ(std::tuple(then.name, then.cents), std::tuple("b", 150));
        EXPECT_EQ(then.upgrades, std::vector<std::uint32_t>(1, text[2] == 'v' ? 1 : 0));
    }
    EXPECT_EQ(FromJson<CShop>(R"({"version":7,"name":"later","cents":4,"new":1})").cents, 4);
    EXPECT_EQ(ToJson(FromJson<CShop>(R"({"version":1,"name":"x","euros":1})")),
              Lines("{→\"version\":2,", "→\"name\":\"x\",", "→\"cents\":100", "}"));
}

TEST(Evolution, WhatIsAbsentKeepsItsDefaultAndWhatIsRequiredIsMissed)
{
    CShop shop;
    shop.cents = 77;
    FromXml(R"(<?xml version="1.0"?><Shop><name>n</name><version>2</version></Shop>)", shop);
    EXPECT_EQ(shop.cents, 77);
    EXPECT_THROW(FromJson<CShop>("{}"), CDocumentException);
    EXPECT_THROW(FromBinary<CShop>(ToBinary(SField<int>{})), CDocumentException);
}

class CPlain
{
public:
    int a = 1;
    int b = 2;
};
constexpr auto Describe(Type<CPlain>) { return Fields("Plain", Field("a", &CPlain::a), Field("b", &CPlain::b)); }

class CShape
{
public:
    static constexpr auto Describe();
    virtual ~CShape() = default;
    int id = 0;
};
class CCircle : public CShape, public CPlain
{
public:
    static constexpr auto Describe();
    double radius = 0;
};
constexpr auto CShape::Describe()
{
    return Fields("Shape", Field("id", &CShape::id))
        .OneOf(Alternative<CCircle>("circle"), Alternative<CShape>("shape"));
}
constexpr auto CCircle::Describe()
{
    return Fields("Circle", Base<CShape>(), Base<CPlain>(), Field("radius", &CCircle::radius));
}

using Price = std::variant<int, CPlain, double>;
constexpr auto Describe(Type<Price>)
{
    return OneOf(Alternative<double>("exact"), Alternative<int>("rounded"), Alternative<CPlain>("parts"));
}

struct SDrawing
{
    std::vector<std::unique_ptr<CShape>> shapes;
    std::shared_ptr<CPlain> one;
};

TEST(Evolution, BasesAreFieldsAndPointersNameWhatTheyPointTo)
{
    SDrawing drawing;
    auto circle = std::make_unique<CCircle>();
    circle->id = 4;
    drawing.shapes.push_back(std::move(circle));
    drawing.shapes.push_back(std::make_unique<CShape>());
    drawing.shapes.push_back(nullptr);
    drawing.one = std::make_shared<CPlain>();
    drawing.one->a = 5;
    const std::string json = ToJson(drawing);
    EXPECT_EQ(ToJson(FromJson<SDrawing>(json, Strict)), json);
    EXPECT_EQ(ToJson(FromXml<SDrawing>(ToXml(drawing), Strict)), json);
    const auto copy = FromBinary<SDrawing>(ToBinary(drawing), Strict);
    EXPECT_EQ(ToJson(copy), json);
    EXPECT_EQ(dynamic_cast<const CCircle&>(*copy.shapes.at(0)).id, 4);
    EXPECT_EQ(copy.shapes.at(2), nullptr);
    EXPECT_EQ(copy.one->a, 5);
    EXPECT_THROW(FromJson<SDrawing>(R"({"shapes":[{"hexagon":{}}]})"), CDocumentException);
    EXPECT_THROW((FromJson<SField<std::variant<int, bool>>>(R"({"k":{}})")), CDocumentException);
    EXPECT_EQ(std::get<double>(FromJson<SField<Price>>(R"({"k":{"exact":2}})", Strict).k), 2);
    EXPECT_NE(ToXml(SField<Price>{7}).find("<rounded>7</rounded>"), std::string::npos);

    class COther : public CShape
    {
    };
    drawing.shapes[0] = std::make_unique<COther>();
    EXPECT_THROW(ToJson(drawing), CDocumentException);
}

} // namespace
