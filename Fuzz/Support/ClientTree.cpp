#include "Support/ClientTree.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <type_traits>
#include <utility>

#include "Vellum/IContainerReader.h"
#include "Vellum/IContainerWriter.h"
#include "Vellum/IDataReader.h"
#include "Vellum/IDataWriter.h"

namespace Fuzzing
{
namespace
{

using Object = std::unique_ptr<CTreeObject>;
using Sequence = std::unique_ptr<CTreeSequence>;

constexpr std::uint32_t MaxTreeDepth = 100;
constexpr std::uint32_t MaxItems = 200; // of one object or sequence

template <class T>
constexpr bool IsNested = std::is_same_v<T, Object> || std::is_same_v<T, Sequence>;

// One value to a writer and from a reader. Key is a key or an index, or left out for an element that is written.
template <class Writer, class... Key>
void WriteValue(Writer& writer, const Value& value, Key... key)
{
    std::visit(
        [&]<class T>(const T& it)
        {
            if constexpr (std::is_same_v<T, Bytes>)
                writer.Write(key..., it.size(), it.data());
            else if constexpr (IsNested<T>)
                writer.Write(key..., *it);
            else
                writer.Write(key..., it);
        },
        value);
}

// A blob of no bytes can't be told from one that isn't there.
template <class Reader, class Key>
bool ReadBlob(Reader& reader, Key key, Bytes& bytes)
{
    const Vellum::BlobRange range = reader.GetBlob(key);
    bytes.assign(range.first, range.second);
    return true;
}

template <class Reader, class Key>
bool ReadValue(Reader& reader, Key key, Value& value)
{
    return std::visit(
        [&]<class T>(T& it)
        {
            if constexpr (std::is_same_v<T, Bytes>)
                return ReadBlob(reader, key, it);
            else if constexpr (IsNested<T>)
                return reader.Read(key, *it);
            else
                return reader.Read(key, it);
        },
        value);
}

// Makes the values of one tree.
class CTreeMaker
{
public:
    CTreeMaker(CByteSource& source, const STreeShape& shape) : source(source), shape(shape) {}

    Object MakeObject(std::uint32_t depth);
    Sequence MakeSequence(std::uint32_t depth);

private:
    // Most trees are small; some items are many, so that tables grow.
    std::uint32_t countItems() { return source.Below(16) != 15 ? source.Below(8) : source.Below(MaxItems); }
    char makeLetter(std::string_view letters)
    {
        const std::uint8_t byte = source.Byte();
        return letters.empty() ? static_cast<char>(byte) : letters[byte % letters.size()];
    }
    std::string makeText(std::string_view letters);
    std::string makeKey(const CTreeObject& object, std::size_t kind);
    std::wstring makeWideText();
    template <class Text>
    Text trim(Text text) const;
    CPlainDate makeDate();
    template <class Number>
    Number makeNumber();
    template <class T>
    T make(std::uint32_t depth);
    template <std::size_t... Index>
    Value makeKind(std::size_t kind, std::uint32_t depth, std::index_sequence<Index...>);
    Value makeValue(std::size_t kind, std::uint32_t depth)
    {
        return makeKind(kind, depth, std::make_index_sequence<std::variant_size_v<Value>>());
    }
    std::size_t chooseKind(std::uint32_t depth)
    {
        constexpr std::size_t Kinds = std::variant_size_v<Value>;
        return source.Below(depth < MaxTreeDepth ? Kinds : Kinds - 2); // the nested kinds are the last two
    }

