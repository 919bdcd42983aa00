#include "Model/Tree.h"

#include <bit>
#include <cmath>

#include "Model/Values.h"

namespace Model
{

namespace
{

using namespace std::string_literals;

const std::vector<std::string> Pieces =
    Words("~a~\"~\\~\n~\t~\r~\b~\f~\v~\x01~\x1F~\x7F~ ~<~>~&~%~'~/~&amp;~&#10;~&#xE9;~]]>~/>~</a>~<!--~-->~"
          "<![CDATA[~<PRE>~</PRE>~{~}~[~]~,~:~=~null~true~false~0~7~-~+~017~0x1f~0X~1.5~1e400~-2.5e-3~inf~nan~"
          ".~300~70000~4294967297~9223372036854775808~18446744073709551616~2024-03-01T10:20:30~"
          "2024-13-45 99:99:99~0005-01-02T03:04:05.678~QUJD~QQ==~=~Q~\xC3\xA4~\xE2\x82\xAC~\xF0\x9F\x98\x80~"
          "\xE9~\xC2~\xE0\x80~\xED\xA0\xBD~\xF4\x90\x80\x80~\xF0\x9F~\xFF~\xC0\xAF~\\n~\\t~\\v~\\q~\\x4~\\x414~"
          "\\u0000~\\U0010FFFF~-99999999999999999999~\\xE9~\\u41~\\u00e4~\\uD83D\\uDE00~\\U0001F600~"
          "\\U00110000~\\u~\\\xE9");

const std::vector<std::string> Names =
    Words("~k~id~Id~name~Aa~B@~AaAa~B@B@~AaB@~abcdefgh12~abcdefgh13~abcdefgh21~abcdefgh1~elt~a::b~a-b~A:::b~"
          "\xC3\xA4~Key~key~count~k0~k1~k2~items");
constexpr std::size_t OddNames = 1; // at the front
const std::vector<std::string> BadNames =
    Words("a b~<~a=b~pre~PRE~Script~script~k\"~k\\~\\~k\n~/>~k>~&amp;~-~\xE9~\xFFz");

class CTreeMaker
{
public:
    CTreeMaker(CTape& tape, bool isTame) : tape(tape), isTame(isTame) {}

    SNode MakeNode(bool isSequence, int depth)
    {
        SNode node;
        node.isSequence = isSequence;
        node.typeName = tape.OneIn(3) ? name() : std::string(1, static_cast<char>('A' + tape.Below(2)));
        const std::size_t size = tape.Below(16);
        const std::size_t count = size < 11 ? (depth == 1 ? size : size / 2) : size < 14 ? tape.Below(24) : 0;
        // Many sequences, and some objects, have items of one kind, those with few keys, and an intruder now and then.
        const std::size_t kind = anyKind(depth);
        const bool isOneKind = isSequence || tape.OneIn(4);
        for (std::size_t i = 0; i < count; ++i)
        {
            const bool isOther = !isOneKind || (!isTame && tape.OneIn(24));
            const std::string key = isSequence ? "" : isOneKind ? Names[1 + tape.Below(3)] : name();
            node.items.push_back({key, MakeValue(isOther ? anyKind(depth) : kind, depth), !isTame && tape.OneIn(2)});
            if (std::holds_alternative<Part>(node.items.back().value) && tape.OneIn(2))
                addTwins(node);
        }
        if (size >= 14)
            addMany(node);
        if (depth == 1 && tape.OneIn(100))
            addDeep(node);
        if (!isTame && tape.OneIn(12))
            node.raisesBefore = tape.Below(node.items.size() + 1);
        node.reusesKey = tape.OneIn(4);
        return node;
    }

    Value MakeValue(std::size_t kind, int depth)
    {
        if (kind == KindChar)
            return static_cast<char>(isTame ? 'A' + tape.Below(26) : tape.Below(256));
        if (kind < KindText)
            return bits(kind);
        if (kind >= KindObject)
            return std::make_shared<const SNode>(MakeNode(kind == KindSequence, depth + 1));
        return kind == KindText ? Value(text())
               : kind == 13     ? Value(wideText())
               : kind == 14     ? Value(date())
                                : SBlob{blob()};
    }

private:
    // What the last item is, once more and more often, with a difference now and then.
    void addTwins(SNode& node)
    {
        const SItem first = node.items.back();
        for (std::size_t count = tape.Below(5); count > 0; --count)
        {
            SNode twin = *std::get<Part>(first.value);
            if (!twin.items.empty() && tape.OneIn(2))
                vary(twin);
            node.items.push_back(
                {node.isSequence ? "" : name(), std::make_shared<const SNode>(std::move(twin)), first.isGuarded});
        }
    }

