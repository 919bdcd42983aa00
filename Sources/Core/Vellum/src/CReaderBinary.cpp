#include "Vellum/CReaderBinary.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Groundwork/BinaryDecoding.h"
#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbMapTypes.h"
#include "Groundwork/CbPlexManager.h"

#include "Vellum/CException.h"
#include "Vellum/IContainerReader.h"
#include "Vellum/IDataReader.h"
#include "Vellum/ISerializable.h"
#include "Vellum/ISerializableContainer.h"

#include "Vellum/src/CArena.h"
#include "Vellum/src/KindOperations.h"
#include "Vellum/src/Limits.h"
#include "Vellum/src/TypeNames.h"

// A document becomes a tree of plain data in an arena. A record is an array of entries in the order of the document,
// each of 16 bytes, a sequence an array of numbers or of values. Data and container readers are made when a client
// asks, and only look things up.

namespace Vellum
{
namespace
{

struct SRecord;
struct SSequence;

// Bytes of a blob, bytes of a text, or UTF-16 units of a wide text.
template <class Unit>
struct SUnits
{
    std::size_t count;
    const Unit* units;
};

// One value. Which member counts is told by the tag that stands beside it.
union UValue
{
    std::array<unsigned char, 8> number; // of any width, from the first byte on
    std::uint64_t ticks;
    const SUnits<char>* text;
    const SUnits<char16_t>* wideText;
    const SUnits<unsigned char>* blob;
    const SRecord* record;
    const SSequence* sequence;
};

struct SEntry
{
    std::uint32_t key; // number of the text, see CKeys
    std::uint8_t tag;
    UValue value;
};

struct SRecord
{
    const SEntry* entries;
    const std::uint32_t* sorted; // positions of entries by tag and key, or null for a record of few entries
    std::uint32_t entryCount;
    std::uint32_t sortedCount;
};

struct SSequence
{
    const void* elements; // numbers of the kind's own width, otherwise UValue
    std::uint32_t count;
    std::uint8_t tag;
};

template <class T>
constexpr bool IsNumber = std::is_arithmetic_v<T>;

// The table that the entries of a kind make up, as far as anybody can tell: it names the failure of their memory.
template <class T>
struct STableOf
{
    using Value = T;
};
template <>
struct STableOf<IDateTime>
{
    using Value = CbDateTime;
};
template <>
struct STableOf<SBlob>
{
    using Value = CbArray<unsigned char>;
};
template <>
struct STableOf<ISerializable>
{
    using Value = std::pair<std::string, std::unique_ptr<CDataReader>>;
};
template <>
struct STableOf<ISerializableContainer>
{
    using Value = std::unique_ptr<CContainerReader>;
};

template <class T>
using NodePool = CbPlexManager<CbMapTypes::SAssociation<std::string, typename STableOf<T>::Value>, 0, unsigned int>;

// Above that many entries it pays to have them sorted.
constexpr std::uint32_t MaxUnsorted = 16;

bool ComesBefore(const SEntry& left, std::uint8_t tag, std::uint32_t key)
{
    return left.tag != tag ? left.tag < tag : left.key < key;
}

// The entry of a kind and key. Where a document has several the last counts.
const SEntry* FindEntry(const SRecord& record, std::uint8_t tag, std::uint32_t key)
{
    const SEntry* const entries = record.entries;
    if (record.sorted != nullptr)
    {
        const std::uint32_t* const end = record.sorted + record.sortedCount;
        const std::uint32_t* const found = std::partition_point(
            record.sorted, end, [&](std::uint32_t at) { return ComesBefore(entries[at], tag, key); });
        return found != end && entries[*found].tag == tag && entries[*found].key == key ? entries + *found : nullptr;
    }
    for (std::uint32_t at = record.entryCount; at-- != 0;)
        if (entries[at].key == key && entries[at].tag == tag)
            return entries + at;
    return nullptr;
}

// A text of the string table. Its first eight bytes, as a number, settle most comparisons.
struct SText
{
    explicit SText(std::string_view text) : text(text)
    {
        std::array<unsigned char, 8> bytes{};
        std::copy_n(text.begin(), std::min(text.size(), bytes.size()), bytes.begin());
        for (const unsigned char byte : bytes)
            head = head << 8 | byte;
    }

    bool operator<(const SText& other) const { return head != other.head ? head < other.head : text < other.text; }
    bool operator==(const SText& other) const { return head == other.head && text == other.text; }

