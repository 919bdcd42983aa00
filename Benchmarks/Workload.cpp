#include "Workload.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <tuple>
#include <utility>

namespace Measured
{

namespace
{

// The engine's numbers are laid down by the standard; those of the standard's distributions aren't.
class CSource
{
public:
    // A number of the range, its ends included.
    template <class Number>
    Number GetInteger(Number from, Number to)
    {
        const std::uint64_t width = static_cast<std::uint64_t>(to) - static_cast<std::uint64_t>(from) + 1;
        return static_cast<Number>(static_cast<std::uint64_t>(from) + engine() % width);
    }

    // All 53 bits of it are used, as in the results of a computation.
    double GetDouble(double limit) { return static_cast<double>(engine() >> 11) * 0x1p-53 * limit; }

    // Letters, with `special` characters and blanks among them, but none at the ends.
    std::string GetText(std::size_t shortest, std::size_t longest, const std::string& special)
    {
        std::string text(GetInteger(shortest, longest), ' ');
        for (char& character : text)
            character = static_cast<char>('a' + GetInteger(0, 25));
        for (std::size_t index = 1; index + 1 < text.size(); ++index)
            if (GetInteger(0, 9) == 0)
                text[index] = special[GetInteger<std::size_t>(0, special.size() - 1)];
        return text;
    }

    CbDateTime GetDate()
    {
        CbDateTime date = NoDate;
        date.SetYear(GetInteger<std::uint16_t>(1990, 2030));
        date.SetMonth(GetInteger<std::uint16_t>(1, 12));
        date.SetDay(GetInteger<std::uint16_t>(1, 28));
        date.SetHour(GetInteger<std::uint16_t>(0, 23));
        date.SetMinute(GetInteger<std::uint16_t>(0, 59));
        date.SetSecond(GetInteger<std::uint16_t>(0, 59));
        return date;
    }

private:
    std::mt19937_64 engine{20260423};
};

SLine MakeLine(CSource& source)
{
    SLine line;
    line.quantity = source.GetInteger<std::uint16_t>(1, 999);
    line.article = source.GetInteger<std::uint32_t>(1, 4000000000);
    line.price = source.GetDouble(1000);
    return line;
}

SBuyer MakeBuyer(CSource& source)
{
    SBuyer buyer;
    buyer.name = source.GetText(6, 20, " ");
    buyer.city = source.GetText(4, 16, " ");
    buyer.account = source.GetInteger<std::int32_t>(-1000000000, 1000000000);
    return buyer;
}

SOrder MakeOrder(CSource& source, std::uint32_t id)
{
    SOrder order;
    order.id = id;
    order.title = source.GetText(10, 40, "  &<>\"");
    order.total = source.GetDouble(100000);
    order.discount = static_cast<float>(source.GetDouble(1));
    order.paid = source.GetInteger(0, 1) == 1;
    order.date = source.GetDate();
    order.buyer = MakeBuyer(source);
    for (int line = 0; line < 3; ++line)
        order.lines.elements.push_back(MakeLine(source));
    for (unsigned char& byte : order.signature)
        byte = static_cast<unsigned char>(source.GetInteger(0, 255));
    return order;
}

auto GetDateFields(const CbDateTime& date)
{
    return std::tuple(date.GetYear(), date.GetMonth(), date.GetDay(), date.GetHour(), date.GetMinute(),
                      date.GetSecond(), date.GetMilliseconds());
}

} // namespace

bool operator==(const SLine& left, const SLine& right)
{
    return std::tie(left.quantity, left.article, left.price) == std::tie(right.quantity, right.article, right.price);
}

bool operator==(const SBuyer& left, const SBuyer& right)
{
    return std::tie(left.name, left.city, left.account) == std::tie(right.name, right.city, right.account);
}

bool operator==(const SOrder& left, const SOrder& right)
{
    return std::tie(left.id, left.title, left.total, left.discount, left.paid, left.buyer, left.lines,
                    left.signature) == std::tie(right.id, right.title, right.total, right.discount, right.paid,
                                                right.buyer, right.lines, right.signature) &&
           GetDateFields(left.date) == GetDateFields(right.date);
}

bool operator==(const SFields& left, const SFields& right) { return left.values == right.values; }

bool operator==(const SLevel& left, const SLevel& right)
{
    const SLevel* one = &left;
    const SLevel* other = &right;
    while (one != nullptr && other != nullptr && one->number == other->number && one->name == other->name)
    {
        one = one->inner.get();
        other = other->inner.get();
    }
    return one == other; // both null when the ends were reached together
}

const std::vector<std::string>& SFields::GetKeys()
{
    static const std::vector<std::string> keys = []
    {
        std::vector<std::string> made;
        for (std::uint32_t index = 0; index < Count; ++index)
            made.push_back("field" + std::to_string(index));
        return made;
    }();
    return keys;
}

const std::vector<std::uint32_t>& SFields::GetWrittenOrder()
{
    static const std::vector<std::uint32_t> order = []
    {
        std::vector<std::uint32_t> made(Count);
        std::iota(made.begin(), made.end(), 0u);
        return made;
    }();
    return order;
}

const std::vector<std::uint32_t>& SFields::GetShuffledOrder()
{
    static const std::vector<std::uint32_t> order = []
    {
        CSource source;
        std::vector<std::uint32_t> made = GetWrittenOrder();
        for (std::uint32_t index = Count - 1; index > 0; --index)
            std::swap(made[index], made[source.GetInteger(0u, index)]);
        return made;
    }();
    return order;
}

Orders SWorkload<Orders>::Make(std::uint32_t count)
{
    CSource source;
    Orders orders;
    orders.elements.reserve(count);
    for (std::uint32_t id = 0; id < count; ++id)
        orders.elements.push_back(MakeOrder(source, id));
    return orders;
}

Doubles SWorkload<Doubles>::Make(std::uint32_t count)
{
    CSource source;
    Doubles doubles;
    doubles.elements.resize(count);
    for (double& element : doubles.elements)
        element = source.GetDouble(1000000);
    return doubles;
}

Integers SWorkload<Integers>::Make(std::uint32_t count)
{
    CSource source;
    Integers integers;
    integers.elements.resize(count);
    for (std::int32_t& element : integers.elements)
        element = source.GetInteger<std::int32_t>(-1000000000, 1000000000);
    return integers;
}

SFields SWorkload<SFields>::Make(std::uint32_t)
{
    CSource source;
    SFields fields;
    for (std::int32_t& value : fields.values)
        value = source.GetInteger<std::int32_t>(-1000000000, 1000000000);
    return fields;
}

SShuffledFields SWorkload<SShuffledFields>::Make(std::uint32_t count)
{
    SShuffledFields fields;
    fields.values = SWorkload<SFields>::Make(count).values;
    return fields;
}

SLevel SWorkload<SLevel>::Make(std::uint32_t count)
{
    SLevel outermost;
    for (std::uint32_t number = count; number > 0; --number)
    {
        auto inner = std::make_unique<SLevel>(std::move(outermost));
        outermost = SLevel();
        outermost.number = static_cast<std::int32_t>(number);
        outermost.name = "level " + std::to_string(number);
        if (number < count)
            outermost.inner = std::move(inner);
    }
    return outermost;
}

} // namespace Measured
