#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "Groundwork/BinaryDecoding.h"
#include "Groundwork/CbStreamReadBinaryBuffer.h"

#include "Vellum/CException.h"

#include "Vellum/src/BinaryTree.h"
#include "Vellum/src/CByteBuffer.h"
#include "Vellum/src/EntryPools.h"
#include "Vellum/src/Limits.h"
#include "Vellum/src/ValueKinds.h"

namespace Vellum
{

template <class T>
constexpr bool IsNumber = std::is_arithmetic_v<T>;

template <class T>
using NodePool =
    EntryPool<std::string, T, std::pair<std::string, std::unique_ptr<CDataReader>>, std::unique_ptr<CContainerReader>>;

// A field of a record that isn't finished.
struct SPendingField
{
    SFieldName name;
    UValue value;
};

// CBinaryParser: parses a document into a tree. Values of unfinished records and sequences wait on stacks, since nobody
// knows how many there will really be; finished ones move into the arena.
//
// From memory it takes what it needs where it lies. To any other stream it is a client of the public operations.
template <class Stream>
class CBinaryParser
{
public:
    CBinaryParser(Stream& source, CBinaryTree& result) : stream(source), tree(result) {}

    void Parse()
    {
        stream.ReadAndCompareVersion(0);
        stream.Read(tree.rootTag);
        parseStringTable();
        parseRoot();
        tree.keys.ForgetIndices();
    }

private:
    static constexpr bool IsMemory = std::is_same_v<Stream, CbStreamReadBinaryBuffer>;

    // One level of nesting, for as long as it is being parsed.
    class CLevel
    {
    public:
        CLevel(CBinaryParser& parser, const char* functionName) : depth(parser.depth)
        {
            if (depth == MaxDepth)
                throw CException(__FILE__, __LINE__, functionName);
            ++depth;
        }
        ~CLevel() { --depth; }
        CLevel(const CLevel&) = delete;
        CLevel& operator=(const CLevel&) = delete;

    private:
        std::uint32_t& depth;
    };

    template <class T>
    T read()
    {
        T value{};
        stream.Read(value);
        return value;
    }
    std::string_view readKey();
    [[noreturn]] static void raise(const char* functionName) { throw CException(__FILE__, __LINE__, functionName); }
    std::uint32_t resolve(const char* functionName);
    void parseStringTable();
    void parseRoot();
    const SRecord* parseRecord();
    const SSequence* parseSequence();
    const SLayout* findLayout(const SPendingField* first, std::size_t count);

    template <class... Kind>
    static constexpr auto makeEntryParsers(SKindList<Kind...>);
    template <class... Kind>
    static constexpr auto makeElementParsers(SKindList<Kind...>);

    void parseSection(std::uint8_t tag);
    template <class T>
    void parseEntries(std::uint32_t count);
    template <class T>
    void addEntry(std::uint32_t key, const UValue& value);
    template <class T>
    UValue parseField();

    const void* parseElements(std::uint8_t tag, std::uint32_t count);
    template <class T>
    const void* parseElementsOf(std::uint32_t count);
    template <class T>
    const void* parseNumbers(std::uint32_t count);
    template <class T>
    UValue parseElement();
    void parseTypeHeader(std::uint32_t count);

    template <class T>
    UValue parseValue();
    const SUnits<char>* parseText();
    const SUnits<char16_t>* parseWideText();
    const SUnits<unsigned char>* parseBlob(const char* functionName);
    template <class Unit>
    std::pair<const SUnits<Unit>*, Unit*> makeUnits(std::size_t count);