    std::uint64_t head = 0;
    std::string_view text;
};

// The string table. All its texts are numbered from 0 on, each text once; a key is such a number from then on. Numbers
// are found by sorting, whose cost no document can drive up as it could that of hashing. A long text that was handed
// out is known by its address: it may be the key of very many entries, and a client that reads them all would have it
// compared as often.
class CKeys
{
public:
    static constexpr std::uint32_t Unknown = 0xFFFFFFFF;

    // The text must outlive this object and end with a NUL.
    void Add(std::uint32_t index, std::string_view text) { entries.push_back({index, 0, SText(text)}); }

    // Called once, when all are there. Of entries with one index the last counts.
    void Sort()
    {
        std::ranges::stable_sort(entries, {}, &SEntryOfTable::index);
        const auto last = std::unique(entries.rbegin(), entries.rend(),
                                      [](const auto& left, const auto& right) { return left.index == right.index; });
        entries.erase(entries.begin(), last.base());

        texts.reserve(entries.size());
        for (const SEntryOfTable& entry : entries)
            texts.push_back(entry.text);
        std::ranges::sort(texts, std::less());
        texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
        for (SEntryOfTable& entry : entries)
            entry.number = find(entry.text);

        for (std::uint32_t number = 0; number < texts.size(); ++number)
            if (texts[number].text.size() > MaxCompared)
                longTexts.push_back({GetText(number), number});
        std::ranges::sort(longTexts, std::less(), &SLongText::address);
    }

    // The number of the text with that index in the document, or Unknown.
    std::uint32_t Resolve(std::uint32_t index) const
    {
        if (index < entries.size() && entries[index].index == index) // as in every document of our own
            return entries[index].number;
        const auto found = std::ranges::lower_bound(entries, index, {}, &SEntryOfTable::index);
        return found != entries.end() && found->index == index ? found->number : Unknown;
    }

    // Called when the document has been parsed: indices are no longer needed.
    void ForgetIndices() { entries = std::vector<SEntryOfTable>(); }

    // The number of a text, or Unknown.
    std::uint32_t Find(const char* text) const
    {
        const auto known = std::ranges::lower_bound(longTexts, text, std::less(), &SLongText::address);
        return known != longTexts.end() && known->address == text ? known->number : find(SText(text));
    }
    const char* GetText(std::uint32_t number) const { return texts[number].text.data(); }

private:
    struct SEntryOfTable
    {
        std::uint32_t index;
        std::uint32_t number; // of the text
        SText text;
    };

    // Texts of that length are compared as fast as their address is found.
    static constexpr std::size_t MaxCompared = 64;

    struct SLongText
    {
        const char* address;
        std::uint32_t number;
    };

    std::uint32_t find(const SText& text) const
    {
        const auto found = std::lower_bound(texts.begin(), texts.end(), text);
        return found != texts.end() && *found == text ? static_cast<std::uint32_t>(found - texts.begin()) : Unknown;
    }

    std::vector<SEntryOfTable> entries; // by index
    std::vector<SText> texts;           // by number, in ascending order
    std::vector<SLongText> longTexts;   // by address
};

} // namespace

// A parsed document.
class CBinaryTree
{
public:
    CArena arena;
    CKeys keys;
    std::uint8_t rootTag = 0;
    UValue root{};
};

namespace
{

// Parses a document into a tree. Values of unfinished records and sequences wait on the two stacks, since nobody knows
// how many there will really be; finished ones move into the arena.
class CParser
{
public:
    CParser(CbStreamReadBinary& stream, CBinaryTree& tree) : stream(stream), tree(tree) {}

    void ParseStringTable();
    void ParseRoot();

private:
    // One level of nesting, for as long as it is being parsed.
    class CLevel
    {
    public:
        CLevel(CParser& parser, const char* functionName) : depth(parser.depth)
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
    std::uint32_t resolve(const char* functionName);
    const SRecord* parseRecord();
    const SSequence* parseSequence();
    const std::uint32_t* sort(const SEntry* entries, std::uint32_t count, std::uint32_t& sortedCount);

    template <class... Kind>
    static constexpr auto makeEntryParsers(SKindList<Kind...>);
    template <class... Kind>
    static constexpr auto makeElementParsers(SKindList<Kind...>);

    void parseSection(std::uint8_t tag);
    template <class T>
    void parseEntries(std::uint32_t count);
    template <class T>
    void addEntry(const SEntry& entry);
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
    template <class Unit, class Text>
    const SUnits<Unit>* keepText(const Text& content);
    const SUnits<unsigned char>* parseBlob(const char* functionName);

