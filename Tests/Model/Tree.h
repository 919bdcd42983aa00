#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <limits>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "Support/CTape.h"

namespace Model
{

using Support::CTape;

// What a client has: a tree of objects and sequences, and what it does while it is written.
struct SNode;

using Part = std::shared_ptr<const SNode>;

struct SDate
{
    std::array<unsigned short, 7> fields = {1, 2, 3, 4, 5, 6, 7}; // from the year down to milliseconds
    bool operator==(const SDate&) const = default;
};

struct SBlob
{
    std::string bytes;
    bool operator==(const SBlob&) const = default;
};

using Value =
    std::variant<bool, unsigned char, signed char, std::uint16_t, std::int16_t, std::uint32_t, std::int32_t,
                 std::uint64_t, std::int64_t, float, double, char, std::string, std::wstring, SDate, SBlob, Part>;

// Kinds are counted in the order of Value, which is that of the sections of a record; then objects and sequences.
inline constexpr std::size_t KindChar = 11, KindText = 12, KindWideText = 13, KindBlob = 15, KindObject = 16,
                             KindSequence = 17, Kinds = 18;

struct SItem
{
    std::string key; // of an object's field
    Value value;
    bool isGuarded = false; // the client goes on if the item can't be written
};

struct SNode
{
    static constexpr std::size_t Never = std::numeric_limits<std::size_t>::max();

    bool isSequence = false;
    std::string typeName;
    std::vector<SItem> items;
    std::size_t raisesBefore = Never; // the item in front of which the client's Write raises
    bool reusesKey = false;           // whether all keys are handed over in the same memory
};

inline std::size_t KindOf(const Value& value)
{
    const auto* node = std::get_if<Part>(&value);
    return value.index() + (node != nullptr && (*node)->isSequence ? 1 : 0);
}

// Calls a template lambda with the type of a kind.
template <class Body>
auto WithKind(std::size_t kind, const Body& body)
{
    using Result = decltype(body.template operator()<bool>());
    return [&]<std::size_t... Each>(std::index_sequence<Each...>)
    {
        Result (*const calls[])(const Body&) = {
            [](const Body& each) { return each.template operator()<std::variant_alternative_t<Each, Value>>(); }...};
        return calls[std::min(kind, sizeof...(Each) - 1)](body);
    }
    (std::make_index_sequence<std::variant_size_v<Value>>());
}

// What a client's Write raises.
struct SClientFailure
{
};

// The Write of a client: hands over its items, and does what it does about failures.
template <class WriteItem>
void RunClient(const SNode& node, const WriteItem& writeItem)
{
    for (std::size_t i = 0; i <= node.items.size(); ++i)
    {
        if (i == node.raisesBefore)
            throw SClientFailure();
        if (i == node.items.size())
            return;
        try
        {
            writeItem(node.items[i]);
        }
        catch (...)
        {
            if (!node.items[i].isGuarded)
                throw;
        }
    }
}

// Pieces of texts, some of which mean something to a format or to a conversion.
std::string AnyText(CTape& tape);

// Of a kind, with whatever a client might write.
Value AnyValue(CTape& tape, std::size_t kind);

// A root. A tame one has what every format brings back: names that XML can carry, no failures, no mixed sequences.
SNode AnyTree(CTape& tape, bool isTame);

} // namespace Model
