// A document is verified before it is looked at, as one from a file has to be, and the objects are filled from it.

#include <flatbuffers/flatbuffers.h>
#include <Orders_generated.h>
#include <stdexcept>
#include <vector>

#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

namespace
{

using Builder = flatbuffers::FlatBufferBuilder;

auto Build(Builder& builder, const SBuyer& buyer)
{
    const auto name = builder.CreateString(buyer.name);
    const auto city = builder.CreateString(buyer.city);
    return Tables::CreateBuyer(builder, name, city, buyer.account);
}

auto Build(Builder& builder, const SSequence<SLine>& lines)
{
    Tables::Line* stored = nullptr;
    const auto vector = builder.CreateUninitializedVectorOfStructs(lines.elements.size(), &stored);
    for (const SLine& line : lines.elements)
        *stored++ = Tables::Line(line.quantity, line.article, line.price);
    return vector;
}

auto Build(Builder& builder, const SOrder& order)
{
    const auto title = builder.CreateString(order.title);
    const auto buyer = Build(builder, order.buyer);
    const auto lines = Build(builder, order.lines);
    const auto signature = builder.CreateVector(order.signature.data(), order.signature.size());
    return Tables::CreateOrder(builder, order.id, title, order.total, order.discount, order.paid, PackDate(order.date),
                               buyer, lines, signature);
}

auto Build(Builder& builder, const Orders& orders)
{
    std::vector<flatbuffers::Offset<Tables::Order>> offsets;
    offsets.reserve(orders.elements.size());
    for (const SOrder& order : orders.elements)
        offsets.push_back(Build(builder, order));
    return Tables::CreateOrders(builder, builder.CreateVector(offsets));
}

auto Build(Builder& builder, const Doubles& doubles)
{
    return Tables::CreateDoubles(builder, builder.CreateVector(doubles.elements));
}

auto Build(Builder& builder, const Integers& integers)
{
    return Tables::CreateIntegers(builder, builder.CreateVector(integers.elements));
}

auto Build(Builder& builder, const SFields& fields)
{
    std::vector<flatbuffers::Offset<Tables::Field>> offsets;
    offsets.reserve(SFields::Count);
    for (std::uint32_t index = 0; index < SFields::Count; ++index)
    {
        const auto key = builder.CreateString(SFields::GetKeys()[index]);
        offsets.push_back(Tables::CreateField(builder, key, fields.values[index]));
    }
    return Tables::CreateFields(builder, builder.CreateVectorOfSortedTables(&offsets));
}

flatbuffers::Offset<Tables::Level> Build(Builder& builder, const SLevel& level)
{
    flatbuffers::Offset<Tables::Level> inner;
    if (level.inner)
        inner = Build(builder, *level.inner);
    return Tables::CreateLevel(builder, level.number, builder.CreateString(level.name), inner);
}

void Take(const Tables::Buyer& table, SBuyer& buyer)
{
    buyer.name.assign(table.name()->c_str(), table.name()->size());
    buyer.city.assign(table.city()->c_str(), table.city()->size());
    buyer.account = table.account();
}

void Take(const flatbuffers::Vector<const Tables::Line*>& stored, SSequence<SLine>& lines)
{
    lines.elements.resize(stored.size());
    for (flatbuffers::uoffset_t index = 0; index < stored.size(); ++index)
    {
        SLine& line = lines.elements[index];
        line.quantity = stored[index]->quantity();
        line.article = stored[index]->article();
        line.price = stored[index]->price();
    }
}

void Take(const Tables::Order& table, SOrder& order)
{
    order.id = table.id();
    order.title.assign(table.title()->c_str(), table.title()->size());
    order.total = table.total();
    order.discount = table.discount();
    order.paid = table.paid();
    order.date = UnpackDate(table.date());
    Take(*table.buyer(), order.buyer);
    Take(*table.lines(), order.lines);
    if (table.signature()->size() != order.signature.size())
        throw std::runtime_error("a signature has another size than it should");
    std::copy(table.signature()->begin(), table.signature()->end(), order.signature.begin());
}

void Take(const Tables::Orders& table, Orders& orders)
{
    orders.elements.resize(table.elements()->size());
    for (flatbuffers::uoffset_t index = 0; index < table.elements()->size(); ++index)
        Take(*table.elements()->Get(index), orders.elements[index]);
}

void Take(const Tables::Doubles& table, Doubles& doubles)
{
    doubles.elements.assign(table.elements()->begin(), table.elements()->end());
}

void Take(const Tables::Integers& table, Integers& integers)
{
    integers.elements.assign(table.elements()->begin(), table.elements()->end());
}

void Take(const Tables::Fields& table, SFields& fields)
{
    for (const std::uint32_t index : fields.lookups)
        fields.values[index] = table.values()->LookupByKey(SFields::GetKeys()[index].c_str())->value();
}

void Take(const Tables::Level& table, SLevel& level)
{
    level.number = table.number();
    level.name.assign(table.name()->c_str(), table.name()->size());
    if (table.inner() == nullptr)
        return;
    level.inner = std::make_unique<SLevel>();
    Take(*table.inner(), *level.inner);
}

template <class Table>
Table TableOf(flatbuffers::Offset<Table>);

template <class Objects>
using Root = decltype(TableOf(Build(std::declval<Builder&>(), std::declval<const Objects&>())));

constexpr flatbuffers::uoffset_t DeepestLevel = 1000; // the default is 64

struct SFlatbuffers
{
    static constexpr const char* Format = "Binary";
    static constexpr const char* Name = "flatbuffers";

    template <class Objects>
    static flatbuffers::DetachedBuffer Write(const Objects& objects)
    {
        Builder builder;
        builder.Finish(Build(builder, objects));
        return builder.Release();
    }
    template <class Objects>
    static void Read(const flatbuffers::DetachedBuffer& document, Objects& objects)
    {
        flatbuffers::Verifier verifier(document.data(), document.size(), DeepestLevel);
        if (!verifier.VerifyBuffer<Root<Objects>>(nullptr))
            throw std::runtime_error("the document isn't valid");
        Take(*flatbuffers::GetRoot<Root<Objects>>(document.data()), objects);
    }
};

[[maybe_unused]] const bool added = AddPeer<SFlatbuffers>();

} // namespace

} // namespace Measured
