#include "Vellum/src/CXmlNode.h"

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <new>
#include <numeric>

#include "Platform/TextCompare.h"

namespace Vellum
{
namespace
{

// Up to this many children are searched one by one: that is faster than making an index.
constexpr std::uint32_t MaxUnindexed = 16;

// Room for `count` entries and one more. Without that room the array is full: empty, or of a power of two.
template <class Entry>
void MakeRoom(CXmlMemory& memory, Entry*& array, std::uint32_t count)
{
    if (count != 0 && !std::has_single_bit(count))
        return;
    Entry* const larger = memory.Allocate<Entry>(count == 0 ? 1 : std::size_t{count} * 2);
    if (count != 0)
    {
        std::copy_n(array, count, larger);
        memory.Recycle(array, count);
    }
    array = larger;
}

SXmlNodeData* MakeRecord(CXmlMemory& memory, SXmlNodeData* parent, const char* name, bool isDeclaration)
{
    auto* const data = new (memory.Allocate<SXmlNodeData>(1)) SXmlNodeData{};
    data->name = name;
    data->parent = parent;
    data->memory = &memory;
    data->isDeclaration = isDeclaration;
    return data;
}

SXmlNodeExtras& GetExtras(SXmlNodeData& data)
{
    if (data.extras == nullptr)
        data.extras = new (data.memory->Allocate<SXmlNodeExtras>(1)) SXmlNodeExtras{};
    return *data.extras;
}

// Entries of each kind, by EXmlEntry.
std::array<std::uint32_t, 4> CountEntries(const SXmlNodeData& data)
{
    const SXmlNodeExtras* const extras = data.extras;
    return {data.childCount, extras == nullptr ? 0 : extras->attributeCount, data.textCount,
            extras == nullptr ? 0 : extras->clearCount};
}

// Notes where the next entry of a kind comes in the order, which is written down from the second kind on.
void AddToOrder(SXmlNodeData& data, EXmlEntry kind)
{
    const auto counts = CountEntries(data);
    const std::uint32_t total = std::accumulate(counts.begin(), counts.end(), 0u);
    if (data.order == nullptr && total == counts[kind])
        return;
    if (data.order == nullptr)
    {
        const auto only = std::find_if(counts.begin(), counts.end(), [](std::uint32_t count) { return count != 0; });
        data.order = data.memory->Allocate<std::uint32_t>(std::bit_ceil(total));
        for (std::uint32_t index = 0; index < total; ++index)
            data.order[index] = index * 4 + static_cast<std::uint32_t>(only - counts.begin());
    }
    MakeRoom(*data.memory, data.order, total);
    data.order[total] = counts[kind] * 4 + kind;
}

// All room is made before the entry counts.
template <class Entry>
void AddEntry(SXmlNodeData& data, EXmlEntry kind, Entry*& array, std::uint32_t& count, Entry entry)
{
    MakeRoom(*data.memory, array, count);
    AddToOrder(data, kind);
    array[count++] = entry;
}

// Takes the reference away that a handle has. Nothing is freed but the whole tree, with the last handle. Before that,
// a node can only go when its parent goes or has gone, for the parent holds it: then its children lose their parent,
// and so on. Records that wait for that are chained by `parent`, which they no longer need.
void Release(SXmlNodeData* data) noexcept
{
    if (data == nullptr)
        return;
    if (--data->memory->handleCount == 0)
    {
        delete data->memory;
        return;
    }
    if (--data->referenceCount != 0)
        return;
    SXmlNodeData* waiting = data;
    while (waiting != nullptr)
    {
        SXmlNodeData* const gone = std::exchange(waiting, waiting->parent);
        for (std::uint32_t i = 0; i < gone->childCount; ++i)
        {
            SXmlNodeData* const child = gone->children[i];
            child->parent = nullptr;
            if (--child->referenceCount == 0)
                child->parent = std::exchange(waiting, child);
        }
    }
}

// FNV-1a over the folded name.
std::uint32_t HashName(const char* name) noexcept
{
    std::uint32_t hash = 2166136261u;
    for (; *name != 0; ++name)
        hash = (hash ^ static_cast<unsigned char>(Platform::FoldCase(*name))) * 16777619u;
    return hash;
}

SXmlIndexEntry* MakeIndex(const SXmlNodeData& data)
{
    SXmlIndexEntry* const index = data.memory->Allocate<SXmlIndexEntry>(data.childCount);
    for (std::uint32_t i = 0; i < data.childCount; ++i)
        index[i] = {HashName(data.children[i]->name), i};
    std::sort(index, index + data.childCount,
              [&](const SXmlIndexEntry& left, const SXmlIndexEntry& right)
              {
                  if (left.hash != right.hash)
                      return left.hash < right.hash;
                  const int order =
                      Platform::CompareWithoutCase(data.children[left.child]->name, data.children[right.child]->name);
                  return order != 0 ? order < 0 : left.child < right.child;
              });
    return index;
}

SXmlNodeData* FindIndexed(const SXmlNodeData& data, const char* name)
{
    const std::uint32_t hash = HashName(name);
    const SXmlIndexEntry* const begin = data.extras->index;
    const SXmlIndexEntry* const end = begin + data.childCount;
    const auto isBefore = [&](const SXmlIndexEntry& entry)
    {
        return entry.hash != hash ? entry.hash < hash
                                  : Platform::CompareWithoutCase(data.children[entry.child]->name, name) < 0;
    };
    const SXmlIndexEntry* const found = std::partition_point(begin, end, isBefore);
    if (found == end || found->hash != hash ||
        Platform::CompareWithoutCase(data.children[found->child]->name, name) != 0)
        return nullptr;
    return data.children[found->child];
}

SXmlNodeData* FindOneByOne(const SXmlNodeData& data, const char* name)
{
    for (std::uint32_t i = 0; i < data.childCount; ++i)
        if (Platform::CompareWithoutCase(data.children[i]->name, name) == 0)
            return data.children[i];
    return nullptr;
}

} // namespace

CXmlNode CXmlNode::MakeDocument()
{
    auto memory = std::make_unique<CXmlMemory>();
    CXmlNode document(MakeRecord(*memory, nullptr, nullptr, false));
    memory.release();
    return document;
}

CXmlNode::CXmlNode(SXmlNodeData* shared) noexcept : data(shared)
{
    if (data == nullptr)
        return;
    ++data->referenceCount;
    ++data->memory->handleCount;
}

CXmlNode::CXmlNode(const CXmlNode& other) noexcept : CXmlNode(other.data) {}

CXmlNode& CXmlNode::operator=(const CXmlNode& other) noexcept { return *this = CXmlNode(other); }

CXmlNode& CXmlNode::operator=(CXmlNode&& other) noexcept
{
    if (this != &other)
        Release(std::exchange(data, std::exchange(other.data, nullptr)));
    return *this;
}

CXmlNode::~CXmlNode() { Release(data); }

CXmlNode CXmlNode::GetChild(std::uint32_t index) const noexcept
{
    return CXmlNode(index < GetChildCount() ? data->children[index] : nullptr);
}

CXmlNode CXmlNode::GetChild(const char* name) const
{
    if (GetChildCount() <= MaxUnindexed)
        return CXmlNode(IsEmpty() ? nullptr : FindOneByOne(*data, name));
    if (SXmlNodeExtras& extras = GetExtras(*data); extras.index == nullptr)
        extras.index = MakeIndex(*data);
    return CXmlNode(FindIndexed(*data, name));
}

const char* CXmlNode::GetText(std::uint32_t index) const noexcept
{
    return index < GetTextCount() ? data->texts[index] : nullptr;
}

SXmlClear CXmlNode::GetClear(std::uint32_t index) const noexcept
{
    return index < GetClearCount() ? data->extras->clears[index] : SXmlClear{};
}

SXmlAttribute CXmlNode::GetAttribute(std::uint32_t index) const noexcept
{
    return index < GetAttributeCount() ? data->extras->attributes[index] : SXmlAttribute{};
}

std::uint32_t CXmlNode::GetEntryCount() const noexcept
{
    return GetChildCount() + GetAttributeCount() + GetTextCount() + GetClearCount();
}

std::pair<EXmlEntry, std::uint32_t> CXmlNode::GetEntry(std::uint32_t place) const noexcept
{
    if (data->order != nullptr)
        return {static_cast<EXmlEntry>(data->order[place] % 4), data->order[place] / 4};
    return {GetChildCount() != 0       ? XmlChildEntry
            : GetAttributeCount() != 0 ? XmlAttributeEntry
            : GetTextCount() != 0      ? XmlTextEntry
                                       : XmlClearEntry,
            place};
}

CXmlNode CXmlNode::AddChild(const char* name, bool isDeclaration)
{
    if (name == nullptr)
        return CXmlNode();
    SXmlNodeData* const child = MakeRecord(*data->memory, data, name, isDeclaration);
    AddEntry(*data, XmlChildEntry, data->children, data->childCount, child);
    child->referenceCount = 1; // the array's own
    if (data->extras != nullptr)
        data->extras->index = nullptr;
    return CXmlNode(child);
}

void CXmlNode::AddAttribute(const char* name, const char* value)
{
    if (name == nullptr)
        return;
    SXmlNodeExtras& extras = GetExtras(*data);
    AddEntry(*data, XmlAttributeEntry, extras.attributes, extras.attributeCount, SXmlAttribute{name, value});
}

void CXmlNode::AddText(const char* text)
{
    if (text != nullptr)
        AddEntry(*data, XmlTextEntry, data->texts, data->textCount, text);
}

void CXmlNode::AddClear(const char* value, const char* openTag, const char* closeTag)
{
    if (value == nullptr)
        return;
    SXmlNodeExtras& extras = GetExtras(*data);
    AddEntry(*data, XmlClearEntry, extras.clears, extras.clearCount, SXmlClear{value, openTag, closeTag});
}

} // namespace Vellum
