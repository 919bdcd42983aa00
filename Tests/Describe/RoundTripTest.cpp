#include <bitset>
#include <chrono>
#include <complex>
#include <deque>
#include <filesystem>
#include <list>
#include <map>
#include <set>
#include <unordered_map>
#include <variant>

#include "Vellum/Vellum.h"

#include "Describe/Describe.h"
#include "Support/Testing.h"

// A value of any shape comes back equal from every format, with Strict and without, and a second time to the same
// bytes. Shapes are made from types, values from a tape of numbers, which shrinks to an empty one.
namespace
{

enum class EColor
{
    Red,
    Green,
    Blue
};

constexpr auto Describe(Vellum::Type<EColor>)
{
    return Vellum::Names<EColor>({{EColor::Red, "red"}, {EColor::Green, "green"}, {EColor::Blue, "blue"}});
}

enum class ESize : std::int8_t
{
    Small = -1,
    Large = 1
};

class CPoint
{
public:
    static constexpr auto Describe()
    {
        return Vellum::Fields("test::Point", Vellum::Field("x", &CPoint::x), Vellum::Field("y", &CPoint::y)).Version(3);
    }
    CPoint() = default;
    CPoint(int x, double y) : x(x), y(y) {}
    bool operator==(const CPoint&) const = default;

private:
    int x = 0;
    double y = 0;
};

// Hand-written, around what isn't.
class CHand final : public Vellum::ISerializable
{
public:
    const char* GetTypeName() const override { return "Hand"; }
    void Write(Vellum::IDataWriter& writer) const override { Vellum::WriteField(writer, "points", points); }
    void Read(Vellum::IDataReader& reader) override { Vellum::ReadField(reader, "points", points); }
    bool operator==(const CHand& other) const { return points == other.points; }

