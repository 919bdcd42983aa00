#include <pugixml.hpp>
#include <stdexcept>
#include <string>

#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

namespace
{

void PutField(pugi::xml_node& parent, const char* key, const auto& value)
{
    parent.append_child(key).text().set(value);
}

void Put(pugi::xml_node& parent, double value) { PutField(parent, "elt", value); }
void Put(pugi::xml_node& parent, std::int32_t value) { PutField(parent, "elt", value); }

void Put(pugi::xml_node& parent, const SLine& line)
{
    pugi::xml_node node = parent.append_child("Line");
    PutField(node, "quantity", static_cast<unsigned>(line.quantity));
    PutField(node, "article", line.article);
    PutField(node, "price", line.price);
}

void PutBuyer(pugi::xml_node node, const SBuyer& buyer)
{
    PutField(node, "name", buyer.name.c_str());
    PutField(node, "city", buyer.city.c_str());
    PutField(node, "account", buyer.account);
}

template <class Element>
void PutElements(pugi::xml_node node, const SSequence<Element>& sequence);

void Put(pugi::xml_node& parent, const SOrder& order)
{
    pugi::xml_node node = parent.append_child("Order");
    PutField(node, "id", order.id);
    PutField(node, "title", order.title.c_str());
    PutField(node, "total", order.total);
    PutField(node, "discount", order.discount);
    PutField(node, "paid", order.paid);
    PutField(node, "date", FormatDate(order.date).data());
    PutBuyer(node.append_child("buyer"), order.buyer);
    PutElements(node.append_child("lines"), order.lines);
    PutField(node, "signature", EncodeSignature(order.signature).c_str());
}

template <class Element>
void PutElements(pugi::xml_node node, const SSequence<Element>& sequence)
{
    for (const Element& element : sequence.elements)
        Put(node, element);
}

template <class Element>
void PutRoot(pugi::xml_document& document, const SSequence<Element>& sequence)
{
    PutElements(document.append_child("Sequence"), sequence);
}

void PutRoot(pugi::xml_document& document, const SFields& fields)
{
    pugi::xml_node node = document.append_child("Fields");
    for (std::uint32_t index = 0; index < SFields::Count; ++index)
        PutField(node, SFields::GetKeys()[index].c_str(), fields.values[index]);
}

void PutRoot(pugi::xml_document& document, const SLevel& outermost)
{
    pugi::xml_node node = document;
    for (const SLevel* level = &outermost; level != nullptr; level = level->inner.get())
    {
        node = node.append_child("inner");
        PutField(node, "number", level->number);
        PutField(node, "name", level->name.c_str());
    }
}

void Take(const pugi::xml_node& node, double& number) { number = node.text().as_double(); }
void Take(const pugi::xml_node& node, std::int32_t& number) { number = node.text().as_int(); }

void Take(const pugi::xml_node& node, SLine& line)
{
    line.quantity = static_cast<std::uint16_t>(node.child("quantity").text().as_uint());
    line.article = node.child("article").text().as_uint();
    line.price = node.child("price").text().as_double();
}

void Take(const pugi::xml_node& node, SBuyer& buyer)
{
    buyer.name = node.child_value("name");
    buyer.city = node.child_value("city");
    buyer.account = node.child("account").text().as_int();
}

template <class Element>
void Take(const pugi::xml_node& node, SSequence<Element>& sequence);

void Take(const pugi::xml_node& node, SOrder& order)
{
    order.id = node.child("id").text().as_uint();
    order.title = node.child_value("title");
    order.total = node.child("total").text().as_double();
    order.discount = node.child("discount").text().as_float();
    order.paid = node.child("paid").text().as_bool();
    order.date = ParseDate(node.child_value("date"));
    Take(node.child("buyer"), order.buyer);
    Take(node.child("lines"), order.lines);
    DecodeSignature(node.child_value("signature"), order.signature);
}

template <class Element>
void Take(const pugi::xml_node& node, SSequence<Element>& sequence)
{
    for (const pugi::xml_node& child : node)
        Take(child, sequence.elements.emplace_back());
}

void Take(const pugi::xml_node& node, SFields& fields)
{
    for (const std::uint32_t index : fields.lookups)
        fields.values[index] = node.child(SFields::GetKeys()[index].c_str()).text().as_int();
}

void Take(const pugi::xml_node& node, SLevel& level)
{
    level.number = node.child("number").text().as_int();
    level.name = node.child_value("name");
    const pugi::xml_node inner = node.child("inner");
    if (!inner)
        return;
    level.inner = std::make_unique<SLevel>();
    Take(inner, *level.inner);
}

struct SStringOutput : pugi::xml_writer
{
    std::string text;

    void write(const void* data, std::size_t size) override { text.append(static_cast<const char*>(data), size); }
};

struct SPugixml
{
    static constexpr const char* Format = "Xml";
    static constexpr const char* Name = "pugixml";

    static std::string Write(const auto& objects)
    {
        pugi::xml_document document;
        PutRoot(document, objects);
        SStringOutput output;
        document.save(output, "", pugi::format_raw);
        return std::move(output.text);
    }
    static std::string GetSpoilable(const std::string& text) { return text; }
    static void Read(std::string& text, auto& objects)
    {
        pugi::xml_document document;
        if (!document.load_buffer_inplace(text.data(), text.size()))
            throw std::runtime_error("the document can't be parsed");
        Take(document.document_element(), objects);
    }
};

[[maybe_unused]] const bool added = AddPeer<SPugixml>();

} // namespace

} // namespace Measured
