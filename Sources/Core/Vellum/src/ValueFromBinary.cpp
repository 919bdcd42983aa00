#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Groundwork/CbDateTime.h"
#include "Groundwork/CbStreamReadBinaryBuffer.h"

#include "Vellum/CDocumentException.h"
#include "Vellum/CValue.h"

#include "Vellum/src/CallOrder.h"
#include "Vellum/src/CBinaryWalker.h"
#include "Vellum/src/ValueKinds.h"

// A walker tells what lies where in a document, and CBuilder makes a value of it. Objects and sequences that aren't
// complete wait on a stack of its own.

namespace Vellum
{
namespace
{

constexpr bool IsNested(std::uint8_t tag) { return tag == TagObject || tag == TagSequence; }

// A field, while its record is being read.
struct SEntry
{
    std::uint32_t key;     // index of its text
    std::string_view name; // that text, the walker's
    std::uint32_t rank;    // where it comes among all fields
    CValue value;
};
using Section = std::vector<SEntry>;

// In the order in which sections are emitted: by tag, but char behind double.
constexpr std::array<std::uint8_t, 18> SectionOrder = {0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 1, 12, 13, 14, 15, 16, 17};

// Puts the entries of a section into the order in which they may have been written, and ranks them for a place among
// those of other sections. Where a document of others has a key twice the last value counts.
void Arrange(Section& section)
{
    std::vector<std::uint32_t> keys;
    for (const SEntry& entry : section)
        keys.push_back(entry.key);
    std::ranges::sort(keys);
    if (std::ranges::adjacent_find(keys) != keys.end())
    {
        std::ranges::stable_sort(section, {}, &SEntry::key);
        const auto last = std::unique(section.rbegin(), section.rend(),
                                      [](const SEntry& left, const SEntry& right) { return left.key == right.key; });
        section.erase(section.begin(), last.base());
    }
    std::ranges::transform(section, keys.begin(), &SEntry::key);
    keys.resize(section.size());

    Section arranged;
    arranged.reserve(section.size());
    std::uint32_t rank = 0;
    for (const std::uint32_t position : FindCallOrder(keys))
    {
        arranged.push_back(std::move(section[position]));
        rank = std::max(rank, arranged.back().key);
        arranged.back().rank = rank;
    }
    section = std::move(arranged);
}

// A stream that keeps what it has delivered, until it has been looked at.
class CKeepingStream final : public CbStreamReadBinary
{
public:
    explicit CKeepingStream(CbStreamReadBinary& stream) : stream(stream) {}

    using CbStreamReadBinary::Read;
    std::uint64_t Read(void* data, std::size_t count) override
    {
        const std::uint64_t delivered = stream.Read(data, count);
        const auto* const begin = static_cast<const unsigned char*>(data);
        bytes.insert(bytes.end(), begin, begin + delivered);
        return delivered;
    }

    // What has come since it was called last. Good until the next read.
    CbStreamReadBinaryBuffer Take()
    {
        const CbStreamReadBinaryBuffer taken(bytes.data(), bytes.size());
        bytes.clear();
        return taken;
    }

private:
    CbStreamReadBinary& stream;
    std::vector<unsigned char> bytes;
};

// An object or a sequence that isn't complete.
struct SOpen
{
    SEntry place; // in what is around; its value is an object yet without fields, or a sequence with some elements
    std::array<Section, ValueKinds::Count> sections = {}; // of an object, by tag
};

// The names of a document, each made once. They are known by their addresses in the walker.
class CNames
{
public:
    const CName& Get(std::string_view text)
    {
        CName& name = names[text.data()];
        if (name.Get().size() != text.size())
            name = CName(std::string(text));
        return name;
    }

private:
    std::unordered_map<const char*, CName> names;
};

// The fields of an object, of all sections.
void MakeFields(SOpen& object, CNames& names)
{
    Section all;
    for (const std::uint8_t tag : SectionOrder)
    {
        Section& section = object.sections[tag];
        if (section.empty())
            continue;
        Arrange(section);
        std::ranges::move(section, std::back_inserter(all));
    }
    std::ranges::stable_sort(all, {}, &SEntry::rank);
    std::vector<CValue::SField>& fields = object.place.value.GetFields();
    fields.reserve(all.size());
    for (SEntry& entry : all)
        fields.push_back({names.Get(entry.name), std::move(entry.value)});
}

template <class T>
T Take(CbStreamReadBinaryBuffer& bytes)
{
    T value{};
    bytes.Read(value);
    return value;
}

// A value that isn't nested.
template <class T>
CValue TakeValue(CbStreamReadBinaryBuffer& bytes)
{
    if constexpr (std::is_same_v<T, IDateTime>)
    {
        Take<std::uint32_t>(bytes); // its version
        return CbDateTime(Take<std::uint64_t>(bytes));
    }
    else if constexpr (std::is_same_v<T, SBlob>)
    {
        CValue::Bytes blob(Take<std::uint32_t>(bytes));
        bytes.ReadExact(blob.data(), blob.size());
        return blob;
    }
    else if constexpr (!IsNested(TagOf<T>))
        return Take<T>(bytes);
    else
        return {};
}

template <class... Kind>
CValue TakeValue(std::uint8_t tag, CbStreamReadBinaryBuffer& bytes, SKindList<Kind...>)
{
    CValue value;
    static_cast<void>(((tag == Kind::Tag && (value = TakeValue<typename Kind::Type>(bytes), true)) || ...));
    return value;
}

class CBuilder
{
public:
    // Called by the walker, for each part with its bytes.
    void Take(const SBinaryPart& part, CbStreamReadBinaryBuffer bytes, const std::vector<SBinaryStep>& path);