    void vary(SNode& twin)
    {
        const std::size_t place = tape.Below(twin.items.size()), way = tape.Below(isTame || twin.isSequence ? 3 : 5);
        const SItem item = twin.items[place];
        if (way == 0)
            twin.items.pop_back();
        else if (way < 3)
            std::swap(twin.items[place], twin.items.back());
        else if (way == 3)
            twin.items.push_back({item.key, MakeValue(anyKind(6), 6), item.isGuarded});
        else
            twin.raisesBefore = place;
    }

    std::size_t anyKind(int depth) { return tape.OneIn(4) ? KindText : tape.Below(depth < 6 ? Kinds : KindObject); }

    std::string name()
    {
        if (!isTame && tape.OneIn(10))
            return tape.OneIn(2) ? anyName() : tape.From(BadNames);
        if (tape.OneIn(50)) // about as long as what a text format gathers
            return std::string(980 + tape.Below(50), 'l');
        const std::size_t odd = isTame ? OddNames : 0;
        return Names[odd + tape.Below(std::size(Names) - odd)];
    }

    std::string anyName()
    {
        std::string text;
        for (std::size_t count = tape.Below(12); count > 0; --count)
            text += static_cast<char>(1 + tape.Below(255));
        return text;
    }

    // Hundreds of fields or thousands of numbers, for a few choices.
    void addMany(SNode& node)
    {
        static constexpr std::size_t counts[] = {14, 15, 16, 17, 33, 94, 95, 96, 97, 190, 191, 192, 200, 350, 383, 400};
        const std::size_t scheme = tape.Below(4), spread = tape.Below(2) * KindBlob;
        std::size_t count = tape.From(counts);
        const std::size_t kind = tape.OneIn(node.isSequence ? 2 : 4) ? KindObject : tape.Below(KindText + 1),
                          first = tape.Below(1000);
        if (node.isSequence && left >= 40000)
            (count = kind > KindText ? 1030 : 500 + tape.Below(6000), left -= 40000);
        const auto part = std::make_shared<const SNode>(SNode{first % 2 == 0, "P", {}, SNode::Never});
        for (std::size_t i = 0; i < count; ++i)
        {
            const std::size_t other = node.isSequence || spread == 0 ? kind : (kind + i * 7 / 5) % spread;
            node.items.push_back({manyName(scheme, i),
                                  kind > KindText ? part : number(other, first + i, static_cast<double>(first + i)),
                                  false});
        }
    }

    // As many levels as a reader follows, or a few more or less.
    void addDeep(SNode& node)
    {
        SNode part;
        for (std::size_t levels = 1020 + tape.Below(6); levels > 0; --levels)
            part = SNode{tape.OneIn(2), "D", {{"d", std::make_shared<const SNode>(part)}}, SNode::Never};
        node.isSequence ? node.items.clear() : void();
        node.items.push_back({"deep", std::make_shared<const SNode>(part)});
    }

    static std::string manyName(std::size_t scheme, std::size_t i)
    {
        // Of one hash in pairs, when case doesn't count.
        static const std::string twins[] = {"liquid", "macallums", "zinke", "costarring", "declinate"};
        const std::string digits = std::to_string(i);
        if (scheme == 1)
            return "samefront" + std::string(4 - digits.size(), '0') + digits;
        if (scheme == 2 && i % 5 != 4) // many of one hash, where names are interned
        {
            std::string text;
            for (std::size_t bit = 0; bit < 9; ++bit)
                text += (i >> bit) % 2 == 0 ? "Aa" : "B@";
            return text;
        }
        return scheme == 3 && i < std::size(twins) ? twins[i] : "k" + digits;
    }

