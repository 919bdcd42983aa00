// JSON and XML by hand: a document of these very classes is its values with the same texts between them each time.
// Numbers go through std::to_chars and std::from_chars. The reader takes what the writer wrote and nothing else.

#include <charconv>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "Support/CHandOutput.h"
#include "Support/Measure.h"
#include "Support/Values.h"

namespace Measured
{

namespace
{

struct SEscape
{
    char character;
    std::string_view text;
};

struct SJsonSyntax
{
    static constexpr const char* Format = "Json";
    static constexpr SEscape Escapes[] = {{'"', "\\\""}, {'\\', "\\\\"}};
    static constexpr char TextEnd = '"';
    static constexpr char EscapeStart = '\\';

    static constexpr std::string_view Orders = "[", BetweenOrders = ",", OrdersEnd = "]";
    static constexpr std::string_view Id = "{\"id\":", Title = ",\"title\":\"", Total = "\",\"total\":",
                                      Discount = ",\"discount\":", Paid = ",\"paid\":", Date = ",\"date\":\"",
                                      Buyer = "\",\"buyer\":", Lines = ",\"lines\":[", BetweenLines = ",",
                                      Signature = "],\"signature\":\"", OrderEnd = "\"}";
    static constexpr std::string_view Name = "{\"name\":\"", City = "\",\"city\":\"",
                                      Account = "\",\"account\":", BuyerEnd = "}";
    static constexpr std::string_view Quantity = "{\"quantity\":", Article = ",\"article\":", Price = ",\"price\":",
                                      LineEnd = "}";
    static constexpr std::string_view Numbers = "[", BetweenNumbers = ",", NumbersEnd = "]";
};

struct SXmlSyntax
{
    static constexpr const char* Format = "Xml";
    static constexpr SEscape Escapes[] = {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}};
    static constexpr char TextEnd = '<';
    static constexpr char EscapeStart = '&';

    static constexpr std::string_view Orders = "<Orders>", BetweenOrders = "", OrdersEnd = "</Orders>";
    static constexpr std::string_view Id = "<Order><id>", Title = "</id><title>", Total = "</title><total>",
                                      Discount = "</total><discount>", Paid = "</discount><paid>",
                                      Date = "</paid><date>", Buyer = "</date><buyer>", Lines = "</buyer><lines>",
                                      BetweenLines = "", Signature = "</lines><signature>",
                                      OrderEnd = "</signature></Order>";
    static constexpr std::string_view Name = "<name>", City = "</name><city>", Account = "</city><account>",
                                      BuyerEnd = "</account>";
    static constexpr std::string_view Quantity = "<Line><quantity>", Article = "</quantity><article>",
                                      Price = "</article><price>", LineEnd = "</price></Line>";
    static constexpr std::string_view Numbers = "<Numbers><elt>", BetweenNumbers = "</elt><elt>",
                                      NumbersEnd = "</elt></Numbers>";
};

constexpr std::size_t RoomForNumber = 64; // with the text in front of it
constexpr std::size_t RoomForLine = 160;
constexpr std::size_t RoomForOrder = 640; // without its texts and lines
constexpr std::size_t LongestEscape = 6;

// Appends to memory that has room enough.
template <class Syntax>
class CTextPen
{
public:
    explicit CTextPen(char* out) : out(out) {}
    const char* GetEnd() const { return out; }

    void Put(std::string_view text)
    {
        std::memcpy(out, text.data(), text.size());
        out += text.size();
    }
    void PutNumber(auto value) { out = std::to_chars(out, out + RoomForNumber, value).ptr; }
    void PutText(std::string_view text)
    {
        for (const char character : text)
            putCharacter(character);
    }

    void PutLine(const SLine& line)
    {
        Put(Syntax::Quantity);
        PutNumber(line.quantity);
        Put(Syntax::Article);
        PutNumber(line.article);
        Put(Syntax::Price);
        PutNumber(line.price);
        Put(Syntax::LineEnd);
    }
    void PutBuyer(const SBuyer& buyer)
    {
        Put(Syntax::Name);
        PutText(buyer.name);
        Put(Syntax::City);
        PutText(buyer.city);
        Put(Syntax::Account);
        PutNumber(buyer.account);
        Put(Syntax::BuyerEnd);
    }
    void PutLines(const SSequence<SLine>& lines)
    {
        Put(Syntax::Lines);
        std::string_view separator;
        for (const SLine& line : lines.elements)
        {
            Put(separator);
            PutLine(line);
            separator = Syntax::BetweenLines;
        }
    }
    void PutOrder(const SOrder& order)
    {
        Put(Syntax::Id);
        PutNumber(order.id);
        Put(Syntax::Title);
        PutText(order.title);
        Put(Syntax::Total);
        PutNumber(order.total);
        Put(Syntax::Discount);
        PutNumber(order.discount);
        Put(Syntax::Paid);
        Put(order.paid ? "true" : "false");
        Put(Syntax::Date);
        Put(FormatDate(order.date).data());
        Put(Syntax::Buyer);
        PutBuyer(order.buyer);
        PutLines(order.lines);
        Put(Syntax::Signature);
        Put(EncodeSignature(order.signature));
        Put(Syntax::OrderEnd);
    }

private:
    void putCharacter(char character)
    {
        for (const SEscape& escape : Syntax::Escapes)
            if (character == escape.character)
                return Put(escape.text);
        *out++ = character;
    }

    char* out;
};

// Takes a document apart from front to back.
template <class Syntax>
class CTextEye
{
public:
    explicit CTextEye(const CHandOutput& document) : at(document.data()), end(at + document.size()) {}

