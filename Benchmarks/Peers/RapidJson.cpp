#include <stdexcept>
#include <string>
#include <string_view>

// cereal brings the same headers with other settings, and both are in one program.
#define RAPIDJSON_NAMESPACE MeasuredRapidJson
#define RAPIDJSON_NAMESPACE_BEGIN                                                                                      \
    namespace MeasuredRapidJson                                                                                        \
    {
#define RAPIDJSON_NAMESPACE_END }
#define RAPIDJSON_SSE2
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

namespace
{

namespace Json = MeasuredRapidJson;

Json::SizeType GetSizeOf(std::string_view text) { return static_cast<Json::SizeType>(text.size()); }

// The handler is a writer, or a document that is being made.
template <class Handler>
void PutKey(Handler& handler, std::string_view key)
{
    handler.Key(key.data(), GetSizeOf(key), false);
}

void PutText(auto& handler, std::string_view text) { handler.String(text.data(), GetSizeOf(text), true); }

void Put(auto& handler, double value) { handler.Double(value); }
void Put(auto& handler, std::int32_t value) { handler.Int(value); }

void Put(auto& handler, const SLine& line)
{
    handler.StartObject();
    PutKey(handler, "quantity");
    handler.Uint(line.quantity);
    PutKey(handler, "article");
    handler.Uint(line.article);
    PutKey(handler, "price");
    handler.Double(line.price);
    handler.EndObject(3);
}

void Put(auto& handler, const SBuyer& buyer)
{
    handler.StartObject();
    PutKey(handler, "name");
    PutText(handler, buyer.name);
    PutKey(handler, "city");
    PutText(handler, buyer.city);
    PutKey(handler, "account");
    handler.Int(buyer.account);
    handler.EndObject(3);
}

template <class Handler, class Element>
void Put(Handler& handler, const SSequence<Element>& sequence);

void Put(auto& handler, const SOrder& order)
{
    handler.StartObject();
    PutKey(handler, "id");
    handler.Uint(order.id);
    PutKey(handler, "title");
    PutText(handler, order.title);
    PutKey(handler, "total");
    handler.Double(order.total);
    PutKey(handler, "discount");
    handler.Double(static_cast<double>(order.discount));
    PutKey(handler, "paid");
    handler.Bool(order.paid);
    PutKey(handler, "date");
    PutText(handler, FormatDate(order.date).data());
    PutKey(handler, "buyer");
    Put(handler, order.buyer);
    PutKey(handler, "lines");
    Put(handler, order.lines);
    PutKey(handler, "signature");
    PutText(handler, EncodeSignature(order.signature));
    handler.EndObject(9);
}

template <class Handler, class Element>
void Put(Handler& handler, const SSequence<Element>& sequence)
{
    handler.StartArray();
    for (const Element& element : sequence.elements)
        Put(handler, element);
    handler.EndArray(static_cast<Json::SizeType>(sequence.elements.size()));
}

void Put(auto& handler, const SFields& fields)
{
    handler.StartObject();
    for (std::uint32_t index = 0; index < SFields::Count; ++index)
    {
        PutKey(handler, SFields::GetKeys()[index]);
        handler.Int(fields.values[index]);
    }
    handler.EndObject(SFields::Count);
}

template <class Handler>
void Put(Handler& handler, const SLevel& level)
{
    handler.StartObject();
    PutKey(handler, "number");
    handler.Int(level.number);
    PutKey(handler, "name");
    PutText(handler, level.name);
    if (level.inner)
    {
        PutKey(handler, "inner");
        Put(handler, *level.inner);
    }
    handler.EndObject(level.inner ? 3 : 2);
}

const Json::Value& Find(const Json::Value& object, const char* key)
{
    const auto member = object.FindMember(key);
    if (member == object.MemberEnd())
        throw std::runtime_error("a member isn't there");
    return member->value;
}

std::string_view GetText(const Json::Value& value) { return {value.GetString(), value.GetStringLength()}; }

void Take(const Json::Value& value, double& number) { number = value.GetDouble(); }
void Take(const Json::Value& value, std::int32_t& number) { number = value.GetInt(); }

void Take(const Json::Value& value, SLine& line)
{
    line.quantity = static_cast<std::uint16_t>(Find(value, "quantity").GetUint());
    line.article = Find(value, "article").GetUint();
    line.price = Find(value, "price").GetDouble();
}

void Take(const Json::Value& value, SBuyer& buyer)
{
    buyer.name = GetText(Find(value, "name"));
    buyer.city = GetText(Find(value, "city"));
    buyer.account = Find(value, "account").GetInt();
}

template <class Element>
void Take(const Json::Value& value, SSequence<Element>& sequence);

void Take(const Json::Value& value, SOrder& order)
{
    order.id = Find(value, "id").GetUint();
    order.title = GetText(Find(value, "title"));
    order.total = Find(value, "total").GetDouble();
    order.discount = Find(value, "discount").GetFloat();
    order.paid = Find(value, "paid").GetBool();
    order.date = ParseDate(GetText(Find(value, "date")));
    Take(Find(value, "buyer"), order.buyer);
    Take(Find(value, "lines"), order.lines);
    DecodeSignature(GetText(Find(value, "signature")), order.signature);
}

template <class Element>
void Take(const Json::Value& value, SSequence<Element>& sequence)
{
    sequence.elements.resize(value.Size());
    const Json::Value* source = value.Begin();
    for (Element& element : sequence.elements)
        Take(*source++, element);
}

void Take(const Json::Value& value, SFields& fields)
{
    for (const std::uint32_t index : fields.lookups)
        fields.values[index] = Find(value, SFields::GetKeys()[index].c_str()).GetInt();
}

void Take(const Json::Value& value, SLevel& level)
{
    level.number = Find(value, "number").GetInt();
    level.name = GetText(Find(value, "name"));
    const auto inner = value.FindMember("inner");
    if (inner == value.MemberEnd())
        return;
    level.inner = std::make_unique<SLevel>();
    Take(inner->value, *level.inner);
}

// Numbers as they were written: by default the last bit of a double may be another.
constexpr unsigned ParseFlags = Json::kParseFullPrecisionFlag;

void Expect(bool parsed)
{
    if (!parsed)
        throw std::runtime_error("the document can't be parsed");
}

struct SRapidJsonStream
{
    static constexpr const char* Format = "Json";
    static constexpr const char* Name = "RapidJSON stream";
    static constexpr const char* ReadName = "RapidJSON in situ";

    static Json::StringBuffer Write(const auto& objects)
    {
        Json::StringBuffer buffer;
        Json::Writer writer(buffer);
        Put(writer, objects);
        return buffer;
    }
    static std::string GetSpoilable(const Json::StringBuffer& buffer) { return {buffer.GetString(), buffer.GetSize()}; }
    static void Read(std::string& text, auto& objects)
    {
        Json::Document document;
        Expect(!document.ParseInsitu<ParseFlags>(text.data()).HasParseError());
        Take(document, objects);
    }
};

struct SRapidJsonDocument
{
    static constexpr const char* Format = "Json";
    static constexpr const char* Name = "RapidJSON DOM";

    static Json::StringBuffer Write(const auto& objects)
    {
        Json::Document document;
        const auto generate = [&](auto& handler)
        {
            Put(handler, objects);
            return true;
        };
        document.Populate(generate);
        Json::StringBuffer buffer;
        Json::Writer writer(buffer);
        document.Accept(writer);
        return buffer;
    }
    static void Read(const Json::StringBuffer& text, auto& objects)
    {
        Json::Document document;
        Expect(!document.Parse<ParseFlags>(text.GetString(), text.GetSize()).HasParseError());
        Take(document, objects);
    }
};

[[maybe_unused]] const bool added = AddPeer<SRapidJsonStream>() && AddPeer<SRapidJsonDocument>();

} // namespace

} // namespace Measured
