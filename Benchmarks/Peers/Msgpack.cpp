// MessagePack as a map: each object is its names and values, as in Vellum's documents.

#include <msgpack.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

namespace
{

using Packer = msgpack::packer<msgpack::sbuffer>;

void Pack(Packer& packer, std::string_view key, const auto& value)
{
    packer.pack(key);
    packer.pack(value);
}

void PackObject(Packer& packer, double value) { packer.pack(value); }
void PackObject(Packer& packer, std::int32_t value) { packer.pack(value); }

void PackObject(Packer& packer, const SLine& line)
{
    packer.pack_map(3);
    Pack(packer, "quantity", line.quantity);
    Pack(packer, "article", line.article);
    Pack(packer, "price", line.price);
}

void PackObject(Packer& packer, const SBuyer& buyer)
{
    packer.pack_map(3);
    Pack(packer, "name", buyer.name);
    Pack(packer, "city", buyer.city);
    Pack(packer, "account", buyer.account);
}

template <class Element>
void PackObject(Packer& packer, const SSequence<Element>& sequence);

void PackObject(Packer& packer, const SOrder& order)
{
    packer.pack_map(9);
    Pack(packer, "id", order.id);
    Pack(packer, "title", order.title);
    Pack(packer, "total", order.total);
    Pack(packer, "discount", order.discount);
    Pack(packer, "paid", order.paid);
    Pack(packer, "date", PackDate(order.date));
    packer.pack(std::string_view("buyer"));
    PackObject(packer, order.buyer);
    packer.pack(std::string_view("lines"));
    PackObject(packer, order.lines);
    Pack(packer, "signature", order.signature);
}

template <class Element>
void PackObject(Packer& packer, const SSequence<Element>& sequence)
{
    packer.pack_array(static_cast<std::uint32_t>(sequence.elements.size()));
    for (const Element& element : sequence.elements)
        PackObject(packer, element);
}

void PackObject(Packer& packer, const SFields& fields)
{
    packer.pack_map(SFields::Count);
    for (std::uint32_t index = 0; index < SFields::Count; ++index)
        Pack(packer, SFields::GetKeys()[index], fields.values[index]);
}

void PackObject(Packer& packer, const SLevel& level)
{
    packer.pack_map(level.inner ? 3 : 2);
    Pack(packer, "number", level.number);
    Pack(packer, "name", level.name);
    if (!level.inner)
        return;
    packer.pack(std::string_view("inner"));
    PackObject(packer, *level.inner);
}

// Finds values by name; the search goes on behind the last one that was found.
class CMapReader
{
public:
    explicit CMapReader(const msgpack::object& object)
    {
        if (object.type != msgpack::type::MAP)
            throw msgpack::type_error();
        map = object.via.map;
    }

    const msgpack::object* Find(std::string_view key)
    {
        for (std::uint32_t tried = 0; tried < map.size; ++tried)
        {
            const msgpack::object_kv& pair = map.ptr[next];
            next = next + 1 == map.size ? 0 : next + 1;
            if (std::string_view(pair.key.via.str.ptr, pair.key.via.str.size) == key)
                return &pair.val;
        }
        return nullptr;
    }
    const msgpack::object& Get(std::string_view key)
    {
        const msgpack::object* const value = Find(key);
        if (value == nullptr)
            throw std::runtime_error("a value isn't there");
        return *value;
    }
    void Get(std::string_view key, auto& value) { Get(key).convert(value); }

private:
    msgpack::object_map map{};
    std::uint32_t next = 0;
};

void UnpackObject(const msgpack::object& object, double& value) { object.convert(value); }
void UnpackObject(const msgpack::object& object, std::int32_t& value) { object.convert(value); }

void UnpackObject(const msgpack::object& object, SLine& line)
{
    CMapReader map(object);
    map.Get("quantity", line.quantity);
    map.Get("article", line.article);
    map.Get("price", line.price);
}

void UnpackObject(const msgpack::object& object, SBuyer& buyer)
{
    CMapReader map(object);
    map.Get("name", buyer.name);
    map.Get("city", buyer.city);
    map.Get("account", buyer.account);
}

template <class Element>
void UnpackObject(const msgpack::object& object, SSequence<Element>& sequence);

void UnpackObject(const msgpack::object& object, SOrder& order)
{
    CMapReader map(object);
    map.Get("id", order.id);
    map.Get("title", order.title);
    map.Get("total", order.total);
    map.Get("discount", order.discount);
    map.Get("paid", order.paid);
    order.date = UnpackDate(map.Get("date").as<std::uint64_t>());
    UnpackObject(map.Get("buyer"), order.buyer);
    UnpackObject(map.Get("lines"), order.lines);
    map.Get("signature", order.signature);
}

template <class Element>
void UnpackObject(const msgpack::object& object, SSequence<Element>& sequence)
{
    if (object.type != msgpack::type::ARRAY)
        throw msgpack::type_error();
    sequence.elements.resize(object.via.array.size);
    const msgpack::object* source = object.via.array.ptr;
    for (Element& element : sequence.elements)
        UnpackObject(*source++, element);
}

void UnpackObject(const msgpack::object& object, SFields& fields) { TakeFields(object.as<FieldTable>(), fields); }

void UnpackObject(const msgpack::object& object, SLevel& level)
{
    CMapReader map(object);
    map.Get("number", level.number);
    map.Get("name", level.name);
    const msgpack::object* const inner = map.Find("inner");
    if (inner == nullptr)
        return;
    level.inner = std::make_unique<SLevel>();
    UnpackObject(*inner, *level.inner);
}

// Texts and bytes stay in the document until they are taken.
bool ReferToDocument(msgpack::type::object_type, std::size_t, void*) { return true; }

struct SMsgpack
{
    static constexpr const char* Format = "Binary";
    static constexpr const char* Name = "msgpack";

    static msgpack::sbuffer Write(const auto& objects)
    {
        msgpack::sbuffer buffer;
        Packer packer(buffer);
        PackObject(packer, objects);
        return buffer;
    }
    static void Read(const msgpack::sbuffer& document, auto& objects)
    {
        const msgpack::object_handle handle = msgpack::unpack(document.data(), document.size(), ReferToDocument);
        UnpackObject(handle.get(), objects);
    }
};

[[maybe_unused]] const bool added = AddPeer<SMsgpack>();

} // namespace

} // namespace Measured
