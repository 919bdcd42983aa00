// simdjson reads and doesn't write: it gets Vellum's documents. They are padded, which isn't timed, as a program would
// load them into padded memory in the first place.

#include <simdjson.h>
#include <string_view>
#include <type_traits>

#include "Peers/Vellum.h"
#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

namespace
{

// Both ways of reading answer the same calls: of an object the value of a key, of a value its content.
template <class Integer>
Integer GetInteger(auto&& value)
{
    using Widest = std::conditional_t<std::is_signed_v<Integer>, std::int64_t, std::uint64_t>;
    return static_cast<Integer>(static_cast<Widest>(value));
}

std::string_view GetText(auto&& value) { return value.get_string().value(); }

void Take(auto&& value, double& number) { number = static_cast<double>(value); }
void Take(auto&& value, std::int32_t& number) { number = GetInteger<std::int32_t>(value); }

void Take(auto&& value, SLine& line)
{
    auto object = value.get_object().value();
    line.quantity = GetInteger<std::uint16_t>(object["quantity"]);
    line.article = GetInteger<std::uint32_t>(object["article"]);
    line.price = static_cast<double>(object["price"]);
}

void Take(auto&& value, SBuyer& buyer)
{
    auto object = value.get_object().value();
    buyer.name = GetText(object["name"]);
    buyer.city = GetText(object["city"]);
    buyer.account = GetInteger<std::int32_t>(object["account"]);
}

template <class Value, class Element>
void Take(Value&& value, SSequence<Element>& sequence);

void Take(auto&& value, SOrder& order)
{
    auto object = value.get_object().value();
    order.id = GetInteger<std::uint32_t>(object["id"]);
    order.title = GetText(object["title"]);
    order.total = static_cast<double>(object["total"]);
    order.discount = static_cast<float>(static_cast<double>(object["discount"]));
    order.paid = static_cast<bool>(object["paid"]);
    order.date = ParseDate(GetText(object["date"]));
    Take(object["buyer"], order.buyer);
    Take(object["lines"], order.lines);
    DecodeSignature(GetText(object["signature"]), order.signature);
}

template <class Value, class Element>
void Take(Value&& value, SSequence<Element>& sequence)
{
    for (auto element : value.get_array())
        Take(element, sequence.elements.emplace_back());
}

void Take(auto&& value, SFields& fields)
{
    auto object = value.get_object().value();
    for (const std::uint32_t index : fields.lookups)
        fields.values[index] = GetInteger<std::int32_t>(object[SFields::GetKeys()[index]]);
}

template <class Value>
void Take(Value&& value, SLevel& level)
{
    auto object = value.get_object().value();
    level.number = GetInteger<std::int32_t>(object["number"]);
    level.name = GetText(object["name"]);
    auto inner = object["inner"];
    if (inner.error() == simdjson::NO_SUCH_FIELD)
        return;
    level.inner = std::make_unique<SLevel>();
    Take(inner, *level.inner);
}

struct SSimdJson
{
    static constexpr const char* Format = "Json";

    static simdjson::padded_string MakeDocument(const auto& objects)
    {
        return simdjson::padded_string(WriteVellumJson(objects));
    }
};

struct SSimdJsonOnDemand : SSimdJson
{
    static constexpr const char* Name = "simdjson on demand";

    static void Read(const simdjson::padded_string& text, auto& objects)
    {
        simdjson::ondemand::parser parser;
        simdjson::ondemand::document document = parser.iterate(text);
        Take(document, objects);
    }
};

struct SSimdJsonDocument : SSimdJson
{
    static constexpr const char* Name = "simdjson DOM";

    static void Read(const simdjson::padded_string& text, auto& objects)
    {
        simdjson::dom::parser parser;
        Take(parser.parse(text), objects);
    }
};

[[maybe_unused]] const bool added = AddPeer<SSimdJsonOnDemand>() && AddPeer<SSimdJsonDocument>();

} // namespace

} // namespace Measured