    std::vector<CPoint> points;
};

// An aggregate around any type, with it alone and in a sequence.
template <class T>
struct SBrief
{
    T value{};
    std::vector<T> list;
    bool operator==(const SBrief&) const = default;
};

// ... and with it in every place there is.
template <class T>
struct SAround
{
    T value{};
    std::vector<T> list;
    std::optional<T> possible;
    std::map<std::string, T> map;
    std::pair<T, int> pair;
    std::tuple<T, T> two;
    std::optional<std::optional<T>> twice;
    std::map<int, T> numbered;
    std::array<T, 2> array{};
    std::variant<std::monostate, T> variant;
    std::list<std::optional<T>> holes;
    bool operator==(const SAround&) const = default;
};

int Take(CTape& tape, std::size_t below) { return static_cast<int>(tape.Below(below)); }

// Not every text survives XML: white space at the ends is lost, and so are control bytes.
void Make(CTape& tape, std::string& value)
{
    for (std::size_t length = tape.Below(6); length != 0; --length)
        value += tape.From(std::array{"a", "<", "&", "\"", "%", "\\", "ü", "]]>", "Z"});
}
void Make(CTape& tape, std::wstring& value) { value.assign(tape.Below(3), L'ö'); }
void Make(CTape& tape, std::u8string& value) { value.assign(tape.Below(3), u8'y'); }
void Make(CTape& tape, char& value) { value = static_cast<char>('A' + Take(tape, 20)); }
void Make(CTape& tape, bool& value) { value = tape.Below(2) == 1; }
void Make(CTape& tape, double& value) { value = (Take(tape, 2000) - 1000.0) / (1 + Take(tape, 7)); }
void Make(CTape& tape, float& value)
{
    using Limits = std::numeric_limits<float>;
    value = tape.From(std::array{0.1f, Limits::max(), Limits::lowest(), Limits::denorm_min(), Limits::infinity()});
}
void Make(CTape& tape, std::byte& value) { value = std::byte(tape.Below(256)); }
void Make(CTape& tape, EColor& value) { value = EColor(Take(tape, 3)); }
void Make(CTape& tape, ESize& value) { value = tape.Below(2) == 0 ? ESize::Small : ESize::Large; }
void Make(CTape& tape, CPoint& value) { value = CPoint(Take(tape, 90), Take(tape, 5) / 4.0); }
void Make(CTape& tape, std::filesystem::path& value) { value = std::string(tape.Below(3), 'p') + "/ü"; }
void Make(CTape& tape, std::bitset<5>& value) { value = tape.Below(32); }
void Make(CTape& tape, std::complex<double>& value) { value = {Take(tape, 9) / 4.0, -1.0 * Take(tape, 9)}; }
void Make(CTape& tape, std::chrono::milliseconds& value) { value = std::chrono::milliseconds(Take(tape, 5000)); }
void Make(CTape& tape, std::chrono::system_clock::time_point& value)
{
    value = std::chrono::system_clock::time_point(std::chrono::seconds(std::int64_t{4} * Take(tape, 1'000'000'000)));
}
template <std::integral T>
void Make(CTape& tape, T& value)
{
    value = static_cast<T>(tape.Bits());
}
template <class Container>
requires requires(Container& container) { container.insert(container.end(), typename Container::value_type()); }
void Make(CTape& tape, Container& value);
void Make(CTape& tape, CHand& value) { Make(tape, value.points); }
template <class T>
void Make(CTape& tape, std::optional<T>& value)
{
    if (tape.Below(3) != 0)
        Make(tape, value.emplace());
}
template <class First, class Second>
void Make(CTape& tape, std::pair<First, Second>& value)
{
    Make(tape, const_cast<std::remove_const_t<First>&>(value.first));
    Make(tape, value.second);
}
template <class... T>
void Make(CTape& tape, std::tuple<T...>& value)
{
    std::apply([&](auto&... elements) { (Make(tape, elements), ...); }, value);
}
template <class T, std::size_t Count>
void Make(CTape& tape, std::array<T, Count>& value)
{
    for (T& element : value)
        Make(tape, element);
}
template <class T>
void Make(CTape& tape, std::variant<std::monostate, T>& value)
{
    if (tape.Below(2) == 0)
        value.template emplace<0>();
    else
        Make(tape, value.template emplace<1>());
}
// Keys of maps have to be names of XML, and no two of them may differ in case alone.
template <class T>
void Make(CTape& tape, std::map<std::string, T>& value)
{
    for (std::size_t count = tape.Below(3); count != 0; --count)
        Make(tape, value[std::string(1 + tape.Below(4), 'k')]);
}
template <class Container>
requires requires(Container& container) { container.insert(container.end(), typename Container::value_type()); }
void Make(CTape& tape, Container& value)
{
    for (std::size_t count = tape.Below(4); count != 0; --count)
    {
        typename Container::value_type element{};
        Make(tape, element);
        value.insert(value.end(), std::move(element));
    }
}
template <class T>
void Make(CTape& tape, SBrief<T>& value)
{
    Make(tape, value.value);
    Make(tape, value.list);
}
template <class T>
void Make(CTape& tape, SAround<T>& value)
{
    Vellum::Describing::VisitMembers<11>(value, [&](auto&... members) { (Make(tape, members), ...); });
}

template <class T>
void CheckFormats(const T& value)
{
    const std::string json = Vellum::ToJson(value);
    const std::string xml = Vellum::ToXml(value);
    const std::vector<unsigned char> binary = Vellum::ToBinary(value);
    HOLDS(Vellum::FromJson<T>(json) == value);
    HOLDS(Vellum::FromJson<T>(json, Vellum::Strict) == value);
    HOLDS(Vellum::FromXml<T>(xml) == value);
    HOLDS(Vellum::FromXml<T>(xml, Vellum::Strict) == value);
    HOLDS(Vellum::FromBinary<T>(binary) == value);
    HOLDS(Vellum::FromBinary<T>(binary, Vellum::Strict) == value);
    HOLDS(Vellum::ToBinary(Vellum::FromBinary<T>(binary)).size() == binary.size()); // the order may be a hash's
}

template <class T>
class Described : public testing::Test
{
};

// What a sequence holds as it is, what it has to wrap, an object, a sequence and a blob go everywhere.
template <class... Brief>
using WithAround = testing::Types<SAround<std::int32_t>, SAround<std::string>, SAround<CPoint>,
                                  SAround<std::deque<int>>, SAround<std::vector<unsigned char>>, SBrief<Brief>...>;
using Shapes =
    WithAround<bool, char, signed char, std::uint16_t, unsigned long long, float, double, std::wstring, std::u8string,
               std::vector<std::byte>, EColor, ESize, CHand, std::filesystem::path, std::bitset<5>,
               std::complex<double>, std::chrono::milliseconds, std::chrono::system_clock::time_point,
               std::set<std::string>, std::vector<bool>, std::multimap<std::string, int>,
               std::unordered_map<int, std::string>, std::map<std::string, std::optional<int>>, SAround<bool>>;
TYPED_TEST_SUITE(Described, Shapes);

TYPED_TEST(Described, ComesBackEqualFromEveryPlaceInEveryFormat)
{
    CheckProperty(
        [](CTape& tape)
        {
            TypeParam value;
            Make(tape, value);
            CheckFormats(value);
        });
}

} // namespace