    // Of any kind of number; a text otherwise.
    template <class Integer>
    static Value number(std::size_t kind, Integer bits, double real)
    {
        const auto make = [&]<class T>() -> Value
        {
            if constexpr (std::is_floating_point_v<T>)
                return static_cast<T>(real);
            else if constexpr (std::is_arithmetic_v<T>)
                return static_cast<T>(bits);
            return std::to_string(bits);
        };
        return WithKind(kind, make);
    }

    // A number: small, or any bits.
    Value bits(std::size_t kind)
    {
        static constexpr double reals[] = {0,      1.5,  -0.0,     0.1,       100, 1e20,
                                           1e-320, 3e38, HUGE_VAL, -HUGE_VAL, NAN, 123456789};
        const std::uint64_t bits = tape.OneIn(2) ? tape.Bits() : tape.Below(3) - 1;
        return number(kind, bits, tape.OneIn(2) ? std::bit_cast<double>(bits) : tape.From(reals));
    }

    std::string text()
    {
        std::string text = AnyText(tape);
        if (isTame)
            while (!text.empty() && (static_cast<signed char>(text.back()) < 0 || text.back() == ' '))
                text.pop_back();
        if (!isTame && tape.OneIn(10))
            text.insert(tape.Below(text.size() + 1), 1, '\0');
        return tape.OneIn(40) && left >= 40000 ? (left -= 40000, text + std::string(36000, 'x')) : text;
    }

    std::wstring wideText()
    {
        static constexpr unsigned units[] = {'a',     '"',      '\\',     '\n',       '<',    '&',    0xE4,
                                             0x20AC,  0xD83D,   0xDE00,   0xDBFF,     0xDC00, 0xFFFF, 0xFFFD,
                                             0x1F600, 0x10FFFF, 0x110000, 0xFFFFFFFF, 0};
        std::wstring text;
        for (std::size_t count = tape.Below(8); count > 0; --count)
            text += static_cast<wchar_t>(tape.From(units));
        static constexpr std::size_t lengths[] = {1, 7, 8, 15, 254, 255, 256, 3000, 65533, 65534, 65535};
        if (tape.OneIn(8))
            text.insert(
                0, std::wstring(lengths[tape.Below(left >= 70000 && tape.OneIn(2) ? (left -= 70000, 11u) : 7u)], L'w'));
        return text;
    }

    SDate date()
    {
        SDate date;
        static constexpr unsigned short limits[] = {30000, 12, 31, 24, 60, 60, 1000},
                                        firsts[] = {1600, 1, 1, 0, 0, 0, 0};
        const bool isWild = !isTame && tape.OneIn(4);
        for (std::size_t i = 0; i < 7; ++i)
            date.fields[i] = static_cast<unsigned short>(isWild ? tape.Next() : tape.Below(limits[i]) + firsts[i]);
        if (isTame)
            date.fields[0] = static_cast<unsigned short>(1601 + date.fields[0] % 8000);
        return date;
    }

    std::string blob()
    {
        static constexpr std::size_t sizes[] = {0,   1,   2,   3,    4,    53,   54,   55,   107,
                                                108, 109, 300, 4095, 4096, 4097, 9000, 33000};
        std::size_t size = sizes[tape.Below(tape.OneIn(4) ? std::size(sizes) : 12)];
        if (size > left)
            size = 3;
        left -= size;
        std::string bytes(size, '\0');
        const unsigned step = static_cast<unsigned>(tape.Below(256)), first = static_cast<unsigned>(tape.Below(256));
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(first + step * i + i / 256);
        return bytes;
    }

    CTape& tape;
    bool isTame;
    std::size_t left = 150000; // bytes that may still be made in large pieces
};

} // namespace

std::string AnyText(CTape& tape)
{
    std::string text;
    for (std::size_t count = tape.Below(8); count > 0; --count)
    {
        const std::size_t place = tape.Below(Pieces.size() + 16);
        text += place < Pieces.size() ? Pieces[place] : std::string(place - Pieces.size() + 1, 'x');
    }
    return text;
}

Value AnyValue(CTape& tape, std::size_t kind) { return CTreeMaker(tape, false).MakeValue(kind, 1); }

SNode AnyTree(CTape& tape, bool isTame) { return CTreeMaker(tape, isTame).MakeNode(tape.OneIn(3), 1); }

} // namespace Model
