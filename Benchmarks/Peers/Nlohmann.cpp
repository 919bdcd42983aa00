#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "Support/Measure.h"
#include "Support/Values.h"

// The library finds these functions in the namespace of the objects.
namespace Measured
{

using Json = nlohmann::json;

static void to_json(Json& json, const SLine& line)
{
    json = {{"quantity", line.quantity}, {"article", line.article}, {"price", line.price}};
}

static void from_json(const Json& json, SLine& line)
{
    json.at("quantity").get_to(line.quantity);
    json.at("article").get_to(line.article);
    json.at("price").get_to(line.price);
}

static void to_json(Json& json, const SBuyer& buyer)
{
    json = {{"name", buyer.name}, {"city", buyer.city}, {"account", buyer.account}};
}

static void from_json(const Json& json, SBuyer& buyer)
{
    json.at("name").get_to(buyer.name);
    json.at("city").get_to(buyer.city);
    json.at("account").get_to(buyer.account);
}

static void to_json(Json& json, const SOrder& order)
{
    json = {{"id", order.id},
            {"title", order.title},
            {"total", order.total},
            {"discount", order.discount},
            {"paid", order.paid},
            {"date", FormatDate(order.date).data()},
            {"buyer", order.buyer},
            {"lines", order.lines.elements},
            {"signature", EncodeSignature(order.signature)}};
}

static void from_json(const Json& json, SOrder& order)
{
    json.at("id").get_to(order.id);
    json.at("title").get_to(order.title);
    json.at("total").get_to(order.total);
    json.at("discount").get_to(order.discount);
    json.at("paid").get_to(order.paid);
    order.date = ParseDate(json.at("date").get_ref<const std::string&>());
    json.at("buyer").get_to(order.buyer);
    json.at("lines").get_to(order.lines.elements);
    DecodeSignature(json.at("signature").get_ref<const std::string&>(), order.signature);
}

static void to_json(Json& json, const SFields& fields)
{
    json = Json::object();
    for (std::uint32_t index = 0; index < SFields::Count; ++index)
        json[SFields::GetKeys()[index]] = fields.values[index];
}

static void from_json(const Json& json, SFields& fields)
{
    for (const std::uint32_t index : fields.lookups)
        json.at(SFields::GetKeys()[index]).get_to(fields.values[index]);
}

static void to_json(Json& json, const SLevel& level)
{
    json = {{"number", level.number}, {"name", level.name}};
    if (level.inner)
        json["inner"] = *level.inner;
}

static void from_json(const Json& json, SLevel& level)
{
    json.at("number").get_to(level.number);
    json.at("name").get_to(level.name);
    const auto inner = json.find("inner");
    if (inner == json.end())
        return;
    level.inner = std::make_unique<SLevel>();
    inner->get_to(*level.inner);
}

namespace
{

const auto& GetContent(const auto& objects) { return objects; }
auto& GetContent(auto& objects) { return objects; }

template <class Element>
const auto& GetContent(const SSequence<Element>& sequence)
{
    return sequence.elements;
}
template <class Element>
auto& GetContent(SSequence<Element>& sequence)
{
    return sequence.elements;
}

struct SNlohmann
{
    static constexpr const char* Format = "Json";
    static constexpr const char* Name = "nlohmann";

    static std::string Write(const auto& objects) { return Json(GetContent(objects)).dump(); }
    static void Read(const std::string& document, auto& objects) { Json::parse(document).get_to(GetContent(objects)); }
};

[[maybe_unused]] const bool added = AddPeer<SNlohmann>();

} // namespace

} // namespace Measured
