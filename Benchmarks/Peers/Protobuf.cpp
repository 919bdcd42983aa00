#include <google/protobuf/arena.h>
#include <google/protobuf/io/coded_stream.h>
#include <Orders.pb.h>
#include <stdexcept>
#include <string>
#include <utility>

#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

namespace
{

void Fill(Messages::Line& message, const SLine& line)
{
    message.set_quantity(line.quantity);
    message.set_article(line.article);
    message.set_price(line.price);
}

void Fill(Messages::Buyer& message, const SBuyer& buyer)
{
    message.set_name(buyer.name);
    message.set_city(buyer.city);
    message.set_account(buyer.account);
}

void Fill(Messages::Order& message, const SOrder& order)
{
    message.set_id(order.id);
    message.set_title(order.title);
    message.set_total(order.total);
    message.set_discount(order.discount);
    message.set_paid(order.paid);
    message.set_date(PackDate(order.date));
    Fill(*message.mutable_buyer(), order.buyer);
    message.mutable_lines()->Reserve(static_cast<int>(order.lines.elements.size()));
    for (const SLine& line : order.lines.elements)
        Fill(*message.add_lines(), line);
    message.set_signature(order.signature.data(), order.signature.size());
}

void Fill(Messages::Orders& message, const Orders& orders)
{
    message.mutable_orders()->Reserve(static_cast<int>(orders.elements.size()));
    for (const SOrder& order : orders.elements)
        Fill(*message.add_orders(), order);
}

void Fill(Messages::Doubles& message, const Doubles& doubles)
{
    message.mutable_elements()->Add(doubles.elements.begin(), doubles.elements.end());
}

void Fill(Messages::Integers& message, const Integers& integers)
{
    message.mutable_elements()->Add(integers.elements.begin(), integers.elements.end());
}

void Fill(Messages::Fields& message, const SFields& fields)
{
    for (std::uint32_t index = 0; index < SFields::Count; ++index)
        (*message.mutable_values())[SFields::GetKeys()[index]] = fields.values[index];
}

void Fill(Messages::Level& message, const SLevel& level)
{
    message.set_number(level.number);
    message.set_name(level.name);
    if (level.inner)
        Fill(*message.mutable_inner(), *level.inner);
}

void Take(const Messages::Line& message, SLine& line)
{
    line.quantity = static_cast<std::uint16_t>(message.quantity());
    line.article = message.article();
    line.price = message.price();
}

void Take(const Messages::Buyer& message, SBuyer& buyer)
{
    buyer.name = message.name();
    buyer.city = message.city();
    buyer.account = message.account();
}

void Take(const Messages::Order& message, SOrder& order)
{
    order.id = message.id();
    order.title = message.title();
    order.total = message.total();
    order.discount = message.discount();
    order.paid = message.paid();
    order.date = UnpackDate(message.date());
    Take(message.buyer(), order.buyer);
    order.lines.elements.resize(static_cast<std::size_t>(message.lines_size()));
    for (int index = 0; index < message.lines_size(); ++index)
        Take(message.lines(index), order.lines.elements[static_cast<std::size_t>(index)]);
    if (message.signature().size() != order.signature.size())
        throw std::runtime_error("a signature has another size than it should");
    std::copy(message.signature().begin(), message.signature().end(), order.signature.begin());
}

void Take(const Messages::Orders& message, Orders& orders)
{
    orders.elements.resize(static_cast<std::size_t>(message.orders_size()));
    for (int index = 0; index < message.orders_size(); ++index)
        Take(message.orders(index), orders.elements[static_cast<std::size_t>(index)]);
}

void Take(const Messages::Doubles& message, Doubles& doubles)
{
    doubles.elements.assign(message.elements().begin(), message.elements().end());
}

void Take(const Messages::Integers& message, Integers& integers)
{
    integers.elements.assign(message.elements().begin(), message.elements().end());
}

void Take(const Messages::Fields& message, SFields& fields)
{
    for (const std::uint32_t index : fields.lookups)
        fields.values[index] = message.values().at(SFields::GetKeys()[index]);
}

void Take(const Messages::Level& message, SLevel& level)
{
    level.number = message.number();
    level.name = message.name();
    if (!message.has_inner())
        return;
    level.inner = std::make_unique<SLevel>();
    Take(message.inner(), *level.inner);
}

template <class Objects>
struct SMessage
{
    using Type = Messages::Fields; // in either order
};
template <>
struct SMessage<Orders>
{
    using Type = Messages::Orders;
};
template <>
struct SMessage<Doubles>
{
    using Type = Messages::Doubles;
};
template <>
struct SMessage<Integers>
{
    using Type = Messages::Integers;
};
template <>
struct SMessage<SLevel>
{
    using Type = Messages::Level;
};

constexpr int DeepestLevel = 1000; // the default is 100

struct SProtobuf
{
    static constexpr const char* Format = "Binary";
    static constexpr const char* Name = "protobuf";

    template <class Objects>
    static std::string Write(const Objects& objects)
    {
        google::protobuf::Arena arena;
        auto& message = *google::protobuf::Arena::CreateMessage<typename SMessage<Objects>::Type>(&arena);
        Fill(message, objects);
        return message.SerializeAsString();
    }
    template <class Objects>
    static void Read(const std::string& document, Objects& objects)
    {
        google::protobuf::io::CodedInputStream stream(reinterpret_cast<const std::uint8_t*>(document.data()),
                                                      static_cast<int>(document.size()));
        stream.SetRecursionLimit(DeepestLevel);
        google::protobuf::Arena arena;
        auto& message = *google::protobuf::Arena::CreateMessage<typename SMessage<Objects>::Type>(&arena);
        if (!message.ParseFromCodedStream(&stream))
            throw std::runtime_error("the document can't be parsed");
        Take(message, objects);
    }
};

[[maybe_unused]] const bool added = AddPeer<SProtobuf>();

} // namespace

} // namespace Measured
