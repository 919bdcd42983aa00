// RapidXML knows nothing of numbers: they go through std::to_chars and std::from_chars.

#include <charconv>
#include <cstring>
#include <iterator>
#include <rapidxml/rapidxml.hpp>
#include <rapidxml/rapidxml_print.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

namespace
{

using Node = rapidxml::xml_node<>;

// Makes the nodes of one document. Keys and values that outlive the document aren't copied.
class CTreeMaker
{
public:
    explicit CTreeMaker(rapidxml::xml_document<>& document) : document(document) {}

    Node& Add(Node& parent, const char* key, std::string_view value = {})
    {
        Node* const node =
            document.allocate_node(rapidxml::node_element, key, value.data(), std::strlen(key), value.size());
        parent.append_node(node);
        return *node;
    }
    void AddCopy(Node& parent, const char* key, std::string_view value)
    {
        Add(parent, key, {document.allocate_string(value.data(), value.size()), value.size()});
    }
    void AddNumber(Node& parent, const char* key, auto value)
    {
        char text[32];
        AddCopy(parent, key, {text, std::to_chars(text, text + sizeof text, value).ptr});
    }

    void Put(Node& parent, double value) { AddNumber(parent, "elt", value); }
    void Put(Node& parent, std::int32_t value) { AddNumber(parent, "elt", value); }
    void Put(Node& parent, const SLine& line)
    {
        Node& node = Add(parent, "Line");
        AddNumber(node, "quantity", line.quantity);
        AddNumber(node, "article", line.article);
        AddNumber(node, "price", line.price);
    }
    void PutBuyer(Node& node, const SBuyer& buyer)
    {
        Add(node, "name", buyer.name);
        Add(node, "city", buyer.city);
        AddNumber(node, "account", buyer.account);
    }
    void Put(Node& parent, const SOrder& order)
    {
        Node& node = Add(parent, "Order");
        AddNumber(node, "id", order.id);
        Add(node, "title", order.title);
        AddNumber(node, "total", order.total);
        AddNumber(node, "discount", order.discount);
        Add(node, "paid", order.paid ? "true" : "false");
        AddCopy(node, "date", FormatDate(order.date).data());
        PutBuyer(Add(node, "buyer"), order.buyer);
        PutElements(Add(node, "lines"), order.lines);
        AddCopy(node, "signature", EncodeSignature(order.signature));
    }
    template <class Element>
    void PutElements(Node& node, const SSequence<Element>& sequence)
    {
        for (const Element& element : sequence.elements)
            Put(node, element);
    }

    template <class Element>
    void PutRoot(const SSequence<Element>& sequence)
    {
        PutElements(Add(document, "Sequence"), sequence);
    }
    void PutRoot(const SFields& fields)
    {
        Node& node = Add(document, "Fields");
        for (std::uint32_t index = 0; index < SFields::Count; ++index)
            AddNumber(node, SFields::GetKeys()[index].c_str(), fields.values[index]);
    }
    void PutRoot(const SLevel& outermost)
    {
        Node* node = &document;
        for (const SLevel* level = &outermost; level != nullptr; level = level->inner.get())
        {
            node = &Add(*node, "inner");
            AddNumber(*node, "number", level->number);
            Add(*node, "name", level->name);
        }
    }

private:
    rapidxml::xml_document<>& document;
};

const Node& Find(const Node& node, std::string_view key)
{
    const Node* const child = node.first_node(key.data(), key.size());
    if (child == nullptr)
        throw std::runtime_error("a node isn't there");
    return *child;
}

std::string_view GetText(const Node& node) { return {node.value(), node.value_size()}; }

void Take(const Node& node, std::string& text) { text = GetText(node); }

template <class Number>
requires std::is_arithmetic_v<Number>
void Take(const Node& node, Number& number)
{
    const char* const first = node.value();
    const char* const last = first + node.value_size();
    if (std::from_chars(first, last, number).ptr != last)
        throw std::runtime_error("a number can't be read");
}

void Take(const Node& node, SLine& line)
{
    Take(Find(node, "quantity"), line.quantity);
    Take(Find(node, "article"), line.article);
    Take(Find(node, "price"), line.price);
}

void Take(const Node& node, SBuyer& buyer)
{
    Take(Find(node, "name"), buyer.name);
    Take(Find(node, "city"), buyer.city);
    Take(Find(node, "account"), buyer.account);
}

template <class Element>
void Take(const Node& node, SSequence<Element>& sequence);

void Take(const Node& node, SOrder& order)
{
    Take(Find(node, "id"), order.id);
    Take(Find(node, "title"), order.title);
    Take(Find(node, "total"), order.total);
    Take(Find(node, "discount"), order.discount);
    order.paid = GetText(Find(node, "paid")) == "true";
    order.date = ParseDate(GetText(Find(node, "date")));
    Take(Find(node, "buyer"), order.buyer);
    Take(Find(node, "lines"), order.lines);
    DecodeSignature(GetText(Find(node, "signature")), order.signature);
}

template <class Element>
void Take(const Node& node, SSequence<Element>& sequence)
{
    for (const Node* child = node.first_node(); child != nullptr; child = child->next_sibling())
        Take(*child, sequence.elements.emplace_back());
}

void Take(const Node& node, SFields& fields)
{
    for (const std::uint32_t index : fields.lookups)
        Take(Find(node, SFields::GetKeys()[index]), fields.values[index]);
}

void Take(const Node& node, SLevel& level)
{
    Take(Find(node, "number"), level.number);
    Take(Find(node, "name"), level.name);
    const Node* const inner = node.first_node("inner");
    if (inner == nullptr)
        return;
    level.inner = std::make_unique<SLevel>();
    Take(*inner, *level.inner);
}

struct SRapidXml
{
    static constexpr const char* Format = "Xml";
    static constexpr const char* Name = "RapidXML";

    static std::string Write(const auto& objects)
    {
        rapidxml::xml_document<> document;
        CTreeMaker(document).PutRoot(objects);
        std::string text;
        rapidxml::print(std::back_inserter(text), document, rapidxml::print_no_indenting);
        return text;
    }
    static std::string GetSpoilable(const std::string& text) { return text; }
    static void Read(std::string& text, auto& objects)
    {
        rapidxml::xml_document<> document;
        document.parse<rapidxml::parse_default>(text.data());
        Take(*document.first_node(), objects);
    }
};

[[maybe_unused]] const bool added = AddPeer<SRapidXml>();

} // namespace

} // namespace Measured