    // The whole value, and the string table.
    CValue root;
    std::vector<std::pair<std::uint32_t, std::string>> texts;

private:
    void takeField(const SBinaryPart& part, CbStreamReadBinaryBuffer& bytes, const std::vector<SBinaryStep>& path);
    void takeElements(std::uint64_t count, std::uint8_t tag, CbStreamReadBinaryBuffer& bytes);
    void begin(CValue value);
    void end(std::uint8_t tag);
    void add(SEntry entry, std::uint8_t tag);

    std::vector<SOpen> open;
    SEntry next = {}; // the place of the nested value that comes next
    CName typeName;   // of that value
    CNames names;
};

void CBuilder::Take(const SBinaryPart& part, CbStreamReadBinaryBuffer bytes, const std::vector<SBinaryStep>& path)
{
    switch (part.what)
    {
    case EBinaryPart::String:
        texts.emplace_back(static_cast<std::uint32_t>(part.count), part.text);
        break;
    case EBinaryPart::Record:
        begin(CValue::Object(std::exchange(typeName, CName())));
        break;
    case EBinaryPart::Sequence:
        begin(CValue::Sequence());
        break;
    case EBinaryPart::Field:
        takeField(part, bytes, path);
        break;
    case EBinaryPart::Element:
        typeName = names.Get(part.text);
        takeElements(1, part.tag, bytes);
        break;
    case EBinaryPart::Numbers:
        takeElements(part.count, part.tag, bytes);
        break;
    case EBinaryPart::RecordEnd:
        MakeFields(open.back(), names);
        end(TagObject);
        break;
    case EBinaryPart::SequenceEnd:
        end(TagSequence);
        break;
    default:
        break;
    }
}

void CBuilder::takeField(const SBinaryPart& part, CbStreamReadBinaryBuffer& bytes, const std::vector<SBinaryStep>& path)
{
    typeName = names.Get(part.text);
    next = {Vellum::Take<std::uint32_t>(bytes), path.back().key, 0, {}};
    if (!IsNested(part.tag))
    {
        next.value = TakeValue(part.tag, bytes, ValueKinds());
        add(std::move(next), part.tag);
    }
}

void CBuilder::takeElements(std::uint64_t count, std::uint8_t tag, CbStreamReadBinaryBuffer& bytes)
{
    if (IsNested(tag))
        return;
    std::vector<CValue>& elements = open.back().place.value.GetElements();
    if (count > 1)
        elements.reserve(static_cast<std::size_t>(count)); // they are all there
    for (; count != 0; --count)
        elements.push_back(TakeValue(tag, bytes, ValueKinds()));
}

void CBuilder::begin(CValue value)
{
    open.emplace_back().place = std::move(next);
    open.back().place.value = std::move(value);
}

void CBuilder::end(std::uint8_t tag)
{
    SEntry finished = std::move(open.back().place);
    open.pop_back();
    add(std::move(finished), tag);
}

void CBuilder::add(SEntry entry, std::uint8_t tag)
{
    if (open.empty())
        root = std::move(entry.value);
    else if (CValue& around = open.back().place.value; around.GetKind() == EValueKind::Object)
        open.back().sections[tag].push_back(std::move(entry));
    else
        around.GetElements().push_back(std::move(entry.value));
}

// All texts in the order of their indices, if these are the numbers from 0 on; otherwise none.
std::vector<std::string> InOrder(std::vector<std::pair<std::uint32_t, std::string>> texts)
{
    std::ranges::sort(texts);
    std::vector<std::string> ordered;
    for (auto& [index, text] : texts)
    {
        if (index != ordered.size())
            return {};
        ordered.push_back(std::move(text));
    }
    return ordered;
}

} // namespace

CValue CValue::FromBinary(CbStreamReadBinary& stream)
{
    CKeepingStream kept(stream);
    CBuilder builder;
    CBinaryWalker walker(kept, [&](const SBinaryPart& part) { builder.Take(part, kept.Take(), walker.GetPath()); });
    if (const auto damage = walker.Walk())
        throw CDocumentException(__FILE__, __LINE__, "Vellum::CValue::FromBinary",
                                 {.reason = damage->reason, .path = damage->path, .offset = damage->offset});
    builder.root.setTexts(std::make_shared<const std::vector<std::string>>(InOrder(std::move(builder.texts))));
    return std::move(builder.root);
}

} // namespace Vellum