    Stream& stream;
    CBinaryTree& tree;
    std::uint32_t depth = 0;
    CByteBuffer fields;                       // of unfinished records: SPendingField
    std::vector<UValue> elements;             // of unfinished sequences
    std::array<const SLayout*, 64> layouts{}; // that were used last, by some of what they consist of
    std::string text;
    std::wstring wideText;
};

// Takes what lies on a stack above `base` into the arena.
template <class T>
const T* Finish(std::vector<T>& stack, std::size_t base, CArena& arena)
{
    const T* const finished = arena.Copy(stack.data() + base, stack.size() - base);
    stack.resize(base);
    return finished;
}

template <class T>
const T* Keep(CArena& arena, const T& value)
{
    return arena.Copy(&value, 1);
}

// A key as it stands in the string table, good until the next one is read.
template <class Stream>
std::string_view CBinaryParser<Stream>::readKey()
{
    if constexpr (IsMemory)
    {
        const std::uint32_t size = read<std::uint32_t>();
        return {reinterpret_cast<const char*>(stream.ReadInPlace(size)), size};
    }
    ATL::CStringT<char> key;
    stream.Read(key);
    text = std::move(key);
    return text;
}

template <class Stream>
void CBinaryParser<Stream>::parseStringTable()
{
    for (std::uint32_t left = read<std::uint32_t>(); left != 0; --left)
    {
        const std::string_view key = readKey();
        const std::string_view used = key.substr(0, key.find('\0')); // keys end at their first NUL
        char* const kept = reinterpret_cast<char*>(tree.arena.Allocate(used.size() + 1));
        *std::copy(used.begin(), used.end(), kept) = '\0';
        tree.keys.Add(read<std::uint32_t>(), std::string_view(kept, used.size()));
    }
    tree.keys.Complete();
}

template <class Stream>
void CBinaryParser<Stream>::parseRoot()
{
    if (tree.rootTag == TagObject)
        tree.root.record = parseRecord();
    else if (tree.rootTag == TagSequence)
        tree.root.sequence = parseSequence();
    else
        throw CException(__FILE__, __LINE__, "Vellum::CReaderBinary::CReaderBinary");
}

template <class Stream>
inline std::uint32_t CBinaryParser<Stream>::resolve(const char* functionName)
{
    const std::uint32_t number = tree.keys.Resolve(read<std::uint32_t>());
    if (number == CBinaryKeys::Unknown) [[unlikely]]
        raise(functionName);
    return number;
}

template <class Stream>
const SRecord* CBinaryParser<Stream>::parseRecord()
{
    const CLevel level(*this, "Vellum::CDataReader::Read");
    const std::size_t base = fields.GetSize();
    for (unsigned int left = read<unsigned char>(); left != 0; --left)
        parseSection(read<unsigned char>());

    const std::size_t count = (fields.GetSize() - base) / sizeof(SPendingField);
    if (count > 0xFFFFFFFE)
        throw CException(__FILE__, __LINE__, "Vellum::CDataReader::Read");
    const auto* const first = reinterpret_cast<const SPendingField*>(fields.GetData() + base);
    const SLayout* const layout = findLayout(first, count);
    unsigned char* const piece = tree.arena.Allocate(sizeof(SRecord) + count * sizeof(UValue));
    UValue* const values = reinterpret_cast<UValue*>(piece + sizeof(SRecord));
    std::transform(first, first + count, values, [](const SPendingField& field) { return field.value; });
    fields.Truncate(base);
    return new (piece) SRecord{layout};
}

// The layout of these fields: one that other records have, if it was used lately.
template <class Stream>
const SLayout* CBinaryParser<Stream>::findLayout(const SPendingField* first, std::size_t count)
{
    const auto isThat = [](const SPendingField& field, const SFieldName& name) { return field.name == name; };
    const std::uint32_t mixed = count == 0 ? 0 : first->name.key * 5 + first->name.tag + first[count - 1].name.key * 3;
    const SLayout*& layout = layouts[(mixed + count) % layouts.size()];
    if (layout == nullptr || layout->count != count || !std::equal(first, first + count, layout->names, isThat))
        layout = SLayout::Make(tree.arena, first, count);
    return layout;
}

// The operations of each kind, by tag. They are called through a table, so that a level of nesting costs the stack no
// more than its own kind needs.
template <class Stream>
template <class... Kind>
constexpr auto CBinaryParser<Stream>::makeEntryParsers(SKindList<Kind...>)
{
    std::array<void (CBinaryParser::*)(std::uint32_t), sizeof...(Kind)> parsers{};
    ((parsers[Kind::Tag] = &CBinaryParser::parseEntries<typename Kind::Type>), ...);
    return parsers;
}

template <class Stream>
template <class... Kind>
constexpr auto CBinaryParser<Stream>::makeElementParsers(SKindList<Kind...>)
{
    std::array<const void* (CBinaryParser::*)(std::uint32_t), sizeof...(Kind)> parsers{};
    ((parsers[Kind::Tag] = &CBinaryParser::parseElementsOf<typename Kind::Type>), ...);
    return parsers;
}

template <class Stream>
void CBinaryParser<Stream>::parseSection(std::uint8_t tag)
{
    static constexpr auto Parsers = makeEntryParsers(ValueKinds());
    if (tag >= Parsers.size())
        throw CException(__FILE__, __LINE__, "Vellum::CDataReader::Read");
    (this->*Parsers[tag])(read<std::uint32_t>());
}

template <class Stream>
template <class T>
void CBinaryParser<Stream>::parseEntries(std::uint32_t count)
{
    for (; count != 0; --count)
    {
        const std::uint32_t key = resolve("Vellum::CDataReader::Read");
        addEntry<T>(key, parseField<T>());
    }
}

template <class Stream>
template <class T>
void CBinaryParser<Stream>::addEntry(std::uint32_t key, const UValue& value)
{
    try
    {
        const SPendingField field{{key, TagOf<T>}, value};
        fields.Write(&field, sizeof field);
    }
    catch (const std::bad_alloc&)
    {
        CbRaiseOutOfElements(NodePool<T>::GetFunctionName());
    }
}

// The value of an entry: as everywhere, but a blob has its own failure and an object its type name in front.
template <class Stream>
template <class T>
UValue CBinaryParser<Stream>::parseField()
{
    if constexpr (std::is_same_v<T, SBlob>)
        return {.blob = parseBlob("Vellum::CDataReader::readBlobs")};
    if constexpr (std::is_same_v<T, ISerializable>)
        resolve("Vellum::CDataReader::Read");
    return parseValue<T>();
}

template <class Stream>
const SSequence* CBinaryParser<Stream>::parseSequence()
{
    const CLevel level(*this, "Vellum::CContainerReader::Read");
    SSequence sequence{};
    sequence.tag = read<unsigned char>();
    sequence.count = read<std::uint32_t>();
    if (sequence.count != 0)
    {
        if (sequence.tag == TagObject)
            parseTypeHeader(sequence.count);
        sequence.elements = parseElements(sequence.tag, sequence.count);
    }
    return Keep(tree.arena, sequence);
}

// The type names must be there, but nobody asks for them.
template <class Stream>
void CBinaryParser<Stream>::parseTypeHeader(std::uint32_t count)
{
    const bool sameType = read<bool>();
    for (std::uint32_t left = sameType ? 1 : count; left != 0; --left)
        resolve("Vellum::CContainerReader::Read");
}

template <class Stream>
const void* CBinaryParser<Stream>::parseElements(std::uint8_t tag, std::uint32_t count)
{
    static constexpr auto Parsers = makeElementParsers(ValueKinds());
    if (tag >= Parsers.size())
        throw CException(__FILE__, __LINE__, "Vellum::CContainerReader::Read");
    return (this->*Parsers[tag])(count);
}

template <class Stream>
template <class T>
const void* CBinaryParser<Stream>::parseElementsOf(std::uint32_t count)
{
    if constexpr (IsNumber<T>)
        return parseNumbers<T>(count);
    else
    {
        const std::size_t base = elements.size();
        for (; count != 0; --count)
        {
            const UValue element = parseElement<T>();
            elements.push_back(element);
        }
        return Finish(elements, base, tree.arena);
    }
}

// Turns numbers as they lie in a stream into those of this machine.
template <class T>
void ToNative([[maybe_unused]] unsigned char* numbers, [[maybe_unused]] std::uint64_t size)
{
    if constexpr (std::endian::native == std::endian::big)
        for (std::uint64_t at = 0; at < size; at += sizeof(T))
            std::reverse(numbers + at, numbers + at + sizeof(T));
}

// Numbers are read many at a time. A bool's byte may have any value, so bools stay bytes until somebody reads them.
template <class Stream>
template <class T>
const void* CBinaryParser<Stream>::parseNumbers(std::uint32_t count)
{
    constexpr std::uint64_t MaxCommon = 0x1000;
    const std::uint64_t size = std::uint64_t{count} * sizeof(T);
    if (size > 0xFFFFFFFF) // more than a sequence may have
        throw CException(__FILE__, __LINE__, "Vellum::CContainerReader::Read");
    unsigned char* numbers = nullptr;
    if (IsMemory || size <= MaxCommon)
    {
        if constexpr (IsMemory)
            stream.ExpectLeft(size);
        numbers = tree.arena.Allocate(static_cast<std::size_t>(size));
        stream.ReadExact(numbers, static_cast<std::size_t>(size));
    }
    else
    {
        CbArray<unsigned char> bytes;
        if (stream.ReadBytes(bytes, static_cast<std::uint32_t>(size)) != size)
            BinaryDecoding::RaiseMissing();
        numbers = tree.arena.Keep(std::move(bytes));
    }
    ToNative<T>(numbers, size);
    return numbers;
}

// An object in a sequence has the index of its type name in front, which is never looked up.
template <class Stream>
template <class T>
UValue CBinaryParser<Stream>::parseElement()
{
    if constexpr (std::is_same_v<T, SBlob>)
        return {.blob = parseBlob("Vellum::CContainerReader::Read")};
    if constexpr (std::is_same_v<T, ISerializable>)
        read<std::uint32_t>();
    return parseValue<T>();
}

template <class Stream>
template <class T>
UValue CBinaryParser<Stream>::parseValue()
{
    UValue value{};
    if constexpr (IsNumber<T>)
    {
        const T number = read<T>();
        std::memcpy(value.number.data(), &number, sizeof number);
    }
    else if constexpr (std::is_same_v<T, std::string>)
        value.text = parseText();
    else if constexpr (std::is_same_v<T, std::wstring>)
        value.wideText = parseWideText();
    else if constexpr (std::is_same_v<T, IDateTime>)
    {
        stream.ReadAndCompareVersion(0);
        value.ticks = read<std::uint64_t>();
    }
    else if constexpr (std::is_same_v<T, ISerializable>)
        value.record = parseRecord();
    else if constexpr (std::is_same_v<T, ISerializableContainer>)
        value.sequence = parseSequence();
    return value;
}

// Room for units, in one piece with their number.
template <class Stream>
template <class Unit>
std::pair<const SUnits<Unit>*, Unit*> CBinaryParser<Stream>::makeUnits(std::size_t count)
{
    using Units = SUnits<Unit>;
    unsigned char* const piece = tree.arena.Allocate(sizeof(Units) + count * sizeof(Unit));
    Unit* const units = reinterpret_cast<Unit*>(piece + sizeof(Units));
    return {new (piece) Units{count, units}, units};
}

template <class Stream>
const SUnits<char>* CBinaryParser<Stream>::parseText()
{
    std::string_view content;
    if constexpr (IsMemory)
        content = readKey();
    else
    {
        stream.Read(text);
        content = text;
    }
    const auto [kept, units] = makeUnits<char>(content.size());
    std::copy(content.begin(), content.end(), units);
    return kept;
}

template <class Stream>
const SUnits<char16_t>* CBinaryParser<Stream>::parseWideText()
{
    stream.Read(wideText);
    const auto [kept, units] = makeUnits<char16_t>(wideText.size());
    std::transform(wideText.begin(), wideText.end(), units, [](wchar_t unit) { return static_cast<char16_t>(unit); });
    return kept;
}

template <class Stream>
const SUnits<unsigned char>* CBinaryParser<Stream>::parseBlob(const char* functionName)
{
    constexpr std::uint32_t MaxCommon = 0x1000;
    const std::uint32_t size = read<std::uint32_t>();
    bool isSmall = size <= MaxCommon;
    if constexpr (IsMemory)
        isSmall = size <= stream.GetLeft();
    if (isSmall)
    {
        const auto [kept, bytes] = makeUnits<unsigned char>(size);
        if (stream.Read(bytes, std::size_t{size}) != size)
            throw CException(__FILE__, __LINE__, functionName);
        return kept;
    }
    CbArray<unsigned char> bytes;
    if (stream.ReadBytes(bytes, size) != size)
        throw CException(__FILE__, __LINE__, functionName);
    return Keep(tree.arena, SUnits<unsigned char>{size, tree.arena.Keep(std::move(bytes))});
}

} // namespace Vellum