    CByteSource& source;
    const STreeShape& shape;
};

std::string CTreeMaker::makeText(std::string_view letters)
{
    std::string text;
    const std::uint32_t size = source.Below(16) != 15 ? source.Below(12) : source.Byte() * 4;
    while (text.size() < size && !source.IsEmpty())
        if (const char letter = makeLetter(letters); letter != '\0')
            text += letter;
    return text;
}

std::string CTreeMaker::makeKey(const CTreeObject& object, std::size_t kind)
{
    std::string key = makeText(shape.keyLetters);
    const auto isTaken = [&](const CTreeObject::SField& field)
    { return field.key == key && (!shape.keyInManyKinds || field.value.index() == kind); };
    while (key.empty() || std::ranges::any_of(object.fields, isTaken))
        key += "k" + std::to_string(object.fields.size());
    return key;
}

std::wstring CTreeMaker::makeWideText()
{
    std::wstring text;
    const std::uint32_t size = source.Below(16) != 15 ? source.Below(12) : source.Byte() * 2;
    while (text.size() < size && !source.IsEmpty())
    {
        const auto unit = source.Any<std::uint16_t>();
        const bool isSurrogate = unit >= 0xD800 && unit < 0xE000;
        if (unit != 0 && (!isSurrogate || shape.loneSurrogates))
            text += static_cast<wchar_t>(unit);
        else if (isSurrogate)
        {
            text += static_cast<wchar_t>(0xD800 | (unit & 0x3FF));
            text += static_cast<wchar_t>(0xDC00 | source.Byte());
        }
    }
    return text;
}

template <class Text>
Text CTreeMaker::trim(Text text) const
{
    const auto isSpace = [](auto letter) { return letter == ' ' || (letter >= '\t' && letter <= '\r'); };
    while (!shape.outerSpace && !text.empty() && isSpace(text.back()))
        text.pop_back();
    while (!shape.outerSpace && !text.empty() && isSpace(text.front()))
        text.erase(text.begin());
    return text;
}

CPlainDate CTreeMaker::makeDate()
{
    CPlainDate date;
    const auto below = [this](unsigned bound)
    { return static_cast<unsigned short>(source.Any<std::uint16_t>() % bound); };
    date.SetYear(static_cast<unsigned short>(1601 + below(shape.maxYear - 1600u)));
    date.SetMonth(static_cast<unsigned short>(1 + below(12)));
    date.SetDay(static_cast<unsigned short>(1 + below(28)));
    date.SetHour(below(24));
    date.SetMinute(below(60));
    date.SetSecond(below(60));
    date.SetMilliseconds(shape.milliseconds ? below(1000) : 0);
    return date;
}

template <class Number>
Number CTreeMaker::makeNumber()
{
    const auto number = source.Any<Number>();
    if constexpr (std::is_floating_point_v<Number>)
        if (!shape.nonFiniteNumbers && !std::isfinite(number))
            return 0;
    return number;
}

template <class T>
T CTreeMaker::make(std::uint32_t depth)
{
    if constexpr (std::is_same_v<T, bool>)
        return source.Below(2) != 0;
    else if constexpr (std::is_same_v<T, char>)
        return makeLetter(shape.charLetters);
    else if constexpr (std::is_arithmetic_v<T>)
        return makeNumber<T>();
    else if constexpr (std::is_same_v<T, std::string>)
        return trim(makeText(shape.textLetters));
    else if constexpr (std::is_same_v<T, std::wstring>)
        return trim(makeWideText());
    else if constexpr (std::is_same_v<T, CPlainDate>)
        return makeDate();
    else if constexpr (std::is_same_v<T, Bytes>)
    {
        const std::string text = makeText({});
        return text.empty() && !shape.emptyBlobs ? Bytes(1) : Bytes(text.begin(), text.end());
    }
    else if constexpr (std::is_same_v<T, Object>)
        return MakeObject(depth + 1);
    else
        return MakeSequence(depth + 1);
}

template <std::size_t... Index>
Value CTreeMaker::makeKind(std::size_t kind, std::uint32_t depth, std::index_sequence<Index...>)
{
    Value value;
    ((kind == Index ? static_cast<void>(value = make<std::variant_alternative_t<Index, Value>>(depth))
                    : static_cast<void>(0)),
     ...);
    return value;
}

Object CTreeMaker::MakeObject(std::uint32_t depth)
{
    auto object = std::make_unique<CTreeObject>();
    object->typeName = "T" + makeText(shape.keyLetters);
    for (std::uint32_t count = countItems(); count != 0 && !source.IsEmpty(); --count)
    {
        const std::size_t kind = chooseKind(depth);
        std::string key = makeKey(*object, kind);
        object->fields.push_back({std::move(key), makeValue(kind, depth), false});
    }
    return object;
}

Sequence CTreeMaker::MakeSequence(std::uint32_t depth)
{
    auto sequence = std::make_unique<CTreeSequence>();
    sequence->typeName = "S" + makeText(shape.keyLetters);
    std::size_t kind = chooseKind(depth);
    for (std::uint32_t count = countItems(); count != 0 && !source.IsEmpty(); --count)
    {
        sequence->elements.push_back({makeValue(kind, depth), false});
        if (shape.mixedSequences)
            kind = chooseKind(depth);
    }
    return sequence;
}

Value BlankOf(const Value& value)
{
    return std::visit(
        []<class T>(const T& it)
        {
            if constexpr (IsNested<T>)
                return Value(MakeBlank(*it));
            else
                return Value(T());
        },
        value);
}

// Where two values of one kind differ, as the end of a path.
std::string Difference(const Value& written, const Value& read)
{
    return std::visit(
        [&]<class T>(const T& it) -> std::string
        {
            const T& other = std::get<T>(read);
            if constexpr (IsNested<T>)
                return FirstDifference(*it, *other);
            else if constexpr (std::is_same_v<T, float>)
                return std::bit_cast<std::uint32_t>(it) == std::bit_cast<std::uint32_t>(other) ? "" : ": a float";
            else if constexpr (std::is_same_v<T, double>)
                return std::bit_cast<std::uint64_t>(it) == std::bit_cast<std::uint64_t>(other) ? "" : ": a double";
            else
                return it == other ? "" : ": a value of kind " + std::to_string(written.index());
        },
        written);
}

} // namespace

bool CPlainDate::operator==(const CPlainDate& other) const { return std::ranges::equal(fields, other.fields); }

CTreeObject::CTreeObject() = default;
CTreeObject::~CTreeObject() = default;

void CTreeObject::Write(Vellum::IDataWriter& writer) const
{
    for (const SField& field : fields)
        WriteValue(writer, field.value, field.key.c_str());
}

void CTreeObject::Read(Vellum::IDataReader& reader)
{
    for (SField& field : fields)
        field.isRead = ReadValue(reader, field.key.c_str(), field.value);
}

CTreeSequence::CTreeSequence() = default;
CTreeSequence::~CTreeSequence() = default;

void CTreeSequence::Write(Vellum::IContainerWriter& writer) const
{
    for (const SElement& element : elements)
        WriteValue(writer, element.value);
}

void CTreeSequence::Read(Vellum::IContainerReader& reader)
{
    std::uint32_t index = 0;
    for (SElement& element : elements)
        element.isRead = ReadValue(reader, index++, element.value);

    Value next = elements.empty() ? Value() : BlankOf(elements.back().value);
    const bool isBlob = std::holds_alternative<Bytes>(next);
    hasMore = isBlob ? reader.GetBlob(index).first != nullptr : ReadValue(reader, index, next);
}

Object MakeObject(CByteSource& source, const STreeShape& shape) { return CTreeMaker(source, shape).MakeObject(0); }
Sequence MakeSequence(CByteSource& source, const STreeShape& shape)
{
    return CTreeMaker(source, shape).MakeSequence(0);
}

Object MakeBlank(const CTreeObject& object)
{
    auto blank = std::make_unique<CTreeObject>();
    blank->typeName = object.typeName;
    for (const CTreeObject::SField& field : object.fields)
        blank->fields.push_back({field.key, BlankOf(field.value), false});
    return blank;
}

Sequence MakeBlank(const CTreeSequence& sequence)
{
    auto blank = std::make_unique<CTreeSequence>();
    blank->typeName = sequence.typeName;
    for (const CTreeSequence::SElement& element : sequence.elements)
        blank->elements.push_back({BlankOf(element.value), false});
    return blank;
}

std::string FirstDifference(const CTreeObject& written, const CTreeObject& read)
{
    for (std::size_t at = 0; at < written.fields.size(); ++at)
    {
        const CTreeObject::SField& field = read.fields[at];
        const std::string difference = field.isRead ? Difference(written.fields[at].value, field.value) : ": not there";
        if (!difference.empty())
            return "." + field.key + difference;
    }
    return {};
}

std::string FirstDifference(const CTreeSequence& written, const CTreeSequence& read)
{
    for (std::size_t at = 0; at < written.elements.size(); ++at)
    {
        const CTreeSequence::SElement& element = read.elements[at];
        const std::string difference =
            element.isRead ? Difference(written.elements[at].value, element.value) : ": not there";
        if (!difference.empty())
            return "[" + std::to_string(at) + "]" + difference;
    }
    return read.hasMore ? ": more elements than were written" : "";
}

} // namespace Fuzzing
