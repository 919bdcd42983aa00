// Binary by hand: the fields of these very classes, in their order, with memcpy and nothing else. There is no key, no
// version and no way to tell a bad document; a sequence of numbers is one memcpy. It is the floor, not a format.

#include <cstring>
#include <type_traits>

#include "Support/CHandOutput.h"
#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

namespace
{

using Count = std::uint32_t;

template <class Number>
char* Put(char* out, Number value)
{
    static_assert(std::is_arithmetic_v<Number>);
    std::memcpy(out, &value, sizeof value);
    return out + sizeof value;
}

char* PutBytes(char* out, const void* bytes, std::size_t count)
{
    std::memcpy(out, bytes, count);
    return out + count;
}

char* PutText(char* out, const std::string& text)
{
    return PutBytes(Put(out, static_cast<Count>(text.size())), text.data(), text.size());
}

char* PutLine(char* out, const SLine& line) { return Put(Put(Put(out, line.quantity), line.article), line.price); }

char* PutBuyer(char* out, const SBuyer& buyer)
{
    return Put(PutText(PutText(out, buyer.name), buyer.city), buyer.account);
}

std::size_t GetRoomFor(const SOrder& order)
{
    return 128 + order.title.size() + order.buyer.name.size() + order.buyer.city.size() +
           order.lines.elements.size() * sizeof(SLine);
}

char* PutOrder(char* out, const SOrder& order)
{
    out = PutText(Put(out, order.id), order.title);
    out = Put(Put(Put(out, order.total), order.discount), order.paid);
    out = PutBuyer(Put(out, PackDate(order.date)), order.buyer);
    out = Put(out, static_cast<Count>(order.lines.elements.size()));
    for (const SLine& line : order.lines.elements)
        out = PutLine(out, line);
    return PutBytes(out, order.signature.data(), order.signature.size());
}

class CHandInput
{
public:
    explicit CHandInput(const CHandOutput& document) : at(document.data()) {}

    template <class Number>
    void Get(Number& value)
    {
        GetBytes(&value, sizeof value);
    }
    void GetBytes(void* bytes, std::size_t count)
    {
        std::memcpy(bytes, at, count);
        at += count;
    }
    Count GetCount()
    {
        Count count = 0;
        Get(count);
        return count;
    }
    void Get(std::string& text)
    {
        const Count count = GetCount();
        text.assign(at, count);
        at += count;
    }
    void Get(SLine& line)
    {
        Get(line.quantity);
        Get(line.article);
        Get(line.price);
    }
    void Get(SBuyer& buyer)
    {
        Get(buyer.name);
        Get(buyer.city);
        Get(buyer.account);
    }
    void Get(CbDateTime& date)
    {
        std::uint64_t packed = 0;
        Get(packed);
        date = UnpackDate(packed);
    }
    void Get(SOrder& order)
    {
        Get(order.id);
        Get(order.title);
        Get(order.total);
        Get(order.discount);
        Get(order.paid);
        Get(order.date);
        Get(order.buyer);
        order.lines.elements.resize(GetCount());
        for (SLine& line : order.lines.elements)
            Get(line);
        GetBytes(order.signature.data(), order.signature.size());
    }

private:
    const char* at;
};

struct SHandBinary
{
    static constexpr const char* Format = "Binary";
    static constexpr const char* Name = "by hand";

    static CHandOutput Write(const Orders& orders)
    {
        CHandOutput output;
        output.Commit(Put(output.Reserve(sizeof(Count)), static_cast<Count>(orders.elements.size())));
        for (const SOrder& order : orders.elements)
            output.Commit(PutOrder(output.Reserve(GetRoomFor(order)), order));
        return output;
    }
    static void Read(const CHandOutput& document, Orders& orders)
    {
        CHandInput input(document);
        orders.elements.resize(input.GetCount());
        for (SOrder& order : orders.elements)
            input.Get(order);
    }

    template <class Number>
    static CHandOutput Write(const SSequence<Number>& numbers)
    {
        CHandOutput output;
        const std::size_t bytes = numbers.elements.size() * sizeof(Number);
        char* const out = Put(output.Reserve(sizeof(Count) + bytes), static_cast<Count>(numbers.elements.size()));
        output.Commit(PutBytes(out, numbers.elements.data(), bytes));
        return output;
    }
    template <class Number>
    static void Read(const CHandOutput& document, SSequence<Number>& numbers)
    {
        CHandInput input(document);
        numbers.elements.resize(input.GetCount());
        input.GetBytes(numbers.elements.data(), numbers.elements.size() * sizeof(Number));
    }
};

[[maybe_unused]] const bool added = AddPeer<SHandBinary>();

} // namespace

} // namespace Measured