    CbStreamReadBinary& stream;
    CBinaryTree& tree;
    std::uint32_t depth = 0;
    std::vector<SEntry> entries;
    std::vector<UValue> elements;
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

void CParser::ParseStringTable()
{
    ATL::CStringT<char> key;
    for (std::uint32_t left = read<std::uint32_t>(); left != 0; --left)
    {
        stream.Read(key);
        const std::size_t length = std::char_traits<char>::length(key.GetString()); // keys end at their first NUL
        const char* const kept = tree.arena.Copy(key.GetString(), length + 1);
        tree.keys.Add(read<std::uint32_t>(), std::string_view(kept, length));
    }
    tree.keys.Sort();
}

void CParser::ParseRoot()
{
    if (tree.rootTag == TagObject)
        tree.root.record = parseRecord();
    else if (tree.rootTag == TagSequence)
        tree.root.sequence = parseSequence();
    else
        throw CException(__FILE__, __LINE__, "Vellum::CReaderBinary::CReaderBinary");
}

std::uint32_t CParser::resolve(const char* functionName)
{
    const std::uint32_t number = tree.keys.Resolve(read<std::uint32_t>());
    if (number == CKeys::Unknown)
        throw CException(__FILE__, __LINE__, functionName);
    return number;
}

const SRecord* CParser::parseRecord()
{
    const CLevel level(*this, "Vellum::CDataReader::Read");
    const std::size_t base = entries.size();
    for (unsigned int left = read<unsigned char>(); left != 0; --left)
        parseSection(read<unsigned char>());

    SRecord record{};
    if (entries.size() - base > 0xFFFFFFFF)
        throw CException(__FILE__, __LINE__, "Vellum::CDataReader::Read");
    record.entryCount = static_cast<std::uint32_t>(entries.size() - base);
    record.entries = Finish(entries, base, tree.arena);
    if (record.entryCount > MaxUnsorted)
        record.sorted = sort(record.entries, record.entryCount, record.sortedCount);
    return Keep(tree.arena, record);
}

const std::uint32_t* CParser::sort(const SEntry* all, std::uint32_t count, std::uint32_t& sortedCount)
{
    std::vector<std::uint32_t> positions(count);
    for (std::uint32_t at = 0; at < count; ++at)
        positions[at] = at;
    std::sort(positions.begin(), positions.end(),
              [&](std::uint32_t a, std::uint32_t b)
              {
                  return all[a].tag != all[b].tag || all[a].key != all[b].key
                             ? ComesBefore(all[a], all[b].tag, all[b].key)
                             : a > b; // the later one first, to stay
              });
    const auto end = std::unique(positions.begin(), positions.end(),
                                 [&](std::uint32_t a, std::uint32_t b)
                                 { return all[a].tag == all[b].tag && all[a].key == all[b].key; });
    sortedCount = static_cast<std::uint32_t>(end - positions.begin());
    return tree.arena.Copy(positions.data(), sortedCount);
}

// The operations of each kind, by tag. They are called through a table, so that a level of nesting costs the stack no
// more than its own kind needs.
template <class... Kind>
constexpr auto CParser::makeEntryParsers(SKindList<Kind...>)
{
    std::array<void (CParser::*)(std::uint32_t), sizeof...(Kind)> parsers{};
    ((parsers[Kind::Tag] = &CParser::parseEntries<typename Kind::Type>), ...);
    return parsers;
}

template <class... Kind>
constexpr auto CParser::makeElementParsers(SKindList<Kind...>)
{
    std::array<const void* (CParser::*)(std::uint32_t), sizeof...(Kind)> parsers{};
    ((parsers[Kind::Tag] = &CParser::parseElementsOf<typename Kind::Type>), ...);
    return parsers;
}

void CParser::parseSection(std::uint8_t tag)
{
    static constexpr auto Parsers = makeEntryParsers(ValueKinds());
    if (tag >= Parsers.size())
        throw CException(__FILE__, __LINE__, "Vellum::CDataReader::Read");
    (this->*Parsers[tag])(read<std::uint32_t>());
}

template <class T>
void CParser::parseEntries(std::uint32_t count)
{
    for (; count != 0; --count)
    {
        SEntry entry{};
        entry.key = resolve("Vellum::CDataReader::Read");
        entry.tag = TagOf<T>;
        entry.value = parseField<T>();
        addEntry<T>(entry);
    }
}

template <class T>
void CParser::addEntry(const SEntry& entry)
{
    try
    {
        entries.push_back(entry);
    }
    catch (const std::bad_alloc&)
    {
        CbRaiseOutOfElements(NodePool<T>::GetFunctionName());
    }
}

// The value of an entry: as everywhere, but a blob has its own failure and an object its type name in front.
template <class T>
UValue CParser::parseField()
{
    if constexpr (std::is_same_v<T, SBlob>)
        return {.blob = parseBlob("Vellum::CDataReader::readBlobs")};
    if constexpr (std::is_same_v<T, ISerializable>)
        resolve("Vellum::CDataReader::Read");
    return parseValue<T>();
}

const SSequence* CParser::parseSequence()
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
void CParser::parseTypeHeader(std::uint32_t count)
{
    const bool sameType = read<bool>();
    for (std::uint32_t left = sameType ? 1 : count; left != 0; --left)
        resolve("Vellum::CContainerReader::Read");
}

const void* CParser::parseElements(std::uint8_t tag, std::uint32_t count)
{
    static constexpr auto Parsers = makeElementParsers(ValueKinds());
    if (tag >= Parsers.size())
        throw CException(__FILE__, __LINE__, "Vellum::CContainerReader::Read");
    return (this->*Parsers[tag])(count);
}

template <class T>
const void* CParser::parseElementsOf(std::uint32_t count)
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
template <class T>
const void* CParser::parseNumbers(std::uint32_t count)
{
    constexpr std::uint64_t MaxCommon = 0x1000;
    const std::uint64_t size = std::uint64_t{count} * sizeof(T);
    if (size > 0xFFFFFFFF) // more than a sequence may have
        throw CException(__FILE__, __LINE__, "Vellum::CContainerReader::Read");
    unsigned char* numbers = nullptr;
    if (size <= MaxCommon)
    {
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
template <class T>
UValue CParser::parseElement()
{
    if constexpr (std::is_same_v<T, SBlob>)
        return {.blob = parseBlob("Vellum::CContainerReader::Read")};
    if constexpr (std::is_same_v<T, ISerializable>)
        read<std::uint32_t>();
    return parseValue<T>();
}

template <class T>
UValue CParser::parseValue()
{
    UValue value{};
    if constexpr (IsNumber<T>)
    {
        const T number = read<T>();
        std::memcpy(value.number.data(), &number, sizeof number);
    }
    else if constexpr (std::is_same_v<T, std::string>)
    {
        stream.Read(text);
        value.text = keepText<char>(text);
    }
    else if constexpr (std::is_same_v<T, std::wstring>)
    {
        stream.Read(wideText);
        value.wideText = keepText<char16_t>(wideText);
    }
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

// A text in one piece with its length.
template <class Unit, class Text>
const SUnits<Unit>* CParser::keepText(const Text& content)
{
    using Units = SUnits<Unit>;
    unsigned char* const piece = tree.arena.Allocate(sizeof(Units) + content.size() * sizeof(Unit));
    Unit* const units = reinterpret_cast<Unit*>(piece + sizeof(Units));
    std::transform(content.begin(), content.end(), units, [](auto unit) { return static_cast<Unit>(unit); });
    return new (piece) Units{content.size(), units};
}

const SUnits<unsigned char>* CParser::parseBlob(const char* functionName)
{
    constexpr std::uint32_t MaxCommon = 0x1000;
    const std::uint32_t size = read<std::uint32_t>();
    SUnits<unsigned char> blob{size, nullptr};
    std::uint64_t delivered = 0;
    if (size <= MaxCommon)
    {
        unsigned char* const bytes = tree.arena.Allocate(size);
        delivered = stream.Read(bytes, blob.count);
        blob.units = bytes;
    }
    else
    {
        CbArray<unsigned char> bytes;
        delivered = stream.ReadBytes(bytes, size);
        blob.units = tree.arena.Keep(std::move(bytes));
    }
    if (delivered != size)
        throw CException(__FILE__, __LINE__, functionName);
    return Keep(tree.arena, blob);
}

// What a found value becomes in the client's argument.
template <class T>
void Deliver(const CBinaryTree&, const void* number, T& value)
{
    std::memcpy(&value, number, sizeof value);
}
void Deliver(const CBinaryTree&, const void* number, bool& value)
{
    value = *static_cast<const unsigned char*>(number) != 0;
}
void Deliver(const CBinaryTree&, const UValue& found, std::string& value)
{
    value.assign(found.text->units, found.text->count);
}
void Deliver(const CBinaryTree&, const UValue& found, std::wstring& value)
{
    value.assign(found.wideText->units, found.wideText->units + found.wideText->count);
}
void Deliver(const CBinaryTree&, const UValue& found, IDateTime& value)
{
    value.IDateTime::operator=(CbDateTime(found.ticks)); // the seven setters, whatever the class makes of assignment
}
void Deliver(const CBinaryTree& tree, const UValue& found, ISerializable& value);
void Deliver(const CBinaryTree& tree, const UValue& found, ISerializableContainer& value);

BlobRange ToRange(const SUnits<unsigned char>& blob)
{
    return blob.count == 0 ? BlobRange() : BlobRange(blob.units, blob.units + blob.count);
}

} // namespace

// The fields of one record.
class CDataReader final : public CReadOperations<CDataReader, IDataReader, const char*>
{
public:
    CDataReader(const CBinaryTree& tree, const SRecord& record) : tree(tree), record(record) {}

    std::uint32_t GetKeyCount() const override { return record.entryCount; }
    const char* GetKey(std::uint32_t index) const override { return tree.keys.GetText(record.entries[index].key); }
    BlobRange GetBlob(const char* key) override
    {
        const SEntry* const entry = FindEntry(record, TagBlob, tree.keys.Find(key));
        return entry == nullptr ? BlobRange() : ToRange(*entry->value.blob);
    }

    template <class T>
    bool readValue(const char* key, T& value) const
    {
        const SEntry* const entry = FindEntry(record, TagOf<T>, tree.keys.Find(key));
        if (entry == nullptr)
            return false;
        if constexpr (IsNumber<T>)
            Deliver(tree, entry->value.number.data(), value);
        else
            Deliver(tree, entry->value, value);
        return true;
    }

private:
    const CBinaryTree& tree;
    const SRecord& record;
};

// The elements of one sequence.
class CContainerReader final : public CReadOperations<CContainerReader, IContainerReader, std::uint32_t>
{
public:
    CContainerReader(const CBinaryTree& tree, const SSequence& sequence) : tree(tree), sequence(sequence) {}

    BlobRange GetBlob(std::uint32_t index) override
    {
        return has(TagBlob, index) ? ToRange(*getValues()[index].blob) : BlobRange();
    }

    template <class T>
    bool readValue(std::uint32_t index, T& value) const
    {
        if (!has(TagOf<T>, index))
            return false;
        if constexpr (IsNumber<T>)
            Deliver(tree, static_cast<const unsigned char*>(sequence.elements) + index * sizeof(T), value);
        else
            Deliver(tree, getValues()[index], value);
        return true;
    }

private:
    bool has(std::uint8_t tag, std::uint32_t index) const { return index < sequence.count && sequence.tag == tag; }
    const UValue* getValues() const { return static_cast<const UValue*>(sequence.elements); }

    const CBinaryTree& tree;
    const SSequence& sequence;
};

namespace
{

void Deliver(const CBinaryTree& tree, const UValue& found, ISerializable& value)
{
    CDataReader reader(tree, *found.record);
    value.Read(reader);
}

void Deliver(const CBinaryTree& tree, const UValue& found, ISerializableContainer& value)
{
    CContainerReader reader(tree, *found.sequence);
    value.Read(reader);
}

std::unique_ptr<const CBinaryTree> Parse(CbStreamReadBinary& stream)
{
    auto tree = std::make_unique<CBinaryTree>();
    stream.ReadAndCompareVersion(0);
    stream.Read(tree->rootTag);
    CParser parser(stream, *tree);
    parser.ParseStringTable();
    parser.ParseRoot();
    tree->keys.ForgetIndices();
    return tree;
}

template <class Root>
void ReadRoot(const CBinaryTree& tree, Root& root)
{
    if (tree.rootTag != TagOf<Root>)
        throw CException(__FILE__, __LINE__, "Vellum::CReaderBinary::Read");
    Deliver(tree, tree.root, root);
}

} // namespace

CReaderBinary::CReaderBinary(CbStreamReadBinary& stream) : tree(Parse(stream)) {}
CReaderBinary::~CReaderBinary() = default;

void CReaderBinary::Read(ISerializable& root) const { ReadRoot(*tree, root); }

void CReaderBinary::Read(ISerializableContainer& root) const { ReadRoot(*tree, root); }

} // namespace Vellum