    bool Passes(std::string_view text)
    {
        if (!std::string_view(at, end).starts_with(text))
            return false;
        at += text.size();
        return true;
    }
    void Pass(std::string_view text)
    {
        if (!Passes(text))
            throw std::runtime_error("the document isn't as it was written");
    }

    void GetNumber(auto& number)
    {
        const auto result = std::from_chars(at, end, number);
        if (result.ec != std::errc())
            throw std::runtime_error("a number can't be read");
        at = result.ptr;
    }
    void GetText(std::string& text)
    {
        const char* const start = at;
        while (*at != Syntax::TextEnd && *at != Syntax::EscapeStart)
            ++at;
        text.assign(start, at);
        while (*at != Syntax::TextEnd)
            text += getCharacter();
    }
    // A text that has nothing to be decoded.
    std::string_view GetPlainText()
    {
        const char* const start = at;
        at = static_cast<const char*>(std::memchr(start, Syntax::TextEnd, static_cast<std::size_t>(end - start)));
        if (at == nullptr)
            throw std::runtime_error("a text has no end");
        return {start, at};
    }

    void Get(SLine& line)
    {
        Pass(Syntax::Quantity);
        GetNumber(line.quantity);
        Pass(Syntax::Article);
        GetNumber(line.article);
        Pass(Syntax::Price);
        GetNumber(line.price);
        Pass(Syntax::LineEnd);
    }
    void Get(SBuyer& buyer)
    {
        Pass(Syntax::Name);
        GetText(buyer.name);
        Pass(Syntax::City);
        GetText(buyer.city);
        Pass(Syntax::Account);
        GetNumber(buyer.account);
        Pass(Syntax::BuyerEnd);
    }
    void Get(SOrder& order)
    {
        Pass(Syntax::Id);
        GetNumber(order.id);
        Pass(Syntax::Title);
        GetText(order.title);
        Pass(Syntax::Total);
        GetNumber(order.total);
        Pass(Syntax::Discount);
        GetNumber(order.discount);
        Pass(Syntax::Paid);
        order.paid = Passes("true");
        if (!order.paid)
            Pass("false");
        Pass(Syntax::Date);
        order.date = ParseDate(GetPlainText());
        Pass(Syntax::Buyer);
        Get(order.buyer);
        GetElements(order.lines, Syntax::Lines, Syntax::BetweenLines, Syntax::Signature);
        DecodeSignature(GetPlainText(), order.signature);
        Pass(Syntax::OrderEnd);
    }
    void Get(double& number) { GetNumber(number); }
    void Get(std::int32_t& number) { GetNumber(number); }

    template <class Element>
    void GetElements(SSequence<Element>& sequence, std::string_view front, std::string_view between,
                     std::string_view behind)
    {
        Pass(front);
        while (!Passes(behind))
        {
            if (!sequence.elements.empty())
                Pass(between);
            Get(sequence.elements.emplace_back());
        }
    }

private:
    char getCharacter()
    {
        for (const SEscape& escape : Syntax::Escapes)
            if (Passes(escape.text))
                return escape.character;
        return *at++;
    }

    const char* at;
    const char* end;
};

template <class Syntax>
std::size_t GetRoomFor(const SOrder& order)
{
    return RoomForOrder + LongestEscape * (order.title.size() + order.buyer.name.size() + order.buyer.city.size()) +
           RoomForLine * order.lines.elements.size();
}

template <class Syntax>
struct SHandText
{
    static constexpr const char* Format = Syntax::Format;
    static constexpr const char* Name = "by hand";

    static CHandOutput Write(const Orders& orders)
    {
        CHandOutput output;
        WriteLiteral(output, Syntax::Orders);
        std::string_view separator;
        for (const SOrder& order : orders.elements)
        {
            CTextPen<Syntax> pen(output.Reserve(GetRoomFor<Syntax>(order)));
            pen.Put(separator);
            pen.PutOrder(order);
            output.Commit(pen.GetEnd());
            separator = Syntax::BetweenOrders;
        }
        WriteLiteral(output, Syntax::OrdersEnd);
        return output;
    }
    static void Read(const CHandOutput& document, Orders& orders)
    {
        CTextEye<Syntax>(document).GetElements(orders, Syntax::Orders, Syntax::BetweenOrders, Syntax::OrdersEnd);
    }

    template <class Number>
    static CHandOutput Write(const SSequence<Number>& numbers)
    {
        CHandOutput output;
        std::string_view front = Syntax::Numbers;
        for (const Number number : numbers.elements)
        {
            CTextPen<Syntax> pen(output.Reserve(2 * RoomForNumber));
            pen.Put(front);
            pen.PutNumber(number);
            output.Commit(pen.GetEnd());
            front = Syntax::BetweenNumbers;
        }
        WriteLiteral(output, Syntax::NumbersEnd);
        return output;
    }
    template <class Number>
    static void Read(const CHandOutput& document, SSequence<Number>& numbers)
    {
        CTextEye<Syntax>(document).GetElements(numbers, Syntax::Numbers, Syntax::BetweenNumbers, Syntax::NumbersEnd);
    }

private:
    static void WriteLiteral(CHandOutput& output, std::string_view text)
    {
        CTextPen<Syntax> pen(output.Reserve(text.size()));
        pen.Put(text);
        output.Commit(pen.GetEnd());
    }
};

[[maybe_unused]] const bool added = AddPeer<SHandText<SJsonSyntax>>() && AddPeer<SHandText<SXmlSyntax>>();

} // namespace

} // namespace Measured
